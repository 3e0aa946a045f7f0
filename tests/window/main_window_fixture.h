#pragma once

#include <memory>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "actions/actions.h"
#include "app/main_window.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/options.h"
#include "support/shipped_files.h"
#include "support/test_server.h"
#include "window/engine_main.h"

// The main window with a store of its own and a local server. It opens blank and closes without a question.
class TMainWindowFixture {
 public:
  static constexpr int LoadTime = 20000;  // milliseconds; the most that a test waits for a page

  // Once for all tests.
  void Prepare() {
    UseShippedLanguages();
    QVERIFY(server.Listen());
  }
  void Begin() {
    m_folder = std::make_unique<QTemporaryDir>();
    store = std::make_unique<TRegistryStore>(Path(QStringLiteral("registry.sqlite")));
    TZVOptions options(*store);
    options.Set(Setting::StartupMode, QStringLiteral("Blank"));
    options.Set(Setting::ConfirmShutdown, false);
    options.Set(Setting::AskDefaultBrowser, false);
    server.ForgetRequests();
  }
  // A new window in the place of the one that was open; its pages are still to come.
  void Show() {
    window.reset();
    window = std::make_unique<TfrmMain>(*store);
    window->show();
  }
  // The same, with the start wholly done.
  void Open() {
    Show();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    QTRY_VERIFY(!IsStarting());
  }
  void End() {
    window.reset();
    store.reset();
    m_folder.reset();
  }

  [[nodiscard]] bool IsStarting() const {
    return window->findChild<QTimer *>(QStringLiteral("tmrLoadCoolbar"))->isActive();
  }
  // In the folder that lasts as long as the test.
  [[nodiscard]] QString Path(const QString &name) const { return m_folder->filePath(name); }

  TTestServer server;
  std::unique_ptr<TRegistryStore> store;
  std::unique_ptr<TfrmMain> window;

 private:
  std::unique_ptr<QTemporaryDir> m_folder;
};
