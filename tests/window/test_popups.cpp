#include <QCheckBox>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTextEdit>

#include "config/registry_paths.h"
#include "popups/popup_blocker.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "ui/confirm_dialog.h"
#include "window/answering_policy.h"
#include "window/tabs_fixture.h"

namespace {

const QString Key = QString::fromLatin1(RegistryKey::PopupHalvex);
constexpr TRegistryHive User = TRegistryHive::CurrentUser;

}  // namespace

// The pop-up blocker with real pages that ask for windows.
class TestPopups final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    m_f.Prepare();
    m_f.server.RoutePage("/opener", "Opener", "<a id='link' target='_blank'>new window</a>");
    m_f.server.RoutePage("/other", "Other");
    m_f.server.RoutePage("/popup", "Popup");
  }

  void init() {
    m_f.Begin();
    m_blocker = new TPopupBlocker(m_f.window.get(), *m_f.tabs, *m_f.tabMenu);
    m_policy.isPopup = [this](const QString &address) { return m_blocker->IsPopupBlocked(address); };
    m_policy.AnswerFor(m_f.Engine());
  }

  void cleanup() { m_f.End(); }

  void LetIn() {
    UseList({m_f.server.Url(QStringLiteral("/popups"))});
    TBrowserTab *opener = OpenPage(QStringLiteral("/opener"));
    AskForWindow(opener, QStringLiteral("/popup"));
    QTRY_COMPARE_WITH_TIMEOUT(m_f.server.RequestCount("/popup"), 1, m_f.LoadTime);
    QVERIFY(m_f.tabs->Pages().IsPageVisible(m_f.tabs->Tab(1)));
    QCOMPARE(m_blocker->Stopped().Count(opener), 0);
  }

  void NoticeComesAfterwards() {
    const QString address = m_f.server.Url(QStringLiteral("/popup"));
    UseList({address});
    TBrowserTab *opener = OpenPage(QStringLiteral("/opener"));
    for (const bool dontAsk : {false, true}) {
      QStringList texts;
      OnModalDialog<TfrmConfirm>([&](TfrmConfirm &dialog) {
        texts = {dialog.windowTitle(), dialog.findChild<QTextEdit *>(QStringLiteral("mmoPrompt2"))->toPlainText()};
        QVERIFY(!dialog.findChild<QPushButton *>(QStringLiteral("cmdCancel"))->isVisible());
        // The answer was given long before: the page goes on while the notice shows.
        QVERIFY(m_f.tabs->Tab(1)->Blocked());
        dialog.findChild<QCheckBox *>(QStringLiteral("chkConfirm"))->setChecked(dontAsk);
        // The box counts however the notice is closed.
        dontAsk ? dialog.reject() : dialog.findChild<QPushButton *>(QStringLiteral("cmdOK"))->click();
      });
      AskForWindow(opener, QStringLiteral("/popup"));
      QTRY_COMPARE_WITH_TIMEOUT(texts, QStringList({m_f.language.Global("PopupNotifyCaption"), address}), m_f.LoadTime);
      QTRY_COMPARE(TZVOptions(*m_f.store).Get(Setting::PopupHalvexNotify), !dontAsk);
      m_f.tabs->CloseHiddenTabs();
    }
    AskForWindow(opener, QStringLiteral("/popup"));
    QCOMPARE(m_blocker->Stopped().Count(opener), 3);
    QCoreApplication::processEvents();
    QVERIFY(QApplication::activeModalWidget() == nullptr);
  }

  void ManyAtOnceAreToldTogether() {
    UseList({QStringLiteral("http://ads")});
    QStringList told;
    for (int i = 1; i <= 5; ++i) QVERIFY(m_blocker->IsPopupBlocked(QStringLiteral("http://ads%1.example/").arg(i)));
    const auto take = [&](TfrmConfirm &dialog) {
      told.append(dialog.findChild<QTextEdit *>(QStringLiteral("mmoPrompt2"))->toPlainText());
      dialog.accept();
    };
    OnModalDialog<TfrmConfirm>([&](TfrmConfirm &dialog) {
      // More while the notice shows have a notice of their own. It names ten, and says how many there were besides; a
      // page may give them addresses of any length.
      const QString endless(2000000, u'x');
      for (int i = 0; i < 13; ++i) QVERIFY(m_blocker->IsPopupBlocked(QStringLiteral("http://ads6.example/") + endless));
      OnModalDialog<TfrmConfirm>(take);
      take(dialog);
    });
    QTRY_COMPARE(told.size(), 2);
    QCOMPARE(told.first().count(u'\n'), 4);
    QVERIFY(told.last().startsWith(QLatin1String("http://ads6.example/xxx")));
    QCOMPARE(told.last().section(u'\n', 10), m_f.language.Text("POPUPS", "NoticeMore").arg(3));
    QVERIFY(told.last().size() < 10000);
  }

  void WindowGoesWhileTheNoticeShows() {
    UseList({QStringLiteral("http://ads")});
    bool shown = false;
    OnModalDialog<TfrmConfirm>([&](TfrmConfirm &) {
      shown = true;
      delete m_blocker;
      m_f.Engine().SetPolicy(nullptr);
      QApplication::activeModalWidget()->close();
    });
    QVERIFY(m_blocker->IsPopupBlocked(QStringLiteral("http://ads.example/")));
    QTRY_VERIFY(shown && QApplication::activeModalWidget() == nullptr);
  }

  void Counter() {
    Notify(false);
    UseList({m_f.server.Url(QStringLiteral("/popup"))});
    TBrowserTab *opener = OpenPage(QStringLiteral("/opener"));
    QSignalSpy changed(&m_blocker->Stopped(), &TStoppedPopups::Changed);
    AskForWindow(opener, QStringLiteral("/popup?1"));
    AskForWindow(opener, QStringLiteral("/popup?2"));
    QCOMPARE(changed.size(), 2);
    QCOMPARE(changed.last().first().value<TBrowserTab *>(), opener);
    QCOMPARE(changed.last().last().toInt(), 2);
    QVERIFY(m_blocker->Stopped().CounterText(opener).contains(u'2'));
    // They belong to their page: another tab has none, and the next page begins anew.
    TBrowserTab *other = m_f.tabs->NewTab();
    QCOMPARE(m_blocker->Stopped().Count(other), 0);
    QVERIFY(m_blocker->Stopped().CounterText(other).isEmpty());
    opener->Navigate(m_f.server.Url(QStringLiteral("/other")));
    QTRY_COMPARE_WITH_TIMEOUT(m_blocker->Stopped().Count(opener), 0, m_f.LoadTime);
    QCOMPARE(changed.last().last().toInt(), 0);
  }

  void ManyStopped() {
    TBrowserTab *opener = m_f.tabs->GetActivePage();
    constexpr int Count = 3 * TStoppedPopups::MostKept;
    for (int i = 0; i < Count; ++i) m_blocker->Stopped().Add(opener, {QStringLiteral("http://ads/%1").arg(i), {}});
    QCOMPARE(m_blocker->Stopped().Count(opener), Count);
    QCOMPARE(m_blocker->Stopped().Stopped(opener).size(), TStoppedPopups::MostKept);
    // A tab that goes takes its list along.
    m_f.tabs->NewTab();
    opener->Close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(m_blocker->Stopped().Count(opener), 0);
  }

  void OpenAfterAll() {
    Notify(false);
    UseList({m_f.server.Url(QStringLiteral("/popup"))});
    TBrowserTab *opener = OpenPage(QStringLiteral("/opener"));
    AskForWindow(opener, QStringLiteral("/popup?a=1&b=2"));
    QMenu menu;
    m_blocker->Stopped().FillMenu(&menu, opener);
    m_blocker->Stopped().FillMenu(&menu, opener);
    QCOMPARE(menu.actions().size(), 1);
    QCOMPARE(menu.actions().first()->text(), m_f.server.Url(QStringLiteral("/popup?a=1&&b=2")));
    QMenu *choices = menu.actions().first()->menu();
    QVERIFY(choices != nullptr);
    choices->actions().first()->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(m_f.server.RequestCount("/popup"), 1, m_f.LoadTime);
    QCOMPARE(m_f.tabs->GetActivePage()->Url(), m_f.server.Url(QStringLiteral("/popup?a=1&b=2")));
  }

  void RemovePattern() {
    Notify(false);
    const QString pattern = m_f.server.Url(QStringLiteral("/pop*p"));
    UseList({QStringLiteral("http://another"), pattern});
    TBrowserTab *opener = OpenPage(QStringLiteral("/opener"));
    AskForWindow(opener, QStringLiteral("/popup"));
    m_f.tabs->CloseHiddenTabs();
    QMenu menu;
    m_blocker->Stopped().FillMenu(&menu, opener);
    QAction *remove = menu.actions().first()->menu()->actions().last();
    QVERIFY(remove->text().contains(pattern));
    remove->trigger();
    QCOMPARE(Raw(), QStringList({"url1=http://another"}));
    AskForWindow(opener, QStringLiteral("/popup"));
    QTRY_COMPARE_WITH_TIMEOUT(m_f.server.RequestCount("/popup"), 1, m_f.LoadTime);
  }

  void AddCancelled() {
    TBrowserTab *tab = OpenPage(QStringLiteral("/other?a=1?b=2"));
    QString proposed;
    OnModalDialog<QInputDialog>([&](QInputDialog &dialog) {
      proposed = dialog.textValue();
      dialog.reject();
    });
    m_blocker->AddToPopupList(tab);
    QCOMPARE(proposed, m_f.server.Url(QStringLiteral("/other")));
    QVERIFY(Raw().isEmpty());
    QCOMPARE(tab->GetLocationUrl(), m_f.server.Url(QStringLiteral("/other?a=1?b=2")));
  }

  void AddAnswers_data() {
    Columns<QString, QStringList, QStringList>("answer", "stored", "known");
    Row("in its place", "http://b*", QStringList{"url1=http://a", "url2=http://b*", "url3=http://c"},
        QStringList{"http://a", "http://b*", "http://c"});
    Row("there already", "HTTP://A", QStringList{"url1=http://a", "url2=http://c"},
        QStringList{"http://a", "http://c"});
    Row("empty", "", QStringList{"url1=", "url2=http://a", "url3=http://c"}, QStringList{"http://a", "http://c"});
  }

  void AddAnswers() {
    QFETCH(QString, answer);
    UseList({QStringLiteral("http://a"), QStringLiteral("http://c")});
    TBrowserTab *tab = m_f.tabs->NewTab();
    QCOMPARE(m_f.tabs->TabCount(), 2);
    OnModalDialog<QInputDialog>([&](QInputDialog &dialog) {
      dialog.setTextValue(answer);
      dialog.accept();
    });
    m_blocker->AddToPopupList(tab);
    QCOMPARE(m_f.tabs->TabCount(), 1);
    QTEST(Raw(), "stored");
    QTEST(m_blocker->Patterns().Patterns(), "known");
  }

  // What cannot be stored is told, and the page stays for another try.
  void AddIsRefused() {
    TBrowserTab *tab = m_f.tabs->NewTab();
    m_f.Load(tab, QStringLiteral("/popup"));
    QString told;
    OnModalDialog<QInputDialog>([&](QInputDialog &dialog) {
      OnModalDialog<QMessageBox>([&](QMessageBox &box) {
        told = box.text();
        box.accept();
      });
      dialog.accept();
    });
    // Somebody else writes all the while.
    TRegistryStore other(m_f.store->FilePath());
    QVERIFY(other.InTransaction([&] {
      m_blocker->AddToPopupList(tab);
      return true;
    }));
    QTRY_COMPARE(told, m_f.language.Text("MAIN", "StoreNotKept"));
    QCOMPARE(m_f.tabs->TabCount(), 2);
    QVERIFY(LoadPopupList(*m_f.store).isEmpty());
  }

  void AddFromAPopup() {
    TBrowserTab *opener = OpenPage(QStringLiteral("/opener"));
    AskForWindow(opener, QStringLiteral("/popup?x"));
    QTRY_COMPARE_WITH_TIMEOUT(m_f.server.RequestCount("/popup"), 1, m_f.LoadTime);
    TBrowserTab *popup = m_f.tabs->Tab(1);
    popup->Navigate(m_f.server.Url(QStringLiteral("/other")));
    QTRY_COMPARE_WITH_TIMEOUT(m_f.server.RequestCount("/other"), 1, m_f.LoadTime);
    // The address that it came with counts, not where it went from there.
    QString shown;
    OnModalDialog<QInputDialog>([&](QInputDialog &dialog) {
      shown = dialog.textValue();
      dialog.accept();
    });
    m_blocker->AddToPopupList(popup);
    QCOMPARE(shown, m_f.server.Url(QStringLiteral("/popup")));
    QVERIFY(m_blocker->IsPopupBlocked(m_f.server.Url(QStringLiteral("/popup?y"))));
  }

  void SettingsAreReadAgain() {
    m_f.settings->Set(Setting::UsePopupHalvex, false);
    SavePopupList(*m_f.store, {QStringLiteral("http://ads")});
    m_blocker->Reload();
    QVERIFY(!m_blocker->IsPopupBlocked(QStringLiteral("http://ads.example")));
    m_f.settings->Set(Setting::UsePopupHalvex, true);
    QVERIFY(m_blocker->IsPopupBlocked(QStringLiteral("http://ads.example")));
    OnModalDialog<TfrmConfirm>([](TfrmConfirm &dialog) { dialog.accept(); });
    QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
    // What is known is written back, over what others have made of it.
    SavePopupList(*m_f.store, {QStringLiteral("http://other"), QStringLiteral("http://more")});
    m_blocker->Save();
    QCOMPARE(Raw(), QStringList("url1=http://ads"));
  }

 private:
  void UseList(const QStringList &patterns) {
    SavePopupList(*m_f.store, patterns);
    m_blocker->Reload();
  }

  // The stored list as it stands: "name=data".
  [[nodiscard]] QStringList Raw() const {
    QStringList lines;
    for (const TRegistryValue &value : m_f.store->Values(User, Key)) lines.append(value.name + u'=' + value.data);
    return lines;
  }

  TBrowserTab *OpenPage(const QString &path) {
    TBrowserTab *tab = m_f.tabs->GetActivePage();
    m_f.Load(tab, path);
    return tab;
  }

  // Lets the page ask for a window on `path` and waits for the test of its address.
  void AskForWindow(TBrowserTab *tab, const QString &path) {
    const int before = m_f.tabs->TabCount();
    m_f.Run(tab, QStringLiteral("window.open('%1')").arg(path));
    QTRY_VERIFY_WITH_TIMEOUT(m_f.tabs->TabCount() > before && !m_f.tabs->Tabs().contains(nullptr), m_f.LoadTime);
    const auto tested = [this] {
      const QList<TBrowserTab *> tabs = m_f.tabs->Tabs();
      return std::none_of(tabs.begin(), tabs.end(), [](const TBrowserTab *each) { return each->Hidden(); });
    };
    QTRY_VERIFY_WITH_TIMEOUT(tested(), m_f.LoadTime);
  }

  void Notify(bool on) { m_f.settings->Set(Setting::PopupHalvexNotify, on); }

  TAnsweringPolicy m_policy;
  TTabsFixture m_f;
  TPopupBlocker *m_blocker = nullptr;
};

int main(int argc, char **argv) {
  return RunWithEngine<TestPopups>(argc, argv);
}

#include "test_popups.moc"
