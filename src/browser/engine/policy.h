#pragma once

#include <QString>
#include <QUrl>

// What the page at an address may do, and which kinds of content it may fetch. Frames go by the page that they are in.
struct TPagePermissions {
  bool scripts = true;
  bool plugIns = true;  // the viewer for PDF files is one
  bool images = true;
  bool sounds = true;
  bool videos = true;
  bool animations = true;  // moving pictures; from Qt 6.8 on, before that the engine cannot tell pages apart
};

// Security zones, by the numbers that users of the browser control know.
enum class TSecurityZone {
  Unknown = -1,
  LocalMachine = 0,
  LocalIntranet = 1,
  Trusted = 2,
  Internet = 3,
  Restricted = 4,
};

// A cookie that a site or a script wants to keep or to read.
struct TCookie {
  // The engine tells it only of a cookie that was just kept; one that is refused then is taken out again.
  enum class TLifetime { NotTold, Session, Stored };

  QUrl origin{};      // whose cookie it is
  QUrl firstParty{};  // the page that it comes with; empty where that is not told
  bool thirdParty = false;
  TLifetime lifetime = TLifetime::NotTold;
};

// Where the words that somebody typed in place of an address can be searched for.
struct TWordSearch {
  QString name{};     // as the user calls it
  QString address{};  // with the words in it; empty where there is no such search
};

// What pages ask at each navigation, request, cookie and new window. The floors above answer; what they leave open is
// allowed. Answers are asked for inside the engine's own events: they come at once and never run an event loop.
class TPolicy {
 public:
  virtual ~TPolicy() = default;
  TPolicy(const TPolicy &) = delete;
  TPolicy &operator=(const TPolicy &) = delete;

  // Asked when `page` is navigated to, for the whole page, and again for each of its pictures, sounds and videos.
  [[nodiscard]] virtual TPagePermissions PermissionsOf(const QUrl &page) const;
  // Asked on the GUI thread and, for what scripts do, on a thread of the engine; often.
  [[nodiscard]] virtual bool MayKeepCookie(const TCookie &cookie) const;
  [[nodiscard]] virtual TSecurityZone ZoneOf(const QString &address) const;
  // True to stop the window that a page has asked for. Asked once, of its first real address.
  [[nodiscard]] virtual bool IsPopup(const QString &address);
  // Asked for a text that is no address.
  [[nodiscard]] virtual TWordSearch SearchFor(const QString &words) const;
  // What stands behind the platform in the engine's own user agent, for all pages; empty for nothing.
  [[nodiscard]] virtual QString UserAgentToken() const;

 protected:
  TPolicy() = default;
};
