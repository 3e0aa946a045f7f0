#pragma once

#include <QIcon>
#include <QWidget>

// A panel of the status bar: the picture of the page's security zone in its corner and the zone's name beside it.
class TZonePanel final : public QWidget {
  Q_OBJECT

 public:
  explicit TZonePanel(QWidget *parent);

  // Nothing for an empty text.
  void Show(const QIcon &icon, const QString &text);
  [[nodiscard]] const QString &Text() const { return m_text; }
  [[nodiscard]] QSize sizeHint() const override;

 Q_SIGNALS:
  void DoubleClicked();

 protected:
  void paintEvent(QPaintEvent *event) override;
  void mouseDoubleClickEvent(QMouseEvent *event) override;

 private:
  QIcon m_icon;
  QString m_text;
};
