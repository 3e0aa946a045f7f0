#pragma once

#include <functional>
#include <QObject>
#include <QPointer>

class QUrl;
class QWebEngineDownloadRequest;
class QWebEnginePage;
class TDownloadOwners;

// What one page may download. What the user asks for is his affair; by itself a page gets one file while it is in
// front, and for more, or from the background, the user is asked once for as long as the page stays.
class TPageDownloads final : public QObject {
  Q_OBJECT

 public:
  enum class TVerdict {
    ByUser,   // the user has just asked for it
    First,    // taken as if he had
    Wait,     // until Answered
    Allowed,  // taken without asking where to
    Refused,
  };

  // Belongs to `page`. `recentAct` numbers what the user did in it a moment ago, 0 for nothing; `isInFront` tells
  // whether he can see it.
  TPageDownloads(QWebEnginePage *page, std::function<int()> recentAct, std::function<bool()> isInFront);
  ~TPageDownloads() override;
  // nullptr for a page that has none.
  [[nodiscard]] static TPageDownloads *Of(const QWebEnginePage *page);
  [[nodiscard]] QWebEnginePage &Page() const;

  // The page is about to ask for something that may turn out to be a file: its downloads are known by that.
  void NoteAsked(const QUrl &address);
  // Counts the page's download until it ends.
  void Follow(QWebEngineDownloadRequest *request);
  // Some run or are paused.
  [[nodiscard]] bool AreUnderWay() const { return m_underWay > 0; }

  // The page wants a file; Asked may come.
  [[nodiscard]] TVerdict Judge();
  // The next file is what the user has chosen outside the page: in a menu, in the address bar.
  void ExpectOne() { m_expected = true; }
  void Answer(bool allow);
  // Another page is there. What still waits is refused.
  void BeginPage();

 Q_SIGNALS:
  // What the page has asked for turns out to be a file of that type.
  void Came(const QUrl &address, const QString &type);
  // Whether the page may have more. Answer is to be called, later.
  void Asked();
  void Answered(bool allow);

 private:
  enum class TState { Fresh, HadOne, Asking, Allowed, Refused };

  std::function<int()> m_recentAct;
  std::function<bool()> m_isInFront;
  QPointer<TDownloadOwners> m_owners;
  int m_underWay = 0;
  TState m_state = TState::Fresh;
  bool m_expected = false;
  int m_lastAct = 0;  // that a file was taken for; a click asks for one
};
