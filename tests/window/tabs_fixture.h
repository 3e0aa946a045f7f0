#pragma once

#include <algorithm>
#include <memory>
#include <QMainWindow>
#include <QSignalSpy>
#include <QTemporaryDir>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/close_all_tabs.h"
#include "browser/tabs/closed_tabs.h"
#include "browser/tabs/load_queue.h"
#include "browser/tabs/tab_menu.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/settings.h"
#include "platform/product_info.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "support/shipped_files.h"
#include "support/test_server.h"
#include "window/engine_main.h"
#include "window/page_click.h"

using namespace Qt::StringLiterals;

// A window with tabs, the real engine behind them, and a local server.
class TTabsFixture {
 public:
  static constexpr int LoadTime = 20000;  // milliseconds; the most that a test waits for a page

  // Once for all tests.
  void Prepare() {
    QVERIFY(language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini"))));
    QVERIFY(server.Listen());
  }
  // With one empty tab.
  void Begin() {
    m_temporary = std::make_unique<QTemporaryDir>();
    store = std::make_unique<TRegistryStore>(Path(QStringLiteral("registry.sqlite")));
    m_engine = std::make_unique<TEngine>(language, *store);
    settings = std::make_unique<TSettings>(*store);
    environment.reset(new TTabEnvironment{*m_engine, language, *store, *settings, product});
    window = std::make_unique<QMainWindow>();
    actions = std::make_unique<TActions>(window.get(), language, *settings);
    pages = new TZVPageControl(window.get());
    window->setCentralWidget(pages);
    window->resize(800, 600);
    window->show();
    tabs = std::make_unique<TTabStrip>(window.get(), pages, *environment);
    queue = std::make_unique<TLoadQueue>(*tabs);
    closed = std::make_unique<TClosedTabs>(*actions, *tabs, *queue);
    closeAll = std::make_unique<TCloseAllTabs>(window.get(), *tabs, *closed);
    tabMenu = std::make_unique<TTabMenu>(*actions, *tabs, *closeAll);
    tabs->NewTab();
    server.ForgetRequests();
  }
  void End() {
    const auto reset = [](auto &...owners) { (owners.reset(), ...); };
    reset(tabMenu, closeAll, closed, queue, tabs, actions, window, environment, settings, m_engine, store, m_temporary);
  }

  [[nodiscard]] TEngine &Engine() { return *m_engine; }
  // In the folder that lasts as long as the test.
  [[nodiscard]] QString Path(const QString &name) const { return m_temporary->filePath(name); }
  [[nodiscard]] QStringList Names() const {
    QStringList names;
    for (const TBrowserTab *tab : tabs->Tabs()) names.append(tab->StickyName());
    return names;
  }
  void Load(TBrowserTab *tab, const QString &path) {
    const QSignalSpy loaded(tabs.get(), &TTabStrip::TabLoaded);
    tab->Navigate(server.Url(path));
    // Others may be loading at the same time.
    const auto isTab = [tab](const QVariantList &call) { return call.first().value<TBrowserTab *>() == tab; };
    QTRY_VERIFY_WITH_TIMEOUT(std::ranges::any_of(loaded, isTab), LoadTime);
  }
  // The tab in front, with the page that is loaded into it.
  TBrowserTab *OpenPage(const QString &path) {
    TBrowserTab *tab = tabs->GetActivePage();
    Load(tab, path);
    return tab;
  }
  // Runs a script in the tab's page to its end.
  static void Run(TBrowserTab *tab, const QString &script) { (void)AnswerOf(*tab->Browser()->EnginePage(), script); }

  TTestServer server;
  TLanguage language;
  TProductInfo product;
  std::unique_ptr<TRegistryStore> store;
  std::unique_ptr<TSettings> settings;
  std::unique_ptr<TTabEnvironment> environment;
  std::unique_ptr<QMainWindow> window;
  std::unique_ptr<TActions> actions;
  TZVPageControl *pages = nullptr;
  std::unique_ptr<TTabStrip> tabs;
  std::unique_ptr<TLoadQueue> queue;
  std::unique_ptr<TClosedTabs> closed;
  std::unique_ptr<TCloseAllTabs> closeAll;
  std::unique_ptr<TTabMenu> tabMenu;

 private:
  std::unique_ptr<QTemporaryDir> m_temporary;
  std::unique_ptr<TEngine> m_engine;
};
