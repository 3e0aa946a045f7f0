#include <functional>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>

#include "config/language.h"
#include "config/registry_paths.h"
#include "search/address_bar.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "support/named_lines.h"
#include "support/shipped_files.h"
#include "support/store_trouble.h"
#include "ui/confirm_dialog.h"
#include "window/main_window_fixture.h"

using namespace Qt::StringLiterals;

// Settings that lie in the store when the program starts: what each is good for, and that a start and an end leave
// them alone.
class TestStoredSettings final : public QObject {
  Q_OBJECT

 private:
  using TCheck = std::function<void()>;

  struct TRow {
    const char *name;
    QStringList values;  // "Name=data"
    TCheck check;
  };

 private Q_SLOTS:
  void initTestCase() {
    m_f.Prepare();
    m_f.server.RoutePage("/a", "Page A");
    m_f.server.RoutePage("/b", "Page B");
  }
  void init() { m_f.Begin(); }
  void cleanup() { m_f.End(); }

  void StartAndEndLeaveThemAlone_data() {
    QTest::addColumn<QString>("state");
    for (const char *state : {"Maximized", "FullScreen", ""}) QTest::newRow(state) << QString::fromLatin1(state);
  }
  void StartAndEndLeaveThemAlone() {
    QFETCH(QString, state);
    QStringList expected;
    for (const TSetting &setting : Setting::All) {
      const QString name = QString::fromLatin1(std::visit([](const auto &row) { return row.name; }, setting));
      QString data = std::visit([](const auto &row) { return OtherThan(row); }, setting);
      if (name == u"Maximized"_s || name == u"FullScreen"_s) data = name == state ? u"1"_s : u"0"_s;
      if (name == u"LanguageFile"_s) data = u"zvdeu.ini"_s;
      if (name == u"StartupMode"_s) data = u"Blank"_s;
      Write(name, data);
      // Off at each start, and used up by this one.
      if (name == u"AutoRefresh"_s) data = u"0"_s;
      if (name == u"StartupPage"_s || name == u"CommandLine"_s) data.clear();
      expected.append(name + u'=' + data);
    }
    Write(u"of somebody else"_s, u"?"_s);
    Write(u"ZVID"_s, u"of an early version"_s);
    expected.append(u"of somebody else=?"_s);
    TZVOptions options(*m_f.store);
    const TNamedAddresses list{{u"b"_s, u"http://b.test/"_s}, {u"a"_s, u"http://a.test/?q=%s"_s}};
    QVERIFY(options.SetSearchEngines(list) && options.SetQuickSearchEntries(list) && options.SetSearchBarEntries(list));
    expected.sort();

    m_f.Open();
    QTRY_COMPARE(m_f.window->isFullScreen(), state == u"FullScreen"_s);
    QCOMPARE(m_f.window->isMaximized(), state == u"Maximized"_s);
    QVERIFY(m_f.window->close());
    m_f.window.reset();
    QStringList kept;
    for (const TRegistryValue &value : m_f.store->Values(TRegistryHive::CurrentUser, RegistryKey::CurrentVersion)) {
      kept.append(value.name + u'=' + value.data);
    }
    kept.sort();
    QCOMPARE(kept, expected);
    for (const auto &read : {options.SearchEngines(), options.QuickSearchEntries(), options.SearchBarEntries()}) {
      QCOMPARE(read, list);
    }
  }

  // What another window stores while this one runs is there when both have gone.
  void AnotherWindowsChangesStay() {
    const QStringList names{u"Left"_s,        u"Top"_s,         u"Width"_s,  u"Height"_s,
                            u"Maximized"_s,   u"FullScreen"_s,  u"ShowGo"_s, u"AutoCompleteStyle"_s,
                            u"ViewToolbar"_s, u"OpenNewAtEnd"_s};
    m_f.Open();
    TRegistryStore other(m_f.store->FilePath());
    for (const QString &name : names) {
      other.Write(TRegistryHive::CurrentUser, QString::fromLatin1(RegistryKey::CurrentVersion), name,
                  name == u"AutoCompleteStyle"_s ? u"IE4"_s : u"1"_s);
    }
    TTypedAddresses typed;
    typed.File(u"http://theirs.test/"_s);
    typed.Save(other);
    QVERIFY(TZVOptions(other).SetPopupList({u"http://theirs.test/*"_s}));
    auto *box = m_f.window->findChild<TAddressBar *>()->lineEdit();
    box->setText(m_f.server.Url(u"/a"_s));
    QTest::keyClick(box, Qt::Key_Return);
    QTRY_COMPARE_WITH_TIMEOUT(Tabs().GetActivePage()->GetLocationName(), u"Page A"_s, m_f.LoadTime);
    m_f.window.reset();
    for (const QString &name : names) {
      const QString key = QString::fromLatin1(RegistryKey::CurrentVersion);
      QCOMPARE(u'=' + name + other.Read(TRegistryHive::CurrentUser, key, name).value_or(QString()),
               u'=' + name + (name == u"AutoCompleteStyle"_s ? u"IE4"_s : u"1"_s));
    }
    QVERIFY(typed.Load(other));
    QCOMPARE(typed.List(), QStringList({m_f.server.Url(u"/a"_s), u"http://theirs.test/"_s}));
    QCOMPARE(TZVOptions(other).PopupList(), QStringList(u"http://theirs.test/*"_s));
  }

  // A store that is locked while the window opens, or all the time: nothing of it is lost, and the window works.
  void LockedStore_data() {
    Columns<bool>("atTheEnd");
    Row("while it opens", false);
    Row("to the end", true);
  }
  void LockedStore() {
    QFETCH(bool, atTheEnd);
    TZVOptions options(*m_f.store);
    options.Set(Setting::StartupMode, u"Last"_s);
    const TNamedAddresses sites{{u"url2"_s, m_f.server.Url(u"/b"_s)}, {u"url1"_s, m_f.server.Url(u"/a"_s)}};
    QVERIFY(options.SetLastOpenSites(sites) && options.SetQuickSearchEntries({{u"own"_s, u"http://own.test/%s"_s}}));
    QVERIFY(options.SetPopupList({u"http://own.test/*"_s}));
    TTypedAddresses typed;
    typed.File(u"http://own.test/"_s);
    typed.Save(*m_f.store);
    const auto contents = [](const QString &path) {
      const TRegistryStore store(path);
      QStringList lines;
      const QString version = QString::fromLatin1(RegistryKey::CurrentVersion);
      QStringList keys{QString::fromLatin1(RegistryKey::TypedUrls)};
      for (const QString &name : store.Subkeys(TRegistryHive::CurrentUser, version)) keys << version + u'\\' + name;
      // The tabs that are open by then stand there, too.
      for (const char *open : {RegistryKey::LastOpenSites, RegistryKey::OpenTabs}) keys.removeAll(QLatin1String(open));
      for (const QString &key : keys) {
        lines << key;
        for (const auto &value : store.Values(TRegistryHive::CurrentUser, key)) lines << value.name << value.data;
      }
      lines << store.Read(TRegistryHive::CurrentUser, version, u"StartupMode"_s).value_or(QString());
      return lines;
    };
    const QString path = m_f.store->FilePath();
    const QStringList before = contents(path);
    std::optional<TStoreLock> lock(std::in_place, path, TStoreLock::TKind::Unreadable);
    m_f.Open();
    // And options that nobody knows are not offered: OK would write the defaults.
    for (const bool isAsked : {false, true}) {
      if (isAsked) Action(TCommand::Options)->trigger();
      QTRY_VERIFY(QApplication::activeModalWidget() != nullptr);
      auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
      QVERIFY(box != nullptr);
      QCOMPARE(box->text(), Text("StoreNotRead"));
      box->close();
    }
    if (!atTheEnd) lock.reset();
    // Nothing that is done waits for the lock.
    QElapsedTimer timer;
    timer.start();
    Action(TCommand::OpenNewAtEnd)->trigger();
    QVERIFY(Action(TCommand::OpenNewAtEnd)->isChecked());
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
    QString told;
    if (atTheEnd) {
      OnModalDialog<TfrmConfirm>([&told](TfrmConfirm &dialog) {
        told = dialog.findChild<QLabel *>(u"lblTitle"_s)->text();
        dialog.reject();
      });
    }
    timer.start();
    m_f.window.reset();
    QVERIFY(timer.elapsed() < 9000);
    QCOMPARE(told, atTheEnd ? Text("Unwritten") : QString());
    lock.reset();
    m_f.store->Flush(1000);
    QCOMPARE(contents(path), before);
    TRegistryStore written(path);
    const QStringList kept = ToLines(TZVOptions(written).LastOpenSites());
    for (const TNamedAddress &site : sites) QCOMPARE(kept.filter(u'=' + site.address).size(), 1);
    QCOMPARE(TZVOptions(*m_f.store).Get(Setting::OpenNewAtEnd), true);
  }

  void HoldFromTheNextStart_data() {
    QTest::addColumn<int>("row");
    const QList<TRow> rows = Rows();
    for (int i = 0; i < rows.size(); ++i) QTest::newRow(rows.at(i).name) << i;
  }
  void HoldFromTheNextStart() {
    QFETCH(int, row);
    const TRow chosen = Rows().at(row);
    for (const QString &value : chosen.values) Write(value.section(u'=', 0, 0), value.section(u'=', 1));
    m_f.Open();
    chosen.check();
  }

 private:
  // A value that is not the default and makes sense.
  [[nodiscard]] static QString OtherThan(const TFlagSetting &setting) { return setting.fallback ? u"0"_s : u"1"_s; }
  [[nodiscard]] static QString OtherThan(const TIntegerSetting &setting) {
    if (setting.dynamic != nullptr) return u"420"_s;
    return QString::number(setting.fallback == 0 ? 30000 : setting.fallback == 2 ? 1 : setting.fallback + 7);
  }
  [[nodiscard]] static QString OtherThan(const TStringSetting &setting) {
    return setting.name == Setting::AutoCompleteStyle.name ? u"IE4"_s
                                                           : u"about:blank#"_s + QString::fromLatin1(setting.name);
  }

  void Write(const QString &name, const QString &data) {
    const QString key = QString::fromLatin1(RegistryKey::CurrentVersion);
    QVERIFY(m_f.store->Write(TRegistryHive::CurrentUser, key, name, data));
  }
  [[nodiscard]] TTabStrip &Tabs() const { return m_f.window->Tabs(); }
  [[nodiscard]] QAction *Action(TCommand command) const { return m_f.window->Actions()[command]; }
  [[nodiscard]] static QString Text(const char *key) {
    TLanguage english;
    return english.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini"))) ? english.Text("MAIN", key) : QString();
  }
  [[nodiscard]] const TZVPageControl &Strip() const { return *m_f.window->findChild<TZVPageControl *>(); }

  [[nodiscard]] TCheck Shows(const char *widget, bool shown) {
    return [this, widget, shown] {
      QTRY_COMPARE(m_f.window->findChild<QWidget *>(QLatin1String(widget))->isVisible(), shown);
    };
  }
  // That what is typed comes to this page.
  [[nodiscard]] TCheck Opens(const QString &text, Qt::KeyboardModifiers keys, const QString &path) {
    return [this, text, keys, path] {
      auto *box = m_f.window->findChild<TAddressBar *>()->lineEdit();
      box->setFocus();
      box->setText(text);
      QTest::keyClick(box, Qt::Key_Return, keys);
      QTRY_COMPARE_WITH_TIMEOUT(Tabs().GetActivePage()->GetLocationUrl(), m_f.server.Url(path), m_f.LoadTime);
    };
  }

  [[nodiscard]] QList<TRow> Rows() {
    const QString site = m_f.server.Url(u"/"_s);
    const QString host = site.section(u':', 0, 1) + u':';
    const QString port = QString::number(m_f.server.Port());
    const QPalette desktop = QApplication::palette();
    const QStringList own{"InactiveTabColor=1122867", "InactiveFontColor=16772829"};
    const auto colors = [this](const QColor &tab, const QColor &font) {
      return [this, tab, font] {
        QCOMPARE(Strip().InactiveTabColor(), tab);
        QCOMPARE(Strip().InactiveFontColor(), font);
      };
    };
    const auto newTab = [this](const QString &address) {
      return [this, address] {
        Tabs().GetActivePage()->Navigate(m_f.server.Url(u"/a"_s));
        QTRY_COMPARE_WITH_TIMEOUT(Tabs().GetActivePage()->GetLocationName(), u"Page A"_s, m_f.LoadTime);
        Action(TCommand::NewBlank)->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(Tabs().GetActivePage()->GetLocationUrl(), address, m_f.LoadTime);
        QCOMPARE(Tabs().TabCount(), 2);
      };
    };
    return {
        {"new tabs are blank", {"NewAction=0"}, newTab(u"about:blank"_s)},
        {"new tabs show the same page", {"NewAction=1"}, newTab(site + u'a')},
        {"a negative action counts as blank", {"NewAction=-4"}, newTab(u"about:blank"_s)},
        {"colours of the desktop", own + QStringList{"TabColorScheme=std"},
         colors(desktop.color(QPalette::Button), desktop.color(QPalette::WindowText))},
        {"colours of the desktop's highlight", own + QStringList{"TabColorScheme=rev"},
         colors(desktop.color(QPalette::Inactive, QPalette::Highlight), desktop.color(QPalette::HighlightedText))},
        {"own colours", own, colors(0x112233, 0xffeedd)},
        {"the desktop's colours as long as none is chosen", {}, colors(QColor(), QColor())},
        {"an own colour of the tabs alone", own.first(1), colors(0x112233, Qt::black)},
        {"own colours by any other name", own + QStringList{"TabColorScheme=STD"}, colors(0x112233, 0xffeedd)},
        {"short captions",
         {"LimitTitleLength=4"},
         [this] {
           Tabs().GetActivePage()->SetCaption(u"Page A"_s);
           QCOMPARE(Strip().PageCaption(Tabs().GetActivePage()), u"Page..."_s);
         }},
        {"tabs above, in rows",
         {"TabsDown=0", "MultipleLines=1"},
         [this] {
           QVERIFY(!Strip().TabsDown() && Strip().MultipleLines());
           QVERIFY(Action(TCommand::TabsAbove)->isChecked() && Action(TCommand::TabsSeveralRows)->isChecked());
           const QList<QAction *> items = m_f.window->Actions().Menu(TMenu::TabPosition)->actions();
           QCOMPARE(items.first(), Action(TCommand::TabsAbove));
         }},
        {"go", {"ShowGo=1"}, [this] { QVERIFY(Action(TCommand::Go)->isVisible()); }},
        {"no go", {}, [this] { QVERIFY(!Action(TCommand::Go)->isVisible()); }},
        {"no letters",
         {"DisableALTShortcuts=1"},
         [this] { QCOMPARE(m_f.window->menuBar()->actions().first()->text(), u"File"_s); }},
        {"no tool bar", {"ViewToolbar=0"}, Shows("pnlToolbar", false)},
        {"no address bar", {"ViewAddressBar=0"}, Shows("pnlAddress", false)},
        {"no status bar", {"ViewStatusBar=0"}, Shows("StatusBar", false)},
        {"full screen, bare",
         {"FullScreen=1"},
         [this] {
           QTRY_VERIFY(m_f.window->isFullScreen());
           QVERIFY(!m_f.window->menuBar()->isVisible() && !m_f.window->statusBar()->isVisible());
         }},
        {"full screen with menus",
         {"FullScreen=1", "FullscreenMenuBar=1"},
         [this] { QVERIFY(m_f.window->menuBar()->isVisible() && !m_f.window->statusBar()->isVisible()); }},
        {"full screen with status",
         {"FullScreen=1", "FullscreenStatusBar=1"},
         [this] { QVERIFY(!m_f.window->menuBar()->isVisible() && m_f.window->statusBar()->isVisible()); }},
        {"groups close tabs", {"HGCloseFirst=1"}, [this] { QVERIFY(Action(TCommand::CloseTabsFirst)->isChecked()); }},
        {"no blocker", {"UsePopupHalvex=0"}, [this] { QVERIFY(!Action(TCommand::UsePopupBlocker)->isChecked()); }},
        {"a style of completion that there is not",
         {"AutoCompleteStyle=nonsense"},
         [this] {
           m_f.window.reset();
           QCOMPARE(TZVOptions(*m_f.store).Get(Setting::AutoCompleteStyle), u"none"_s);
         }},
        {"last pages", {"StartupMode=Last"}, [this] { QVERIFY(Action(TCommand::StartLast)->isChecked()); }},
        {"Ctrl", {"CtrlPre=" + host, "CtrlPost=/a"}, Opens(port, Qt::ControlModifier, u"/a"_s)},
        {"Shift", {"ShiftPre=" + host, "ShiftPost=/b"}, Opens(port, Qt::ShiftModifier, u"/b"_s)},
        {"Ctrl and Shift",
         {"CtrlShiftPre=" + host, "CtrlShiftPost=/a"},
         Opens(port, Qt::ControlModifier | Qt::ShiftModifier, u"/a"_s)},
    };
  }

  TMainWindowFixture m_f;
};

int main(int argc, char **argv) {
  return RunWithEngine<TestStoredSettings>(argc, argv);
}
#include "test_stored_settings.moc"
