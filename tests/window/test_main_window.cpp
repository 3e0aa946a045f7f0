#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <QToolBar>
#include <QTranslator>
#include <QWebEnginePage>

#include "actions/actions.h"
#include "browser/tabs/home_page.h"
#include "browser/tabs/page_commands.h"
#include "config/registry_paths.h"
#include "search/address_bar.h"
#include "support/modal_dialogs.h"
#include "support/named_lines.h"
#include "window/main_window_fixture.h"
#include "window/page_click.h"

// The main window with the real engine, driven through its keys, menus and boxes.
class TestMainWindow final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void init();
  void cleanup() { m_f.End(); }

  void NoMarkerIsLeft();
  void AddressBox();
  void KeyboardAfterAnotherSite();
  void NewTabCommands_data();
  void NewTabCommands();
  void NewTabFromClipboard();
  void BackAndForward();
  void MailLink();
  void FullScreenAndBars();
  void ClosingTheFullScreenPage();
  void TabColors_data();
  void TabColors();
  void LanguageMenu();
  void RightToLeft();
  void ListFollowsTabs();
  void ShutdownQuestion();
  void PlacementSurvives();

 private:
  [[nodiscard]] TBrowserTab *Active() const { return m_f.window->Tabs().GetActivePage(); }
  [[nodiscard]] QAction *Action(TCommand command) const { return m_f.window->Actions()[command]; }
  [[nodiscard]] QLineEdit *AddressEdit() const { return m_f.window->findChild<TAddressBar *>()->lineEdit(); }
  void Load(const QString &path);

  TMainWindowFixture m_f;
};

void TestMainWindow::initTestCase() {
  m_f.Prepare();
  m_f.server.RoutePage("/a", "Page A", "<a href='/b' id='link'>b</a>");
  m_f.server.RoutePage("/b", "Page B");
  m_f.server.RoutePage("/full", "Full", "<div onclick='this.requestFullscreen()' style='height:300px'>big</div>");
}

void TestMainWindow::init() {
  m_f.Begin();
  m_f.Open();
  QCOMPARE(m_f.window->windowTitle(), m_f.window->Language().Global("Blank") + QStringLiteral(" — Zarvela"));
}

void TestMainWindow::Load(const QString &path) {
  TBrowserTab *tab = Active();
  tab->Navigate(m_f.server.Url(path));
  QTRY_VERIFY_WITH_TIMEOUT(tab->GetLocationUrl() == m_f.server.Url(path) && !tab->Busy(), m_f.LoadTime);
}

void TestMainWindow::NoMarkerIsLeft() {
  const auto check = [](const QString &text, const QObject *object) {
    const bool bad = text.startsWith(QLatin1String("__")) || text.startsWith(QLatin1String("~~")) ||
                     text.contains(QLatin1String("UNDEFINED"));
    QVERIFY2(!bad, qPrintable(object->objectName() + QStringLiteral(": ") + text));
  };
  for (const QAction *action : m_f.window->findChildren<QAction *>()) {
    for (const QString &text : {action->text(), action->toolTip(), action->statusTip()}) check(text, action);
  }
  for (const QWidget *widget : m_f.window->findChildren<QWidget *>()) {
    for (const QString &text : {widget->windowTitle(), widget->toolTip(), widget->accessibleName()})
      check(text, widget);
    if (const auto *label = qobject_cast<const QLabel *>(widget)) check(label->text(), label);
  }
  for (const QMenu *menu : m_f.window->findChildren<QMenu *>()) check(menu->title(), menu);
}

void TestMainWindow::AddressBox() {
  QTest::keyClick(m_f.window.get(), Qt::Key_L, Qt::ControlModifier);
  QTRY_VERIFY(AddressEdit()->hasFocus());
  QTest::keyClicks(QApplication::focusWidget(), m_f.server.Url(QStringLiteral("/a")));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
  QTRY_COMPARE(Active()->Title(), QStringLiteral("Page A"));
  QCOMPARE(m_f.window->Tabs().TabCount(), 1);
  QTRY_COMPARE(AddressEdit()->text(), m_f.server.Url(QStringLiteral("/a")));
  QCOMPARE(m_f.window->windowTitle(), QStringLiteral("Page A — Zarvela"));

  QTest::keyClick(m_f.window.get(), Qt::Key_L, Qt::ControlModifier);
  QTRY_COMPARE(AddressEdit()->selectedText(), AddressEdit()->text());
  QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("half an addr"));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
  QCOMPARE(AddressEdit()->text(), m_f.server.Url(QStringLiteral("/a")));

  QTest::keyClicks(QApplication::focusWidget(), m_f.server.Url(QStringLiteral("/b")));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return, Qt::AltModifier);
  QTRY_COMPARE(m_f.window->Tabs().TabCount(), 2);
  QTRY_COMPARE(Active()->Title(), QStringLiteral("Page B"));
}

// A page of another site has a widget of its own; the keyboard is on the page then and not on its first link.
void TestMainWindow::KeyboardAfterAnotherSite() {
  TBrowserTab *tab = Active();
  tab->Navigate(QStringLiteral("zarvela:start"));
  QTRY_VERIFY_WITH_TIMEOUT(tab->GetLocationUrl() == QStringLiteral("zarvela:start") && !tab->Busy(), m_f.LoadTime);
  Action(TCommand::EditAddress)->trigger();
  QTest::keyClicks(AddressEdit(), m_f.server.Url(QStringLiteral("/a")));
  QTest::keyClick(AddressEdit(), Qt::Key_Return);
  QTRY_COMPARE_WITH_TIMEOUT(tab->GetLocationName(), QStringLiteral("Page A"), m_f.LoadTime);
  QVERIFY(tab->Browser()->isAncestorOf(QApplication::focusWidget()));
  QString focused;
  tab->Browser()->EnginePage()->runJavaScript(QStringLiteral("document.activeElement.tagName"),
                                              [&](const QVariant &name) { focused = name.toString(); });
  QTRY_COMPARE_WITH_TIMEOUT(focused, QStringLiteral("BODY"), m_f.LoadTime);
}

void TestMainWindow::NewTabCommands_data() {
  QTest::addColumn<int>("action");
  QTest::addColumn<QString>("address");
  QTest::newRow("blank") << 0 << "about:blank";
  QTest::newRow("current") << 1 << m_f.server.Url(QStringLiteral("/a"));
  QTest::newRow("home") << 2 << TEngine::StartPageAddress();
  QTest::newRow("a negative number counts as blank") << -4 << "about:blank";
}

void TestMainWindow::NewTabCommands() {
  QFETCH(int, action);
  m_f.store->Write(TRegistryHive::CurrentUser, QString::fromLatin1(RegistryKey::CurrentVersion),
                   QStringLiteral("NewAction"), QString::number(action));
  m_f.Open();
  Load(QStringLiteral("/a"));
  QTest::keyClick(m_f.window.get(), Qt::Key_T, Qt::ControlModifier);
  QCOMPARE(m_f.window->Tabs().TabCount(), 2);
  QVERIFY(AddressEdit()->hasFocus());
  QFETCH(QString, address);
  QTRY_COMPARE(Active()->GetLocationUrl(), address);
  QTest::keyClick(m_f.window.get(), Qt::Key_W, Qt::ControlModifier);
  QCOMPARE(m_f.window->Tabs().TabCount(), 1);
}

void TestMainWindow::NewTabFromClipboard() {
  QMenu *menu = m_f.window->Actions().Menu(TMenu::NewTab);
  QApplication::clipboard()->clear();
  Q_EMIT menu->aboutToShow();
  QVERIFY(!Action(TCommand::NewClipboard)->isEnabled());
  QApplication::clipboard()->setText(QStringLiteral("text"));
  Q_EMIT menu->aboutToShow();
  QVERIFY(Action(TCommand::NewClipboard)->isEnabled());
}

void TestMainWindow::BackAndForward() {
  QVERIFY(!Action(TCommand::Back)->isEnabled());
  Load(QStringLiteral("/a"));
  Load(QStringLiteral("/b"));
  QTRY_VERIFY(Action(TCommand::Back)->isEnabled());
  QVERIFY(!Action(TCommand::Forward)->isEnabled());

  // A new tab has no past; the old one keeps its own.
  Action(TCommand::NewBlank)->trigger();
  QVERIFY(!Action(TCommand::Back)->isEnabled() && !Action(TCommand::Forward)->isEnabled());
  Action(TCommand::PreviousTab)->trigger();
  QVERIFY(Action(TCommand::Back)->isEnabled());
}

void TestMainWindow::FullScreenAndBars() {
  QTest::keyClick(m_f.window.get(), Qt::Key_F11);
  QTRY_VERIFY(m_f.window->isFullScreen());
  QVERIFY(!m_f.window->menuBar()->isVisible() && !m_f.window->statusBar()->isVisible());
  QVERIFY(Action(TCommand::FullScreen)->isChecked());
  // What is chosen in full screen is for full screen.
  Action(TCommand::ViewMenuBar)->trigger();
  QVERIFY(m_f.window->menuBar()->isVisible());
  QVERIFY(TZVOptions(*m_f.store).Get(Setting::FullscreenMenuBar));
  QTest::keyClick(m_f.window.get(), Qt::Key_F11);
  QTRY_VERIFY(!m_f.window->isFullScreen());
  QVERIFY(m_f.window->statusBar()->isVisible());
  Action(TCommand::ViewToolbar)->trigger();
  QVERIFY(!m_f.window->findChild<QToolBar *>(QStringLiteral("ToolBar"))->isVisible());

  QTest::keyClick(m_f.window.get(), Qt::Key_F11);
  m_f.window->CloseWithoutAsking();
  m_f.window.reset();
  const TZVOptions options(*m_f.store);
  QVERIFY(options.Get(Setting::FullScreen) && !options.Get(Setting::Maximized));
  QVERIFY(options.Get(Setting::ViewStatusBar));
  QVERIFY(!options.Get(Setting::ViewToolbar));

  m_f.Open();
  QTRY_VERIFY(m_f.window->isFullScreen());
  QVERIFY(m_f.window->menuBar()->isVisible() && !m_f.window->statusBar()->isVisible());
}

void TestMainWindow::MailLink() {
  QCOMPARE(TPageCommands::MailLinkAddress(QStringLiteral("Q&A? 100% #1"), QStringLiteral("http://h/?a=b&c=d")),
           QStringLiteral("mailto:?subject=Q&A? 100% #1 (http://h/?a=b&c=d)&body=http://h/?a=b&c=d"));
}

void TestMainWindow::ClosingTheFullScreenPage() {
  m_f.window->Tabs().NewTab();
  Load(QStringLiteral("/full"));
  THalvexBrowser *browser = Active()->Browser();
  ClickPage(*browser, QPoint(60, 150));
  QTRY_VERIFY(m_f.window->isFullScreen());
  QVERIFY(browser->HasPageFullScreen());
  QVERIFY(!m_f.window->menuBar()->isVisible());
  Action(TCommand::CloseTab)->trigger();
  QTRY_VERIFY(!m_f.window->isFullScreen());
  QVERIFY(m_f.window->menuBar()->isVisible());
}

void TestMainWindow::TabColors_data() {
  QTest::addColumn<QString>("scheme");
  QTest::addColumn<QColor>("tab");
  QTest::addColumn<QColor>("font");
  const QPalette palette = QApplication::palette();
  QTest::newRow("std") << "std" << palette.color(QPalette::Button) << palette.color(QPalette::WindowText);
  QTest::newRow("rev") << "rev" << palette.color(QPalette::Inactive, QPalette::Highlight)
                       << palette.color(QPalette::HighlightedText);
  QTest::newRow("custom") << "custom" << QColor(0x11, 0x22, 0x33) << QColor(0xff, 0xee, 0xdd);
  QTest::newRow("anything else is custom") << "STD" << QColor(0x11, 0x22, 0x33) << QColor(0xff, 0xee, 0xdd);
}

void TestMainWindow::TabColors() {
  QFETCH(QString, scheme);
  TZVOptions options(*m_f.store);
  options.Set(Setting::TabColorScheme, scheme);
  options.Set(Setting::InactiveTabColor, 0x112233);
  options.Set(Setting::InactiveFontColor, 0xffeedd);
  m_f.Open();
  const auto *pages = m_f.window->findChild<TZVPageControl *>();
  QTEST(pages->InactiveTabColor(), "tab");
  QTEST(pages->InactiveFontColor(), "font");
}

void TestMainWindow::LanguageMenu() {
  QMenu *menu = m_f.window->Actions().Menu(TMenu::Languages);
  Q_EMIT menu->aboutToShow();
  Q_EMIT menu->aboutToShow();
  const QStringList files = QDir(QStringLiteral(ZV_SOURCE_DIR "/Languages")).entryList({QStringLiteral("*.ini")});
  QCOMPARE(menu->actions().size(), files.size());
  QAction *german = nullptr;
  for (QAction *entry : menu->actions()) {
    QCOMPARE(entry->isChecked(), entry->text() == QStringLiteral("English"));
    if (entry->text() == QStringLiteral("Deutsch")) german = entry;
  }
  QVERIFY(german != nullptr);
  bool told = false;
  OnModalDialog<QDialog>([&told](QDialog &dialog) {
    told = true;
    dialog.accept();
  });
  german->trigger();
  QTRY_VERIFY(told);
  QCOMPARE(TZVOptions(*m_f.store).Get(Setting::LanguageFile), QStringLiteral("zvdeu.ini"));
  const QString english = Action(TCommand::Exit)->text();
  m_f.Show();
  QVERIFY(Action(TCommand::Exit)->text() != english);
  NoMarkerIsLeft();
}

void TestMainWindow::RightToLeft() {
  const auto picture = [](const QIcon &icon) { return icon.pixmap(24).toImage(); };
  const QImage back = picture(Action(TCommand::Back)->icon());
  const QImage forward = picture(Action(TCommand::Forward)->icon());
  QCOMPARE(m_f.window->layoutDirection(), Qt::LeftToRight);
  TZVOptions(*m_f.store).Set(Setting::LanguageFile, QStringLiteral("zvara.ini"));
  m_f.Open();
  // The file says so, whether or not the system has the toolkit's translation, which says so too.
  qDeleteAll(qApp->findChildren<QTranslator *>());
  QCoreApplication::processEvents();
  QCOMPARE(m_f.window->layoutDirection(), Qt::RightToLeft);
  QVERIFY(back != forward);
  QCOMPARE(picture(Action(TCommand::Back)->icon()), forward);
  QCOMPARE(picture(Action(TCommand::Forward)->icon()), back);
  const auto *bar = m_f.window->findChild<QToolBar *>(QStringLiteral("ToolBar"));
  QVERIFY(bar->widgetForAction(Action(TCommand::Back))->x() > bar->widgetForAction(Action(TCommand::Forward))->x());

  // The letter behind a text goes with the blank before it.
  TZVOptions(*m_f.store).Set(Setting::DisableALTShortcuts, true);
  m_f.Open();
  QCOMPARE(m_f.window->Actions().Menu(TMenu::File)->title(), QStringLiteral("ملف"));

  const TBrowserTab *first = Active();
  Action(TCommand::NewBlank)->trigger();
  const auto *strip = m_f.window->findChild<TZVPageControl *>();
  QTRY_VERIFY(strip->TabRect(Active()).right() < strip->TabRect(first).left());

  Active()->Navigate(TEngine::StartPageAddress());
  QTRY_COMPARE_WITH_TIMEOUT(Active()->GetLocationName(), m_f.window->Language().Text("PAGES", "StartTitle"),
                            m_f.LoadTime);
  QString shown;
  Active()->Browser()->EnginePage()->runJavaScript(
      QStringLiteral("document.documentElement.lang + ' ' + getComputedStyle(document.body).direction"),
      [&](const QVariant &value) { shown = value.toString(); });
  QTRY_COMPARE_WITH_TIMEOUT(shown, QStringLiteral("ar-AE rtl"), m_f.LoadTime);
}

void TestMainWindow::ListFollowsTabs() {
  TZVOptions options(*m_f.store);
  Load(QStringLiteral("/a"));
  QVERIFY(options.LastOpenSites().isEmpty());
  Action(TCommand::StartLast)->trigger();
  QCOMPARE(options.Get(Setting::StartupMode), QStringLiteral("Last"));
  const QString first = QStringLiteral("url1=") + m_f.server.Url(QStringLiteral("/a"));
  QTRY_COMPARE(ToLines(options.LastOpenSites()), QStringList{first});
  m_f.window->Tabs().NewTab()->Navigate(m_f.server.Url(QStringLiteral("/b")));
  const QString second = QStringLiteral("url2=") + m_f.server.Url(QStringLiteral("/b"));
  QTRY_COMPARE(ToLines(options.LastOpenSites()), (QStringList{second, first}));
  Action(TCommand::CloseTab)->trigger();
  QTRY_COMPARE(ToLines(options.LastOpenSites()), QStringList{first});
  // However it stands: when the window goes it is written.
  QVERIFY(options.SetLastOpenSites({}));
  m_f.window.reset();
  QCOMPARE(ToLines(options.LastOpenSites()), QStringList{first});
}

void TestMainWindow::ShutdownQuestion() {
  TZVOptions options(*m_f.store);
  options.Set(Setting::ConfirmShutdown, true);
  const auto answer = [](const char *button, bool tick) {
    OnModalDialog<QDialog>([button, tick](QDialog &dialog) {
      dialog.findChild<QCheckBox *>(QStringLiteral("chkConfirm"))->setChecked(tick);
      dialog.findChild<QPushButton *>(QLatin1String(button))->click();
    });
  };
  answer("cmdCancel", false);
  QVERIFY(!m_f.window->close());
  QVERIFY(options.Get(Setting::ConfirmShutdown));
  answer("cmdCancel", true);
  QVERIFY(!m_f.window->close());
  QVERIFY(m_f.window->isVisible());
  QVERIFY(!options.Get(Setting::ConfirmShutdown));
  QVERIFY(m_f.window->close());  // asks no more
}

void TestMainWindow::PlacementSurvives() {
  const TZVOptions options(*m_f.store);
  m_f.window->move(30, 20);
  m_f.window->resize(620, 410);
  QTRY_COMPARE(m_f.window->size(), QSize(620, 410));
  m_f.Open();
  QCOMPARE(m_f.window->size(), QSize(620, 410));
  QCOMPARE(m_f.window->pos(), QPoint(30, 20));

  // A maximised window keeps the last normal placement.
  m_f.window->resize(700, 500);
  m_f.window->showMaximized();
  QTRY_VERIFY(m_f.window->isMaximized());
  m_f.Open();
  QTRY_VERIFY(m_f.window->isMaximized());
  m_f.window.reset();
  QVERIFY(options.Get(Setting::Maximized));
  QCOMPARE(options.Get(Setting::Width), 620);
  QCOMPARE(options.Get(Setting::Height), 410);
  QCOMPARE(options.Get(Setting::Left), 30);
}

int main(int argc, char **argv) {
  QGuiApplication::setApplicationDisplayName(QStringLiteral("Zarvela"));
  return RunWithEngine<TestMainWindow>(argc, argv);
}

#include "test_main_window.moc"
