#pragma once

#include <functional>
#include <optional>
#include <QObject>
#include <QUrl>

class QWebEnginePage;

// What a page may be allowed, as far as the user is asked about it.
enum class TPermission {
  Notifications,
  Location,
  Microphone,
  Camera,
  CameraAndMicrophone,
  MouseLock,
  Clipboard,  // to read it; engines before 6.8 ask nobody, and refuse it
  Screen,
  ScreenAndSound,
  // Asked about by the program itself, where the zone of the page says so.
  Scripts,
  PlugIns,
  StoredCookies,
  SessionCookies,
};

enum class TPermissionAnswer {
  Allow,
  Deny,
  NotNow  // denied, and asked again the next time
};

struct TPermissionRequest {
  QUrl origin;
  TPermission permission = TPermission::Notifications;
  std::function<void(TPermissionAnswer)> answer;
};

// The questions of a page for permissions, in whichever way the engine at hand asks them. What the user is not asked
// about is denied. The engine remembers some answers by itself, for this run at most.
class TPermissionRequests final : public QObject {
  Q_OBJECT

 public:
  // Belongs to `page`.
  explicit TPermissionRequests(QWebEnginePage *page);

  // What pages at `origin` are told of a permission without anybody being asked; std::nullopt for "ask". Does nothing
  // for permissions that the engine asks about each time.
  void Settle(const QUrl &origin, TPermission permission, std::optional<bool> allowed);

 Q_SIGNALS:
  void Asked(const TPermissionRequest &request);
  // The page does not wait for this answer any more. Engines from 6.8 on do not tell; leaving the page says it for all.
  void Withdrawn(const QUrl &origin, TPermission permission);

 private:
  QWebEnginePage *m_page;
};
