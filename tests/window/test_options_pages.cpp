#include <QColorDialog>
#include <QLabel>
#include <QRadioButton>
#include <QScreen>
#include <QSpinBox>

#include "browser/strip/page_control.h"
#include "browser/tabs/home_page.h"
#include "chrome/options/user_scripts_page.h"
#include "window/options_fixture.h"

using namespace Qt::StringLiterals;

// The pages of the dialog: their lists, what depends on what, how they are found, and how they fit.
class TestOptionsPages final : public QObject, private TOptionsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { Prepare(); }
  void init() { Begin(); }
  void cleanup() { End(); }

  // A list that the store does not take is told of.
  void ScriptsThatCannotBeKept() {
    const QString script = QLatin1String(RegistryKey::BrowserHelperObjects) + u"\\a.js"_s;
    QVERIFY(store->CreateKey(TRegistryHive::CurrentUser, script));
    TRegistryStore readOnly(store->FilePath(), TRegistryStore::TReadOnly());
    TSettings unkept(readOnly);
    TUserScripts listed(unkept);
    for (const bool isRemoved : {false, true}) {
      QWidget window;
      auto *page = new TUserScriptsPage(language, listed, &window);
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

  // Colours that nobody has chosen stay so: the strip goes on following the desktop, and they are what is shown.
  void Colours() {
    Open();
    Part<QStackedWidget>(u"pcOptions"_s).setCurrentWidget(&Part<QWidget>(u"tsColors"_s));
    auto &strip = Part<TZVPageControl>(u"pg"_s);
    QTRY_VERIFY(!strip.TabRect(strip.Page(1)).isEmpty());
    const QImage picture = strip.grab().toImage();
    const auto swatch = [this](const char *name) {
      return Part<QWidget>(QLatin1String(name)).palette().color(QPalette::Window);
    };
    QCOMPARE(swatch("pnlTabColor"), picture.pixelColor(strip.TabRect(strip.Page(1)).center() - QPoint(0, 12)));
    QCOMPARE(swatch("pnlFontColor"), strip.palette().color(QPalette::WindowText));
    OK();
    QVERIFY(!settings->IsChosen(Setting::InactiveTabColor));
    for (const bool isAccepted : {false, true}) {
      Open();
      const QColor before = swatch("pnlTabColor");
      OnModalDialog<QColorDialog>([&](QColorDialog &dialog) {
        QCOMPARE(dialog.currentColor(), before);
        dialog.setCurrentColor(QColor(0x10, 0x20, 0x30));
        isAccepted ? dialog.accept() : dialog.reject();
      });
      Part(u"btnGetTabColor"_s).click();
      QCOMPARE(swatch("pnlTabColor"), isAccepted ? QColor(0x10, 0x20, 0x30) : before);
      OK();
      QCOMPARE(settings->IsChosen(Setting::InactiveTabColor), isAccepted);
      QCOMPARE(settings->IsChosen(Setting::InactiveFontColor), isAccepted);
    }
    QCOMPARE(settings->Get(Setting::InactiveTabColor), 0x102030);
    Open();
    QVERIFY(Part<QWidget>(u"pnlCustomColors"_s).isVisibleTo(&Part<QWidget>(u"tsColors"_s)));
    QCOMPARE(Part<TZVPageControl>(u"pg"_s).InactiveTabColor(), QColor(0x10, 0x20, 0x30));
    Part(u"radColorStandard"_s).click();
    QVERIFY(!Part<QWidget>(u"pnlCustomColors"_s).isVisibleTo(&Part<QWidget>(u"tsColors"_s)));
    QCOMPARE(Part<TZVPageControl>(u"pg"_s).InactiveTabColor(), QApplication::palette().color(QPalette::Button));
    OK();
    QCOMPARE(settings->Get(Setting::InactiveTabColor), 0x102030);
    auto &preview = Part<TZVPageControl>(u"pg"_s);
    const QString front = preview.PageCaption(preview.Page(0));
    preview.SetActivePage(preview.Page(1));
    QCOMPARE(preview.PageCaption(preview.Page(1)), front);
    QVERIFY(preview.PageCaption(preview.Page(0)) != front);
  }

  // What was decided about sites, and let through for this run, can be taken out; nothing holds before OK.
  void TakenOut() {
    const QUrl site(u"https://a.test:8443"_s);
    permissions->Remember(site, TPermission::Camera, TPermissionDecision::Allowed);
    permissions->Remember(site, TPermission::Location, TPermissionDecision::Refused);
    permissions->Remember(QUrl(u"https://b.test"_s), TPermission::Scripts, TPermissionDecision::RefusedForNow);
    certificates.Add(u"bad.test"_s);
    certificates.Add(u"worse.test"_s);
    for (const bool isKept : {false, true}) {
      Open();
      auto &tree = *Part<QWidget>(u"tsPermissions"_s).findChild<QTreeWidget *>();
      QStringList rows;
      for (int row = 0; row < tree.topLevelItemCount(); ++row) {
        const QTreeWidgetItem &item = *tree.topLevelItem(row);
        rows.append(QStringList{item.text(0), item.text(1), item.text(2)}.join(u'|'));
      }
      QCOMPARE(rows, QStringList({u"a.test:8443|Know where you are|Refused"_s, u"a.test:8443|Use the camera|Allowed"_s,
                                  u"b.test|Run scripts|Refused for now"_s}));
      auto &remove = *Part<QWidget>(u"tsPermissions"_s).findChild<QAbstractButton *>(u"btnRemove"_s);
      QVERIFY(!remove.isEnabled());
      tree.setCurrentItem(tree.topLevelItem(1));
      remove.click();
      QCOMPARE(tree.topLevelItemCount(), 2);
      Part<QWidget>(u"tsCertificates"_s).findChild<QAbstractButton *>(u"btnRemoveAll"_s)->click();
      QCOMPARE(permissions->All().size(), 3);
      QCOMPARE(certificates.Hosts().size(), 2);
      Part(isKept ? u"cmdOK"_s : u"cmdCancel"_s).click();
      QCOMPARE(permissions->All().size(), isKept ? 2 : 3);
    }
    QCOMPARE(permissions->Find(site, TPermission::Camera), TPermissionDecision::Ask);
    QCOMPARE(permissions->Find(site, TPermission::Location), TPermissionDecision::Refused);
    QVERIFY(certificates.Hosts().isEmpty() && certificates.IsTakenBack(u"Bad.test"_s));
  }

  // A bar that waits for links does not show, and its box does not either.
  void LinksBar() {
    hasLinks = false;
    for (const bool isTicked : {false, true}) {
      Open();
      QSignalSpy wanted(dialog.get(), &TfrmOptions::LinksBarWanted);
      QVERIFY(!Part(u"chkViewLinksBar"_s).isChecked());
      Part(u"chkViewLinksBar"_s).setChecked(isTicked);
      OK();
      QCOMPARE(wanted.size(), isTicked ? 1 : 0);
      QVERIFY(settings->Get(Setting::ViewLinksBar));
    }
    hasLinks = true;
    Open();
    Part(u"chkViewLinksBar"_s).click();
    OK();
    QVERIFY(!settings->Get(Setting::ViewLinksBar));
  }

  // The search that comes first is the one for words; the others keep their order.
  void Searches() {
    TZVOptions &lists = settings->Lists();
    QVERIFY(lists.SetQuickSearchEntries({{u"a"_s, u"http://a.test/%s"_s}, {u"b"_s, {}}, {u"c"_s, u"c"_s}}));
    QVERIFY(lists.SetSearchBarEntries({{u"Panel"_s, u"http://panel.test/"_s}}));
    Open();
    QSignalSpy written(dialog.get(), &TfrmOptions::SearchesWritten);
    OK();
    QCOMPARE(written.size(), 0);
    QVERIFY(!settings->IsChosen(Setting::SearchBar));
    Open();
    QSignalSpy writtenNow(dialog.get(), &TfrmOptions::SearchesWritten);
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
    QCOMPARE(settings->Get(Setting::SearchBar), u"zarvela:search"_s);
    // One that somebody else has given another address meanwhile is not the one that was chosen.
    Open();
    Part<QListWidget>(u"lvSearchDefault"_s).setCurrentRow(2);
    const TNamedAddresses others{{u"c"_s, u"c"_s}, {u"a"_s, u"http://a.test/%s"_s}, {u"b"_s, u"other"_s}};
    QVERIFY(lists.SetQuickSearchEntries(others));
    OK();
    QCOMPARE(lists.QuickSearchEntries(), others);
  }

  void PopupList() {
    settings->Lists().SetPopupList({u"*ads*"_s, u"b.test"_s});
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
    QCOMPARE(editor->text(), language.Global("NewItem"));
    editor->setText(u"c.test"_s);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(list.item(1)->text(), u"c.test"_s);
    QSignalSpy written(dialog.get(), &TfrmOptions::PopupListWritten);
    // One that is still being typed counts.
    list.setCurrentRow(1);
    Part(u"btnEdit"_s).click();
    list.findChild<QLineEdit *>()->setText(u"d.test"_s);
    OK();
    QCOMPARE(written.size(), 1);
    QCOMPARE(settings->Lists().PopupList(), QStringList({u"b.test"_s, u"d.test"_s}));
    Open();
    while (Part<QListWidget>(u"lvPopupHalvex"_s).count() > 0) {
      Part<QListWidget>(u"lvPopupHalvex"_s).setCurrentRow(0);
      QTest::keyClick(&Part<QListWidget>(u"lvPopupHalvex"_s), Qt::Key_Delete);
    }
    OK();
    QCOMPARE(settings->Lists().PopupList(), QStringList());
  }

  void MirroredRows() {
    // Somebody else may store anything.
    QVERIFY(settings->Store().Write(TRegistryHive::CurrentUser, QLatin1String(RegistryKey::CurrentVersion),
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
    QVERIFY(dialog->isVisible());
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
    row("play VIDEOS", "tsContent", "chkContentVideos");
    row("home.test", "tsStartup", "edtHomePage");
    row("place of none", "tsDownloads", "edtDownloadFolder");
    row("caption…", "tsColors", "btnGetFontColor");
    row("on no page at all", "", "");
  }
  // By all that can be read on a page, which is marked there.
  void Found() {
    QFETCH(QString, words);
    QFETCH(QString, page);
    QFETCH(QString, part);
    settings->Set(Setting::SleepMinutes, 0);
    HomePage::Choose(*store, u"http://home.test/"_s);
    settings->Lists().SetPopupList({u"*x&y.test*"_s});
    permissions->Remember(QUrl(u"https://b.test"_s), TPermission::Camera, TPermissionDecision::Allowed);
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
    QVERIFY(!settings->IsChosen(Setting::MinToTray) && !settings->IsChosen(Setting::VersionCheck));
  }

  void Languages_data() {
    QTest::addColumn<QString>("file");
    for (const TLanguageFile &file : TLanguage::Available()) QTest::newRow(qPrintable(file.name)) << file.name;
  }
  // On each page a letter leads to one place, nothing is left untranslated, and all has room in a small window.
  void Languages() {
    QFETCH(QString, file);
    TLanguage texts;
    QVERIFY(texts.LoadFile(SourceFile(QStringLiteral("Languages/") + file)));
    TfrmOptions options(PartsIn(texts), All);
    options.show();
    const auto isWithin = [&options](const QSize &room) { return options.size().boundedTo(room) == options.size(); };
    const QSize frame(20, 60);
    const QSize screen = options.screen()->availableSize();
    QVERIFY2(isWithin(screen - frame), qPrintable(u"%1x%2"_s.arg(options.width()).arg(options.height())));
    const QSize smallest = QSize(800, 600).boundedTo(screen) - frame;
    options.resize(options.size().boundedTo(smallest));
    QVERIFY2(isWithin(smallest), qPrintable(u"%1x%2"_s.arg(options.width()).arg(options.height())));
    auto &ok = *options.findChild<QWidget *>(u"cmdOK"_s);
    QVERIFY(options.rect().contains(QRect(ok.mapTo(&options, QPoint()), ok.size())));
    auto *pages = options.findChild<QStackedWidget *>(u"pcOptions"_s);
    for (int i = 0; i < pages->count(); ++i) {
      pages->setCurrentIndex(i);
      QHash<QKeySequence, QString> letters;
      for (const QWidget *part : options.findChildren<QWidget *>()) {
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
    auto *area = options.findChild<QWidget *>(u"scrOptions"_s);
    // On a screen that is smaller still they scroll.
    if (screen.width() < 800) return;
    QVERIFY2(pages->width() <= area->width(), qPrintable(u"%1 in %2"_s.arg(pages->width()).arg(area->width())));
  }
};

QTEST_MAIN(TestOptionsPages)
#include "test_options_pages.moc"
