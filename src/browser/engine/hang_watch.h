#pragma once

#include <functional>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class QWebEnginePage;

// Notices a page that does not answer any more while the user does something in it: its scripts then run, or wait, for
// too long.
class THangWatch final : public QObject {
  Q_OBJECT

 public:
  // Belongs to `page`. `waitsForUser` tells that the page cannot answer because it has asked something itself.
  THangWatch(QWebEnginePage *page, std::function<bool()> waitsForUser);

  // The user has clicked or typed in the page.
  void NoteAct();
  // Another page, or another renderer, is there.
  void BeginPage();
  // How long, in ms, a page may take (ten seconds at first).
  void SetPatience(int patience) { m_patience.setInterval(patience); }

 Q_SIGNALS:
  void Hangs();
  // It has answered after all, or has gone.
  void Recovered();

 private:
  void Judge();
  void Settle();

  QWebEnginePage *m_page;
  std::function<bool()> m_waitsForUser;
  QTimer m_patience{this};  // active while the page has not answered
  QElapsedTimer m_since;    // the last question
  int m_question = 0;
  bool m_hangs = false;
};
