#pragma once

#include <QList>
#include <QString>
#include <QUrl>

// Kinds of cookies.
struct TCookieKinds {
  bool stored = false;
  bool session = false;
};

// What the user is to be asked about; until he has answered it is not allowed.
struct TToAsk {
  bool scripts = false;
  bool plugIns = false;
  TCookieKinds cookies{};  // of the page's own site
};

// What the page at an address may do, and which kinds of content it may fetch. Frames go by the page that they are in.
struct TPagePermissions {
  bool scripts = true;
  bool plugIns = true;  // the viewer for PDF files is one
  // What scripts keep for good without cookies. Of that the engine can switch off the local storage alone; databases
  // and service workers it asks about as it does about cookies, and not which of these it is.
  bool storage = true;
  bool images = true;
  bool sounds = true;
  bool videos = true;
  bool animations = true;  // whatever moves: pictures, and by style, markup and script
  TToAsk toAsk{};
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

// A script of the user's for pages. It runs in the page itself and in none of its frames.
struct TPageScript {
  enum class TMoment {
    Creation,  // as soon as there is a document
    Ready,     // when all of it is there
    Idle,      // a moment later
  };

  QString id{};  // by which its failures are told; no page knows it
  QString source{};
  TMoment moment = TMoment::Idle;
  int world = 0;  // each script has one, which it shares with no other and no page
  bool inFrames = true;

  bool operator==(const TPageScript &) const = default;
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
  // On both threads, too: of what MayKeepCookie refuses, that which the user decides for the site at `origin`.
  [[nodiscard]] virtual TCookieKinds CookiesToAskAbout(const QUrl &origin) const;
  // All of the user's scripts; when they become others TEngine::ScriptsChanged says so.
  [[nodiscard]] virtual QList<TPageScript> Scripts() const;
  // Asked by each of them in each page and in each of its frames, before it does anything; `document` is the page's
  // own address, or the frame's.
  [[nodiscard]] virtual bool MayRun(const QString &script, const QUrl &document, const QUrl &page) const;
  [[nodiscard]] virtual TSecurityZone ZoneOf(const QString &address) const;
  // Pages that have no address of their own: blank ones, and those that are nothing but their address.
  [[nodiscard]] static bool IsNobodys(const QUrl &url);
  // True to stop the window that a page has asked for. Asked once, of its first real address.
  [[nodiscard]] virtual bool IsPopup(const QString &address);
  // Asked for a text that is no address.
  [[nodiscard]] virtual TWordSearch SearchFor(const QString &words) const;
  // What stands behind the platform in the engine's own user agent, for all pages; empty for nothing.
  [[nodiscard]] virtual QString UserAgentToken() const;

 protected:
  TPolicy() = default;
};
