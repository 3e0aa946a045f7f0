#include <functional>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>

#include "config/registry_paths.h"
#include "search/address_bar.h"
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
    for (const TNamedAddresses &read :
         {options.SearchEngines(), options.QuickSearchEntries(), options.SearchBarEntries()}) {
      QCOMPARE(read, list);
    }
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
        {"no tool bar", {"ViewToolbar=0"}, Shows("ToolBar", false)},
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
