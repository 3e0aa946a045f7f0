#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QRadioButton>
#include <QStyleOptionComboBox>
#include <QTemporaryDir>
#include <QToolButton>
#include <QTreeView>
#include <QtTest>
#include <QVBoxLayout>

#include "chrome/side_bar/history_page.h"
#include "chrome/side_bar/visit_properties.h"
#include "config/language.h"
#include "config/settings.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "support/shipped_files.h"
#include "support/store_trouble.h"
#include "support/visit_count.h"
#include "ui/confirm_dialog.h"

using namespace Qt::StringLiterals;

// The side bar's page of visited pages, by mouse and keyboard.
class TestHistoryPage final : public QObject {
  Q_OBJECT

 private:
  [[nodiscard]] QModelIndex Line(const QStringList &path, const QModelIndex &parent = {}) const {
    if (path.isEmpty()) return parent;
    const QAbstractItemModel &model = *m_tree->model();
    for (int row = 0; row < model.rowCount(parent); ++row) {
      const QModelIndex index = model.index(row, 0, parent);
      if (index.data().toString() == path.first()) return Line(path.mid(1), index);
    }
    return {};
  }
  [[nodiscard]] static QStringList Lines(const QAbstractItemModel &model, const QModelIndex &parent = {}) {
    QStringList lines;
    for (int row = 0; row < model.rowCount(parent); ++row) lines.append(model.index(row, 0, parent).data().toString());
    return lines;
  }
  [[nodiscard]] QStringList TreeLines(const QStringList &path = {}) const {
    return Lines(*m_tree->model(), Line(path));
  }
  [[nodiscard]] QStringList FoundLines() const { return Lines(*m_found->model()); }
  void Expand(const QStringList &path) const {
    for (int i = 1; i <= path.size(); ++i) {
      m_tree->expand(Line(path.mid(0, i)));
      QTRY_VERIFY(!TreeLines(path.mid(0, i)).isEmpty());
    }
  }
  void Click(const QModelIndex &index, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {}) const {
    QVERIFY(index.isValid());
    m_tree->scrollTo(index);
    QTest::mouseClick(m_tree->viewport(), button, keys, m_tree->visualRect(index).center());
  }
  void Turn(const QModelIndex &index) const {
    QVERIFY(index.isValid());
    m_tree->setCurrentIndex(index);
    m_tree->setFocus();
  }
  // Opens the menu as the keyboard does, or as the mouse at this place, and gives the names of what it shows.
  [[nodiscard]] QStringList MenuOn(QTreeView &view, std::optional<QPoint> place = {}) const {
    if (place) {
      QContextMenuEvent event(QContextMenuEvent::Mouse, *place, view.viewport()->mapToGlobal(*place));
      QApplication::sendEvent(view.viewport(), &event);
    } else {
      const QPoint middle = view.rect().center();
      QContextMenuEvent event(QContextMenuEvent::Keyboard, middle, view.mapToGlobal(middle));
      QApplication::sendEvent(&view, &event);
    }
    QStringList shown;
    auto *menu = m_page->findChild<QMenu *>(u"pmHistory"_s);
    for (const QAction *action : menu->actions()) {
      if (menu->isVisible() && action->isVisible()) shown.append(action->objectName());
    }
    return shown;
  }
  void Choose(const char *name) const {
    auto *action = m_page->findChild<QAction *>(QLatin1String(name));
    QVERIFY(action != nullptr && action->isVisible());
    action->trigger();
    m_page->findChild<QMenu *>(u"pmHistory"_s)->close();
  }
  [[nodiscard]] QString TakeOpened() { return m_opened.isEmpty() ? QString() : m_opened.takeLast(); }
  void Press(QWidget *widget, Qt::Key key, Qt::KeyboardModifiers keys = {}) const {
    QTest::keyClick(widget, key, keys);
  }
  void Find(const QString &text) const {
    m_text->setText(text);
    QTest::mouseClick(m_page->findChild<QToolButton *>(u"spdFindHistory"_s), Qt::LeftButton);
  }
  [[nodiscard]] static QString Address(const QString &site, const QString &page) {
    return u"http://%1.example/%2"_s.arg(site, page);
  }
  void Visit(const QString &site, const QString &page, int age, int times = 1) const {
    for (int i = 0; i < times; ++i) {
      m_store->AddVisit(Address(site, page), page, m_midnight.addDays(-age).addSecs(page.back().unicode()));
    }
  }

 private Q_SLOTS:
  void initTestCase() { QVERIFY(m_language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini")))); }
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_registry = std::make_unique<TRegistryStore>(m_folder->filePath(u"registry.sqlite"_s));
    m_settings = std::make_unique<TSettings>(*m_registry);
    m_settings->Set(Setting::HistoryNewWin, false);
    m_store = std::make_unique<THistoryStore>(m_folder->filePath(u"history.sqlite"_s));
    // Of this moment's day, whatever hour it is.
    m_midnight = QDate::currentDate().startOfDay().addSecs(1);
    Visit(u"b"_s, u"Page b1"_s, 0, 2);
    Visit(u"a"_s, u"Page a1"_s, 0);
    Visit(u"a"_s, u"Page a2"_s, 0, 3);
    Visit(u"c"_s, u"Page c1"_s, 1);
    QVERIFY(m_store->Flush());
    m_color = Qt::red;
    const auto icon = [this](const QString &) {
      QPixmap picture(16, 16);
      picture.fill(m_color);
      return QIcon(picture);
    };
    m_page = std::make_unique<THistoryPage>(m_language, *m_settings, *m_store, icon);
    m_tree = m_page->findChild<QTreeView *>(u"shHistory"_s);
    m_found = m_page->findChild<QTreeView *>(u"lvFindHistory"_s);
    m_text = m_page->findChild<QLineEdit *>(u"edtFindHistory"_s);
    m_words = m_page->findChild<QLineEdit *>(u"edtFindWords"_s);
    m_opened.clear();
    connect(m_page.get(), &THistoryPage::OpenInCurrentTab, this,
            [this](const QString &a) { m_opened += u"here "_s + a; });
    connect(m_page.get(), &THistoryPage::OpenInNewTab, this, [this](const QString &a) { m_opened += u"new "_s + a; });
    connect(m_page.get(), &THistoryPage::OpenInBackgroundTab, this,
            [this](const QString &a) { m_opened += u"back "_s + a; });
    m_page->resize(300, 700);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowActive(m_page.get()));
    QTRY_COMPARE(TreeLines(), (QStringList{u"Today"_s, u"Yesterday"_s}));
  }
  void cleanup() {
    m_page.reset();
    m_store.reset();
  }

  void TreeOfDaysSitesAndPages() {
    Expand({u"Today"_s, u"a.example"_s});
    QCOMPARE(TreeLines({u"Today"_s}), (QStringList{u"a.example"_s, u"b.example"_s}));
    QCOMPARE(TreeLines({u"Today"_s, u"a.example"_s}), (QStringList{u"Page a2"_s, u"Page a1"_s}));
    // What is visited meanwhile comes without anything closing; the page moves to today.
    Turn(Line({u"Today"_s, u"a.example"_s, u"Page a1"_s}));
    m_store->AddVisit(Address(u"c"_s, u"Page c1"_s), QString(), m_midnight.addSecs(500));
    m_store->AddVisit(Address(u"a"_s, u"Page a1"_s), u"Renamed"_s, m_midnight.addSecs(500));
    QTRY_COMPARE(TreeLines({u"Today"_s, u"a.example"_s}), (QStringList{u"Renamed"_s, u"Page a2"_s}));
    QTRY_COMPARE(TreeLines({u"Today"_s}), (QStringList{u"a.example"_s, u"b.example"_s, u"c.example"_s}));
    QTRY_COMPARE(TreeLines(), QStringList(u"Today"_s));
    QVERIFY(m_tree->isExpanded(Line({u"Today"_s, u"a.example"_s})));
    QCOMPARE(m_tree->currentIndex().data().toString(), u"Renamed"_s);
  }

  // A page shows its picture, and another one when there is one; days and sites have none.
  void Pictures() {
    Expand({u"Today"_s, u"b.example"_s});
    const auto colorOf = [this](const QStringList &path) {
      const auto icon = Line(path).data(Qt::DecorationRole).value<QIcon>();
      return icon.isNull() ? QColor() : icon.pixmap(16).toImage().pixelColor(8, 8);
    };
    QCOMPARE(colorOf({u"Today"_s, u"b.example"_s, u"Page b1"_s}), QColor(Qt::red));
    QCOMPARE(colorOf({u"Today"_s, u"b.example"_s}), QColor());
    m_color = Qt::blue;
    m_page->ForgetIcons();
    QCOMPARE(colorOf({u"Today"_s, u"b.example"_s, u"Page b1"_s}), QColor(Qt::blue));
  }

  void ListsInOtherOrders() {
    auto *order = m_page->findChild<QComboBox *>(u"cboHistoryOrder"_s);
    order->setFocus();
    Press(order, Qt::Key_Down);
    QTRY_COMPARE(TreeLines(), (QStringList{u"Page a2"_s, u"Page b1"_s, u"Page a1"_s, u"Page c1"_s}));
    Press(order, Qt::Key_Down);
    QTRY_COMPARE(TreeLines(), (QStringList{u"Page a2"_s, u"Page b1"_s, u"Page a1"_s, u"Page c1"_s}));
    // The others make room, and the keyboard stays on what it was on.
    Turn(Line({u"Page a2"_s}));
    Visit(u"c"_s, u"Page c1"_s, 3, 9);
    QTRY_COMPARE(TreeLines(), (QStringList{u"Page c1"_s, u"Page a2"_s, u"Page b1"_s, u"Page a1"_s}));
    QCOMPARE(m_tree->currentIndex(), Line({u"Page a2"_s}));
  }

  // A long list is read as it is scrolled, and no further.
  void LongListsComeInPieces() {
    constexpr int Piece = THistoryModel::PieceOfPages;
    for (int i = 0; i < 4 * Piece; ++i) Visit(u"many"_s, u"Page %1"_s.arg(i), 2);
    QTRY_VERIFY(m_store->Flush());
    m_page->findChild<QComboBox *>(u"cboHistoryOrder"_s)->setFocus();
    Press(m_page->findChild<QComboBox *>(u"cboHistoryOrder"_s), Qt::Key_Down);
    QTRY_COMPARE(TreeLines().size(), Piece);
    const auto *model = qobject_cast<THistoryModel *>(m_tree->model());
    QTRY_VERIFY(model->IsAtRest());
    QCOMPARE(TreeLines().size(), Piece);
    qsizetype before = 0;
    while (std::exchange(before, TreeLines().size()) != TreeLines().size()) {
      m_tree->scrollToBottom();
      QTRY_VERIFY(model->IsAtRest());
    }
    QTRY_COMPARE(TreeLines().size(), 4 * Piece + 4);
    const QStringList all = TreeLines();
    QCOMPARE(QSet<QString>(all.begin(), all.end()).size(), all.size());
  }

  void MouseOpens_data() {
    Columns<bool, int, int, QString>("newTab", "button", "keys", "opened");
    Row("left", false, int(Qt::LeftButton), 0, u"here"_s);
    Row("left, by setting", true, int(Qt::LeftButton), 0, u"new"_s);
    Row("left with Ctrl", true, int(Qt::LeftButton), int(Qt::ControlModifier), u"back"_s);
    Row("middle", false, int(Qt::MiddleButton), 0, u"back"_s);
    Row("right", false, int(Qt::RightButton), 0, QString());
  }
  void MouseOpens() {
    QFETCH(bool, newTab);
    QFETCH(int, button);
    QFETCH(int, keys);
    QFETCH(QString, opened);
    m_settings->Set(Setting::HistoryNewWin, newTab);
    Click(Line({u"Today"_s}));
    QTRY_COMPARE(TreeLines({u"Today"_s}).size(), 2);
    QVERIFY(m_tree->isExpanded(Line({u"Today"_s})) && m_opened.isEmpty());
    Click(Line({u"Today"_s}));
    QVERIFY(!m_tree->isExpanded(Line({u"Today"_s})));
    Expand({u"Today"_s, u"b.example"_s});
    Click(Line({u"Today"_s, u"b.example"_s, u"Page b1"_s}), Qt::MouseButton(button), Qt::KeyboardModifiers(keys));
    QCOMPARE(m_opened, opened.isEmpty() ? QStringList() : QStringList(opened + u' ' + Address(u"b"_s, u"Page b1"_s)));
  }

  void Keyboard() {
    Turn(Line({u"Today"_s}));
    Press(m_tree, Qt::Key_Return);
    QTRY_COMPARE(TreeLines({u"Today"_s}).size(), 2);
    Expand({u"Today"_s, u"a.example"_s});
    // The beginning of a title.
    QTest::keyClicks(m_tree, u"page a1"_s);
    QCOMPARE(m_tree->currentIndex().data().toString(), u"Page a1"_s);
    Press(m_tree, Qt::Key_Return);
    QCOMPARE(TakeOpened(), u"here "_s + Address(u"a"_s, u"Page a1"_s));
    Press(m_tree, Qt::Key_Enter, Qt::ControlModifier);
    QCOMPARE(TakeOpened(), u"back "_s + Address(u"a"_s, u"Page a1"_s));
    Press(m_tree, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(), Address(u"a"_s, u"Page a1"_s));
    Press(m_tree, Qt::Key_F10, Qt::ShiftModifier);
    Choose("pmHistoryOpenInNewWindow");
    QCOMPARE(TakeOpened(), u"new "_s + Address(u"a"_s, u"Page a1"_s));
    Press(m_tree, Qt::Key_Delete);
    QTRY_COMPARE(TreeLines({u"Today"_s, u"a.example"_s}), QStringList(u"Page a2"_s));
    QVERIFY(m_store->Flush());
    QVERIFY(!m_store->Find(Address(u"a"_s, u"Page a1"_s)));
  }

  void MenuOfALeafAndAFolder() {
    const QStringList always{u"pmHistoryOpen"_s, u"pmHistoryDelete"_s};
    Turn(Line({u"Today"_s}));
    QCOMPARE(MenuOn(*m_tree), always);
    Choose("pmHistoryOpen");
    QTRY_COMPARE(TreeLines({u"Today"_s}).size(), 2);
    Expand({u"Today"_s, u"b.example"_s});
    Turn(Line({u"Today"_s, u"b.example"_s}));
    QCOMPARE(MenuOn(*m_tree), always);
    Turn(Line({u"Today"_s, u"b.example"_s, u"Page b1"_s}));
    QCOMPARE(MenuOn(*m_tree),
             (QStringList{u"pmHistoryOpen"_s, u"pmHistoryOpenInNewWindow"_s, u"pmHistoryOpenInBackground"_s,
                          u"pmHistoryDelete"_s, u"pmHistoryLine"_s, u"pmHistoryCopy"_s, u"pmHistoryProperties"_s}));
    const QString address = Address(u"b"_s, u"Page b1"_s);
    // The current tab, whatever the setting says.
    m_settings->Set(Setting::HistoryNewWin, true);
    for (const auto &[name, opened] : {std::pair("pmHistoryOpen", u"here "_s),
                                       {"pmHistoryOpenInNewWindow", u"new "_s},
                                       {"pmHistoryOpenInBackground", u"back "_s}}) {
      Choose(name);
      QCOMPARE(TakeOpened(), opened + address);
    }
    QGuiApplication::clipboard()->clear();
    Choose("pmHistoryCopy");
    QCOMPARE(QGuiApplication::clipboard()->text(), address);
    Choose("pmHistoryProperties");
    auto *properties = m_page->findChild<TfrmVisitProperties *>();
    QVERIFY(properties != nullptr);
    QCOMPARE(properties->findChild<QLineEdit *>(u"edtTitle"_s)->text(), u"Page b1"_s);
    QCOMPARE(properties->findChild<QLineEdit *>(u"edtAddress"_s)->text(), address);
    QCOMPARE(properties->findChild<QLineEdit *>(u"edtVisits"_s)->text(), u"2"_s);
    properties->close();
    m_page->findChild<QMenu *>(u"pmHistory"_s)->close();
    // The mouse opens it for what is below it, whatever the keyboard is on.
    QVERIFY(MenuOn(*m_tree, m_tree->viewport()->rect().bottomLeft()).isEmpty());
    QCOMPARE(MenuOn(*m_tree, m_tree->visualRect(Line({u"Yesterday"_s})).center()), always);
    m_page->findChild<QMenu *>(u"pmHistory"_s)->close();
    Turn(Line({u"Today"_s, u"b.example"_s, u"Page b1"_s}));
    QVERIFY(!MenuOn(*m_tree).isEmpty());
    Choose("pmHistoryDelete");
    QTRY_COMPARE(TreeLines({u"Today"_s}), QStringList(u"a.example"_s));
  }

  void DeletesFolders_data() {
    Columns<QStringList, bool, QStringList>("path", "isSure", "left");
    Row("day", QStringList{u"Today"_s}, true, QStringList{u"Page c1"_s});
    Row("day, thought better of", QStringList{u"Today"_s}, false,
        QStringList{u"Page a1"_s, u"Page a2"_s, u"Page b1"_s, u"Page c1"_s});
    Row("site", QStringList{u"Today"_s, u"a.example"_s}, true, QStringList{u"Page b1"_s, u"Page c1"_s});
  }
  void DeletesFolders() {
    QFETCH(QStringList, path);
    QFETCH(bool, isSure);
    Expand(path);
    Turn(Line(path));
    OnModalDialog<TfrmConfirm>([&](TfrmConfirm &dialog) {
      QVERIFY(dialog.accessibleDescription().contains(path.last()));
      isSure ? dialog.accept() : dialog.reject();
    });
    Press(m_tree, Qt::Key_Delete);
    QVERIFY(m_store->Flush());
    QFETCH(QStringList, left);
    QCOMPARE(Stored(), left);
    QTRY_COMPARE(Line(path).isValid(), !isSure);
  }

  void FindsText() {
    QVERIFY(!m_found->isVisible());
    m_store->AddVisit(u"http://title.example/"_s, u"Page a, but only in the title"_s);
    QVERIFY(m_store->Flush());
    Find(u"Page a"_s);
    QTRY_COMPARE(FoundLines(), (QStringList{u"Page a2"_s, u"Page a1"_s}));
    QVERIFY(m_found->isVisible());
    // Nothing to look for leaves what was found.
    Find(QString());
    QCOMPARE(FoundLines().size(), 2);
    // Upper and lower case count here.
    Find(u"page a"_s);
    QTRY_COMPARE(FoundLines(), QStringList(u"(Nothing found)"_s));
    m_found->setCurrentIndex(m_found->model()->index(0, 0));
    Press(m_found, Qt::Key_Return);
    Press(m_found, Qt::Key_Delete);
    QVERIFY(m_opened.isEmpty() && MenuOn(*m_found).isEmpty());
    Press(m_found, Qt::Key_Escape);
    QVERIFY(!m_found->isVisible());
  }

  // Not the same as that there is nothing.
  void TellsThatItCannotBeRead() {
    std::optional<TStoreLock> lock(std::in_place, m_store->FilePath(), TStoreLock::TKind::Unreadable);
    Find(u"Page a"_s);
    QTRY_COMPARE(FoundLines(), QStringList(m_language.Text("HISTORY", "NotRead")));
    lock.reset();
    Find(u"Page a"_s);
    QTRY_COMPARE(FoundLines(), (QStringList{u"Page a2"_s, u"Page a1"_s}));
  }

  // They are put in order on a thread, where what goes meanwhile is not forgotten.
  void SortsVeryManyResults() {
    constexpr int Count = 5'100;
    const auto address = [](int page) { return u"http://many.example/%1"_s.arg(page, 6, 10, QChar(u'0')); };
    for (int page = 0; page < Count; ++page)
      m_store->AddVisit(address(page), u"many"_s, m_midnight.addSecs(page % 500));
    QTRY_VERIFY_WITH_TIMEOUT(m_store->Flush(), 30'000);
    Find(u"many"_s);
    const QAbstractItemModel &model = *m_found->model();
    QTRY_COMPARE_WITH_TIMEOUT(model.rowCount(), Count, 30'000);
    const auto shown = [&](int row) { return model.index(row, 1).data().toString().section(u'/', -1).left(6); };
    m_found->sortByColumn(1, Qt::DescendingOrder);
    m_found->sortByColumn(1, Qt::AscendingOrder);
    QTRY_COMPARE_WITH_TIMEOUT(shown(0), u"000000"_s, 30'000);
    m_found->setCurrentIndex(model.index(7, 0));
    m_found->sortByColumn(1, Qt::DescendingOrder);
    Press(m_found, Qt::Key_Delete);
    QTRY_COMPARE_WITH_TIMEOUT(shown(0), u"005099"_s, 30'000);
    QCOMPARE(model.rowCount(), Count - 1);
    QCOMPARE(shown(Count - 1 - 7), u"000006"_s);
    QCOMPARE(shown(Count - 1 - 8), u"000008"_s);
  }

  void FindsWordsAndKnowsWhatToDoWithThem() {
    m_words->setFocus();
    QTest::keyClicks(m_words, u"EXAM pag"_s);
    QTRY_COMPARE(FoundLines().size(), 4);
    Expand({u"Today"_s, u"a.example"_s});
    Press(m_words, Qt::Key_Down);
    QTRY_VERIFY(m_found->hasFocus());
    m_found->sortByColumn(1, Qt::AscendingOrder);
    QCOMPARE(FoundLines(), (QStringList{u"Page a1"_s, u"Page a2"_s, u"Page b1"_s, u"Page c1"_s}));
    m_found->setCurrentIndex(m_found->model()->index(2, 0));
    m_found->sortByColumn(3, Qt::DescendingOrder);
    QCOMPARE(FoundLines().mid(0, 2), (QStringList{u"Page a2"_s, u"Page b1"_s}));
    // What the keyboard was on it is still on.
    Press(m_found, Qt::Key_Return);
    QCOMPARE(TakeOpened(), u"here "_s + Address(u"b"_s, u"Page b1"_s));
    Press(m_found, Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(TakeOpened(), u"back "_s + Address(u"b"_s, u"Page b1"_s));
    QVERIFY(MenuOn(*m_found).contains(u"pmHistorySort"_s));
    Choose("pmHistoryDelete");
    QTRY_COMPARE(FoundLines().size(), 3);
    QVERIFY(m_store->Flush() && !FoundLines().contains(u"Page b1"_s));
    QVERIFY(!m_store->Find(Address(u"b"_s, u"Page b1"_s)));
    QTRY_COMPARE(TreeLines(), (QStringList{u"Today"_s, u"Yesterday"_s}));
    m_words->setFocus();
    QTest::keyClicks(m_words, u" c1"_s);
    QTRY_COMPARE(FoundLines(), QStringList(u"Page c1"_s));
    m_words->selectAll();
    Press(m_words, Qt::Key_Backspace);
    QVERIFY(!m_found->isVisible());
  }

  void ClearsWhenSure() {
    const QSignalSpy cleared(m_page.get(), &THistoryPage::Forgotten);
    for (const bool isSure : {false, true}) {
      OnModalDialog<TfrmConfirm>([&](TfrmConfirm &dialog) {
        QVERIFY(dialog.accessibleDescription().contains(m_language.Global("ClearGlobalHistory")));
        isSure ? dialog.accept() : dialog.reject();
      });
      QTest::mouseClick(m_page->findChild<QToolButton *>(u"spdClearHistory"_s), Qt::LeftButton);
      QVERIFY(m_store->Flush());
      QCOMPARE(VisitCount(m_store->FilePath()), isSure ? 0 : 4);
      QCOMPARE(cleared.size(), isSure ? 1 : 0);
    }
    QTRY_VERIFY(TreeLines().isEmpty());
  }

  void Forgets_data() {
    Columns<QString, QString, QStringList>("time", "along", "left");
    Row("hour", u"rdoHour"_s, u"chkCookies"_s, QStringList{u"day"_s, u"old"_s, u"week"_s});
    Row("day", u"rdoDay"_s, u"chkTyped"_s, QStringList{u"old"_s, u"week"_s});
    Row("week", u"rdoWeek"_s, u"chkCache"_s, QStringList(u"old"_s));
    Row("all", u"rdoAll"_s, u"chkPermissions"_s, QStringList());
    Row("nothing along", u"rdoHour"_s, QString(), QStringList{u"day"_s, u"old"_s, u"week"_s});
  }
  void Forgets() {
    QFETCH(QString, time);
    QFETCH(QString, along);
    m_store->Clear();
    const QDateTime now = QDateTime::currentDateTime();
    for (const auto &[name, minutes] :
         {std::pair(u"hour"_s, 50), {u"day"_s, 23 * 60}, {u"week"_s, 6 * 24 * 60}, {u"old"_s, 8 * 24 * 60}}) {
      m_store->AddVisit(Address(u"x"_s, name), name, now.addSecs(-60 * minutes));
    }
    QVERIFY(m_store->Flush());
    QStringList others;
    const QSignalSpy cleared(m_page.get(), &THistoryPage::Forgotten);
    connect(m_page.get(), &THistoryPage::ForgetAlong, this, [&](const TForgetting &what) {
      if (what.typedAddresses) others += u"chkTyped"_s;
      if (what.cookies) others += u"chkCookies"_s;
      if (what.cache) others += u"chkCache"_s;
      if (what.permissions) others += u"chkPermissions"_s;
    });
    for (const bool isSure : {false, true}) {
      OnModalDialog<TfrmForget>([&](TfrmForget &dialog) {
        dialog.findChild<QRadioButton *>(time)->click();
        if (!along.isEmpty()) dialog.findChild<QAbstractButton *>(along)->click();
        dialog.findChild<QAbstractButton *>(isSure ? u"cmdOK"_s : u"cmdCancel"_s)->click();
      });
      QTest::mouseClick(m_page->findChild<QToolButton *>(u"spdForgetHistory"_s), Qt::LeftButton);
      QVERIFY(m_store->Flush());
      QCOMPARE(Stored().size() == 4, !isSure);
    }
    QFETCH(QStringList, left);
    QCOMPARE(Stored(), left);
    QCOMPARE(others, along.isEmpty() ? QStringList() : QStringList(along));
    QCOMPARE(cleared.size(), 1);
  }

  // One day at a time and one site of it, by the same setting as the favorites' tree, at once.
  void KeepsOneOpen() {
    Expand({u"Today"_s, u"a.example"_s});
    Expand({u"Today"_s, u"b.example"_s});
    QVERIFY(m_tree->isExpanded(Line({u"Today"_s})) && !m_tree->isExpanded(Line({u"Today"_s, u"a.example"_s})));
    Click(Line({u"Yesterday"_s}));
    QVERIFY(!m_tree->isExpanded(Line({u"Today"_s})));
    m_settings->Set(Setting::HBAutoExpand, false);
    Click(Line({u"Today"_s}));
    QVERIFY(m_tree->isExpanded(Line({u"Today"_s})) && m_tree->isExpanded(Line({u"Yesterday"_s})));
  }

  // What takes long is told, until it is done.
  void TellsThatItTakesLong() {
    auto *progress = m_page->findChild<QProgressBar *>(u"pgbHistory"_s);
    Turn(Line({u"Today"_s}));
    OnModalDialog<TfrmConfirm>([&](TfrmConfirm &dialog) { dialog.accept(); });
    std::optional<TStoreLock> lock(std::in_place, m_store->FilePath());
    QElapsedTimer clock;
    clock.start();
    Press(m_tree, Qt::Key_Delete);
    QTRY_VERIFY(progress->isVisible());
    QVERIFY(clock.elapsed() >= 1000);
    QVERIFY(m_page->findChild<QTreeView *>(u"shHistory"_s)->isEnabled());
    lock.reset();
    QTRY_VERIFY(!progress->isVisible());
    QTRY_COMPARE(TreeLines(), QStringList(u"Yesterday"_s));
  }

  void Mnemonics_data() {
    QTest::addColumn<QString>("file");
    for (const QString &name : QDir(SourceFile(QStringLiteral("Languages"))).entryList({u"*.ini"_s})) {
      QTest::newRow(qPrintable(name)) << name;
    }
  }
  void Mnemonics() {
    QFETCH(QString, file);
    TLanguage language;
    QVERIFY(language.LoadFile(SourceFile(QStringLiteral("Languages/") + file)));
    QWidget bar;
    THistoryPage page(language, *m_settings, *m_store, {});
    QStringList menu;
    for (const QAction *action : page.findChild<QMenu *>(u"pmHistory"_s)->actions()) menu.append(action->text());
    CheckLetters(menu, 7);
    CheckLetters(Captions(TfrmForget(language)), 9);
    CheckLetters(Captions(TfrmVisitProperties(language, {})), 6);
    // All of it has room in the narrowest bar, and the Tab key comes by.
    QVBoxLayout layout(&bar);
    layout.setContentsMargins(4, 4, 4, 4);
    layout.addWidget(&page);
    bar.resize(160, 500);
    bar.show();
    QVERIFY(QTest::qWaitForWindowActive(&bar));
    QCOMPARE(bar.width(), 160);
    const auto *orders = page.findChild<QComboBox *>(u"cboHistoryOrder"_s);
    QStyleOptionComboBox option;
    option.initFrom(orders);
    const QRect room =
        orders->style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, orders);
    for (int i = 0; i < orders->count(); ++i) {
      QVERIFY2(orders->fontMetrics().horizontalAdvance(orders->itemText(i)) <= room.width(),
               qPrintable(orders->itemText(i)));
    }
    QStringList order;
    page.setFocus();
    for (int i = 0; i < 7; ++i) {
      QWidget *focused = QApplication::focusWidget();
      order.append(focused->objectName());
      QVERIFY2(page.rect().contains(QRect(focused->mapTo(&page, QPoint()), focused->size())), qPrintable(order.last()));
      const auto *button = qobject_cast<QToolButton *>(focused);
      QVERIFY(button == nullptr || button->width() >= button->sizeHint().width());
      QTest::keyClick(focused, Qt::Key_Tab);
    }
    QCOMPARE(order, (QStringList{u"shHistory"_s, u"cboHistoryOrder"_s, u"edtFindHistory"_s, u"spdFindHistory"_s,
                                 u"edtFindWords"_s, u"spdClearHistory"_s, u"spdForgetHistory"_s}));
  }

 private:
  [[nodiscard]] QStringList Stored() const {
    QStringList titles;
    const auto pages = THistoryReader(m_store->FilePath()).Pages({}, THistoryOrder::LastVisit, 100);
    for (const TVisitedPage &page : *pages) titles.append(page.title);
    titles.sort();
    return titles;
  }
  [[nodiscard]] static QStringList Captions(const QWidget &dialog) {
    QStringList texts;
    for (const QAbstractButton *button : dialog.findChildren<QAbstractButton *>()) texts.append(button->text());
    for (const QLabel *label : dialog.findChildren<QLabel *>()) texts.append(label->text());
    return texts;
  }
  static void CheckLetters(const QStringList &texts, int count) {
    QSet<QKeySequence> letters;
    for (const QString &text : texts) {
      const QKeySequence key = QKeySequence::mnemonic(text);
      if (key.isEmpty()) continue;
      QVERIFY2(!letters.contains(key), qPrintable(text));
      letters.insert(key);
    }
    QCOMPARE(letters.size(), count);
  }

  TLanguage m_language;
  QDateTime m_midnight;
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_registry;
  std::unique_ptr<TSettings> m_settings;
  std::unique_ptr<THistoryStore> m_store;
  std::unique_ptr<THistoryPage> m_page;
  QTreeView *m_tree = nullptr;
  QTreeView *m_found = nullptr;
  QLineEdit *m_text = nullptr;
  QLineEdit *m_words = nullptr;
  QStringList m_opened;
  QColor m_color;  // of the pictures of pages
};

QTEST_MAIN(TestHistoryPage)
#include "test_history_page.moc"
