#pragma once

#include <QPointer>
#include <QWidget>

// A panel that lies over the other children of its parent: the window's own colours, a hairline, round corners, and a
// soft shadow, through which the mouse goes. It takes all clicks on itself. Who places it is the parent's matter.
class TFloatingPanel : public QWidget {
  Q_OBJECT

 public:
  explicit TFloatingPanel(QWidget *parent = nullptr);
  ~TFloatingPanel() override;

  // A child of the same parent, always right below the panel.
  [[nodiscard]] QWidget *Shadow() const { return m_shadow; }

 protected:
  bool event(QEvent *event) override;
  void paintEvent(QPaintEvent *event) override;

 private:
  void FollowWithShadow();

  QPointer<QWidget> m_shadow;
};
