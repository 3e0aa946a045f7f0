#pragma once

#include <functional>
#include <memory>
#include <QApplication>
#include <QDialog>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QVariant>
#include <QWebEngineNewWindowRequest>
#include <QWebEnginePage>

#include "browser/engine/engine.h"
#include "browser/engine/halvex_browser.h"
#include "browser/page/page_notice.h"
#include "config/language.h"
#include "store/registry_store.h"
#include "support/shipped_files.h"
#include "support/test_server.h"
#include "window/engine_main.h"
#include "window/page_click.h"

using namespace Qt::StringLiterals;

// A browser in a window of its own with a local server; everything that it signals is written down in order.
class TBrowserFixture {
 public:
  static constexpr int LoadTime = 15000;

  TBrowserFixture() {
    m_language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini")));
    m_store = std::make_unique<TRegistryStore>(m_folder.filePath(QStringLiteral("registry.sqlite")));
    m_engine = std::make_unique<TEngine>(m_language, *m_store);
  }

  [[nodiscard]] TEngine &Engine() { return *m_engine; }
  [[nodiscard]] const TLanguage &Language() const { return m_language; }
  [[nodiscard]] TTestServer &Server() { return *m_server; }
  [[nodiscard]] TTestServer &SecureServer() { return *m_secureServer; }
  [[nodiscard]] THalvexBrowser &Browser() { return *m_browser; }
  [[nodiscard]] QString Folder() const { return m_folder.path(); }

  void Begin(TDownloadControlOptionSet options = AllDownloadControlOptions) {
    m_server = std::make_unique<TTestServer>();
    m_secureServer = std::make_unique<TTestServer>();
    QVERIFY(m_server->Listen());
    QVERIFY(m_secureServer->ListenWithTls());
    m_browser = NewBrowser(options);
    Record(*m_browser);
    m_browser->resize(800, 600);
    m_browser->show();
  }
  void End() {
    m_browser.reset();
    m_server.reset();
    m_secureServer.reset();
    m_events.clear();
  }

  [[nodiscard]] std::unique_ptr<THalvexBrowser> NewBrowser(
      TDownloadControlOptionSet options = AllDownloadControlOptions) {
    return std::make_unique<THalvexBrowser>(nullptr, *m_engine, options);
  }

  // Whether a load that is begun so ends.
  [[nodiscard]] bool Completes(const std::function<void()> &begin) {
    QSignalSpy done(m_browser.get(), &THalvexBrowser::DocumentComplete);
    begin();
    return !done.isEmpty() || done.wait(LoadTime);
  }
  [[nodiscard]] bool Open(const QString &address) {
    return Completes([&] { m_browser->Navigate(address); });
  }
  [[nodiscard]] bool Refresh() {
    return Completes([&] { m_browser->Refresh(); });
  }
  [[nodiscard]] bool OpenPath(const QString &path) { return Open(m_server->Url(path)); }

  // What a script in the page answers, or a script that is not waited for.
  [[nodiscard]] QVariant Script(const QString &source) { return AnswerOf(*m_browser->EnginePage(), source); }
  void Run(const QString &source) { m_browser->EnginePage()->runJavaScript(source); }

  [[nodiscard]] const QStringList &Events() const { return m_events; }
  void ForgetEvents() { m_events.clear(); }
  // The address that BeforeNavigate is to cancel; empty for none.
  void Cancel(const QString &address) { m_cancel = address; }

  // The notice that stands in the page's place, if one does.
  [[nodiscard]] TPageNotice *Notice() {
    auto *notice = m_browser->findChild<TPageNotice *>();
    return notice && notice->isVisibleTo(m_browser.get()) ? notice : nullptr;
  }

 private:
  void Record(THalvexBrowser &browser) {
    QObject::connect(&browser, &THalvexBrowser::BeforeNavigate, &browser, [this](TNavigation *navigation) {
      navigation->cancel = !m_cancel.isEmpty() && navigation->address == m_cancel;
      m_events.append(u"before "_s + navigation->address);
    });
    const auto note = [&](auto signal, const QString &word) {
      QObject::connect(&browser, signal, &browser, [this, word](const QString &text) { m_events.append(word + text); });
    };
    note(&THalvexBrowser::NavigateComplete, u"navigated "_s);
    note(&THalvexBrowser::DocumentComplete, u"complete "_s);
    note(&THalvexBrowser::TitleChanged, u"title "_s);
  }

  QTemporaryDir m_folder;
  TLanguage m_language;
  std::unique_ptr<TRegistryStore> m_store;
  std::unique_ptr<TEngine> m_engine;
  std::unique_ptr<TTestServer> m_server;
  std::unique_ptr<TTestServer> m_secureServer;
  std::unique_ptr<THalvexBrowser> m_browser;
  QStringList m_events;
  QString m_cancel;
};

// Waits for a dialog of the kind to open; null when none does.
template <typename TDialog>
[[nodiscard]] TDialog *WaitForDialog() {
  TDialog *found = nullptr;
  const auto look = [&found] {
    for (QWidget *widget : QApplication::topLevelWidgets()) {
      if (auto *dialog = qobject_cast<TDialog *>(widget); dialog && dialog->isVisible()) found = dialog;
    }
    return found != nullptr;
  };
  return QTest::qWaitFor(look, 10000) ? found : nullptr;
}
