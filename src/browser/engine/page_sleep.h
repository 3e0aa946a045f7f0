#pragma once

#include <functional>
#include <QObject>
#include <QSet>

class TEnginePage;
class TPageDownloads;

// The sleep of a page: its renderer goes, and its address, title, history and the place in it stay; it is loaded again
// when it is shown. A page only falls asleep where nothing of the user's is lost by it: not while it is seen, loads,
// plays, captures or downloads, holds what he has put into it, or has come in answer to a form. Connections that its
// scripts keep open are no reason to stay awake, since the engine does not tell of them.
class TPageSleep final : public QObject {
  Q_OBJECT

 public:
  // Belongs to `page`; `mayRest` says whether those around it have nothing against its sleep.
  TPageSleep(TEnginePage *page, std::function<bool()> mayRest);

  [[nodiscard]] bool IsAsleep() const;
  // Of a page that has slept the engine (6.4) looks for no icon any more, and ends the program when asked for it.
  [[nodiscard]] bool HasSlept() const { return m_hasSlept; }
  // Asks the page what it would lose; where that is nothing, AsleepChanged follows. One that does not answer stays
  // awake.
  void FallAsleep();
  // The user has let the page have a camera, a microphone or the screen. When it gives them back nobody tells, so it
  // stays awake.
  void NoteCapture() { m_captures = true; }

 Q_SIGNALS:
  void AsleepChanged(bool asleep);

 private:
  [[nodiscard]] bool MayRest() const;
  void Hear(const QString &message);

  TEnginePage *m_page;
  const TPageDownloads *m_downloads;
  std::function<bool()> m_mayRest;
  QSet<QString> m_restless;  // the frames that have something to lose
  QSet<QString> m_leaving;   // those of them that were there when the load under way set out
  bool m_captures = false;
  bool m_hasSlept = false;
};
