#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>

#include "chrome/zone_panel.h"
#include "config/language.h"
#include "security/security_dialog.h"
#include "security/security_menu.h"
#include "support/shipped_files.h"
#include "window/security_fixture.h"

// The security zones in the window: what shows the zone of a page, and what changes it.
class TestSecurity final : public QObject, private TSecurityFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() { Begin(); }
  void cleanup() { End(); }

  void Menu_data() {
    Columns<QString, QString, QStringList>("address", "zone", "items");
    const QStringList policies{u"Stored cookies: Allow"_s, u"Session cookies: Allow"_s, u"Scripts: Allow"_s,
                               u"Plug-ins: Allow"_s};
    const QStringList adds{u"Add this site to “Trusted sites”"_s, u"Add this site to “Local intranet”"_s,
                           u"Add this site to “Restricted sites”"_s};
    Row("blank", u"about:blank"_s, u"Internet"_s, policies);
    Row("internet", u"http://127.0.0.1"_s, u"Internet"_s, adds + policies);
    Row("file", u"file://"_s, u"My computer"_s, QStringList());
    Row("intranet", u"http://localhost"_s, u"Local intranet"_s,
        QStringList{u"Remove this site from “Local intranet”"_s});
    Row("trusted", u"http://trusted.localhost"_s, u"Trusted sites"_s,
        QStringList{u"Remove this site from “Trusted sites”"_s});
    Row("restricted", u"http://x.restricted.localhost"_s, u"Restricted sites"_s,
        QStringList{u"Remove this site from “Restricted sites”"_s});
  }
  void Menu() {
    QFETCH(QString, address);
    QFETCH(QString, zone);
    QFETCH(QStringList, items);
    TZoneStore zones(*store);
    QVERIFY(zones.AddMapping(u"http://trusted.localhost"_s, 2) && zones.AddMapping(u"*.restricted.localhost"_s, 4));
    Open();
    if (address.startsWith(u"http"_s)) address += server.Url(u"/probe"_s).mid(16);
    if (address == u"file://"_s) address += SourceFile(QStringLiteral("README.md"));
    if (address != u"about:blank"_s) Load(address);
    QStringList captions = Captions();
    QCOMPARE(captions.takeFirst(), u"Zone: "_s + zone);
    QVERIFY(!Action(TCommand::SecurityCurrent)->icon().isNull());
    QCOMPARE(captions.takeLast().remove(u'&'), u"Security settings…"_s);
    QCOMPARE(captions, items);
    SOON(Panel(), zone);
    for (const QAction *item : SecurityMenu()->actions()) {
      if (item->isVisible() && item->text().startsWith(u"Add"_s)) QVERIFY(item->toolTip().contains(u"to the zone “"_s));
    }
    // Another window may have put the site elsewhere since.
    if (!address.startsWith(u"http"_s)) return;
    QVERIFY(zones.AddMapping(u"http://"_s + QUrl(address).host(), 4));
    QCOMPARE(Captions().constFirst(), u"Zone: Restricted sites"_s);
    SOON(Panel(), u"Restricted sites"_s);
  }

  void ChangePolicy_data() {
    Columns<TCommand, TUrlAction, unsigned, TMenu, QString>("command", "action", "stored", "menu", "caption");
    const std::tuple<const char *, TCommand, TUrlAction, TMenu> menus[] = {
        {"Plug-ins", TCommand::SecurityActiveXAllow, TUrlAction::ActiveX, TMenu::SecurityActiveX},
        {"Scripts", TCommand::SecurityScriptingAllow, TUrlAction::Scripting, TMenu::SecurityScripting},
        {"Stored cookies", TCommand::SecurityCookiesAllow, TUrlAction::Cookies, TMenu::SecurityCookies},
        {"Session cookies", TCommand::SecuritySessionAllow, TUrlAction::SessionCookies, TMenu::SecuritySession},
    };
    const std::pair<const char *, unsigned> words[] = {{"Allow", 0}, {"Ask", 1}, {"Don’t allow", 3}};
    for (const auto &[name, first, action, menu] : menus) {
      for (int i = 0; i < 3; ++i) {
        const QString caption = QString::fromUtf8(name) + u": "_s + QString::fromUtf8(words[i].first);
        QTest::newRow(qPrintable(caption)) << TCommand(int(first) + i) << action << words[i].second << menu << caption;
      }
    }
  }
  void ChangePolicy() {
    QFETCH(TCommand, command);
    QFETCH(TUrlAction, action);
    QFETCH(unsigned, stored);
    QFETCH(TMenu, menu);
    QFETCH(QString, caption);
    Open();
    Action(command)->trigger();
    const TZoneStore zones(*store);
    for (const TUrlAction other : UrlActions) QCOMPARE(zones.Policy(3, other), other == action ? stored : 0U);
    QVERIFY(Captions().contains(caption));
    QVERIFY(Action(command)->isChecked());
    QCOMPARE(window->Actions().Menu(menu)->menuAction()->text(), caption);
  }

  // Adding takes scheme and host of the page, taking back its whole address; all tabs are told.
  void SitesAreAddedAndTakenBack() {
    Open();
    const QString host = u"a.localhost"_s;
    Load(server.Url(u"/other"_s, host));
    const TBrowserTab *other = Active();
    Tabs().NewTab();
    Load(server.Url(u"/probe?x=y"_s, host));
    Action(TCommand::SecurityAddRestricted)->trigger();
    QCOMPARE(TZoneStore(*store).Mappings(), (QList<TZoneMapping>{{u"http://a.localhost"_s, 4}}));
    for (const TBrowserTab *tab : {other, static_cast<const TBrowserTab *>(Active())}) {
      QCOMPARE(tab->SecureZone(), TSecurityZone::Restricted);
    }
    SOON(Panel(), u"Restricted sites"_s);
    Action(TCommand::SecurityRemove)->trigger();
    QCOMPARE(Active()->SecureZone(), TSecurityZone::Restricted);
    // Its pages are loaded without scripts from now on.
    Load(server.Url(u"/probe"_s, host));
    QCOMPARE(Active()->Title(), u"off"_s);
    Load(server.Url(u"/"_s, host));
    Action(TCommand::SecurityRemove)->trigger();
    QCOMPARE(Active()->SecureZone(), TSecurityZone::Internet);
    QCOMPARE(other->SecureZone(), TSecurityZone::Internet);
    SOON(Panel(), u"Internet"_s);
  }
  // What is changed in the dialog holds at once.
  void Settings() {
    Open();
    Load(server.Url(u"/probe"_s));
    auto *panel = window->findChild<TZonePanel *>();
    SOON(Panel(), u"Internet"_s);
    QTest::mouseDClick(panel, Qt::LeftButton);
    auto *dialog = window->findChild<TfrmSecurity *>();
    QVERIFY(dialog != nullptr && QTest::qWaitForWindowActive(dialog));
    const auto child = [dialog](const char *name) { return dialog->findChild<QWidget *>(QLatin1String(name)); };
    auto *zone = qobject_cast<QComboBox *>(child("cboZone"));
    auto *site = qobject_cast<QLineEdit *>(child("txtSite"));
    auto *list = qobject_cast<QListWidget *>(child("lstSites"));
    auto *scripting = qobject_cast<QComboBox *>(child("cboScripting"));
    const auto click = [&](const char *name) { qobject_cast<QPushButton *>(child(name))->click(); };
    const auto sites = [list] {
      QStringList texts;
      for (int i = 0; i < list->count(); ++i) texts.append(list->item(i)->text());
      return texts;
    };
    QCOMPARE(zone->currentText(), u"Internet"_s);
    QCOMPARE(scripting->currentText(), u"Allow"_s);
    zone->setCurrentIndex(0);
    QVERIFY(!list->isEnabled());
    zone->setCurrentIndex(4);
    QCOMPARE(scripting->currentText(), u"Don’t allow"_s);
    QTest::keyClicks(site, u"no site/path"_s);
    click("cmdAdd");
    QVERIFY(!qobject_cast<QLabel *>(child("lblBadSite"))->text().isEmpty());
    QVERIFY(sites().isEmpty());
    site->clear();
    QTest::keyClicks(site, u" HTTP://127.0.0.1:80/ "_s);
    QTest::keyClick(site, Qt::Key_Return);
    QCOMPARE(sites(), QStringList(u"http://127.0.0.1"_s));
    QVERIFY(dialog->isVisible());
    QCOMPARE(Active()->SecureZone(), TSecurityZone::Restricted);
    scripting->setCurrentIndex(1);
    Q_EMIT scripting->activated(1);
    QCOMPARE(TZoneStore(*store).Policy(4, TUrlAction::Scripting), TZoneStore::Query);
    click("cmdDefaults");
    QCOMPARE(TZoneStore(*store).Policy(4, TUrlAction::Scripting), TZoneStore::Disallow);
    QCOMPARE(scripting->currentText(), u"Don’t allow"_s);
    // What somebody else changes meanwhile shows, and leaves alone what the user has in hand.
    list->selectAll();
    site->setText(u"half"_s);
    TZoneStore elsewhere(*store);
    QVERIFY(elsewhere.AddMapping(u"http://a.test"_s, 4));
    QVERIFY(elsewhere.SetPolicy(4, TUrlAction::Scripting, TZoneStore::Allow));
    QTRY_COMPARE(sites(), (QStringList{u"http://127.0.0.1"_s, u"http://a.test"_s}));
    QCOMPARE(scripting->currentText(), u"Allow"_s);
    QCOMPARE(list->selectedItems().size(), 1);
    QCOMPARE(site->text(), u"half"_s);
    list->selectAll();
    click("cmdRemove");
    QVERIFY(sites().isEmpty());
    QCOMPARE(Active()->SecureZone(), TSecurityZone::Internet);
    click("cmdClose");
    SOON(window->findChild<TfrmSecurity *>() == nullptr, true);
  }

  void RefusedRules() {
    { TRegistryStore make(Path(u"only.sqlite"_s)); }
    TRegistryStore store(Path(u"only.sqlite"_s), TRegistryStore::TReadOnly());
    TZoneStore zones(store);
    TLanguage language;
    QVERIFY(language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini"))));
    const TIEZoneMgr manager(&zones, language);
    TfrmSecurity dialog(zones, manager, language);
    auto &rule = *dialog.findChild<QComboBox *>(u"cboScripting"_s);
    const auto &told = *dialog.findChild<QLabel *>(u"lblBadRule"_s);
    for (const bool isReset : {false, true}) {
      QCOMPARE(told.text(), QString());
      if (isReset) {
        dialog.findChild<QPushButton *>(u"cmdDefaults"_s)->click();
      } else {
        rule.setCurrentIndex(2);
        Q_EMIT rule.activated(2);
      }
      QCOMPARE(rule.currentText(), u"Allow"_s);
      QCOMPARE(told.text(), language.Text("SECURITY", "NotKept"));
      dialog.ShowZone(isReset ? 3 : 2);
    }
  }

  // The mark of a key is no part of a name.
  void NamesWithAmpersands() {
    QFile file(SourceFile(QStringLiteral("Languages/zveng.ini")));
    QFile odd(Path(u"odd.ini"_s));
    QVERIFY(file.open(QIODevice::ReadOnly) && odd.open(QIODevice::WriteOnly));
    odd.write(file.readAll().replace("Zone2=Trusted sites", "Zone2=R&D"));
    odd.close();
    TLanguage language;
    QVERIFY(language.LoadFile(odd.fileName()));
    Open();
    Load(server.Url(u"/probe"_s));
    TZoneStore zones(*store);
    TIEZoneMgr manager(&zones, language);
    const TSecurityMenu menu(window.get(), window->Actions(), Tabs(), zones, manager, language);
    const QAction *add = Action(TCommand::SecurityAddTrusted);
    QVERIFY(add->text().contains(u"“R&&D”"_s));
    QVERIFY(add->toolTip().contains(u"“R&D”"_s));
    QCOMPARE(add->statusTip(), add->toolTip());
  }

 private:
  [[nodiscard]] QMenu *SecurityMenu() const { return window->Actions().Menu(TMenu::Security); }
  [[nodiscard]] QString Panel() const { return window->findChild<TZonePanel *>()->Text(); }
  // What the menu shows when it opens.
  [[nodiscard]] QStringList Captions() const {
    Q_EMIT SecurityMenu()->aboutToShow();
    QStringList captions;
    for (const QAction *item : SecurityMenu()->actions()) {
      if (item->isVisible() && !item->isSeparator()) captions.append(item->text());
    }
    return captions;
  }
};

ENGINE_MAIN(TestSecurity)
#include "test_security.moc"
