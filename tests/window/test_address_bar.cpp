#include <QAbstractItemView>
#include <QApplication>
#include <QDropEvent>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>
#include <QToolBar>
#include <QWheelEvent>

#include "browser/dialogs/confirm_dialog.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/options.h"
#include "platform/history_store.h"
#include "search/address_bar.h"
#include "search/address_label.h"
#include "search/address_search.h"
#include "search/search_lists.h"
#include "search/suggestion_list.h"
#include "support/modal_dialogs.h"
#include "support/test_server.h"

// The address bar by itself, and joined with tabs that load real pages.
class TestAddressBar final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase();
  void init();
  void cleanup();

  void Enter_data();
  void Enter();
  void EscapeAndLeaving();
  void ShowsAndCopiesForeignNames();
  void FilesWhatWasTyped();
  void InlineCompletion();
  void InlineCompletionIsStyleOneOnly();
  void ListOpensAndForgets_data();
  void ListOpensAndForgets();
  void ChoosingFromTheList();
  void WalkingOpensNothing();
  void SuggestsMostUsedFirst();
  void SuggestionsNeverSteal();
  void SuggestionIsForgotten();
  void ClearsAfterAsking_data();
  void ClearsAfterAsking();
  void TakesDrops_data();
  void TakesDrops();
  void LabelNarrowsTheBand();

  void TypedAddressReachesTabAndList();
  void RecordsVisits();
  void QuickSearch_data();
  void QuickSearch();
  void FaultyQuickSearch();

 private:
  void MakeBar(const char *style = "none");
  void MakeTabs();
  [[nodiscard]] QLineEdit *Edit() const { return m_bar->lineEdit(); }
  [[nodiscard]] QStringList Entries() const;
  [[nodiscard]] TSuggestionList *Suggestions() const { return m_bar->findChild<TSuggestionList *>(); }
  [[nodiscard]] QStringList Suggested() const;
  // Keys go the way of real ones: to the window, and from there to whatever has the keyboard.
  void Type(const QString &text);
  void AddTyped(const QString &text);
  void Press(Qt::Key key, Qt::KeyboardModifiers keys = {});
  void Visit(const QString &address, const QString &title, int times);

  TTestServer m_server;
  TLanguage m_language;
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_store;
  std::unique_ptr<THistoryStore> m_history;
  std::unique_ptr<TEngine> m_engine;
  std::unique_ptr<TTabEnvironment> m_environment;
  std::unique_ptr<QMainWindow> m_window;
  QToolBar *m_band = nullptr;
  TAddressBar *m_bar = nullptr;
  TAddressLabel *m_label = nullptr;
  std::unique_ptr<TTabStrip> m_tabs;
  std::unique_ptr<TSearchLists> m_lists;
  std::unique_ptr<TAddressSearch> m_search;
};

void TestAddressBar::initTestCase() {
  QVERIFY(m_language.LoadFile(QStringLiteral(ZV_SOURCE_DIR "/Languages/zveng.ini")));
  QVERIFY(m_server.Listen());
  m_server.RoutePage("/a", "Page A");
  m_server.RoutePage("/b", "Page B");
  m_server.RoutePage("/find", "Found");
}

void TestAddressBar::init() {
  m_folder = std::make_unique<QTemporaryDir>();
  m_store = std::make_unique<TRegistryStore>(m_folder->filePath("registry.sqlite"));
  m_history = std::make_unique<THistoryStore>(m_folder->filePath("history.sqlite"));
  m_window = std::make_unique<QMainWindow>();
  m_window->resize(800, 600);
}

void TestAddressBar::cleanup() {
  m_search.reset();
  m_lists.reset();
  m_tabs.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  m_window.reset();
  m_environment.reset();
  m_engine.reset();
  m_history.reset();
  m_store.reset();
}

void TestAddressBar::MakeBar(const char *style) {
  TZVOptions(*m_store).Set(Setting::AutoCompleteStyle, style);
  m_band = m_window->addToolBar("band");
  m_bar = new TAddressBar(m_language, *m_store, *m_history, m_band);
  m_label = new TAddressLabel("Address", m_band);
  m_band->addWidget(m_label);
  m_band->addWidget(m_bar);
  m_window->show();
  QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
  m_bar->FocusAll();
  QTRY_VERIFY(Edit()->hasFocus());
}

void TestAddressBar::MakeTabs() {
  m_engine = std::make_unique<TEngine>(m_language, *m_store);
  m_environment.reset(new TTabEnvironment{*m_engine, m_language, *m_store, {}, {}});
  auto *pages = new TZVPageControl(m_window.get());
  m_window->setCentralWidget(pages);
  m_tabs = std::make_unique<TTabStrip>(m_window.get(), pages, *m_environment);
  m_lists = std::make_unique<TSearchLists>(m_language, *m_store, nullptr);
  m_search = std::make_unique<TAddressSearch>(nullptr, m_language, *m_bar, *m_tabs, *m_lists, *m_history);
  connect(m_tabs.get(), &TTabStrip::AddressChanged, m_bar, &TAddressBar::ShowAddress);
  m_tabs->NewTab();
  m_bar->FocusAll();
  QTRY_VERIFY(Edit()->hasFocus());
}

QStringList TestAddressBar::Entries() const {
  QStringList entries;
  for (int row = 0; row < m_bar->count(); ++row) entries.append(m_bar->itemText(row));
  return entries;
}

QStringList TestAddressBar::Suggested() const {
  QStringList addresses;
  if (!Suggestions()->isVisible()) return addresses;
  const QAbstractItemModel *model = Suggestions()->model();
  for (int row = 0; row < model->rowCount(); ++row) addresses.append(model->index(row, 0).data().toString());
  return addresses;
}

void TestAddressBar::Type(const QString &text) {
  QVERIFY(Edit()->hasFocus());
  Edit()->selectAll();
  AddTyped(text);
}

void TestAddressBar::AddTyped(const QString &text) {
  for (const QChar c : text) QTest::keyClick(m_window->windowHandle(), c.toLatin1());
}

void TestAddressBar::Press(Qt::Key key, Qt::KeyboardModifiers keys) {
  QTest::keyClick(m_window->windowHandle(), key, keys);
}

void TestAddressBar::Visit(const QString &address, const QString &title, int times) {
  for (int i = 0; i < times; ++i) m_history->AddVisit(address, title);
  QVERIFY(m_history->Flush());
}

void TestAddressBar::Enter_data() {
  QTest::addColumn<QString>("typed");
  QTest::addColumn<Qt::KeyboardModifiers>("keys");
  QTest::addColumn<QStringList>("opened");
  QTest::addColumn<bool>("newTab");
  QTest::newRow("as typed") << "a.example/x y" << Qt::KeyboardModifiers() << QStringList("a.example/x y") << false;
  QTest::newRow("ctrl") << "word" << Qt::KeyboardModifiers(Qt::ControlModifier) << QStringList("http://www.word.com")
                        << false;
  QTest::newRow("shift") << "word" << Qt::KeyboardModifiers(Qt::ShiftModifier) << QStringList("http://www.word.net")
                         << false;
  QTest::newRow("both") << "word" << (Qt::ControlModifier | Qt::ShiftModifier) << QStringList("gopher:word.invalid")
                        << false;
  QTest::newRow("alt") << "word" << Qt::KeyboardModifiers(Qt::AltModifier) << QStringList("word") << true;
  QTest::newRow("alt and ctrl") << "word" << (Qt::AltModifier | Qt::ControlModifier)
                                << QStringList("http://www.word.com") << true;
  QTest::newRow("nothing") << "" << Qt::KeyboardModifiers() << QStringList() << false;
  QTest::newRow("a blank") << " " << Qt::KeyboardModifiers() << QStringList() << false;
}

void TestAddressBar::Enter() {
  QFETCH(QString, typed);
  QFETCH(Qt::KeyboardModifiers, keys);
  TZVOptions options(*m_store);
  options.Set(Setting::CtrlShiftPre, "gopher:");
  options.Set(Setting::CtrlShiftPost, ".invalid");
  MakeBar();
  QSignalSpy opened(m_bar, &TAddressBar::OpenRequested);
  Type(typed);
  // The keys themselves do nothing to the box.
  if (keys & Qt::ShiftModifier) QTest::keyPress(m_window->windowHandle(), Qt::Key_Shift);
  Press(Qt::Key_Return, keys);
  QStringList texts;
  for (const auto &call : opened) texts.append(call.at(0).toString());
  QTEST(texts, "opened");
  if (!opened.isEmpty()) QTEST(opened.at(0).at(1).toBool(), "newTab");
}

void TestAddressBar::EscapeAndLeaving() {
  MakeBar();
  QSignalSpy left(m_bar, &TAddressBar::Left);
  m_bar->ShowAddress("http://page.example/");
  QCOMPARE(Edit()->text(), "http://page.example/");
  Type("half");
  m_bar->ShowAddress("http://other.example/");
  QCOMPARE(Edit()->text(), "half");
  Press(Qt::Key_Escape);
  QCOMPARE(Edit()->text(), "http://other.example/");
  QCOMPARE(Edit()->selectedText(), Edit()->text());
  QCOMPARE(left.size(), 0);
  Press(Qt::Key_Escape);
  QCOMPARE(left.size(), 1);

  Type("half");
  auto *page = new QWidget(m_window.get());
  m_window->setCentralWidget(page);
  page->setFocusPolicy(Qt::ClickFocus);
  QTRY_VERIFY(page->isVisible());
  page->setFocus(Qt::ShortcutFocusReason);
  QCOMPARE(Edit()->text(), "half");
  m_bar->setFocus();
  QVERIFY(Edit()->hasFocus());
  QTest::mouseClick(page, Qt::LeftButton);
  QVERIFY(page->hasFocus());
  QCOMPARE(Edit()->text(), "http://other.example/");
  m_bar->ShowAddress("about:blank");
  QCOMPARE(Edit()->text(), "");
}

void TestAddressBar::ShowsAndCopiesForeignNames() {
  MakeBar();
  m_bar->ShowAddress("http://xn--bcher-kva.example/a%20b");
  QCOMPARE(Edit()->text(), QString("http://b\u00FCcher.example/a%20b"));
  m_bar->FocusAll();
  Edit()->copy();
  Press(Qt::Key_Delete);
  Edit()->paste();
  QCOMPARE(QString(QUrl(Edit()->text()).toEncoded()), "http://xn--bcher-kva.example/a%20b");
  Press(Qt::Key_Escape);
  m_bar->ShowAddress("http://xn--80ak6aa92e.com/");
  QCOMPARE(Edit()->text(), "http://xn--80ak6aa92e.com/");
}

void TestAddressBar::FilesWhatWasTyped() {
  MakeBar();
  m_bar->AddTypedAddress("http://link.example/");
  QCOMPARE(Entries(), QStringList());
  for (int i = 1; i <= 26; ++i) {
    Type("x");
    Press(Qt::Key_Return);
    m_bar->AddTypedAddress(QString("http://%1.example/").arg(i));
    // What follows was not typed.
    m_bar->AddTypedAddress("http://link.example/");
  }
  QCOMPARE(m_bar->count(), 25);
  QCOMPARE(Entries().first(), "http://26.example/");
  QCOMPARE(Edit()->text(), "http://link.example/");
  // The list changes under a text that is being typed without touching it.
  Type("going on");
  Edit()->setSelection(2, 3);
  Press(Qt::Key_Return);
  Type("typing");
  Edit()->setCursorPosition(3);
  m_bar->AddTypedAddress("http://2.example/");
  QCOMPARE(Entries().first(), "http://2.example/");
  QCOMPARE(m_bar->count(), 25);
  QCOMPARE(Edit()->text(), "typing");
  QCOMPARE(Edit()->cursorPosition(), 3);

  m_bar->SaveTypedAddresses();
  TAddressBar again(m_language, *m_store, *m_history);
  QCOMPARE(again.count(), 25);
  QCOMPARE(again.itemText(0), "http://2.example/");
  QCOMPARE(again.lineEdit()->text(), "");
}

void TestAddressBar::InlineCompletion() {
  TTypedAddresses typed;
  typed.File("http://Example.org/Path");
  typed.Save(*m_store);
  MakeBar("IE4");
  Type("exa");
  QCOMPARE(Edit()->text(), "Example.org/Path");
  QCOMPARE(Edit()->selectedText(), "mple.org/Path");
  AddTyped("M");
  QCOMPARE(Edit()->selectedText(), "ple.org/Path");
  // What does not fit replaces the completed rest.
  AddTyped("z");
  QCOMPARE(Edit()->text(), "Examz");
  Type("http://ex");
  QCOMPARE(Edit()->text(), "http://Example.org/Path");
  Press(Qt::Key_Backspace);
  QCOMPARE(Edit()->text(), "http://Ex");
  // Typed into the middle, what stands behind the caret is given up for the entry.
  Type("eorg");
  Edit()->setCursorPosition(1);
  AddTyped("x");
  QCOMPARE(Edit()->text(), "Example.org/Path");
  QCOMPARE(Edit()->selectedText(), "ample.org/Path");
  QSignalSpy opened(m_bar, &TAddressBar::OpenRequested);
  Press(Qt::Key_Return);
  QCOMPARE(opened.value(0).value(0).toString(), "Example.org/Path");
}

void TestAddressBar::InlineCompletionIsStyleOneOnly() {
  TTypedAddresses typed;
  typed.File("http://example.org/");
  typed.Save(*m_store);
  MakeBar("none");
  Type("exa");
  QCOMPARE(Edit()->text(), "exa");
  TZVOptions(*m_store).SetAutoCompleteMode(1);
  m_bar->ReloadSettings();
  Type("exa");
  QCOMPARE(Edit()->text(), "example.org/");
}

void TestAddressBar::ListOpensAndForgets_data() {
  QTest::addColumn<int>("key");
  QTest::addColumn<Qt::KeyboardModifiers>("keys");
  QTest::newRow("alt down") << int(Qt::Key_Down) << Qt::KeyboardModifiers(Qt::AltModifier);
  QTest::newRow("f4") << int(Qt::Key_F4) << Qt::KeyboardModifiers();
}

void TestAddressBar::ListOpensAndForgets() {
  QFETCH(int, key);
  QFETCH(Qt::KeyboardModifiers, keys);
  TTypedAddresses typed;
  for (const char *address : {"http://c.example/", "http://b.example/", "http://a.example/"}) typed.File(address);
  typed.Save(*m_store);
  MakeBar("IE5");
  m_bar->ShowAddress("http://page.example/");
  Press(Qt::Key(key), keys);
  QTRY_VERIFY(m_bar->view()->isVisible());
  m_bar->view()->setCurrentIndex(m_bar->model()->index(1, 0));
  QTest::keyClick(m_bar->view(), Qt::Key_Delete, Qt::ShiftModifier);
  QCOMPARE(Entries(), QStringList({"http://a.example/", "http://c.example/"}));
  QVERIFY(m_bar->view()->isVisible());
  QCOMPARE(m_bar->view()->currentIndex().row(), 1);
  QTest::keyClick(m_bar->view(), Qt::Key_Delete, Qt::ShiftModifier);
  QTest::keyClick(m_bar->view(), Qt::Key_Delete, Qt::ShiftModifier);
  QCOMPARE(m_bar->count(), 0);
  QTRY_VERIFY(!m_bar->view()->isVisible());
  QCOMPARE(Edit()->text(), "http://page.example/");
  typed.Load(*m_store);
  QVERIFY(typed.List().isEmpty());
}

void TestAddressBar::ChoosingFromTheList() {
  TTypedAddresses typed;
  typed.File("http://xn--bcher-kva.example/");
  typed.File("http://a.example/");
  typed.Save(*m_store);
  MakeBar();
  QSignalSpy opened(m_bar, &TAddressBar::OpenRequested);
  m_bar->showPopup();
  m_bar->view()->setCurrentIndex(m_bar->model()->index(1, 0));
  QTest::keyClick(m_bar->view(), Qt::Key_Return);
  QCOMPARE(opened.size(), 1);
  QCOMPARE(opened.at(0).at(0).toString(), "http://xn--bcher-kva.example/");
  QCOMPARE(Edit()->text(), QString("http://b\u00FCcher.example/"));
}

void TestAddressBar::WalkingOpensNothing() {
  TTypedAddresses typed;
  typed.File("http://b.example/");
  typed.File("http://a.example/");
  typed.Save(*m_store);
  MakeBar();
  m_bar->ShowAddress("http://page.example/");
  QSignalSpy opened(m_bar, &TAddressBar::OpenRequested);
  Press(Qt::Key_Down);
  QCOMPARE(Edit()->text(), "http://a.example/");
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  QCOMPARE(Edit()->text(), "http://b.example/");
  QWheelEvent wheel(QPointF(5, 5), m_bar->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, 120), Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QApplication::sendEvent(m_bar, &wheel);
  QCOMPARE(Edit()->text(), "http://b.example/");
  QCOMPARE(opened.size(), 0);
  Press(Qt::Key_Escape);
  QCOMPARE(Edit()->text(), "http://page.example/");
}

void TestAddressBar::SuggestsMostUsedFirst() {
  TTypedAddresses typed;
  typed.File("http://typed.example/news");
  typed.File("http://often.example/");
  typed.Save(*m_store);
  MakeBar("IE5");
  Visit("http://often.example/", "News often read", 5);
  Visit("http://now.example/", "Now and then <b>news</b>", 2);
  Visit("http://other.example/", "Something else", 9);
  Type("news");
  const QStringList expected = {"http://often.example/", "http://now.example/", "http://typed.example/news"};
  QTRY_COMPARE(Suggested(), expected);
  QCOMPARE(Suggestions()->model()->index(1, 1).data().toString(), "Now and then <b>news</b>");
  Type("exam else");
  QTRY_COMPARE(Suggested(), QStringList("http://other.example/"));
  Type("nowhere");
  QTRY_VERIFY(!Suggestions()->isVisible());
}

void TestAddressBar::SuggestionsNeverSteal() {
  MakeBar("IE5");
  m_bar->ShowAddress("http://page.example/");
  Visit("http://a.example/", "News A", 2);
  Visit("http://xn--bcher-kva.example/", "News B", 1);
  QSignalSpy opened(m_bar, &TAddressBar::OpenRequested);
  Type("news");
  QTRY_COMPARE(Suggested().size(), 2);
  QVERIFY(Edit()->hasFocus());
  QCOMPARE(Edit()->text(), "news");
  QCOMPARE(Edit()->selectedText(), "");
  Press(Qt::Key_Return);
  QCOMPARE(opened.at(0).at(0).toString(), "news");
  QVERIFY(!Suggestions()->isVisible());

  Type("news");
  QTRY_VERIFY(Suggestions()->isVisible());
  Press(Qt::Key_Down);
  QCOMPARE(Edit()->text(), "http://a.example/");
  Press(Qt::Key_Down);
  QCOMPARE(Edit()->text(), QString("http://b\u00FCcher.example/"));
  Press(Qt::Key_Down);
  QCOMPARE(Edit()->text(), "news");
  Press(Qt::Key_Up);
  QCOMPARE(Edit()->text(), QString("http://b\u00FCcher.example/"));
  Press(Qt::Key_Escape);
  QCOMPARE(Edit()->text(), "news");
  QVERIFY(!Suggestions()->isVisible());
  Press(Qt::Key_Escape);
  QCOMPARE(Edit()->text(), "http://page.example/");

  Type("news");
  QTRY_VERIFY(Suggestions()->isVisible());
  const QRect row = Suggestions()->visualRect(Suggestions()->model()->index(1, 0));
  QTest::mouseClick(Suggestions()->viewport(), Qt::LeftButton, {}, row.center());
  QCOMPARE(opened.last().at(0).toString(), "http://xn--bcher-kva.example/");
  QVERIFY(!Suggestions()->isVisible());

  Type("news");
  QTRY_VERIFY(Suggestions()->isVisible());
  m_window->resize(700, 500);
  QTRY_VERIFY(!Suggestions()->isVisible());
  Type("news");
  QTRY_VERIFY(Suggestions()->isVisible());
  Edit()->clearFocus();
  QTRY_VERIFY(!Suggestions()->isVisible());
}

void TestAddressBar::SuggestionIsForgotten() {
  TTypedAddresses typed;
  typed.File("http://a.example/");
  typed.Save(*m_store);
  MakeBar("IE5");
  Visit("http://a.example/", "News A", 2);
  Visit("http://b.example/", "News B", 1);
  Type("news");
  QTRY_COMPARE(Suggested().size(), 2);
  // With nothing chosen the key stays what it is in a text.
  Press(Qt::Key_Delete, Qt::ShiftModifier);
  QCOMPARE(m_history->Count(), 2);
  Press(Qt::Key_Down);
  Press(Qt::Key_Delete, Qt::ShiftModifier);
  QCOMPARE(Suggested(), QStringList("http://b.example/"));
  QCOMPARE(Edit()->text(), "news");
  QCOMPARE(m_bar->count(), 0);
  QTRY_VERIFY(!m_history->Find("http://a.example/"));
}

void TestAddressBar::ClearsAfterAsking_data() {
  QTest::addColumn<QByteArray>("style");
  QTest::addColumn<bool>("yes");
  QTest::addColumn<bool>("hasNote");
  QTest::newRow("yes") << QByteArray("IE5") << true << true;
  QTest::newRow("no") << QByteArray("IE5") << false << true;
  QTest::newRow("inline") << QByteArray("IE4") << true << false;
}

void TestAddressBar::ClearsAfterAsking() {
  QFETCH(QByteArray, style);
  QFETCH(bool, yes);
  QFETCH(bool, hasNote);
  TTypedAddresses typed;
  typed.File("http://a.example/");
  typed.Save(*m_store);
  MakeBar(style);
  m_bar->ShowAddress("http://page.example/");
  OnModalDialog<TfrmConfirm>([&](TfrmConfirm &dialog) {
    QCOMPARE(dialog.windowTitle(), "Clear typed addresses");
    QCOMPARE(dialog.findChild<QTextEdit *>("mmoPrompt2")->isVisible(), hasNote);
    dialog.findChild<QPushButton *>(yes ? "cmdOK" : "cmdCancel")->click();
  });
  m_bar->ClearAddressHistory();
  QCOMPARE(m_bar->count(), yes ? 0 : 1);
  QCOMPARE(Edit()->text(), "http://page.example/");
  typed.Load(*m_store);
  QCOMPARE(typed.List().isEmpty(), yes);
}

void TestAddressBar::TakesDrops_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<bool>("isLink");
  QTest::addColumn<QString>("address");
  QTest::newRow("link") << "http://a.example/x" << true << "http://a.example/x";
  QTest::newRow("address as text") << " https://a.example/ " << false << "https://a.example/";
  QTest::newRow("host as text") << "www.a.example/x" << false << "www.a.example/x";
  QTest::newRow("word") << "word" << false << "";
  QTest::newRow("prose") << "see www.a.example there" << false << "";
  QTest::newRow("script") << "javascript:alert(1.5)" << false << "";
  QTest::newRow("script as link") << "javascript:alert(1)" << true << "";
}

void TestAddressBar::TakesDrops() {
  QFETCH(QString, text);
  QFETCH(bool, isLink);
  MakeBar();
  QSignalSpy opened(m_bar, &TAddressBar::OpenRequested);
  QMimeData data;
  data.setText(text);
  if (isLink) data.setUrls({QUrl(text)});
  const auto drop = [&](QWidget *target) {
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::LinkAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    QDropEvent event(QPointF(5, 5), Qt::CopyAction | Qt::LinkAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &event);
  };
  QFETCH(QString, address);
  for (QWidget *target : {static_cast<QWidget *>(Edit()), static_cast<QWidget *>(m_bar)}) {
    opened.clear();
    drop(target);
    QCOMPARE(opened.size(), address.isEmpty() ? 0 : 1);
    if (!address.isEmpty()) QCOMPARE(opened.at(0).at(0).toString(), address);
  }
}

void TestAddressBar::LabelNarrowsTheBand() {
  MakeBar();
  QTRY_VERIFY(m_band->width() >= 100);
  QTest::mouseDClick(m_label, Qt::LeftButton);
  QTRY_VERIFY(m_band->width() < 100);
  QVERIFY(m_label->isVisible());
  QVERIFY(m_band->rect().contains(m_label->geometry().center()));
  QTest::mouseDClick(m_label, Qt::LeftButton);
  QTRY_VERIFY(m_band->width() > 300);
}

void TestAddressBar::TypedAddressReachesTabAndList() {
  MakeBar();
  MakeTabs();
  const QString address = m_server.Url("/a");
  m_bar->FocusAll();
  Type(address);
  Press(Qt::Key_Return);
  QTRY_COMPARE_WITH_TIMEOUT(Entries(), QStringList(address), 15000);
  QTRY_COMPARE_WITH_TIMEOUT(m_tabs->GetActivePage()->GetLocationUrl(), address, 15000);
  QCOMPARE(m_tabs->TabCount(), 1);
  // A page that the tab goes to by itself is not filed.
  m_tabs->GetActivePage()->Navigate(m_server.Url("/b"));
  QTRY_COMPARE_WITH_TIMEOUT(Edit()->text(), m_server.Url("/b"), 15000);
  QCOMPARE(Entries(), QStringList(address));
  m_bar->FocusAll();
  Type(m_server.Url("/find"));
  Press(Qt::Key_Return, Qt::AltModifier);
  QTRY_COMPARE_WITH_TIMEOUT(Entries().value(0), m_server.Url("/find"), 15000);
  QCOMPARE(m_tabs->TabCount(), 2);
  TZVOptions(*m_store).Set(Setting::AddressNewWin, true);
  m_search->ReloadSettings();
  QVERIFY(m_search->Open(m_server.Url("/a"), false));
  QCOMPARE(m_tabs->TabCount(), 3);
}

void TestAddressBar::RecordsVisits() {
  MakeBar();
  MakeTabs();
  m_server.Route("/late", TTestResponse::Page("<title>Early</title><script>setTimeout(() => document.title = 'Late', 50)"
                                              "</script>"));
  const auto recorded = [&](const QString &address) {
    (void)m_history->Flush();
    return m_history->Find(address);
  };
  TBrowserTab *tab = m_tabs->GetActivePage();
  tab->Navigate(m_server.Url("/a"));
  QTRY_VERIFY_WITH_TIMEOUT(recorded(m_server.Url("/a")).has_value(), 15000);
  QCOMPARE(recorded(m_server.Url("/a"))->title, "Page A");
  m_tabs->NewBackgroundTab()->Navigate(m_server.Url("/late"));
  QTRY_VERIFY_WITH_TIMEOUT(recorded(m_server.Url("/late")).has_value(), 15000);
  QTRY_COMPARE_WITH_TIMEOUT(recorded(m_server.Url("/late"))->title, "Late", 15000);

  // A reload is no further visit, coming back is.
  QSignalSpy loaded(m_tabs.get(), &TTabStrip::TabLoaded);
  tab->Refresh();
  QTRY_COMPARE_WITH_TIMEOUT(loaded.size(), 1, 15000);
  tab->Navigate(m_server.Url("/b"));
  QTRY_VERIFY_WITH_TIMEOUT(recorded(m_server.Url("/b")).has_value(), 15000);
  QCOMPARE(recorded(m_server.Url("/a"))->visits, 1);
  tab->Navigate(m_server.Url("/a"));
  QTRY_COMPARE_WITH_TIMEOUT(recorded(m_server.Url("/a"))->visits, 2, 15000);

  // What cannot be loaded was not visited.
  loaded.clear();
  const QString nobody = "http://127.0.0.1:1/";
  tab->Navigate(nobody);
  QTRY_VERIFY_WITH_TIMEOUT(!loaded.isEmpty(), 15000);
  QVERIFY(tab->Browser()->ShowsNotice() && tab->GetLocationUrl() == nobody);
  QVERIFY(!recorded(nobody));
  QCOMPARE(m_history->Count(), 3);
}

void TestAddressBar::QuickSearch_data() {
  QTest::addColumn<bool>("newWin");
  QTest::addColumn<int>("tabs");
  QTest::newRow("new tab") << true << 2;
  QTest::newRow("this tab") << false << 1;
}

void TestAddressBar::QuickSearch() {
  QFETCH(bool, newWin);
  TZVOptions options(*m_store);
  options.Set(Setting::QuickSearchNewWin, newWin);
  options.SetQuickSearchEntries({"f=" + m_server.Url("/find?q=%s")});
  MakeBar();
  MakeTabs();
  m_server.ForgetRequests();
  Type("F two words");
  Press(Qt::Key_Return);
  QTRY_COMPARE_WITH_TIMEOUT(m_server.RequestCount("/find"), 1, 15000);
  QCOMPARE(m_server.Requests("/find").first().query, "q=two%20words");
  QTEST(m_tabs->TabCount(), "tabs");
}

void TestAddressBar::FaultyQuickSearch() {
  TZVOptions(*m_store).SetQuickSearchEntries({"f=" + m_server.Url("/find?q=%s&r=%20")});
  MakeBar();
  MakeTabs();
  m_search = nullptr;
  m_search = std::make_unique<TAddressSearch>(m_window.get(), m_language, *m_bar, *m_tabs, *m_lists, *m_history);
  Type("f word");
  Press(Qt::Key_Return);
  auto *box = m_window->findChild<QMessageBox *>();
  QVERIFY(box != nullptr);
  QVERIFY2(box->text().contains(QString::fromUtf8("“f”")) && box->text().contains("r=%20"), qPrintable(box->text()));
  QCOMPARE(m_tabs->TabCount(), 1);
  QCOMPARE(m_tabs->GetActivePage()->Url(), "");
  box->close();
  // What the tab shows next was not typed.
  m_bar->AddTypedAddress("http://a.example/");
  QCOMPARE(m_bar->count(), 0);
}

int main(int argc, char **argv) {
  TEngine::RegisterSchemes();
  QApplication application(argc, argv);
  TestAddressBar test;
  return QTest::qExec(&test, argc, argv);
}

#include "test_address_bar.moc"
