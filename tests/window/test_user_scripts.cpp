#include <QAbstractButton>
#include <QDir>
#include <QSignalSpy>
#include <QTreeWidget>
#include <QWebEngineScript>

#include "chrome/options/options_dialog.h"
#include "chrome/options/user_scripts_page.h"
#include "config/registry_paths.h"
#include "security/zone_store.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "user_scripts/user_scripts.h"
#include "window/main_window_fixture.h"
#include "window/page_click.h"

using namespace Qt::StringLiterals;

#define SOON(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, TMainWindowFixture::LoadTime)

// User scripts in the window. 127.0.0.1 is the Internet, "localhost" the intranet.
class TestUserScripts final : public QObject {
  Q_OBJECT

 private:
  // Puts a script into the list; what is loaded stays as it is.
  void Put(const QString &file, const QByteArray &source) {
    QFile script(TUserScripts::Folder() + u'/' + file);
    QVERIFY(script.open(QIODevice::WriteOnly) && script.write(source) == source.size());
    m_f.store->CreateKey(TRegistryHive::CurrentUser, QLatin1String(RegistryKey::BrowserHelperObjects) + u'\\' + file);
  }
  // A script that leaves its name in the page. Its own name is what is behind "@name".
  void PutMarking(const QString &name, const QByteArray &rules, const QByteArray &before = {}) {
    Put(name + u".js"_s, "// ==UserScript==\n// @name " + name.toUtf8() + '\n' + rules + "\n// ==/UserScript==\n" +
                             before + "document.documentElement.classList.add('" + name.toUtf8() + "');\n");
  }
  void SetLoaded(bool on) { m_f.window->Settings().Set(Setting::LoadBHOs, on); }
  [[nodiscard]] QWebEnginePage &Page() const { return *m_f.window->Tabs().GetActivePage()->Browser()->EnginePage(); }
  void Load(const QString &address) {
    TBrowserTab *tab = m_f.window->Tabs().GetActivePage();
    const QSignalSpy loaded(&m_f.window->Tabs(), &TTabStrip::TabLoaded);
    tab->Navigate(address);
    QTRY_VERIFY_WITH_TIMEOUT(!loaded.isEmpty(), TMainWindowFixture::LoadTime);
  }
  // The names that scripts have left in the page.
  [[nodiscard]] QString Marks() const {
    std::optional<QString> marks;
    // Not in the page's world: its scripts may not run everywhere.
    Page().runJavaScript(u"document.documentElement.className"_s, QWebEngineScript::ApplicationWorld,
                         [&](const QVariant &value) { marks = value.toString(); });
    [&] { QTRY_VERIFY_WITH_TIMEOUT(marks.has_value(), TMainWindowFixture::LoadTime); }();
    return marks.value_or(QString());
  }
  // The last script of all, which says that those before it had their turn.
  void PutLast() { PutMarking(u"zlast"_s, "// @include *"); }

 private Q_SLOTS:
  void initTestCase() {
    m_f.Prepare();
    m_f.server.Route("/a", TTestResponse::Page("<body>a<script>var own = 'page'</script><iframe src=/b></iframe>"));
    m_f.server.Route("/b", TTestResponse::Page("<body>b"));
    m_f.server.Route("/away", TTestResponse::Redirect("/b"));
  }
  void init() {
    m_f.Begin();
    TZVOptions(*m_f.store).Set(Setting::LoadBHOs, true);
    QVERIFY(QDir(TUserScripts::Folder()).removeRecursively() && QDir().mkpath(TUserScripts::Folder()));
  }
  void cleanup() { m_f.End(); }

  void WhereTheyRun_data() {
    Columns<QString, QString>("address", "marks");
    Row("match", u"http://127.0.0.1/a"_s, u"all only-a"_s);
    Row("no match", u"http://127.0.0.1/b"_s, u"all not-a"_s);
    Row("redirect", u"http://127.0.0.1/away"_s, u"all not-a"_s);
    Row("intranet", u"http://localhost/b"_s, u"all not-a"_s);
    Row("restricted", u"http://bad.localhost/b"_s, QString());
    Row("this computer", u"file:"_s, QString());
  }
  // By their rules, and never on this computer's pages and restricted sites.
  void WhereTheyRun() {
    QFETCH(QString, address);
    QFETCH(QString, marks);
    // All that run have run when the page is there.
    const QByteArray early = "\n// @run-at document-end";
    PutMarking(u"all"_s, "// @match *://*/*" + early);
    PutMarking(u"not-a"_s, "// @include *\n// @exclude */a" + early);
    PutMarking(u"only-a"_s, "// @match *://*/a" + early);
    // Nothing that its text says takes a script out of this.
    PutMarking(u"breaks-out"_s, "// @match *://*/none" + early,
               "}); document.documentElement.classList.add('out'); function confirm() { return true } (function () {");
    TZoneStore zones(*m_f.store);
    QVERIFY(zones.AddMapping(u"http://bad.localhost"_s, 4));
    QFile file(m_f.Path(u"page.html"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("<body>c") > 0);
    file.close();
    m_f.Open();
    // Scripts of the page before must not run on the next one.
    Load(m_f.server.Url(u"/a"_s));
    SOON(Marks(), u"all only-a"_s);
    QCOMPARE(AnswerOf(Page(), u"frames[0].document.documentElement.className"_s).toString(), u"all not-a"_s);
    const QUrl url(address);
    Load(url.host().isEmpty() ? u"file://"_s + file.fileName() : m_f.server.Url(url.path(), url.host()));
    QCOMPARE(Marks(), marks);
  }

  void Frames_data() {
    Columns<QString, QStringList>("host", "ran");
    Row("open page", u"127.0.0.1"_s,
        QStringList{u"all-127.0.0.1/b"_s, u"all-127.0.0.1/framed"_s, u"all-localhost/b"_s, u"top-127.0.0.1/framed"_s});
    Row("restricted page", u"bad.localhost"_s, QStringList());
  }
  // By the addresses of their own, those of other sites too, but not in restricted ones and their pages' frames.
  void Frames() {
    QFETCH(QString, host);
    QFETCH(QStringList, ran);
    QByteArray frames("<iframe srcdoc=c></iframe>");
    for (const char *site : {"bad.localhost", "127.0.0.1", "localhost"})
      frames += "<iframe src=" + m_f.server.Url(u"/b"_s, QLatin1String(site)).toUtf8() + "></iframe>";
    m_f.server.Route("/framed", TTestResponse::Page("<body>" + frames));
    const auto told = std::make_shared<QStringList>();
    m_f.server.Route("/ran", [told](const TTestRequest &request) {
      told->append(QString::fromLatin1(request.query));
      return TTestResponse::Text({});
    });
    const auto tell = [](const QByteArray &name) {
      return "fetch('/ran?" + name + "-' + location.hostname + location.pathname);";
    };
    PutMarking(u"all"_s, "// @match *://*/*\n// @run-at document-end", tell("all"));
    PutMarking(u"top"_s, "// @match *://*/framed\n// @match *://*/b\n// @noframes", tell("top"));
    QVERIFY(TZoneStore(*m_f.store).AddMapping(u"http://bad.localhost"_s, 4));
    m_f.Open();
    Load(m_f.server.Url(u"/framed"_s, host));
    // What comes last says that all others had their turn.
    m_f.server.Route("/end", TTestResponse::Page("<body>end"));
    QTRY_VERIFY_WITH_TIMEOUT(told->size() >= ran.size(), TMainWindowFixture::LoadTime);
    Load(m_f.server.Url(u"/end"_s));
    const QString last = u"all-127.0.0.1/end"_s;
    QTRY_VERIFY_WITH_TIMEOUT(told->contains(last), TMainWindowFixture::LoadTime);
    told->removeOne(last);
    told->sort();
    QCOMPARE(*told, ran);
  }

  // Before the page's own scripts, or after all of it is there; neither sees the variables of the other.
  void MomentAndWorld() {
    m_f.server.Route("/order", TTestResponse::Page("<script>var own = 'page'; document.dispatchEvent(new Event('ask'));"
                                                   "document.title = document.documentElement.className + typeof mine"
                                                   "</script><p id=p>"));
    PutMarking(u"early"_s, "// @match *://*/*\n// @run-at document-start",
               "globalThis.mine = 1; document.addEventListener('ask', () => "
               "document.documentElement.classList.add('early')); return;");
    PutMarking(u"late"_s, "// @match *://*/*\n// @run-at document-end",
               "document.documentElement.dataset.sees = typeof own + typeof mine;"
               "if (document.getElementById('p') === null) return;");
    m_f.Open();
    Load(m_f.server.Url(u"/order"_s));
    QCOMPARE(Marks(), u"early late"_s);
    QCOMPARE(AnswerOf(Page(), u"document.title"_s).toString(), u"earlyundefined"_s);
    QCOMPARE(AnswerOf(Page(), u"document.documentElement.dataset.sees"_s).toString(), u"undefinedundefined"_s);
  }

  // They come and go with the setting while the window is open, from the next page on; files are read anew.
  void LoadAndRelease() {
    const QByteArray early = "// @match *://*/*\n// @run-at document-end";
    PutMarking(u"old"_s, early);
    m_f.Open();
    const QString page = m_f.server.Url(u"/b"_s);
    Load(page);
    SOON(Marks(), u"old"_s);
    SetLoaded(false);
    QCOMPARE(Marks(), u"old"_s);
    PutMarking(u"new"_s, early);
    Load(page);
    QCOMPARE(Marks(), QString());
    SetLoaded(true);
    Load(page);
    SOON(Marks(), u"old new"_s);
  }

  void Failures_data() {
    Columns<QByteArray, QString>("code", "told");
    Row("throws", QByteArray("throw new Error('boom');"), u"boom"_s);
    Row("throws later", QByteArray("setTimeout(() => { throw new Error('boom'); });"), u"boom"_s);
    Row("refuses later", QByteArray("Promise.reject(new Error('boom'));"), u"boom"_s);
    Row("does not parse", QByteArray("let let = 1;"), u"let"_s);
  }
  // A script that fails is told of in the options, with its line, and the others run.
  void Failures() {
    QFETCH(QByteArray, code);
    QFETCH(QString, told);
    PutMarking(u"bad"_s, "// @match *://*/*", code);
    PutLast();
    m_f.Open();
    Load(m_f.server.Url(u"/b"_s));
    SOON(Marks().right(5), u"zlast"_s);
    QString state;
    const auto look = [&] {
      m_f.window->Actions()[TCommand::Options]->trigger();
      auto *dialog = m_f.window->findChild<TfrmOptions *>();
      auto *list = dialog->findChild<QTreeWidget *>(u"lvScripts"_s);
      state = list->topLevelItem(0)->text(1);
      const bool isOthers = list->topLevelItem(1)->text(1).isEmpty();
      delete dialog;
      return isOthers && state.contains(told);
    };
    QTRY_VERIFY2(look(), qPrintable(state));
    QVERIFY2(state.contains(u'5'), qPrintable(state));
  }

  // One that never ends holds up its own page, and no other.
  void EndlessLoop() {
    PutMarking(u"bad"_s, "// @match *://127.0.0.1/*", "for (;;) {}");
    m_f.Open();
    m_f.window->Tabs().GetActivePage()->Navigate(m_f.server.Url(u"/b"_s));
    QTRY_COMPARE(m_f.server.RequestCount("/b"), 1);
    m_f.window->Tabs().NewTab();
    m_f.server.Route("/c", TTestResponse::Page("<title>well</title>"));
    m_f.window->Tabs().GetActivePage()->Navigate(m_f.server.Url(u"/c"_s, u"localhost"_s));
    SOON(m_f.window->Tabs().GetActivePage()->Browser()->LocationName(), u"well"_s);
  }

  // The page of the options: nothing holds before OK.
  void Options() {
    PutMarking(u"one"_s, "// @match *://*/*");
    PutMarking(u"two"_s, "// @match *://*/*");
    Put(u"three.js"_s, "alert(1)");
    const QString added = m_f.Path(u"four.js"_s);
    QFile file(added);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("// ==UserScript==\n// @name Four\n// ==/UserScript==") > 0);
    file.close();
    m_f.Open();
    const TUserScripts stored(m_f.window->Settings());
    const auto listed = [&] {
      QStringList all;
      for (const TUserScripts::TEntry &entry : stored.Entries())
        all.append(entry.file + (entry.isOn ? u"+"_s : u"-"_s));
      return all;
    };
    const QStringList before = listed();
    QCOMPARE(before, QStringList({u"one.js+"_s, u"two.js+"_s, u"three.js+"_s}));
    for (const bool isKept : {false, true}) {
      m_f.window->Actions()[TCommand::Options]->trigger();
      auto *dialog = m_f.window->findChild<TfrmOptions *>();
      auto *page = dialog->findChild<TUserScriptsPage *>();
      auto *list = page->findChild<QTreeWidget *>(u"lvScripts"_s);
      QVERIFY(list->topLevelItem(0)->text(1).isEmpty() && !list->topLevelItem(2)->text(1).isEmpty());
      list->topLevelItem(1)->setCheckState(0, Qt::Unchecked);
      list->setCurrentItem(list->topLevelItem(0));
      page->findChild<QAbstractButton *>(u"btnRemoveScript"_s)->click();
      page->Add(added);
      page->Add(u"/dev/zero"_s);
      OnModalDialog<QDialog>([](QDialog &warning) { warning.close(); });
      QTRY_VERIFY(QApplication::activeModalWidget() == dialog);
      QCOMPARE(list->topLevelItemCount(), 3);
      QCOMPARE(list->topLevelItem(2)->text(0), u"Four"_s);
      QCOMPARE(listed(), before);
      dialog->findChild<QAbstractButton *>(isKept ? u"cmdOK"_s : u"cmdCancel"_s)->click();
      QTRY_VERIFY(m_f.window->findChild<TfrmOptions *>() == nullptr);
    }
    QCOMPARE(listed(), QStringList({u"two.js-"_s, u"three.js+"_s, u"four.js+"_s}));
    QCOMPARE(TUserScripts::Look(u"four.js"_s).name, u"Four"_s);
  }

 private:
  TMainWindowFixture m_f;
};

ENGINE_MAIN(TestUserScripts)
#include "test_user_scripts.moc"
