#pragma once

#include <QElapsedTimer>
#include <QObject>

class QWidget;

// Knows whether the user has just clicked or typed in a view. The engine calls every navigation that a page begins by
// itself a clicked link; only together with this is it one. It also takes the wheel with Ctrl, which zooms, and keeps
// the keyboard on the page when the engine swaps an inner widget.
class TInputWatch final : public QObject {
  Q_OBJECT

 public:
  // Watches the inner widgets of `view`, which come and go with its renderers.
  TInputWatch(QWidget *view, QObject *parent);

  [[nodiscard]] bool UserJustActed() const;
  // How often he has clicked or typed so far.
  [[nodiscard]] int Acts() const { return m_acts; }
  // Whether the user has clicked or typed at all since the page came: before that it may not ask anything when it goes.
  [[nodiscard]] bool UserHasActed() const { return m_hasActed; }
  void BeginPage() { m_hasActed = false; }

  bool eventFilter(QObject *watched, QEvent *event) override;

 Q_SIGNALS:
  void Acted();  // the user has clicked or typed
  void ZoomWanted(bool in);

 private:
  void Zoom(int angle);

  QWidget *m_view = nullptr;
  QElapsedTimer m_since;
  int m_acts = 0;
  bool m_hasActed = false;
  bool m_swapping = false;  // an inner widget that had the keyboard was hidden, and none has it since
  int m_wheelAngle = 0;     // eighths of a degree that have not made a whole step yet
};
