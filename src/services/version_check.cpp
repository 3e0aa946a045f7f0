#include "services/version_check.h"

#include <QApplication>
#include <QEvent>
#include <QHostAddress>
#include <QPointer>

#include "browser/engine/hidden_page.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/registry_paths.h"
#include "config/settings.h"
#include "platform/internet_connection.h"
#include "platform/web_address.h"
#include "services/version_exchange.h"
#include "ui/confirm_dialog.h"

namespace {

constexpr int UntilNextTry = 500;  // milliseconds, while another question is open or the settings cannot be read

QUrl ServerAt(const QString &address) {
  QUrl url(address.trimmed(), QUrl::StrictMode);
  if (!WebAddress::IsPlain(url)) return {};
  url.setPath(QStringLiteral("/"));
  return url.adjusted(QUrl::RemoveFragment | QUrl::RemoveQuery);
}

// No network is needed to reach it.
bool IsThisMachine(const QUrl &server) {
  return QHostAddress(server.host()).isLoopback() || server.host() == QLatin1String("localhost");
}

}  // namespace

TVersionCheck::TVersionCheck(QWidget *window, TTabStrip &tabs, TSettings &settings, const TLanguage &language,
                             const QString &server)
    : TVersionCheck(window, tabs, settings, language, server, TWorld()) {}

TVersionCheck::TVersionCheck(QWidget *window, TTabStrip &tabs, TSettings &settings, const TLanguage &language,
                             const QString &server, TWorld world)
    : m_window(window),
      m_tabs(tabs),
      m_settings(settings),
      m_language(language),
      m_server(ServerAt(server)),
      m_world(std::move(world)) {
  m_timer.setObjectName(QStringLiteral("tmrVersionCheck"));
  m_timer.setSingleShot(true);
  m_timer.setInterval(m_world.delay);
  connect(&m_timer, &QTimer::timeout, this, &TVersionCheck::tmrVersionCheckTimer);
  if (!m_server.isEmpty()) m_window->installEventFilter(this);
}

TVersionCheck::~TVersionCheck() = default;

bool TVersionCheck::HasServer(const QString &address) {
  return !ServerAt(address).isEmpty();
}

bool TVersionCheck::eventFilter(QObject *watched, QEvent *event) {
  if (watched == m_window && event->type() == QEvent::WindowActivate) {
    m_window->removeEventFilter(this);
    if (m_settings.Get(Setting::VersionCheck) != 0) m_timer.start();
  }
  return QObject::eventFilter(watched, event);
}

bool TVersionCheck::IsConnected() const {
  if (m_world.isConnected) return m_world.isConnected();
  return IsThisMachine(m_server) || HasInternetConnection();
}

bool TVersionCheck::AreSettingsKnown() const {
  return m_settings.Store().KnownValues(TRegistryHive::CurrentUser, RegistryKey::CurrentVersion).has_value();
}

void TVersionCheck::tmrVersionCheckTimer() {
  // What cannot be read is not known: it may be switched off, and may have been asked today.
  if (!AreSettingsKnown()) {
    m_timer.start(UntilNextTry);
    return;
  }
  const QDate today = m_world.today();
  const int lastPong = m_settings.Get(Setting::LastPong);
  if (m_settings.Get(Setting::VersionCheck) == 0 || VersionRequest::DayNumber(today) == lastPong || !IsConnected()) {
    return;
  }
  m_page = std::make_unique<THiddenPage>();
  connect(m_page.get(), &THiddenPage::Loaded, this, [this](const QString &text) { Take(TVersionAnswer::Read(text)); });
  const QString query = VersionRequest::Query(m_settings.Get(Setting::New), lastPong, today);
  m_page->Load(QUrl(m_server.toString() + query));
}

void TVersionCheck::Take(const TVersionAnswer &answer) {
  if (!AreSettingsKnown()) {
    QTimer::singleShot(UntilNextTry, this, [this, answer] { Take(answer); });
    return;
  }
  if (answer.isCounted) {
    m_settings.Set(Setting::LastPong, VersionRequest::DayNumber(m_world.today()));
    if (m_settings.Get(Setting::New)) m_settings.Set(Setting::New, false);
  }
  Offer(answer);
}

void TVersionCheck::Offer(const TVersionAnswer &answer) {
  if (answer.version.isEmpty() || answer.address.isEmpty()) return;
  if (!AreSettingsKnown() || QApplication::activeModalWidget() != nullptr) {
    // It may have been offered already. Two questions at a time would be one too many.
    QTimer::singleShot(UntilNextTry, this, [this, answer] { Offer(answer); });
    return;
  }
  if (answer.id <= m_settings.Get(Setting::CheckedVersion)) return;
  // Before it is asked, so that this happens once, whatever comes of it.
  m_settings.Set(Setting::CheckedVersion, answer.id);
  const QPointer<TVersionCheck> self(this);
  QString label = m_language.Global("VersionNotifyLabel");
  if (const qsizetype place = label.indexOf(QLatin1String("%s")); place >= 0) label.replace(place, 2, answer.version);
  const TAnswer wish = ShowConfirm(m_window, {.caption = m_language.Global("VersionNotifyCaption"),
                                              .firstLine = label,
                                              .secondText = m_language.Global("VersionNotifyPrompt"),
                                              .ok = m_language.Global("Yes"),
                                              .cancel = m_language.Global("No")});
  if (!self || !wish.accepted) return;
  m_tabs.NewTab()->Navigate(answer.address);
  Q_EMIT PageOpened();
}
