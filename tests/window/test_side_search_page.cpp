#include <QApplication>
#include <QClipboard>
#include <QDockWidget>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>
#include <QWebEngineProfile>

#include "actions/actions.h"
#include "browser/downloads/download_list.h"
#include "browser/page/find_bar.h"
#include "browser/page/page_notice.h"
#include "browser/page/script_dialog.h"
#include "browser/page/sign_in_dialog.h"
#include "browser/tabs/page_commands.h"
#include "config/registry_paths.h"
#include "search/search_lists.h"
#include "search/side_search.h"
#include "support/named_lines.h"
#include "support/shipped_files.h"
#include "support/store_trouble.h"
#include "window/answering_policy.h"
#include "window/tabs_fixture.h"

// The panel's page beside a tab: what it asks and downloads, the commands that go to it, and those of its own.
class TestSideSearchPage final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    m_f.Prepare();
    m_f.server.RoutePage("/tab", "Tab page", "<input id=i value=tab>");
    m_f.server.RoutePage("/panel", "Panel page", "<input id=i value=panel>");
    m_f.server.RoutePage("/result", "Result", "result");
    QVERIFY(m_secure.ListenWithTls());
    m_secure.RoutePage("/safe", "Safe");
  }
  void init() {
    m_f.Begin();
    // Longer than any test.
    m_f.environment->windowSpan = 600'000;
    m_lists = std::make_unique<TSearchLists>(m_f.language, *m_f.store, *m_f.actions, m_f.window.get());
    m_policy.isPopup = {};
    m_policy.tested.clear();
    m_policy.AnswerFor(m_f.Engine());
    m_f.OpenPage("/tab");
    m_f.settings->Set(Setting::SearchBar, m_f.server.Url("/panel"));
    auto *dock = new QDockWidget(m_f.window.get());
    m_panel = new TSideSearch(m_f.window.get(), *m_f.tabs, *m_lists, dock);
    dock->setWidget(m_panel);
    m_f.window->addDockWidget(Qt::LeftDockWidgetArea, dock);
    m_f.window->activateWindow();
    QTRY_VERIFY(m_panel->Browser() != nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(Panel().LocationName(), "Panel page", m_f.LoadTime);
    // From 6.8 on a page may have its title before its address.
    QTRY_COMPARE_WITH_TIMEOUT(Panel().LocationUrl(), m_f.server.Url("/panel"), m_f.LoadTime);
  }
  void cleanup() {
    m_f.Engine().SetPolicy(nullptr);
    m_lists.reset();
    // The tabs and the engine go before the window, and the panel with that.
    m_f.End();
  }

  void AddPage_data() {
    Columns<QString, bool, QStringList>("answer", "ok", "list");
    const QString address = m_f.server.Url("/panel");
    Row("proposed", QString(), true, QStringList{"a=http://a.test/", "Panel page=" + address});
    Row("named", "My search", true, QStringList{"a=http://a.test/", "My search=" + address});
    Row("an equal name", "A", true, QStringList{"a=" + address});
    Row("none", "", true, QStringList{"a=http://a.test/"});
    Row("cancelled", "b", false, QStringList{"a=http://a.test/"});
  }
  void AddPage() {
    QFETCH(QString, answer);
    QFETCH(bool, ok);
    QFETCH(QStringList, list);
    m_lists->Save(TSearchList::SearchBar, FromLines({"a=http://a.test/"}));
    OnModalDialog<QInputDialog>([&](QInputDialog &dialog) {
      QCOMPARE(dialog.windowTitle(), QApplication::applicationDisplayName());
      QCOMPARE(dialog.labelText(), m_f.language.Text("MAIN", "SideSearchFavsPrompt"));
      QCOMPARE(dialog.textValue(), "Panel page");
      if (!answer.isNull()) dialog.setTextValue(answer);
      ok ? dialog.accept() : dialog.reject();
    });
    m_panel->findChild<QAction *>("pmSearchFavsAdd")->trigger();
    QCOMPARE(ToLines(m_lists->Load(TSearchList::SearchBar)), list);
    // Rebuilt after any OK, without waiting for the menu to open.
    QCOMPARE(Menu().actions().size(), ok ? 3 + list.size() : 3);
    QCOMPARE(m_lists->DefaultSearchPage().isEmpty(), !ok);
  }

  void SetHomeAndOrganize() {
    const QList<QAction *> fixed = Menu().actions();
    QCOMPARE(fixed.size(), 3);
    for (const auto &[place, name] :
         {std::pair(0, "pmSearchFavsAdd"), {1, "pmSearchHomeSet"}, {2, "pmSearchFavsOrg"}}) {
      QCOMPARE(fixed.at(place)->objectName(), name);
    }
    // What is chosen elsewhere is opened; what is chosen here is there.
    m_f.settings->Set(Setting::SearchBar, m_f.server.Url("/result"));
    QTRY_COMPARE_WITH_TIMEOUT(Panel().LocationUrl(), m_f.server.Url("/result"), m_f.LoadTime);
    m_f.settings->Set(Setting::SearchBar, m_f.server.Url("/panel"));
    QTRY_COMPARE_WITH_TIMEOUT(Panel().LocationName(), "Panel page", m_f.LoadTime);
    Run("document.getElementById('i').value = 'as it was'");
    fixed.at(1)->trigger();
    QCOMPARE(m_f.settings->Get(Setting::SearchBar), m_f.server.Url("/panel"));
    QCOMPARE(AnswerOf(*Panel().EnginePage(), "document.getElementById('i')?.value"), "as it was");
    OnModalDialog<QDialog>([&](QDialog &dialog) {
      QCOMPARE(dialog.windowTitle(), m_f.language.Text("SEARCH_ENGINE", "OrganizeSearchBar"));
      dialog.reject();
    });
    fixed.at(2)->trigger();
  }

  void Commands_data() {
    Columns<bool>("inPanel");
    Row("in the panel", true);
    Row("in the tab", false);
  }
  void Commands() {
    QFETCH(bool, inPanel);
    TPageCommands commands(*m_f.actions, *m_f.tabs);
    commands.SetFocusedBrowser([this] { return m_panel->FocusedBrowser(); });
    THalvexBrowser &tab = *m_f.tabs->Tab(0)->Browser();
    (inPanel ? Panel() : tab).setFocus();
    for (THalvexBrowser *one : {&Panel(), &tab}) {
      (void)AnswerOf(*one->EnginePage(), "document.getElementById('i').select()");
    }
    QCOMPARE(m_panel->FocusedBrowser() != nullptr, inPanel);
    const QString own = inPanel ? "panel" : "tab";
    const auto trigger = [this](TCommand command) { (*m_f.actions)[command]->trigger(); };
    const auto value = [](THalvexBrowser &browser) {
      return AnswerOf(*browser.EnginePage(), "document.getElementById('i').value").toString();
    };
    QApplication::clipboard()->setText("before");
    trigger(TCommand::Copy);
    QTRY_COMPARE(QApplication::clipboard()->text(), own);
    QApplication::clipboard()->setText("x");
    trigger(TCommand::Paste);
    QTRY_COMPARE(value(inPanel ? Panel() : tab), "x");
    trigger(TCommand::SelectAll);
    trigger(TCommand::Cut);
    QTRY_COMPARE(value(inPanel ? Panel() : tab), "");
    QCOMPARE(value(inPanel ? tab : Panel()), inPanel ? "tab" : "panel");
    const int zoom = tab.ZoomPercent();
    trigger(TCommand::ZoomIn);
    QCOMPARE((inPanel ? Panel() : tab).ZoomPercent() > zoom, true);
    trigger(TCommand::Find);
    const auto finds = [](THalvexBrowser &browser) {
      const auto *bar = browser.findChild<TFindBar *>();
      return bar != nullptr && bar->isVisible();
    };
    QCOMPARE(finds(Panel()), inPanel);
    QCOMPARE(finds(tab), !inPanel);
    // The box of the find bar takes the commands itself.
    QApplication::clipboard()->setText("words");
    QTRY_VERIFY(qobject_cast<QLineEdit *>(QApplication::focusWidget()) != nullptr);
    trigger(TCommand::Paste);
    QCOMPARE(qobject_cast<QLineEdit *>(QApplication::focusWidget())->text(), "words");
  }

  void Downloads() {
    m_f.server.Route("/file", TTestResponse::Attachment("file.txt", "content"));
    m_f.store->Write(TRegistryHive::CurrentUser, RegistryKey::CurrentVersion, "DownloadFolder", m_f.Path(""));
    TDownloadList list(m_f.Engine().Profile(), m_f.language, *m_f.store);
    list.SaveQuestion().SetPause(0);
    Run("location = '/file'");
    QFileDialog *question = nullptr;
    const auto look = [&question] {
      for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *dialog = qobject_cast<QFileDialog *>(widget); dialog && dialog->isVisible()) question = dialog;
      }
      return question != nullptr;
    };
    QTRY_VERIFY_WITH_TIMEOUT(look(), m_f.LoadTime);
    QMetaObject::invokeMethod(question, "accept");
    QTRY_COMPARE_WITH_TIMEOUT(list.State(0), TDownloadState::Finished, m_f.LoadTime);
    QVERIFY(QFile::exists(m_f.Path("file.txt")));
    QTRY_VERIFY(!m_panel->findChild<QToolButton *>("tbSearchStop")->isEnabled());
    QCOMPARE(Panel().LocationName(), "Panel page");
  }

  void SignIn() {
    m_f.server.RouteSignIn("/members", "user", "secret", TTestResponse::Page("<title>Welcome</title>"));
    Run("location = '/members'");
    const auto dialog = [this] { return Panel().findChild<TSignInDialog *>(); };
    QTRY_VERIFY_WITH_TIMEOUT(dialog() != nullptr && dialog()->isVisible(), m_f.LoadTime);
    QTRY_VERIFY(!m_panel->findChild<QToolButton *>("tbSearchStop")->isEnabled());
    dialog()->findChild<QLineEdit *>("txtUser")->setText("user");
    dialog()->findChild<QLineEdit *>("txtPassword")->setText("secret");
    dialog()->accept();
    QTRY_COMPARE_WITH_TIMEOUT(Panel().LocationName(), "Welcome", m_f.LoadTime);
  }

  // The tab beside it goes on meanwhile.
  void ScriptDialog() {
    Panel().EnginePage()->runJavaScript("document.title = confirm('sure?') ? 'yes' : 'no'");
    const auto dialog = [this] { return Panel().findChild<TScriptDialog *>(); };
    QTRY_VERIFY_WITH_TIMEOUT(dialog() != nullptr && dialog()->isVisible(), m_f.LoadTime);
    m_f.Load(m_f.tabs->Tab(0), "/result");
    dialog()->accept();
    QTRY_COMPARE(Panel().LocationName(), "yes");
  }

  void CertificateError() {
    Run("location = '" + m_secure.Url("/safe") + "'");
    const auto notice = [this] { return Panel().findChild<TPageNotice *>(); };
    QTRY_VERIFY_WITH_TIMEOUT(notice() != nullptr && notice()->isVisible(), m_f.LoadTime);
    auto *goOn = notice()->findChild<QPushButton *>("cmdNoticeSecondary");
    QTRY_VERIFY(goOn->isEnabled());
    goOn->click();
    QTRY_COMPARE_WITH_TIMEOUT(Panel().LocationName(), "Safe", m_f.LoadTime);
  }

  void Popups() {
    m_policy.isPopup = [](const QString &address) { return address.endsWith("/result"); };
    QSignalSpy rejected(m_f.tabs.get(), &TTabStrip::PopupRejected);
    Run("open('/result')");
    QTRY_COMPARE_WITH_TIMEOUT(rejected.size(), 1, m_f.LoadTime);
    QVERIFY(m_f.tabs->Tab(1)->Blocked());
    // An empty window goes with the page that has asked for it.
    m_f.tabs->CloseHiddenTabs();
    Run("open('about:blank')");
    QTRY_COMPARE(m_f.tabs->TabCount(), 2);
    Run("location = '/result'");
    QTRY_COMPARE_WITH_TIMEOUT(m_f.tabs->TabCount(), 1, m_f.LoadTime);
  }

  // A script opens neither tabs nor windows without end.
  void NotWithoutEnd_data() {
    Columns<QString>("script");
    Row("results", "open('/result', '_main')");
    Row("windows", "open('/result')");
    Row("a base element", "location = '/result'");
  }
  void NotWithoutEnd() {
    QFETCH(QString, script);
    if (script.startsWith("location")) Run("document.body.innerHTML = '<base target=_main>'");
    QSignalSpy stopped(m_f.tabs.get(), &TTabStrip::WindowStopped);
    Run("setInterval(() => { " + script + " }, 100)");
    QTRY_VERIFY_WITH_TIMEOUT(stopped.size() >= 5, m_f.LoadTime);
    QCOMPARE(m_f.tabs->TabCount(), 1 + TWindowBudget::MostByItself);
  }

  void Narrow_data() {
    Columns<QString>("file");
    Row("English", "zveng.ini");
    Row("German", "zvdeu.ini");
    Row("Arabic", "zvara.ini");
  }
  void Narrow() {
    QFETCH(QString, file);
    constexpr int Width = 160;
    TLanguage language;
    QVERIFY(language.LoadFile(SourceFile(QStringLiteral("Languages/") + file)));
    QApplication::setLayoutDirection(language.Direction());
    TTabEnvironment environment{m_f.Engine(), language, *m_f.store, *m_f.settings, m_f.environment->product};
    {
      QWidget window;
      TTabStrip tabs(&window, new TZVPageControl(&window), environment);
      m_f.settings->Set(Setting::SearchBar, m_secure.Url("/safe", "localhost"));
      TSideSearch panel(&window, tabs, *m_lists);
      QVERIFY2(panel.minimumSizeHint().width() <= Width, qPrintable(QString::number(panel.minimumSizeHint().width())));
      panel.resize(Width, 400);
      panel.show();
      QTRY_VERIFY_WITH_TIMEOUT(panel.findChild<TPageNotice *>() != nullptr, m_f.LoadTime);
      QTRY_VERIFY(panel.findChild<QPushButton *>("cmdNoticeSecondary")->isVisible());
      const auto *notice = panel.findChild<TPageNotice *>();
      QTRY_COMPARE(notice->horizontalScrollBar()->maximum(), 0);
      for (const QLabel *label : notice->findChildren<QLabel *>()) {
        QVERIFY2(label->height() >= label->heightForWidth(label->width()), qPrintable(label->text()));
      }
      for (const QPushButton *button : notice->findChildren<QPushButton *>()) {
        QVERIFY2(button->width() >= button->sizeHint().width() || button->isHidden(), qPrintable(button->text()));
      }
      QVERIFY2(panel.minimumSizeHint().width() <= Width, qPrintable(QString::number(panel.minimumSizeHint().width())));
      QCOMPARE(panel.width(), Width);
      for (const QToolButton *button : panel.findChildren<QToolButton *>()) {
        if (button->parentWidget() != &panel) continue;
        QVERIFY2(panel.rect().contains(button->geometry()), qPrintable(button->objectName()));
        QVERIFY2(!button->accessibleName().isEmpty() && !button->toolTip().isEmpty(), qPrintable(button->objectName()));
      }
      const int first = panel.findChild<QToolButton *>("tbSearchBar")->x();
      const int second = panel.findChild<QToolButton *>("tbSearchFavs")->x();
      QCOMPARE(first < second, language.Direction() == Qt::LeftToRight);
      if (qEnvironmentVariableIsSet("ZV_SHOTS")) panel.grab().save("/tmp/sp_" + file + ".png");
    }
    QApplication::setLayoutDirection(Qt::LeftToRight);
  }

  // Nothing is left of the engine in it, and nothing of what it offers does harm.
  void AfterTheTabs() {
    m_f.tabMenu.reset();
    m_f.closeAll.reset();
    m_f.closed.reset();
    m_f.queue.reset();
    m_f.tabs.reset();
    QVERIFY(m_panel->Browser() == nullptr && m_panel->FocusedBrowser() == nullptr);
    for (auto *button : m_panel->findChildren<QToolButton *>()) {
      if (button->menu() == nullptr) button->click();
    }
    for (QAction *action : Menu().actions().first(2)) action->trigger();
    m_panel->hide();
    m_panel->show();
    QVERIFY(m_panel->Browser() == nullptr);
  }

 private:
  [[nodiscard]] THalvexBrowser &Panel() const { return *m_panel->Browser(); }
  [[nodiscard]] QMenu &Menu() const { return *m_panel->findChild<QMenu *>("pmSearchFavs"); }
  void Run(const QString &script) { (void)AnswerOf(*Panel().EnginePage(), script); }

  TTabsFixture m_f;
  TTestServer m_secure;
  TAnsweringPolicy m_policy;
  std::unique_ptr<TSearchLists> m_lists;
  TSideSearch *m_panel = nullptr;  // the window's
};

ENGINE_MAIN(TestSideSearchPage)
#include "test_side_search_page.moc"
