#include <QMenu>
#include <QToolButton>

#include "annotations/annotation_band.h"
#include "browser/engine/own_scripts.h"
#include "window/answering_policy.h"
#include "window/tabs_fixture.h"

// Words of pages that a service explains: when it is asked, what is found and marked in real pages, and what the page,
// the service and the user can do with it. The local server is the pages and the service; it is not on the Internet, so
// that what may be asked for is told here: all but what is below /own.
class TestAnnotations final : public QObject, private TTabsFixture {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    Prepare();
    m_service = server.Url(u"/words"_s);
    server.RoutePage("/page", "Page", "<p id=p>The tide comes, and the sea goes.</p>");
    server.RoutePage("/other", "Other", "<p>No such word; the sea.</p>");
    server.RoutePage("/own", "Own", "<p>The tide.</p>");
  }
  void init() {
    Answer(
        "[{'word':'sea','title':'Much water','links':[{'title':'Sea','address':'https://sea.example/'}]},"
        "{'word':'tide','title':'It rises'},{'word':'moon','title':'It shines'}]");
    product.annotationService = m_service;
    Begin();
    MakeBand();
  }
  void cleanup() {
    m_band.reset();
    delete m_button;
    End();
  }

  void NothingWithoutService() {
    m_band.reset();
    product.annotationService.clear();
    Agree();
    MakeBand();
    OpenPage(u"/page"_s);
    QVERIFY(!m_button->isVisible() && !Menu()->menuAction()->isVisible());
    QCOMPARE(server.RequestCount("/words"), 0);
  }

  void Asked_data() {
    Columns<QString, QString, bool, bool, bool>("path", "agreed", "enabled", "asked", "button");
    const QString host = u"127.0.0.1"_s;
    Row("agreed", u"/page"_s, host, true, true, true);
    Row("not agreed", u"/page"_s, u""_s, true, false, true);
    Row("agreed to another host", u"/page"_s, u"words.example"_s, true, false, true);
    Row("switched off", u"/page"_s, host, false, false, false);
    Row("neither", u"/page"_s, u""_s, false, false, false);
    Row("no page of the Internet", u"/own"_s, host, true, false, false);
    Row("neither that nor agreed", u"/own"_s, u""_s, true, false, false);
    Row("agreed, and no word on the page", u"/none"_s, host, true, true, false);
  }
  void Asked() {
    QFETCH(QString, path);
    QFETCH(QString, agreed);
    QFETCH(bool, enabled);
    QFETCH(bool, asked);
    QFETCH(bool, button);
    server.RoutePage("/none", "None", "<p>Nothing.</p>");
    settings->Set(Setting::FlyswatAgreed, agreed);
    settings->Set(Setting::FlyswatEnabled, enabled);
    OpenPage(path);
    const QString none = language.Text("ANNOTATIONS", "None");
    if (asked) QTRY_VERIFY(!m_button->text().isEmpty() || OpenMenu()->actions().last()->text() == none);
    QCOMPARE(server.RequestCount("/words"), asked ? 1 : 0);
    QTRY_COMPARE(m_button->isVisible(), button);
    QCOMPARE(Menu()->menuAction()->isVisible(), true);
    // What was not asked for until then is not on its way either.
    settings->Set(Setting::FlyswatAgreed, u""_s);
    settings->Set(Setting::FlyswatEnabled, true);
    Agree();
    OpenPage(u"/last?#fragment"_s);
    QTRY_COMPARE(server.RequestCount("/words"), path == u"/own"_s ? 1 : 2);
    QCOMPARE(server.Requests("/words").last().query, "u=" + QUrl::toPercentEncoding(server.Url(u"/last?"_s)));
  }

  // A page is asked for when somebody looks at it.
  void OnlyPagesInFront() {
    Agree();
    TBrowserTab *front = tabs->GetActivePage();
    TBrowserTab *behind = tabs->NewBackgroundTab();
    Load(behind, u"/page"_s);
    Load(front, u"/other"_s);
    QTRY_COMPARE(m_button->text(), u"1"_s);
    QCOMPARE(server.RequestCount("/words"), 1);
    tabs->Activate(behind);
    QTRY_COMPARE(m_button->text(), u"2"_s);
    QCOMPARE(server.RequestCount("/words"), 2);
    // What is known is shown at once, and asked for no more.
    tabs->Activate(front);
    QCOMPARE(m_button->text(), u"1"_s);
    tabs->Activate(behind);
    QCOMPARE(m_button->text(), u"2"_s);
    behind->Reload(false);
    QTRY_COMPARE(server.RequestCount("/page"), 2);
    QTRY_COMPARE(Marks(behind), u"p:tide p:sea"_s);
    QCOMPARE(server.RequestCount("/words"), 2);
  }

  // What counts as the word, where text may be marked at all.
  void Words() {
    constexpr struct {
      const char *text;
      const char *marks;
    } rows[] = {
        {"Tide tIDE tide", "Tide|tIDE|tide"},
        {"tides untide tide_ tide2 étide", ""},
        {"tide's (tide) tide-mark", "tide|tide|tide"},
        {"a spring \n tide.", "spring \n tide"},
        {"spring tide tide table", "spring tide|tide table"},
        {"C++ C++11 C+", "C++|C++"},
        {"(a.b)* aXb a.b", "(a.b)*"},
        {"東京の海", "海"},
        {"ti<b>de</b>", ""},
    };
    Answer(
        "[{'word':'tide','title':'t'},{'word':'spring tide','title':'t'},{'word':'C++','title':'t'},"
        "{'word':'tide "
        "table','title':'t'},{'word':'(a.b)*','title':'t'},{'word':'海','title':'t'},{'word':'no','title':'t'}]");
    QByteArray body;
    QStringList marks;
    for (size_t i = 0; i < std::size(rows); ++i) {
      const QString id = u"r%1"_s.arg(i);
      body += "<p id=" + id.toLatin1() + '>' + rows[i].text;
      const QString expected = QString::fromUtf8(rows[i].marks);
      for (const QString &mark : expected.split(u'|', Qt::SkipEmptyParts)) marks.append(id + u':' + mark);
    }
    server.RoutePage("/forms", "Forms", body);
    Agree();
    TBrowserTab *tab = OpenPage(u"/forms"_s);
    QTRY_COMPARE(m_button->text(), u"6"_s);
    QCOMPARE(Marks(tab), marks.join(u' '));
  }

  // Where words are marked, and where they are only found or not even looked for. Each place has a word of its own.
  void Places() {
    enum TPlace { Marked, Found, Closed };
    constexpr std::pair<TPlace, const char *> rows[] = {
        {Marked, "<p>%</p>"},
        {Marked, "x % x"},
        {Marked, "<table><td>%</table>"},
        {Marked, "<form><input name=closest><input name=isContentEditable><input name=parentNode>%</form>"},
        {Marked, "<details open>%</details>"},
        {Marked, "<div contenteditable=false>%</div>"},
        {Found, "<a href='/x'>%</a>"},
        {Found, "<a href='/x'><b>%</b></a>"},
        {Found, "<button>%</button>"},
        {Found, "<label>%</label>"},
        {Found, "<code>%</code>"},
        {Found, "<pre>%</pre>"},
        {Found, "<kbd>%</kbd>"},
        {Found, "<samp>%</samp>"},
        {Found, "<details><summary>%</summary></details>"},
        {Found, "<div onclick='1'>%</div>"},
        {Found, "<div role=button>%</div>"},
        {Found, "<div style='cursor:pointer'>%</div>"},
        {Found, "<div style='display:flex'>%</div>"},
        {Found, "<div style='display:grid'>%</div>"},
        {Closed, "<textarea>%</textarea>"},
        {Closed, "<input value=%>"},
        {Closed, "<select><option>%</select>"},
        {Closed, "<script>var %</script>"},
        {Closed, "<style>/* % */</style>"},
        {Closed, "<div contenteditable>a <b>%</b></div>"},
        {Closed, "<div contenteditable=plaintext-only>%</div>"},
        {Closed, "<p hidden>%</p>"},
        {Closed, "<p style='display:none'>%</p>"},
        {Closed, "<p style='visibility:hidden'>%</p>"},
        {Closed, "<details><p>%</p></details>"},
        {Closed, "<details>%</details>"},
        {Closed, "<svg><text>%</text></svg>"},
        {Closed,
         "<i></i><script>document.querySelector('i').append(document.createElementNS('urn:x', 'x'));"
         "document.querySelector('i').firstChild.textContent = '%'</script>"},
        {Closed, "<template>%</template>"},
        {Closed, "<noscript>%</noscript>"},
        {Closed, "<iframe srcdoc='%'></iframe>"},
        {Closed, "<!-- % -->"},
        {Closed, "<img alt='%' title='%'>"},
    };
    QByteArray body;
    QByteArrayList words;
    QStringList marks, found;
    for (const auto &[place, html] : rows) {
      const QByteArray word = "word" + QByteArray::number(100 + words.size());
      body += "<div>" + QByteArray(html).replace('%', word) + "</div>";
      words.append("{'word':'" + word + "','title':'t'}");
      if (place == Marked) marks.append(u':' + QString::fromLatin1(word));
      if (place != Closed) found.append(QString::fromLatin1(word));
    }
    // Elements whose names hide what a document can do.
    body += "<img name=createTreeWalker><img name=createElement><img name=createRange><a id=console></a>";
    Answer('[' + words.join(',') + ']');
    server.RoutePage("/places", "Places", body);
    TBrowserTab *tab = OpenPage(u"/places"_s);
    const QString before = Html(tab);
    Agree();
    QTRY_COMPARE(m_button->text(), QString::number(found.size()));
    QCOMPARE(Marks(tab), marks.join(u' '));
    QCOMPARE(Items(*OpenMenu()).mid(5), found);

    settings->Set(Setting::FlyswatShowLinks, false);
    QTRY_COMPARE(Marks(tab), u""_s);
    QCOMPARE(Html(tab), before);
    QCOMPARE(m_button->text(), QString::number(found.size()));
    settings->Set(Setting::FlyswatShowLinks, true);
    QTRY_COMPARE(Marks(tab), marks.join(u' '));
    settings->Set(Setting::FlyswatEnabled, false);
    QTRY_COMPARE(Marks(tab), u""_s);
    QCOMPARE(Html(tab), before);
    QVERIFY(!m_button->isVisible());
  }

  void PagesThatAreEdited() {
    server.RoutePage("/edited", "Edited", "<p>sea</p><script>document.designMode = 'on'</script>");
    QSignalSpy notes(m_band.get(), &TAnnotationBand::Note);
    TBrowserTab *tab = OpenPage(u"/edited"_s);
    Item("pmFlyswatAsk")->trigger();
    QTRY_COMPARE(notes.size(), 1);
    QCOMPARE(Marks(tab), u""_s);
  }

  void PagesThatChangeThemselves() {
    constexpr struct {
      const char *script;
      const char *text;
    } rows[] = {
        {"t.data = 'high tide!'", "high tide!"},
        {"t.appendData('-')", "the -"},
        {"t.remove()", ""},
        {"p.textContent = 'x'", "x"},
        {"while (p.firstChild) q.append(p.firstChild)", ""},
        {"p.normalize()", "the tide and the sea, tide"},
        {"b.normalize()", "the tide and the sea, tide"},
        {"p.append('…'); p.normalize()", "the tide and the sea, tide…"},
        {"p.append(' or'); p.normalize(); t.data = 'a'", "a or"},
        {"p.childNodes[2].appendData('…')", "the tide and the …sea, tide"},
        {"p.querySelector('zvword').textContent = 'flood'", "the flood and the sea, tide"},
    };
    server.RoutePage("/alive", "Alive",
                     "<p id=p>the tide and the sea, tide</p><p id=b>tide, tide</p><p id=q></p>"
                     "<script>var p = document.getElementById('p'), t = p.firstChild</script>");
    TBrowserTab *tab = tabs->GetActivePage();
    Agree();
    for (const auto &[script, text] : rows) {
      settings->Set(Setting::FlyswatShowLinks, true);
      Load(tab, u"/alive"_s);
      QTRY_COMPARE(Marks(tab), u"p:tide p:sea p:tide b:tide b:tide"_s);
      Run(tab, QString::fromUtf8(script));
      QTRY_COMPARE(Answer(tab, u"p.textContent"_s), QString::fromUtf8(text));
      settings->Set(Setting::FlyswatShowLinks, false);
      QTRY_COMPARE(Marks(tab), u""_s);
      QVERIFY2(Answer(tab, u"p.textContent"_s) == QString::fromUtf8(text), script);
      QVERIFY2(Answer(tab, u"b.textContent"_s) == u"tide, tide"_s, script);
      const bool isMoved = qstrncmp(script, "while", 5) == 0;
      QVERIFY2(Answer(tab, u"q.textContent"_s) == (isMoved ? u"the tide and the sea, tide"_s : u""_s), script);
    }
  }

  // A page's own text stays in its place, so that what it holds on to is what it sees.
  void TextsStayThePages() {
    server.RoutePage("/held", "Held", "<p id=p>the tide and the sea</p><script>var t = p.firstChild</script>");
    TBrowserTab *tab = tabs->GetActivePage();
    Agree();
    Load(tab, u"/held"_s);
    QTRY_COMPARE(Marks(tab), u"p:tide p:sea"_s);
    QCOMPARE(Answer(tab, u"String(p.firstChild === t)"_s), u"true"_s);
    settings->Set(Setting::FlyswatShowLinks, false);
    QTRY_COMPARE(Answer(tab, u"t.data"_s), u"the tide and the sea"_s);
    QCOMPARE(Answer(tab, u"String(p.firstChild === t && p.childNodes.length === 1)"_s), u"true"_s);
  }

  void ManyWordsOnAPage() {
    TAnsweringPolicy policy;
    policy.AnswerFor(Engine());
    policy.permissions.scripts = false;
    policy.restrictedPath = u"/without-scripts"_s;
    TBrowserTab *tab = tabs->GetActivePage();
    Agree();
    for (const char *path : {"/many", "/without-scripts"}) {
      server.RoutePage(path, "Many", QByteArray("<p>tide tide tide ").repeated(700) + "<p>sea");
      Load(tab, QLatin1String(path));
      QTRY_COMPARE_WITH_TIMEOUT(m_button->text(), u"2"_s, LoadTime);
      const QString count = u"document.querySelectorAll('zvword').length"_s;
      QCOMPARE(AnswerOf(*tab->Browser()->EnginePage(), count, ScriptWorld::Own).toInt(), 500);
    }
  }

  void PolicyOfThePage() {
    server.Route("/policy", TTestResponse{.body = "<p id=p>tide</p>",
                                          .headers = {{"Content-Type", "text/html"},
                                                      {"Content-Security-Policy", "default-src 'none'"}}});
    TBrowserTab *tab = tabs->GetActivePage();
    Agree();
    Load(tab, u"/policy"_s);
    QTRY_COMPARE(m_button->text(), u"1"_s);
    const QString look = u"getComputedStyle(document.querySelector('zvword')).textDecorationStyle"_s;
    QCOMPARE(Answer(tab, look), u"dotted"_s);
  }

  void MenuOfWords() {
    Answer("[{'word':'sea & more','title':'x'},{'word':'tide','title':'<b>It</b> rises & falls, " +
           QByteArray("and so on ").repeated(15) +
           "','links':[{'title':'Tides\\tand more','address':'https://tides.example/a'},"
           "{'address':'http://b.example/?q=%3Cscript%3E'}]},{'word':'sea','title':'s'},{'word':'moon','title':'m'}]");
    server.RoutePage("/menu", "Menu", "<p>tide, sea &amp; more");
    Agree();
    OpenPage(u"/menu"_s);
    QTRY_COMPARE(m_button->text(), u"2"_s);
    QCOMPARE(m_button->toolTip(), language.Text("ANNOTATIONS", "Found").arg(2));
    const QStringList fixed{actions->operator[](TCommand::AnnotationsEnabled)->text(),
                            actions->operator[](TCommand::AnnotationsShowLinks)->text(), u""_s};
    const QString agree = language.Text("ANNOTATIONS", "Agree").arg(u"127.0.0.1"_s);
    for (int i = 0; i < 2; ++i) {
      QCOMPARE(Items(*OpenMenu()), fixed + QStringList({agree, u""_s, u"sea && more"_s, u"tide"_s}));
    }
    QMenu *tide = Menu()->actions().last()->menu();
    const QStringList items = Items(*tide);
    QCOMPARE(items.size(), 6);
    QVERIFY(items.first().startsWith(u"<b>It</b> rises && falls, and so on"_s));
    QCOMPARE(items.mid(3), QStringList({u""_s, u"Tides and more\ttides.example"_s,
                                        u"http://b.example/?q=%3Cscript%3E\tb.example"_s}));
    for (const bool background : {false, true}) {
      TBrowserTab *before = tabs->GetActivePage();
      if (background) QTest::keyPress(window.get(), Qt::Key_Control, Qt::ControlModifier);
      tide->actions().last()->trigger();
      if (background) QTest::keyRelease(window.get(), Qt::Key_Control);
      QCOMPARE(tabs->GetActivePage() == before, background);
    }
    QCOMPARE(tabs->TabCount(), 3);
    QCOMPARE(tabs->GetActivePage()->Url(), u"http://b.example/?q=%3Cscript%3E"_s);
  }

  void AskingForOnePage() {
    OpenPage(u"/page"_s);
    QTRY_COMPARE(m_button->isVisible(), true);
    QCOMPARE(m_button->text(), u""_s);
    QAction *ask = Item("pmFlyswatAsk");
    QVERIFY(ask->isEnabled() && ask->text().contains(u"127.0.0.1"_s));
    ask->trigger();
    QTRY_COMPARE(m_button->text(), u"2"_s);
    QVERIFY(!Item("pmFlyswatAsk")->isEnabled());
    // The next page is asked for by itself only when all may be.
    TBrowserTab *tab = OpenPage(u"/other"_s);
    QTRY_COMPARE(m_button->text(), u""_s);
    QCOMPARE(server.RequestCount("/words"), 1);
    Item("pmFlyswatAgree")->trigger();
    QCOMPARE(settings->Get(Setting::FlyswatAgreed), u"127.0.0.1"_s);
    QTRY_COMPARE(m_button->text(), u"1"_s);
    QVERIFY(Item("pmFlyswatAgree")->isChecked() && Item("pmFlyswatAsk") == nullptr);
    QTRY_VERIFY(!Marks(tab).isEmpty());
    Item("pmFlyswatAgree")->trigger();
    QCOMPARE(settings->Get(Setting::FlyswatAgreed), u""_s);
    QTRY_COMPARE(Marks(tab), u""_s);
    QCOMPARE(m_button->text(), u""_s);
    Load(tab, u"/own"_s);
    QVERIFY(!Item("pmFlyswatAsk")->isEnabled());
  }

  void NoteWhereThereIsNothing_data() {
    Columns<QByteArray>("answer");
    Row("no such word", "[{'word':'moon','title':'x'}]"_ba);
    Row("no words", "[]"_ba);
    Row("no answer", "nonsense"_ba);
  }
  void NoteWhereThereIsNothing() {
    QFETCH(QByteArray, answer);
    Answer(answer);
    QSignalSpy notes(m_band.get(), &TAnnotationBand::Note);
    OpenPage(u"/page"_s);
    QVERIFY(OpenMenu()->actions().last()->isSeparator());
    Item("pmFlyswatAsk")->trigger();
    QTRY_COMPARE(notes.size(), 1);
    const bool hasFailed = answer == "nonsense";
    const QString none = language.Text("ANNOTATIONS", "None");
    QCOMPARE(notes.first().first().toString(), hasFailed ? language.Text("ANNOTATIONS", "Failed") : none);
    // Of a page that nobody has told of, nothing is said.
    QCOMPARE(OpenMenu()->actions().last()->text() == none, !hasFailed);
    // He may try again, and is told again.
    Answer("[{'word':'sea','title':'x'}]");
    Item("pmFlyswatAsk")->trigger();
    QTRY_COMPARE(hasFailed ? m_button->text() : QString::number(notes.size() - 1), u"1"_s);
  }

  void LateAnswers_data() {
    Columns<QString>("way");
    for (const char *way : {"another page", "script", "closed", "disagreed", "switched off"}) {
      Row(way, QString::fromLatin1(way));
    }
  }
  void LateAnswers() {
    QFETCH(QString, way);
    server.Route("/words", [](const TTestRequest &request) {
      const TTestResponse moon = Words("[{'word':'sea','title':'x'}]");
      return request.query.endsWith("page") ? TTestResponse{.body = moon.body, .delayMs = 300}
                                            : TTestResponse::Text("[]");
    });
    Agree();
    TBrowserTab *tab = OpenPage(u"/page"_s);
    QTRY_COMPARE(server.RequestCount("/words"), 1);
    if (way == u"another page"_s) Load(tab, u"/other"_s);
    if (way == u"script"_s) Run(tab, u"history.pushState({}, '', '/elsewhere')"_s);
    if (way == u"closed"_s) tab->Close();
    if (way == u"disagreed"_s) settings->Set(Setting::FlyswatAgreed, u""_s);
    if (way == u"switched off"_s) settings->Set(Setting::FlyswatEnabled, false);
    // Asked after it, and answered after it.
    TAnnotationService second(m_service);
    QSignalSpy answered(&second, &TAnnotationService::Answered);
    second.Ask(server.Url(u"/page"_s));
    QTRY_COMPARE(answered.size(), 1);
    QCOMPARE(m_button->text(), u""_s);
    QCOMPARE(Marks(tabs->GetActivePage()), u""_s);
  }

  // A jump inside the page stays on it; an address that its script gives it is another page.
  void AddressesOfOnePage() {
    Agree();
    TBrowserTab *tab = OpenPage(u"/page"_s);
    QTRY_COMPARE(m_button->text(), u"2"_s);
    Run(tab, u"location.hash = 'p'"_s);
    QTRY_VERIFY(tab->GetLocationUrl().endsWith(u"#p"_s));
    QCOMPARE(m_button->text(), u"2"_s);
    Run(tab, u"history.pushState({}, '', '/elsewhere')"_s);
    QTRY_COMPARE(m_button->text(), u""_s);
    QTRY_COMPARE(Marks(tab), u""_s);
  }

  void ClickOnAMark() {
    server.RoutePage("/click", "Click",
                     "<body style='margin:0;font:40px monospace'><div id=d>sea sea</div><script>var clicks = 0;"
                     "addEventListener('click', () => ++clicks)</script>");
    TBrowserTab *tab = tabs->GetActivePage();
    Agree();
    Load(tab, u"/click"_s);
    QTRY_COMPARE(Marks(tab), u"d:sea d:sea"_s);
    // What a page makes up is no click, and what it copies no mark.
    Run(tab,
        u"document.querySelector('zvword').click();"
        "d.querySelector('zvword').dispatchEvent(new MouseEvent('click', {bubbles: true}))"_s);
    QCOMPARE(Answer(tab, u"String(clicks)"_s), u"2"_s);
    ClickPage(*tab->Browser(), {300, 150});
    QTRY_COMPARE(Answer(tab, u"String(clicks)"_s), u"3"_s);
    QVERIFY(Popup() == nullptr);
    ClickPage(*tab->Browser(), {30, 25});
    QTRY_VERIFY(Popup() != nullptr);
    QCOMPARE(Items(*Popup()), QStringList({u"Much water"_s, u""_s, u"Sea\tsea.example"_s}));
    QVERIFY(QRect(tab->mapToGlobal(QPoint()), tab->size()).contains(Popup()->pos()));
    QCOMPARE(Answer(tab, u"String(clicks)"_s), u"3"_s);
    Popup()->close();
    QTRY_VERIFY(Popup() == nullptr);
  }

  // The program listens to what stands behind a word that no page knows.
  void PagesCannotSpeakForIt() {
    server.RoutePage("/liar", "Liar",
                     "<p>sea</p><script>const info = console.info, say = text => info('?'.repeat(36) + text);"
                     "say('{\"clicked\":0,\"x\":1,\"y\":1}'); say('{\"found\":[0,1,2]}'); say('');"
                     "console.info = console.log = () => {}; JSON.stringify = () => '{\"found\":[0,1,2]}'</script>");
    Agree();
    TBrowserTab *tab = OpenPage(u"/liar"_s);
    QTRY_COMPARE(m_button->text(), u"1"_s);
    Run(tab, u"say('{\"clicked\":0,\"x\":1,\"y\":1}'); say('{\"found\":[0,1,2]}')"_s);
    QCOMPARE(Answer(tab, u"Object.getOwnPropertySymbols(window).map(String).filter(s => s.includes('mark')).join()"_s),
             u""_s);
    QCOMPARE(m_button->text(), u"1"_s);
    QVERIFY(Popup() == nullptr);
  }

 private:
  void MakeBand() {
    m_button = new QToolButton(window.get());
    m_band = std::make_unique<TAnnotationBand>(*actions, *tabs, *m_button);
    m_band->SetMayAsk([this](const QString &address) {
      return address.startsWith(server.Url()) && !address.startsWith(server.Url(u"/own"_s));
    });
  }
  // With ' for ".
  static TTestResponse Words(QByteArray json) { return TTestResponse::Text(json.replace('\'', '"')); }
  void Answer(const QByteArray &json) { server.Route("/words", Words(json)); }
  void Agree() { settings->Set(Setting::FlyswatAgreed, u"127.0.0.1"_s); }
  static QString Answer(TBrowserTab *tab, const QString &script) {
    return AnswerOf(*tab->Browser()->EnginePage(), script).toString();
  }
  // "id of the parent:text" of each.
  static QString Marks(TBrowserTab *tab) {
    return Answer(
        tab, u"[...document.querySelectorAll('zvword')].map(m => m.parentNode.id + ':' + m.textContent).join(' ')"_s);
  }
  // With the number of texts, which the marks divide.
  static QString Html(TBrowserTab *tab) {
    return Answer(tab,
                  u"(() => { const w = Document.prototype.createTreeWalker.call(document, document, 4);"
                  "let n = 0; while (w.nextNode()) ++n; return n + document.documentElement.outerHTML })()"_s);
  }
  [[nodiscard]] QMenu *Menu() const { return actions->Menu(TMenu::Annotations); }
  QMenu *OpenMenu() const {
    Q_EMIT Menu()->aboutToShow();
    return Menu();
  }
  QAction *Item(const char *name) const { return OpenMenu()->findChild<QAction *>(QLatin1String(name)); }
  static QStringList Items(const QMenu &menu) {
    QStringList items;
    for (const QAction *item : menu.actions()) items.append(item->text());
    return items;
  }
  static QMenu *Popup() { return qobject_cast<QMenu *>(QApplication::activePopupWidget()); }

  QString m_service;
  QPointer<QToolButton> m_button;
  std::unique_ptr<TAnnotationBand> m_band;
};

ENGINE_MAIN(TestAnnotations)
#include "test_annotations.moc"
