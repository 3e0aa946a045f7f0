#include "browser/page/permission_requests.h"

#include <algorithm>
#include <optional>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <utility>

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
#include <QWebEnginePermission>
#endif

namespace {

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
using TEngineType = QWebEnginePermission::PermissionType;
#else
using TEngineType = QWebEnginePage::Feature;
#endif

constexpr std::pair<TEngineType, TPermission> Permissions[] = {
    {TEngineType::Notifications, TPermission::Notifications},
    {TEngineType::Geolocation, TPermission::Location},
    {TEngineType::MediaAudioCapture, TPermission::Microphone},
    {TEngineType::MediaVideoCapture, TPermission::Camera},
    {TEngineType::MediaAudioVideoCapture, TPermission::CameraAndMicrophone},
    {TEngineType::MouseLock, TPermission::MouseLock},
    {TEngineType::DesktopVideoCapture, TPermission::Screen},
    {TEngineType::DesktopAudioVideoCapture, TPermission::ScreenAndSound},
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    {TEngineType::ClipboardReadWrite, TPermission::Clipboard},
#endif
};

std::optional<TPermission> PermissionOf(TEngineType type) {
  const auto *found = std::find_if(std::begin(Permissions), std::end(Permissions),
                                   [type](const auto &one) { return one.first == type; });
  return found == std::end(Permissions) ? std::nullopt : std::optional(found->second);
}

// Nothing for those that the engine asks about each time.
std::optional<TEngineType> KeptTypeOf(TPermission permission) {
  const auto *found = std::find_if(std::begin(Permissions), std::end(Permissions),
                                   [permission](const auto &one) { return one.second == permission; });
  if (found == std::end(Permissions)) return std::nullopt;
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
  const bool isKept = QWebEnginePermission::isPersistent(found->first);
#else
  const bool isKept = permission == TPermission::Notifications || permission == TPermission::Location;
#endif
  return isKept ? std::optional(found->first) : std::nullopt;
}

}  // namespace

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)

TPermissionRequests::TPermissionRequests(QWebEnginePage *page) : QObject(page), m_page(page) {
  // Nothing that was allowed once may hold for ever where no place shows it.
  page->profile()->setPersistentPermissionsPolicy(QWebEngineProfile::PersistentPermissionsPolicy::StoreInMemory);
  connect(page, &QWebEnginePage::permissionRequested, this, [this](const QWebEnginePermission &question) {
    const std::optional<TPermission> permission = PermissionOf(question.permissionType());
    if (!permission) return question.deny();
    Q_EMIT Asked({question.origin(), *permission, [question](TPermissionAnswer answer) {
                    answer == TPermissionAnswer::Allow ? question.grant() : question.deny();
                    if (answer == TPermissionAnswer::NotNow) question.reset();
                  }});
  });
}

void TPermissionRequests::Settle(const QUrl &origin, TPermission permission, std::optional<bool> allowed) {
  const std::optional<TEngineType> type = KeptTypeOf(permission);
  if (!type) return;
  const QWebEnginePermission known = m_page->profile()->queryPermission(origin, *type);
  if (!known.isValid()) return;
  if (!allowed) return known.reset();
  *allowed ? known.grant() : known.deny();
}

#else

TPermissionRequests::TPermissionRequests(QWebEnginePage *page) : QObject(page), m_page(page) {
  connect(page, &QWebEnginePage::featurePermissionRequested, this, [this, page](const QUrl &origin, TEngineType type) {
    const auto answer = [page, origin, type](TPermissionAnswer answer) {
      page->setFeaturePermission(origin, type,
                                 answer == TPermissionAnswer::Allow ? QWebEnginePage::PermissionGrantedByUser
                                                                    : QWebEnginePage::PermissionDeniedByUser);
    };
    const std::optional<TPermission> permission = PermissionOf(type);
    if (!permission) return answer(TPermissionAnswer::Deny);
    Q_EMIT Asked({origin, *permission, answer});
  });
  connect(page, &QWebEnginePage::featurePermissionRequestCanceled, this, [this](const QUrl &origin, TEngineType type) {
    if (const std::optional<TPermission> permission = PermissionOf(type)) Q_EMIT Withdrawn(origin, *permission);
  });
}

void TPermissionRequests::Settle(const QUrl &origin, TPermission permission, std::optional<bool> allowed) {
  const std::optional<TEngineType> type = KeptTypeOf(permission);
  if (!type) return;
  auto policy = QWebEnginePage::PermissionUnknown;
  if (allowed) policy = *allowed ? QWebEnginePage::PermissionGrantedByUser : QWebEnginePage::PermissionDeniedByUser;
  m_page->setFeaturePermission(origin, *type, policy);
}

#endif
