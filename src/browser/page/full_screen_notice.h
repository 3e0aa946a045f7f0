#pragma once

#include <QLabel>
#include <QPropertyAnimation>
#include <QTimer>

// A line of text over the top of a page that fades away by itself. Clicks go through it.
class TFullScreenNotice final : public QLabel {
  Q_OBJECT

 public:
  // Shows `text` over `over` at once; the notice belongs to that widget and deletes itself when it has faded.
  TFullScreenNotice(const QString &text, QWidget *over);

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  void Place();

  QTimer m_wait;
  QPropertyAnimation m_fade;
};
