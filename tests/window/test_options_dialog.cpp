#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QRadioButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>

#include "browser/engine/certificate_exceptions.h"
#include "browser/page/permission_decisions.h"
#include "browser/strip/page_control.h"
#include "chrome/options/options_dialog.h"
#include "chrome/options/user_scripts_page.h"
#include "config/language.h"
#include "config/registry_paths.h"
#include "config/settings.h"
#include "config/shell_association.h"
#include "history/history_store.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "support/shipped_files.h"
#include "ui/confirm_dialog.h"
#include "user_scripts/user_scripts.h"

using namespace Qt::StringLiterals;

// The dialog of all settings: what each control is, what depends on what, and what OK and Cancel leave in the store.
class TestOptionsDialog final : public QObject {
  Q_OBJECT

 private:
  using TChange = std::function<void(TestOptionsDialog &)>;
  static constexpr TfrmOptions::TOffers All{true, true, true, true};

  template <typename T = QAbstractButton>
  [[nodiscard]] T &Part(const QString &name) const {
    return *m_dialog->findChild<T *>(name);
  }
  void Open(const TfrmOptions::TOffers &offers = All) {
    m_dialog = std::make_unique<TfrmOptions>(PartsIn(m_language), offers);
    m_dialog->show();
  }
  [[nodiscard]] TfrmOptions::TParts PartsIn(TLanguage &language) {
    return {language,       *m_settings,    *m_association, *m_history,
            *m_permissions, m_certificates, *m_scripts,     [this] { return m_settings->Get(Setting::AutoRefresh); }};
  }
  void OK() const { Part(u"cmdOK"_s).click(); }
  // All that the store holds, in order.
  [[nodiscard]] QStringList Stored() const {
    QStringList all;
    for (const TSetting &setting : Setting::All) {
      std::visit(
          [&](const auto &one) {
            const bool isChosen = m_settings->IsChosen(one);
            all.append(QLatin1String(one.name) + u'=' +
                       (isChosen ? QVariant(m_settings->Get(one)).toString() : u"-"_s));
          },
          setting);
    }
    return all + m_settings->Lists().PopupList().value_or(QStringList());
  }
  [[nodiscard]] static int Messages() {
    const auto all = QApplication::topLevelWidgets();
    return int(std::ranges::count_if(all, [](QWidget *one) { return qobject_cast<QMessageBox *>(one) != nullptr; }));
  }
  // The pages that are left in the tree.
  [[nodiscard]] QStringList Left() const {
    QStringList left;
    const auto &tree = Part<QTreeWidget>(u"tvOptions"_s);
    for (int i = 0; i < tree.topLevelItemCount(); ++i) {
      if (!tree.topLevelItem(i)->isHidden()) left.append(Part<QStackedWidget>(u"pcOptions"_s).widget(i)->objectName());
    }
    return left;
  }
  // What is set in the dialog, control by control.
  [[nodiscard]] QStringList Shown() const {
    QStringList shown;
    for (const QWidget *part : Part<QStackedWidget>(u"pcOptions"_s).findChildren<QWidget *>()) {
      if (part->objectName().startsWith(u"qt_"_s)) continue;
      if (const auto *button = qobject_cast<const QAbstractButton *>(part);
          button != nullptr && button->isCheckable()) {
        shown.append(part->objectName() + QString::number(int(button->isChecked())));
      } else if (const auto *list = qobject_cast<const QListWidget *>(part)) {
        for (int row = 0; row < list->count(); ++row) {
          shown.append(list->item(row)->text() + QString::number(int(list->item(row)->checkState())) +
                       QString::number(int(row == list->currentRow() && part->objectName() == u"lvLanguages"_s)));
        }
      } else if (const auto *choice = qobject_cast<const QComboBox *>(part)) {
        shown.append(choice->currentText());
      } else if (const auto *field = qobject_cast<const QLineEdit *>(part)) {
        shown.append(part->objectName() + field->text());
      }
    }
    return shown;
  }

 private Q_SLOTS:
  void initTestCase() {
    UseShippedLanguages();
    QVERIFY(m_language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini"))));
  }
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<TRegistryStore>(m_folder->filePath(u"registry.sqlite"_s));
    m_settings = std::make_unique<TSettings>(*m_store);
    m_association = std::make_unique<TShellAssociation>(*m_store);
    m_history = std::make_unique<THistoryStore>(m_folder->filePath(u"history.sqlite"_s));
    m_permissions = std::make_unique<TPermissionDecisions>(nullptr);
    m_permissions->KeepIn(*m_store);
    m_certificates = {};
    m_scripts = std::make_unique<TUserScripts>(*m_settings);
  }
  void cleanup() {
    m_dialog.reset();
    m_scripts.reset();
    m_permissions.reset();
    m_history.reset();
    m_association.reset();
    m_settings.reset();
    m_store.reset();
  }

  void Boxes_data() {
    Columns<QString, QString>("box", "setting");
    const auto row = [](const char *box, const char *setting) {
      Row(box, QString::fromLatin1(box), QString::fromLatin1(setting));
    };
    row("chkAllowMultiInstance", "AllowMultiInstance");
    row("chkMinToTray", "MinToTray");
    row("chkHBAutoExpand", "HBAutoExpand");
    row("chkDisableAltShortcuts", "DisableALTShortcuts");
    row("chkToolbarShowColor", "ToolbarShowColor");
    row("chkVersionCheck", "VersionCheck");
    row("chkLoadBHOs", "LoadBHOs");
    row("chkMultipleLines", "MultipleLines");
    row("chkTabsDown", "TabsDown");
    row("chkOpenInFront", "OpenNewInForeground");
    row("chkHalvexGroupsCloseOthersFirst", "HGCloseFirst");
    row("chkOpenNewAtEnd", "OpenNewAtEnd");
    row("chkUsePopupHalvex", "UsePopupHalvex");
    row("chkShowGo", "ShowGo");
    row("chkAddressNewWin", "AddressNewWin");
    row("chkConfirmCloseAll", "ConfirmCloseAll");
    row("chkConfirmShutdown", "ConfirmShutdown");
    row("chkPopupHalvexNotify", "PopupHalvexNotify");
    row("chkBreakFavorites", "BreakFavorites");
    row("chkUseCustomIcons", "UseCustomIcons");
    row("chkShowOpenAllFavorites", "ShowOpenAllFavorites");
    row("chkDefaultBrowser", "AskDefaultBrowser");
    row("chkViewToolbar", "ViewToolbar");
    row("chkViewAddressBar", "ViewAddressBar");
    row("chkViewLinksBar", "ViewLinksBar");
    row("chkViewStatusBar", "ViewStatusBar");
    row("chkViewHalvexBar", "ViewHalvexBar");
    row("chkFullscreenMenuBar", "FullscreenMenuBar");
    row("chkFullscreenStatusBar", "FullscreenStatusBar");
    row("chkDownloadAsk", "DownloadAsk");
    row("chkFlyswatEnabled", "FlyswatEnabled");
    row("chkFlyswatShowLinks", "FlyswatShowLinks");
  }
  // One box changes one setting, is shown as it was left, and does nothing without OK.
  void Boxes() {
    QFETCH(QString, box);
    QFETCH(QString, setting);
    Open();
    OK();
    const QStringList before = Stored();
    Open();
    const bool was = Part(box).isChecked();
    Part(box).toggle();
    Part(u"cmdCancel"_s).click();
    QCOMPARE(Stored(), before);
    Open();
    QCOMPARE(Part(box).isChecked(), was);
    Part(box).toggle();
    OK();
    QStringList changed;
    for (const QString &line : Stored()) {
      if (!before.contains(line)) changed.append(line.section(u'=', 0, 0));
    }
    QCOMPARE(changed, QStringList(setting));
    Open();
    QCOMPARE(Part(box).isChecked(), !was);
  }

  void OtherControls_data() {
    Columns<TChange, QStringList>("change", "settings");
    const auto row = [](const char *name, const TChange &change, const QStringList &settings) {
      Row(name, change, settings);
    };
    const auto press = [](const char *button) {
      return [button](TestOptionsDialog &t) { t.Part(QLatin1String(button)).click(); };
    };
    const auto tick = [](const char *list, int index) {
      return [list, index](TestOptionsDialog &t) {
        QListWidgetItem *item = t.Part<QListWidget>(QLatin1String(list)).item(index);
        item->setCheckState(item->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
      };
    };
    const auto type = [](const char *field, const char *text) {
      return
          [field, text](TestOptionsDialog &t) { t.Part<QLineEdit>(QLatin1String(field)).setText(QLatin1String(text)); };
    };
    const auto spin = [](const char *box, int value) {
      return [box, value](TestOptionsDialog &t) { t.Part<QSpinBox>(QLatin1String(box)).setValue(value); };
    };
    row("blank", press("radNewActionBlank"), {u"NewAction=0"_s});
    row("current", press("radNewActionCurrent"), {u"NewAction=1"_s});
    row("in the box", press("rdoIE4AC"), {u"AutoCompleteStyle=IE4"_s});
    row("no completion", press("rdoNoneAC"), {u"AutoCompleteStyle=none"_s});
    row("button colours", press("radColorStandard"), {u"TabColorScheme=std"_s});
    row("title colours", press("radColorReverse"), {u"TabColorScheme=rev"_s});
    row("favorites", tick("clbNewTabs", 0), {u"FavoritesNewWin=false"_s});
    row("history", tick("clbNewTabs", 1), {u"HistoryNewWin=false"_s});
    row("search", tick("clbNewTabs", 2), {u"SearchNewWin=false"_s});
    row("links", tick("clbNewTabs", 3), {u"LinksNewWin=false"_s});
    row("address", tick("clbNewTabs", 4), {u"AddressNewWin=true"_s});
    row("quick search", tick("clbNewTabs", 5), {u"QuickSearchNewWin=false"_s});
    row("last", press("rdoStartupLast"), {u"StartupMode=Last"_s});
    row("blank start", press("rdoStartupBlank"), {u"StartupMode=Blank"_s});
    row("Ctrl", type("edtCtrlPre", "a"), {u"CtrlPre=a"_s});
    row("Ctrl behind", type("edtCtrlPost", "b"), {u"CtrlPost=b"_s});
    row("Shift", type("edtShiftPre", "c"), {u"ShiftPre=c"_s});
    row("Shift behind", type("edtShiftPost", "d"), {u"ShiftPost=d"_s});
    row("both", type("edtCtrlShiftPre", "e"), {u"CtrlShiftPre=e"_s});
    row("both behind", type("edtCtrlShiftPost", ""), {u"CtrlShiftPost="_s});
    row("limit", spin("spnMaxTitle", 12), {u"LimitTitleLength=12"_s});
    row("no limit", press("chkLimitTitles"), {u"LimitTitleLength=0"_s});
    row("downloads", type("edtDownloadFolder", "/tmp"), {u"DownloadFolder=/tmp"_s});
    row("downloads, after a question",
        [](TestOptionsDialog &t) {
          t.m_settings->Set(Setting::LastDownloadFolder, u"/var"_s);
          t.Part<QLineEdit>(u"edtDownloadFolder"_s).setText(u"/tmp"_s);
        },
        {u"DownloadFolder=/tmp"_s, u"LastDownloadFolder="_s});
    row("auto refresh", [](TestOptionsDialog &t) { t.Part<QComboBox>(u"cboAutoRefresh"_s).setCurrentIndex(3); },
        {u"AutoRefresh=60000"_s});
    row("no sleep", spin("spnSleepMinutes", 0), {u"SleepMinutes=0"_s});
    row("history for ever", spin("spnHistoryDays", 0), {u"HistoryDays=0"_s});
  }
  void OtherControls() {
    QFETCH(TChange, change);
    QFETCH(QStringList, settings);
    Open();
    OK();
    const QStringList before = Stored();
    Open();
    change(*this);
    const QStringList shown = Shown();
    OK();
    QStringList changed;
    for (const QString &line : Stored()) {
      if (!before.contains(line)) changed.append(line);
    }
    QCOMPARE(changed, settings);
    Open();
    QCOMPARE(Shown(), shown);
  }

  // Who follows a setting finds what was written before it, and not yet what comes later.
  void OrderOfWriting() {
    const QString script = QLatin1String(RegistryKey::BrowserHelperObjects) + u"\\a.js"_s;
    QVERIFY(m_store->CreateKey(TRegistryHive::CurrentUser, script));
    Open();
    Part<QTreeWidget>(u"lvScripts"_s).topLevelItem(0)->setCheckState(0, Qt::Unchecked);
    for (const char *box : {"chkMinToTray", "radColorStandard"}) Part(QLatin1String(box)).click();
    QStringList order;
    QStringList seen;
    connect(m_settings.get(), &TSettings::Changed, m_dialog.get(), [&](const char *name) {
      order.append(QLatin1String(name));
      if (order.last() == u"LoadBHOs"_s && !m_scripts->Entries().first().isOn) seen.append(u"scripts"_s);
      if (order.last() == u"TabColorScheme"_s && m_settings->Get(Setting::MinToTray)) seen.append(u"tray"_s);
    });
    connect(m_dialog.get(), &TfrmOptions::PopupListWritten, m_dialog.get(), [&] { order.append(u"pop-ups"_s); });
    OK();
    const QStringList names{u"VersionCheck"_s,  u"LoadBHOs"_s,          u"ConfirmCloseAll"_s, u"DisableALTShortcuts"_s,
                            u"NewAction"_s,     u"AutoCompleteStyle"_s, u"TabColorScheme"_s,  u"HGCloseFirst"_s,
                            u"HBAutoExpand"_s,  u"MinToTray"_s,         u"pop-ups"_s,         u"AllowMultiInstance"_s,
                            u"StartupMode"_s,   u"FavoritesNewWin"_s,   u"TabsDown"_s,        u"CtrlPre"_s,
                            u"CtrlShiftPost"_s, u"AskDefaultBrowser"_s, u"LimitTitleLength"_s};
    order.removeIf([&](const QString &name) { return !names.contains(name); });
    QCOMPARE(order, names);
    QCOMPARE(seen, QStringList({u"scripts"_s, u"tray"_s}));
  }

  // Numbers that somebody else has stored and that are beyond the boxes.
  void LargeNumbers() {
    const std::pair<const TIntegerSetting *, int> numbers[] = {
        {&Setting::LimitTitleLength, 5000}, {&Setting::SleepMinutes, 20000}, {&Setting::HistoryDays, 40000}};
    for (const auto &[setting, number] : numbers) m_settings->Set(*setting, number);
    Open();
    OK();
    for (const auto &[setting, number] : numbers) QCOMPARE(m_settings->Get(*setting), number);
  }

  // A list that the store does not take is told of.
  void ScriptsThatCannotBeKept() {
    const QString script = QLatin1String(RegistryKey::BrowserHelperObjects) + u"\\a.js"_s;
    QVERIFY(m_store->CreateKey(TRegistryHive::CurrentUser, script));
    TRegistryStore store(m_store->FilePath(), TRegistryStore::TReadOnly());
    TSettings settings(store);
    TUserScripts scripts(settings);
    for (const bool isRemoved : {false, true}) {
      QWidget window;
      auto *page = new TUserScriptsPage(m_language, scripts, &window);
      page->Write();
      QVERIFY(window.findChild<QMessageBox *>() == nullptr);
      auto *row = page->findChild<QTreeWidget *>()->topLevelItem(0);
      isRemoved ? row->setSelected(true) : row->setCheckState(0, Qt::Unchecked);
      if (isRemoved) page->findChild<QAbstractButton *>(u"btnRemoveScript"_s)->click();
      page->Write();
      QTRY_COMPARE(Messages(), 1);
      OnModalDialog<QMessageBox>([](QMessageBox &box) { box.accept(); });
      QTRY_COMPARE(Messages(), 0);
    }
  }

  // Colours that nobody has chosen stay so: the strip goes on following the desktop.
  void Colours() {
    Open();
    OK();
    QVERIFY(!m_settings->IsChosen(Setting::InactiveTabColor));
    m_settings->Set(Setting::InactiveTabColor, 0x102030);
    Open();
    QVERIFY(Part<QWidget>(u"pnlCustomColors"_s).isVisibleTo(&Part<QWidget>(u"tsColors"_s)));
    QCOMPARE(Part<TZVPageControl>(u"pg"_s).InactiveTabColor(), QColor(0x10, 0x20, 0x30));
    Part(u"radColorStandard"_s).click();
    QVERIFY(!Part<QWidget>(u"pnlCustomColors"_s).isVisibleTo(&Part<QWidget>(u"tsColors"_s)));
    QCOMPARE(Part<TZVPageControl>(u"pg"_s).InactiveTabColor(), QApplication::palette().color(QPalette::Button));
    OK();
    QCOMPARE(m_settings->Get(Setting::InactiveTabColor), 0x102030);
    auto &preview = Part<TZVPageControl>(u"pg"_s);
    const QString front = preview.PageCaption(preview.Page(0));
    preview.SetActivePage(preview.Page(1));
    QCOMPARE(preview.PageCaption(preview.Page(1)), front);
    QVERIFY(preview.PageCaption(preview.Page(0)) != front);
  }

  void StartWithAGroup() {
    Open();
    const auto isOpen = [this] {
      return Part<QLineEdit>(u"edtStartupHalvexGroup"_s).isEnabled() && Part(u"cmdStartHalvexGroup"_s).isEnabled();
    };
    for (const auto &[mode, open] :
         {std::pair(u"Home"_s, false), {u"Last"_s, false}, {u"Blank"_s, true}, {u"HalvexGroup"_s, true}}) {
      Part(u"rdoStartup"_s + mode).click();
      QCOMPARE(isOpen(), open);
    }
    // What cannot be opened is not taken; the association is changed by then, and nothing else is.
    QListWidgetItem *http = Part<QListWidget>(u"clbDefaultBrowser"_s).item(1);
    QCOMPARE(http->checkState(), Qt::Unchecked);
    http->setCheckState(Qt::Checked);
    Part(u"chkConfirmShutdown"_s).setChecked(true);
    const QStringList before = Stored();
    for (const QString &path : {QString(), m_folder->filePath(u"none.hgp"_s)}) {
      Part<QLineEdit>(u"edtStartupHalvexGroup"_s).setText(path);
      OnModalDialog<QDialog>([](QDialog &message) { message.accept(); });
      OK();
      QTRY_VERIFY(QApplication::activeModalWidget() != nullptr);
      QTRY_VERIFY(m_dialog->findChild<QMessageBox *>() == nullptr);
      QVERIFY(m_dialog->isVisible());
      QVERIFY(Part<QWidget>(u"tsStartup"_s).isVisible());
      QVERIFY(m_association->IsOurs(u"http"_s) && !m_association->IsOurs(u"https"_s));
      QCOMPARE(Stored(), before);
    }
    QFile group(m_folder->filePath(u"a.hgp"_s));
    QVERIFY(group.open(QIODevice::WriteOnly));
    Part<QLineEdit>(u"edtStartupHalvexGroup"_s).setText(group.fileName());
    OK();
    QCOMPARE(m_settings->Get(Setting::StartupMode), u"HalvexGroup"_s);
    QCOMPARE(m_settings->Get(Setting::StartupHalvexGroup), group.fileName());
    Open();
    QVERIFY(Part<QListWidget>(u"clbDefaultBrowser"_s).item(1)->checkState() == Qt::Checked);
  }

  // What would take pages away that are there asks before; nothing is written then but the association.
  void ShorterHistory() {
    m_history->AddVisit(u"http://old.example/"_s, u"Old"_s, QDateTime::currentDateTime().addDays(-20));
    QVERIFY(m_history->Flush());
    for (const bool isSure : {false, true}) {
      Open();
      const QStringList before = Stored();
      Part<QSpinBox>(u"spnHistoryDays"_s).setValue(7);
      OnModalDialog<TfrmConfirm>([isSure](TfrmConfirm &dialog) { isSure ? dialog.accept() : dialog.reject(); });
      OK();
      QCOMPARE(m_dialog->isVisible(), !isSure);
      QCOMPARE(Stored() == before, !isSure);
      QVERIFY(isSure || Part<QWidget>(u"tsHistory"_s).isVisible());
    }
    // Not where there is nothing to decide.
    Open();
    OK();
    QVERIFY(!m_dialog->isVisible());
    QCOMPARE(m_settings->Get(Setting::HistoryDays), 7);
  }

  // What cannot take downloads is not taken, with all the rest.
  void DownloadFolder() {
    Open();
    const QStringList before = Stored();
    for (const QString &folder : {m_folder->filePath(u"none"_s), m_folder->filePath(u"registry.sqlite"_s), u"."_s}) {
      Part<QLineEdit>(u"edtDownloadFolder"_s).setText(folder);
      OnModalDialog<QMessageBox>([](QMessageBox &box) { box.accept(); });
      OK();
      QTRY_VERIFY(QApplication::activeModalWidget() != nullptr);
      QTRY_VERIFY(m_dialog->findChild<QMessageBox *>() == nullptr);
      QVERIFY(m_dialog->isVisible() && Part<QWidget>(u"tsDownloads"_s).isVisible());
      QCOMPARE(Stored(), before);
    }
  }

  // What was decided about sites, and let through for this run, can be taken out; nothing holds before OK.
  void TakenOut() {
    const QUrl site(u"https://a.test:8443"_s);
    m_permissions->Remember(site, TPermission::Camera, TPermissionDecision::Allowed);
    m_permissions->Remember(site, TPermission::Location, TPermissionDecision::Refused);
    m_permissions->Remember(QUrl(u"https://b.test"_s), TPermission::Scripts, TPermissionDecision::RefusedForNow);
    m_certificates.Add(u"bad.test"_s);
    m_certificates.Add(u"worse.test"_s);
    for (const bool isKept : {false, true}) {
      Open();
      auto &permissions = *Part<QWidget>(u"tsPermissions"_s).findChild<QTreeWidget *>();
      QStringList rows;
      for (int row = 0; row < permissions.topLevelItemCount(); ++row) {
        const QTreeWidgetItem &item = *permissions.topLevelItem(row);
        rows.append(QStringList{item.text(0), item.text(1), item.text(2)}.join(u'|'));
      }
      QCOMPARE(rows, QStringList({u"a.test:8443|Know where you are|Refused"_s, u"a.test:8443|Use the camera|Allowed"_s,
                                  u"b.test|Run scripts|Refused for now"_s}));
      auto &remove = *Part<QWidget>(u"tsPermissions"_s).findChild<QAbstractButton *>(u"btnRemove"_s);
      QVERIFY(!remove.isEnabled());
      permissions.setCurrentItem(permissions.topLevelItem(1));
      remove.click();
      QCOMPARE(permissions.topLevelItemCount(), 2);
      Part<QWidget>(u"tsCertificates"_s).findChild<QAbstractButton *>(u"btnRemoveAll"_s)->click();
      QCOMPARE(m_permissions->All().size(), 3);
      QCOMPARE(m_certificates.Hosts().size(), 2);
      Part(isKept ? u"cmdOK"_s : u"cmdCancel"_s).click();
      QCOMPARE(m_permissions->All().size(), isKept ? 2 : 3);
    }
    QCOMPARE(m_permissions->Find(site, TPermission::Camera), TPermissionDecision::Ask);
    QCOMPARE(m_permissions->Find(site, TPermission::Location), TPermissionDecision::Refused);
    QVERIFY(m_certificates.Hosts().isEmpty() && m_certificates.IsTakenBack(u"Bad.test"_s));
  }

  // The search that comes first is the one for words; the others keep their order.
  void Searches() {
    TZVOptions &lists = m_settings->Lists();
    QVERIFY(lists.SetQuickSearchEntries({{u"a"_s, u"http://a.test/%s"_s}, {u"b"_s, {}}, {u"c"_s, u"c"_s}}));
    QVERIFY(lists.SetSearchBarEntries({{u"Panel"_s, u"http://panel.test/"_s}}));
    Open();
    QSignalSpy written(m_dialog.get(), &TfrmOptions::SearchesWritten);
    OK();
    QCOMPARE(written.size(), 0);
    QVERIFY(!m_settings->IsChosen(Setting::SearchBar));
    Open();
    QSignalSpy writtenNow(m_dialog.get(), &TfrmOptions::SearchesWritten);
    Part<QListWidget>(u"lvSearchDefault"_s).setCurrentRow(2);
    QCOMPARE(Part<QListWidget>(u"lvSearchDefault"_s).item(0)->toolTip(), u"<qt>http://a.test/%s</qt>"_s);
    // The panel opens the first of its list while nothing is chosen.
    QCOMPARE(Part<QComboBox>(u"cboSearchBar"_s).currentIndex(), 1);
    Part<QComboBox>(u"cboSearchBar"_s).setCurrentIndex(0);
    OK();
    QCOMPARE(writtenNow.size(), 1);
    QStringList names;
    const TNamedAddresses entries = lists.QuickSearchEntries().value_or(TNamedAddresses());
    for (const TNamedAddress &entry : entries) names.append(entry.name + entry.address);
    QCOMPARE(names, QStringList({u"cc"_s, u"ahttp://a.test/%s"_s, u"b"_s}));
    QCOMPARE(m_settings->Get(Setting::SearchBar), u"zarvela:search"_s);
    // One that somebody else has given another address meanwhile is not the one that was chosen.
    Open();
    Part<QListWidget>(u"lvSearchDefault"_s).setCurrentRow(2);
    const TNamedAddresses others{{u"c"_s, u"c"_s}, {u"a"_s, u"http://a.test/%s"_s}, {u"b"_s, u"other"_s}};
    QVERIFY(lists.SetQuickSearchEntries(others));
    OK();
    QCOMPARE(lists.QuickSearchEntries(), others);
  }

  // A language is only chosen when it is another one, and the user is told when it comes.
  void AnotherLanguage() {
    Open();
    OK();
    QVERIFY(!m_settings->IsChosen(Setting::LanguageFile));
    QCOMPARE(Messages(), 0);
    for (const QString &file : {u"zvdeu.ini"_s, u"zveng.ini"_s}) {
      Open();
      auto &list = Part<QListWidget>(u"lvLanguages"_s);
      for (int row = 0; row < list.count(); ++row) {
        if (list.item(row)->data(Qt::UserRole) == file) list.setCurrentRow(row);
      }
      OK();
      QCOMPARE(m_settings->Get(Setting::LanguageFile), file);
      QCOMPARE(m_language.FileName(), file);
      QCOMPARE(Messages(), 1);
      OnModalDialog<QMessageBox>([&](QMessageBox &box) { box.accept(); });
      QTRY_COMPARE(Messages(), 0);
    }
  }

  void PopupList() {
    m_settings->Lists().SetPopupList({u"*ads*"_s, u"b.test"_s});
    Open();
    auto &list = Part<QListWidget>(u"lvPopupHalvex"_s);
    list.clearSelection();
    list.setCurrentItem(nullptr);
    Part(u"btnEdit"_s).click();
    Part(u"btnDelete"_s).click();
    QCOMPARE(list.count(), 2);
    list.setCurrentRow(0);
    Part(u"btnDelete"_s).click();
    Part(u"btnInsert"_s).click();
    auto *editor = list.findChild<QLineEdit *>();
    QVERIFY(editor != nullptr);
    QCOMPARE(editor->text(), m_language.Global("NewItem"));
    editor->setText(u"c.test"_s);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(list.item(1)->text(), u"c.test"_s);
    QSignalSpy written(m_dialog.get(), &TfrmOptions::PopupListWritten);
    // One that is still being typed counts.
    list.setCurrentRow(1);
    Part(u"btnEdit"_s).click();
    list.findChild<QLineEdit *>()->setText(u"d.test"_s);
    OK();
    QCOMPARE(written.size(), 1);
    QCOMPARE(m_settings->Lists().PopupList(), QStringList({u"b.test"_s, u"d.test"_s}));
    Open();
    while (Part<QListWidget>(u"lvPopupHalvex"_s).count() > 0) {
      Part<QListWidget>(u"lvPopupHalvex"_s).setCurrentRow(0);
      QTest::keyClick(&Part<QListWidget>(u"lvPopupHalvex"_s), Qt::Key_Delete);
    }
    OK();
    QCOMPARE(m_settings->Lists().PopupList(), QStringList());
  }

  void MirroredRows() {
    // Somebody else may store anything.
    QVERIFY(m_settings->Store().Write(TRegistryHive::CurrentUser, QLatin1String(RegistryKey::CurrentVersion),
                                      u"NewAction"_s, u"7"_s));
    Open();
    QVERIFY(Part<QRadioButton>(u"radNewActionHome"_s).isChecked());
    QListWidgetItem *row = Part<QListWidget>(u"clbNewTabs"_s).item(4);
    Part(u"chkAddressNewWin"_s).setChecked(true);
    QCOMPARE(row->checkState(), Qt::Checked);
    row->setCheckState(Qt::Unchecked);
    QVERIFY(!Part(u"chkAddressNewWin"_s).isChecked());
    Part(u"chkFlyswatEnabled"_s).setChecked(false);
    QVERIFY(!Part(u"chkFlyswatShowLinks"_s).isVisibleTo(&Part<QWidget>(u"tsFlyswat"_s)));
    Part(u"chkLimitTitles"_s).setChecked(false);
    QVERIFY(!Part<QSpinBox>(u"spnMaxTitle"_s).isEnabled());
  }

  void TreeAndSearch() {
    Open();
    auto &tree = Part<QTreeWidget>(u"tvOptions"_s);
    auto &pages = Part<QStackedWidget>(u"pcOptions"_s);
    QCOMPARE(tree.topLevelItemCount(), pages.count());
    for (int i = 0; i < pages.count(); ++i) {
      tree.setCurrentItem(tree.topLevelItem(i));
      QCOMPARE(pages.currentIndex(), i);
    }
    auto &words = Part<QLineEdit>(u"edtFindOptions"_s);
    words.setText(u"ZARVELA ENDS"_s);
    QCOMPARE(Left(), QStringList(u"tsConfirmation"_s));
    QCOMPARE(pages.currentWidget()->objectName(), u"tsConfirmation"_s);
    const auto ground = [this](const QString &box) {
      return Part(box).grab().toImage().pixelColor(Part(box).width() - 2, 2);
    };
    QVERIFY(ground(u"chkConfirmShutdown"_s) != ground(u"chkConfirmCloseAll"_s));
    words.setFocus();
    QTest::keyClick(&words, Qt::Key_Return);
    QVERIFY(m_dialog->isVisible());
    words.clear();
    QCOMPARE(ground(u"chkConfirmShutdown"_s), ground(u"chkConfirmCloseAll"_s));
    for (int i = 0; i < pages.count(); ++i) QVERIFY(!tree.topLevelItem(i)->isHidden());
  }

  void Found_data() {
    Columns<QString, QString, QString>("words", "page", "part");
    const auto row = [](const char *words, const char *page, const char *part) {
      Row(words, QString::fromUtf8(words), QString::fromLatin1(page), QString::fromLatin1(part));
    };
    row("every 5 MIN", "tsBrowserTabs", "cboAutoRefresh");
    row("they do not sleep", "tsBrowserTabs", "spnSleepMinutes");
    row("http addresses", "tsDefBrowser", "clbDefaultBrowser");
    row("Decision", "tsPermissions", "lvRows");
    row("b.test", "tsPermissions", "lvRows");
    row("x&y.test", "tsPopupHalvex", "lvPopupHalvex");
    row("http://www.", "tsAddressCompletion", "edtCtrlPre");
    row("place of none", "tsDownloads", "edtDownloadFolder");
    row("caption…", "tsColors", "btnGetFontColor");
    row("on no page at all", "", "");
  }
  // By all that can be read on a page, which is marked there.
  void Found() {
    QFETCH(QString, words);
    QFETCH(QString, page);
    QFETCH(QString, part);
    m_settings->Set(Setting::SleepMinutes, 0);
    m_settings->Lists().SetPopupList({u"*x&y.test*"_s});
    m_permissions->Remember(QUrl(u"https://b.test"_s), TPermission::Camera, TPermissionDecision::Allowed);
    Open();
    auto &field = Part<QLineEdit>(u"edtFindOptions"_s);
    Part<QLineEdit>(u"edtDownloadFolder"_s).setPlaceholderText(u"Place of none"_s);
    const auto ground = [&] {
      auto &control = *Part<QWidget>(page).findChild<QWidget *>(part);
      return control.grab().toImage().pixelColor(control.width() / 2, control.height() - 4);
    };
    if (page.isEmpty()) {
      field.setText(words);
      QCOMPARE(Left(), QStringList());
      return;
    }
    Part<QStackedWidget>(u"pcOptions"_s).setCurrentWidget(&Part<QWidget>(page));
    const QColor plain = ground();
    field.setText(words);
    QCOMPARE(Left(), QStringList(page));
    QVERIFY(ground() != plain);
    field.clear();
    QCOMPARE(ground(), plain);
    // Nothing is found in what is hidden.
    if (page != u"tsColors"_s) return;
    Part(u"radColorStandard"_s).click();
    field.setText(words);
    QCOMPARE(Left(), QStringList());
  }

  void WhatIsNotHereIsNotShown() {
    Open({});
    for (const char *box : {"chkMinToTray", "chkVersionCheck", "chkLoadBHOs"}) {
      QVERIFY(!Part(QLatin1String(box)).isVisibleTo(&Part<QWidget>(u"tsGeneral"_s)));
    }
    for (const QString &words : {QString(), u"a"_s}) {
      Part<QLineEdit>(u"edtFindOptions"_s).setText(words);
      for (const char *page : {"tsScripts", "tsFlyswat"}) {
        const int place = Part<QStackedWidget>(u"pcOptions"_s).indexOf(&Part<QWidget>(QLatin1String(page)));
        QVERIFY(Part<QTreeWidget>(u"tvOptions"_s).topLevelItem(place)->isHidden());
      }
    }
    OK();
    QVERIFY(!m_settings->IsChosen(Setting::MinToTray) && !m_settings->IsChosen(Setting::VersionCheck));
  }

  void Languages_data() {
    QTest::addColumn<QString>("file");
    for (const TLanguageFile &file : TLanguage::Available()) QTest::newRow(qPrintable(file.name)) << file.name;
  }
  // On each page a letter leads to one place, nothing is left untranslated, and all has room in a small window.
  void Languages() {
    QFETCH(QString, file);
    TLanguage language;
    QVERIFY(language.LoadFile(SourceFile(QStringLiteral("Languages/") + file)));
    TfrmOptions dialog(PartsIn(language), All);
    dialog.show();
    QVERIFY2(dialog.width() <= 800 && dialog.height() <= 560, qPrintable(QString::number(dialog.width())));
    auto *pages = dialog.findChild<QStackedWidget *>(u"pcOptions"_s);
    for (int i = 0; i < pages->count(); ++i) {
      pages->setCurrentIndex(i);
      QHash<QKeySequence, QString> letters;
      for (const QWidget *part : dialog.findChildren<QWidget *>()) {
        const QString text = part->property("text").toString();
        QVERIFY2(!text.contains(u"__"_s) && !text.contains(u"UNDEFINED"_s), qPrintable(text));
        const auto *label = qobject_cast<const QLabel *>(part);
        if (label != nullptr && label->buddy() == nullptr) continue;
        const QKeySequence key = QKeySequence::mnemonic(text);
        if (key.isEmpty() || !part->isVisible()) continue;
        QVERIFY2(!letters.contains(key),
                 qPrintable(u"%1: %2 and %3"_s.arg(pages->currentWidget()->objectName(), letters.value(key), text)));
        letters.insert(key, text);
      }
    }
    auto *area = dialog.findChild<QWidget *>(u"scrOptions"_s);
    QVERIFY2(pages->width() <= area->width(), qPrintable(u"%1 in %2"_s.arg(pages->width()).arg(area->width())));
  }

 private:
  TLanguage m_language;
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_store;
  std::unique_ptr<TSettings> m_settings;
  std::unique_ptr<TShellAssociation> m_association;
  std::unique_ptr<THistoryStore> m_history;
  std::unique_ptr<TPermissionDecisions> m_permissions;
  TCertificateExceptions m_certificates;
  std::unique_ptr<TUserScripts> m_scripts;
  std::unique_ptr<TfrmOptions> m_dialog;
};

QTEST_MAIN(TestOptionsDialog)
#include "test_options_dialog.moc"
