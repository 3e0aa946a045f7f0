#include <functional>
#include <QSpinBox>

#include "browser/tabs/home_page.h"
#include "ui/confirm_dialog.h"
#include "window/options_fixture.h"

using namespace Qt::StringLiterals;

// What each control of the dialog is, and what OK and Cancel leave in the store, in which order.
class TestOptionsDialog final : public QObject, private TOptionsFixture {
  Q_OBJECT

 private:
  using TChange = std::function<void(TestOptionsDialog &)>;

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() { Begin(); }
  void cleanup() { End(); }

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
    row("chkContentImages", "Display Inline Images");
    row("chkContentVideos", "Display Inline Videos");
    row("chkContentSounds", "Play_Background_Sounds");
    row("chkContentAnimations", "Play_Animations");
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
    row("home page", type("edtHomePage", "http://home.test/"), {u"Start Page=http://home.test/"_s});
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
          t.settings->Set(Setting::LastDownloadFolder, u"/var"_s);
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
    QVERIFY(store->CreateKey(TRegistryHive::CurrentUser, script));
    Open();
    Part<QTreeWidget>(u"lvScripts"_s).topLevelItem(0)->setCheckState(0, Qt::Unchecked);
    for (const char *box : {"chkMinToTray", "radColorStandard", "chkContentImages"}) Part(QLatin1String(box)).click();
    QStringList order;
    QStringList seen;
    connect(settings.get(), &TSettings::Changed, dialog.get(), [&](const char *name) {
      order.append(QLatin1String(name));
      if (order.last() == u"LoadBHOs"_s && !scripts->Entries().first().isOn) seen.append(u"scripts"_s);
      if (order.last() == u"TabColorScheme"_s && settings->Get(Setting::MinToTray)) seen.append(u"tray"_s);
      if (!TIEOptions(*store).Get(TContentSwitch::Images)) seen.append(u"content"_s);
    });
    connect(dialog.get(), &TfrmOptions::PopupListWritten, dialog.get(), [&] { order.append(u"pop-ups"_s); });
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
    for (const auto &[setting, number] : numbers) settings->Set(*setting, number);
    Open();
    OK();
    for (const auto &[setting, number] : numbers) QCOMPARE(settings->Get(*setting), number);
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
    for (const QString &path : {QString(), folder->filePath(u"none.hgp"_s)}) {
      Part<QLineEdit>(u"edtStartupHalvexGroup"_s).setText(path);
      OnModalDialog<QDialog>([](QDialog &message) { message.accept(); });
      OK();
      QTRY_VERIFY(QApplication::activeModalWidget() != nullptr);
      QTRY_VERIFY(dialog->findChild<QMessageBox *>() == nullptr);
      QVERIFY(dialog->isVisible());
      QVERIFY(Part<QWidget>(u"tsStartup"_s).isVisible());
      QVERIFY(association->IsOurs(u"http"_s) && !association->IsOurs(u"https"_s));
      QCOMPARE(Stored(), before);
    }
    QFile group(folder->filePath(u"a.hgp"_s));
    QVERIFY(group.open(QIODevice::WriteOnly));
    Part<QLineEdit>(u"edtStartupHalvexGroup"_s).setText(group.fileName());
    OK();
    QCOMPARE(settings->Get(Setting::StartupMode), u"HalvexGroup"_s);
    QCOMPARE(settings->Get(Setting::StartupHalvexGroup), group.fileName());
    Open();
    QVERIFY(Part<QListWidget>(u"clbDefaultBrowser"_s).item(1)->checkState() == Qt::Checked);
  }

  // What would take pages away that are there asks before; nothing is written then but the association.
  void ShorterHistory() {
    history->AddVisit(u"http://old.example/"_s, u"Old"_s, QDateTime::currentDateTime().addDays(-20));
    QVERIFY(history->Flush());
    for (const bool isSure : {false, true}) {
      Open();
      const QStringList before = Stored();
      Part<QSpinBox>(u"spnHistoryDays"_s).setValue(7);
      OnModalDialog<TfrmConfirm>([isSure](TfrmConfirm &question) { isSure ? question.accept() : question.reject(); });
      OK();
      QCOMPARE(dialog->isVisible(), !isSure);
      QCOMPARE(Stored() == before, !isSure);
      QVERIFY(isSure || Part<QWidget>(u"tsHistory"_s).isVisible());
    }
    // Not where there is nothing to decide.
    Open();
    OK();
    QVERIFY(!dialog->isVisible());
    QCOMPARE(settings->Get(Setting::HistoryDays), 7);
  }

  // What cannot take downloads, or be the home page, is not taken, with all the rest.
  void Untakable() {
    Open();
    const QStringList before = Stored();
    const auto refused = [&](const char *field, const char *page, const QStringList &texts) {
      auto &box = Part<QLineEdit>(QLatin1String(field));
      const QString good = box.text();
      for (const QString &text : texts) {
        box.setText(text);
        OnModalDialog<QMessageBox>([](QMessageBox &message) { message.accept(); });
        OK();
        QTRY_VERIFY(QApplication::activeModalWidget() != nullptr);
        QTRY_VERIFY(dialog->findChild<QMessageBox *>() == nullptr);
        QVERIFY(dialog->isVisible() && Part<QWidget>(QLatin1String(page)).isVisible());
        QCOMPARE(Stored(), before);
      }
      box.setText(good);
    };
    refused("edtDownloadFolder", "tsDownloads",
            {folder->filePath(u"none"_s), folder->filePath(u"registry.sqlite"_s), u"."_s});
    refused("edtHomePage", "tsStartup", {u"no address"_s, u"javascript:alert(1)"_s, u"mailto:a@b.test"_s});
    // As the address bar would open it; and what somebody else has stored stays.
    for (const auto &[typed, chosen] :
         {std::pair(u"home.test"_s, u"http://home.test"_s), {u" "_s, QString()}, {u"no address"_s, u"no address"_s}}) {
      if (typed == chosen) HomePage::Choose(*store, chosen);
      Open();
      Part<QLineEdit>(u"edtHomePage"_s).setText(typed);
      OK();
      QVERIFY(!dialog->isVisible());
      QCOMPARE(HomePage::Chosen(*store), chosen);
    }
  }

  // A language is only chosen when it is another one, and the user is told when it comes.
  void AnotherLanguage() {
    Open();
    OK();
    QVERIFY(!settings->IsChosen(Setting::LanguageFile));
    QCOMPARE(Messages(), 0);
    for (const QString &file : {u"zvdeu.ini"_s, u"zveng.ini"_s}) {
      Open();
      auto &list = Part<QListWidget>(u"lvLanguages"_s);
      for (int row = 0; row < list.count(); ++row) {
        if (list.item(row)->data(Qt::UserRole) == file) list.setCurrentRow(row);
      }
      OK();
      QCOMPARE(settings->Get(Setting::LanguageFile), file);
      QCOMPARE(language.FileName(), file);
      QCOMPARE(Messages(), 1);
      OnModalDialog<QMessageBox>([&](QMessageBox &box) { box.accept(); });
      QTRY_COMPARE(Messages(), 0);
    }
  }
};

QTEST_MAIN(TestOptionsDialog)
#include "test_options_dialog.moc"
