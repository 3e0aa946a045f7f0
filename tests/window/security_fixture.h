#pragma once

#include <functional>
#include <QDeadlineTimer>
#include <QLabel>
#include <QPushButton>

#include "browser/page/permission_bar.h"
#include "security/zone_store.h"
#include "support/data_row.h"
#include "window/main_window_fixture.h"
#include "window/page_click.h"

using namespace Qt::StringLiterals;

#define SOON(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, TMainWindowFixture::LoadTime)

// The main window and its security zones. 127.0.0.1 is the Internet, and so are names below "localhost", which itself
// is the intranet.
class TSecurityFixture : public TMainWindowFixture {
 public:
  // The pages /probe and /other have the title "on" where their scripts run, else "off"; /never does not answer, and
  // /sent is for Sent().
  void Prepare() {
    TMainWindowFixture::Prepare();
    const auto probe = TTestResponse::Page("<title>off</title><script>document.title = 'on'</script>");
    server.Route("/probe", probe);
    server.Route("/other", probe);
    server.Route("/never", TTestResponse{.neverAnswer = true});
    server.RoutePage("/sent", "Sent");
  }

  [[nodiscard]] static QString Text(const QByteArray &bytes) { return QString::fromUtf8(bytes); }
  [[nodiscard]] TTabStrip &Tabs() const { return window->Tabs(); }
  [[nodiscard]] TBrowserTab *Active() const { return Tabs().GetActivePage(); }
  [[nodiscard]] QAction *Action(TCommand command) const { return window->Actions()[command]; }
  // Whether that comes true. It is asked no more than that takes, and more often than the macros do.
  [[nodiscard]] static bool Soon(const std::function<bool()> &condition) {
    const QDeadlineTimer end(LoadTime);
    bool isTrue = condition();
    while (!isTrue && !end.hasExpired()) {
      QTest::qWait(5);
      isTrue = condition();
    }
    return isTrue;
  }
  void Load(TBrowserTab *tab, const QString &address) const {
    tab->Navigate(address);
    const auto isThere = [&] {
      return tab->GetLocationUrl() == address && !tab->Busy() && tab->Load() == TLoad::Shown;
    };
    QVERIFY2(Soon(isThere), qPrintable(address));
  }
  void Load(const QString &address) const { Load(Active(), address); }
  // The cookies that the server gets from a page in the tab, in the order of their names.
  [[nodiscard]] QStringList Sent(TBrowserTab *tab, const QString &host) {
    Load(tab, server.Url(u"/sent"_s, host));
    QStringList cookies = Text(server.Requests("/sent").last().Header("cookie")).split(u"; "_s);
    cookies.sort();
    return cookies;
  }
  [[nodiscard]] QString Sent(const QString &host) { return Sent(Active(), host).join(u"; "_s); }
  // Whether a question stands over the page in there.
  [[nodiscard]] static bool IsAsked(const QWidget &in) {
    const auto *bar = in.findChild<TPermissionBar *>();
    return bar != nullptr && bar->isVisible();
  }
  [[nodiscard]] bool IsAsked() const { return IsAsked(*Active()); }
  // `question` with a place for the server's port.
  void Answer(const QString &question, const char *button) const { Answer(question, button, *Active()); }
  void Answer(const QString &question, const char *button, const QWidget &in) const {
    QTRY_VERIFY_WITH_TIMEOUT(IsAsked(in), LoadTime);
    const auto *bar = in.findChild<TPermissionBar *>();
    SOON(bar->findChild<QLabel *>(u"lblQuestion"_s)->text(), question.arg(server.Port()));
    auto *chosen = bar->findChild<QPushButton *>(QLatin1String(button));
    QTRY_VERIFY(chosen->isEnabled());
    chosen->click();
  }
};
