#include <QCheckBox>
#include <QInputDialog>
#include <QMenu>
#include <QPushButton>
#include <QTextEdit>

#include "config/registry_paths.h"
#include "popups/popup_blocker.h"
#include "support/store_trouble.h"
#include "ui/confirm_dialog.h"
#include "window/answering_policy.h"
#include "window/tabs_fixture.h"

// The pop-up blocker with real pages that ask for windows.
class TestPopups final : public QObject, private TTabsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    Prepare();
    server.RoutePage("/opener", "Opener", "<a id='link' target='_blank'>new window</a>");
    server.RoutePage("/other", "Other");
    server.RoutePage("/popup", "Popup");
  }

  void init() {
    Begin();
    m_blocker = new TPopupBlocker(window.get(), *tabs, *tabMenu);
    m_policy.isPopup = [this](const QString &address) { return m_blocker->IsPopupBlocked(address); };
    m_policy.AnswerFor(Engine());
  }

  void cleanup() { End(); }

  void NoticeComesAfterwards() {
    const QString address = server.Url(u"/popup"_s);
    UseList({address});
    TBrowserTab *opener = OpenPage(u"/opener"_s);
    for (const bool dontAsk : {false, true}) {
      QStringList texts;
      OnModalDialog<TfrmConfirm>([&](TfrmConfirm &dialog) {
        texts = {dialog.windowTitle(), dialog.findChild<QTextEdit *>(u"mmoPrompt2"_s)->toPlainText()};
        QVERIFY(!dialog.findChild<QPushButton *>(u"cmdCancel"_s)->isVisible());
        // The answer was given long before: the page goes on while the notice shows.
        QVERIFY(tabs->Tab(1)->Blocked());
        dialog.findChild<QCheckBox *>(u"chkConfirm"_s)->setChecked(dontAsk);
        // The box counts however the notice is closed.
        dontAsk ? dialog.reject() : dialog.findChild<QPushButton *>(u"cmdOK"_s)->click();
      });
      AskForWindow(opener, u"/popup"_s);
      QTRY_COMPARE_WITH_TIMEOUT(texts, QStringList({language.Global("PopupNotifyCaption"), address}), LoadTime);
      QTRY_COMPARE(TZVOptions(*store).Get(Setting::PopupHalvexNotify), !dontAsk);
      tabs->CloseHiddenTabs();
    }
    AskForWindow(opener, u"/popup"_s);
    QCOMPARE(m_blocker->Stopped().Count(opener), 3);
    QCoreApplication::processEvents();
    QVERIFY(QApplication::activeModalWidget() == nullptr);
  }

  void ManyAtOnceAreToldTogether() {
    UseList({u"http://ads"_s});
    QStringList told;
    for (int i = 1; i <= 5; ++i) QVERIFY(m_blocker->IsPopupBlocked(u"http://ads%1.example/"_s.arg(i)));
    const auto take = [&](TfrmConfirm &dialog) {
      told.append(dialog.findChild<QTextEdit *>(u"mmoPrompt2"_s)->toPlainText());
      dialog.accept();
    };
    OnModalDialog<TfrmConfirm>([&](TfrmConfirm &dialog) {
      // More while the notice shows have a notice of their own. It names ten, and says how many there were besides; a
      // page may give them addresses of any length.
      const QString endless(2000000, u'x');
      for (int i = 0; i < 13; ++i) QVERIFY(m_blocker->IsPopupBlocked(u"http://ads6.example/"_s + endless));
      OnModalDialog<TfrmConfirm>(take);
      take(dialog);
    });
    QTRY_COMPARE(told.size(), 2);
    QCOMPARE(told.first().count(u'\n'), 4);
    QVERIFY(told.last().startsWith(u"http://ads6.example/xxx"_s));
    QCOMPARE(told.last().section(u'\n', 10), language.Text("POPUPS", "NoticeMore").arg(3));
    QVERIFY(told.last().size() < 10000);
  }

  void WindowGoesWhileTheNoticeShows() {
    UseList({u"http://ads"_s});
    bool shown = false;
    OnModalDialog<TfrmConfirm>([&](TfrmConfirm &) {
      shown = true;
      delete m_blocker;
      Engine().SetPolicy(nullptr);
      QApplication::activeModalWidget()->close();
    });
    QVERIFY(m_blocker->IsPopupBlocked(u"http://ads.example/"_s));
    QTRY_VERIFY(shown && QApplication::activeModalWidget() == nullptr);
  }

  void Counter() {
    settings->Set(Setting::PopupHalvexNotify, false);
    UseList({server.Url(u"/popup"_s)});
    TBrowserTab *opener = OpenPage(u"/opener"_s);
    QSignalSpy changed(&m_blocker->Stopped(), &TStoppedPopups::Changed);
    AskForWindow(opener, u"/popup?1"_s);
    AskForWindow(opener, u"/popup?2"_s);
    QCOMPARE(changed.size(), 2);
    QVERIFY(m_blocker->Stopped().CounterText(opener).contains(u'2'));
    // They belong to their page, and the next one begins anew.
    opener->Navigate(server.Url(u"/other"_s));
    QTRY_COMPARE_WITH_TIMEOUT(m_blocker->Stopped().Count(opener), 0, LoadTime);
    QCOMPARE(changed.last().last().toInt(), 0);
  }

  void ManyStopped() {
    TBrowserTab *opener = tabs->GetActivePage();
    constexpr int Count = 3 * TStoppedPopups::MostKept;
    for (int i = 0; i < Count; ++i) m_blocker->Stopped().Add(opener, {u"http://ads/%1"_s.arg(i), {}});
    QCOMPARE(m_blocker->Stopped().Count(opener), Count);
    QCOMPARE(m_blocker->Stopped().Stopped(opener).size(), TStoppedPopups::MostKept);
    // A tab that goes takes its list along.
    tabs->NewTab();
    opener->Close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(m_blocker->Stopped().Count(opener), 0);
  }

  void StoppedInTheMenu() {
    settings->Set(Setting::PopupHalvexNotify, false);
    const QString pattern = server.Url(u"/pop*p"_s);
    UseList({u"http://another"_s, pattern});
    TBrowserTab *opener = OpenPage(u"/opener"_s);
    AskForWindow(opener, u"/popup?a=1&b=2"_s);
    tabs->CloseHiddenTabs();
    QMenu menu;
    m_blocker->Stopped().FillMenu(&menu, opener);
    m_blocker->Stopped().FillMenu(&menu, opener);
    QCOMPARE(menu.actions().size(), 1);
    QCOMPARE(menu.actions().first()->text(), server.Url(u"/popup?a=1&&b=2"_s));
    const QMenu *choices = menu.actions().first()->menu();
    choices->actions().first()->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(server.RequestCount("/popup"), 1, LoadTime);
    QCOMPARE(tabs->GetActivePage()->Url(), server.Url(u"/popup?a=1&b=2"_s));
    QVERIFY(choices->actions().last()->text().contains(pattern));
    choices->actions().last()->trigger();
    QCOMPARE(Raw(), QStringList({"url1=http://another"}));
    tabs->Activate(opener);
    AskForWindow(opener, u"/popup"_s);
    QTRY_COMPARE_WITH_TIMEOUT(server.RequestCount("/popup"), 2, LoadTime);
  }

  void AddAnswers_data() {
    Columns<QString, QStringList, QStringList>("answer", "stored", "known");
    Row("cancelled", QString(), QStringList{"url1=http://a", "url2=http://c"}, QStringList{"http://a", "http://c"});
    Row("in its place", "http://b*", QStringList{"url1=http://a", "url2=http://b*", "url3=http://c"},
        QStringList{"http://a", "http://b*", "http://c"});
    Row("there already", "HTTP://A", QStringList{"url1=http://a", "url2=http://c"},
        QStringList{"http://a", "http://c"});
    Row("empty", "", QStringList{"url1=", "url2=http://a", "url3=http://c"}, QStringList{"http://a", "http://c"});
  }

  void AddAnswers() {
    QFETCH(QString, answer);
    UseList({u"http://a"_s, u"http://c"_s});
    TBrowserTab *tab = tabs->NewTab();
    // A page that waits for its turn is proposed by what it will be.
    tab->Announce(u"http://a.test/later?x"_s);
    OnModalDialog<QInputDialog>([&](QInputDialog &dialog) {
      QCOMPARE(dialog.textValue(), u"http://a.test/later"_s);
      dialog.setTextValue(answer);
      answer.isNull() ? dialog.reject() : dialog.accept();
    });
    m_blocker->AddToPopupList(tab);
    QCOMPARE(tabs->TabCount(), answer.isNull() ? 2 : 1);
    QTEST(Raw(), "stored");
    QTEST(m_blocker->Patterns().Patterns(), "known");
    // What another window has added since then is kept, in the list's own order.
    store->Write(TRegistryHive::CurrentUser, RegistryKey::PopupHalvex, u"url9"_s, u"http://another"_s);
    m_blocker->Save();
    QFETCH(QStringList, known);
    known.insert(1, u"http://another"_s);
    QCOMPARE(LoadPopupList(*store), known);
    QCOMPARE(Raw().size(), known.size());
    QCOMPARE(Raw().at(1), u"url2=http://another"_s);
  }

  // Another process keeps the store locked meanwhile: the pattern holds at once, and is stored later.
  void AddWhileLocked() {
    settings->Set(Setting::PopupHalvexNotify, false);
    TBrowserTab *tab = tabs->NewTab();
    Load(tab, u"/popup"_s);
    OnModalDialog<QInputDialog>([&](QInputDialog &dialog) { dialog.accept(); });
    TRegistryStore other(store->FilePath());
    {
      const TStoreLock lock(store->FilePath());
      m_blocker->AddToPopupList(tab);
      QCOMPARE(tabs->TabCount(), 1);
      QVERIFY(m_blocker->IsPopupBlocked(server.Url(u"/popup?x"_s)));
      QCOMPARE(LoadPopupList(other), QStringList());
    }
    QTRY_COMPARE(LoadPopupList(other), QStringList(server.Url(u"/popup"_s)));
  }

  // What cannot be read is not taken for empty: it is read as soon as somebody wants to know.
  void ListThatCannotBeRead() {
    settings->Set(Setting::PopupHalvexNotify, false);
    SavePopupList(*store, {u"http://a"_s, u"http://b"_s});
    {
      const TStoreLock lock(store->FilePath(), TStoreLock::TKind::Unreadable);
      m_blocker->Reload();
      m_blocker->Save();
      QVERIFY(!LoadPopupList(*store) && !m_blocker->IsPopupBlocked(u"http://a/x"_s));
    }
    QVERIFY(m_blocker->IsPopupBlocked(u"http://a/x"_s));
    QCOMPARE(LoadPopupList(*store), QStringList({u"http://a"_s, u"http://b"_s}));
  }

  void AddFromAPopup() {
    TBrowserTab *opener = OpenPage(u"/opener"_s);
    AskForWindow(opener, u"/popup?x"_s);
    QTRY_COMPARE_WITH_TIMEOUT(server.RequestCount("/popup"), 1, LoadTime);
    TBrowserTab *popup = tabs->Tab(1);
    popup->Navigate(server.Url(u"/other"_s));
    QTRY_COMPARE_WITH_TIMEOUT(server.RequestCount("/other"), 1, LoadTime);
    // The address that it came with counts, not where it went from there.
    QString shown;
    OnModalDialog<QInputDialog>([&](QInputDialog &dialog) {
      shown = dialog.textValue();
      dialog.accept();
    });
    m_blocker->AddToPopupList(popup);
    QCOMPARE(shown, server.Url(u"/popup"_s));
    QVERIFY(m_blocker->IsPopupBlocked(server.Url(u"/popup?y"_s)));
  }

 private:
  void UseList(const QStringList &patterns) {
    SavePopupList(*store, patterns);
    m_blocker->Reload();
  }

  // The stored list as it stands: "name=data".
  [[nodiscard]] QStringList Raw() const {
    QStringList lines;
    for (const TRegistryValue &value : store->Values(TRegistryHive::CurrentUser, RegistryKey::PopupHalvex)) {
      lines.append(value.name + u'=' + value.data);
    }
    return lines;
  }

  // Lets the page ask for a window on `path` and waits for the test of its address.
  void AskForWindow(TBrowserTab *tab, const QString &path) {
    const int before = tabs->TabCount();
    Run(tab, u"window.open('%1')"_s.arg(path));
    QTRY_VERIFY_WITH_TIMEOUT(tabs->TabCount() > before && !tabs->Tabs().contains(nullptr), LoadTime);
    QTRY_VERIFY_WITH_TIMEOUT(std::ranges::none_of(tabs->Tabs(), &TBrowserTab::Hidden), LoadTime);
  }

  TAnsweringPolicy m_policy;
  TPopupBlocker *m_blocker = nullptr;
};

ENGINE_MAIN(TestPopups)
#include "test_popups.moc"
