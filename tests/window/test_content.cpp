#include <array>
#include <QBuffer>
#include <QImage>
#include <QSet>
#include <QToolButton>
#include <QWebEnginePage>

#include "browser/engine/own_scripts.h"
#include "chrome/options/options_dialog.h"
#include "config/registry_paths.h"
#include "content/content_switches.h"
#include "security/zone_store.h"
#include "support/data_row.h"
#include "support/store_trouble.h"
#include "window/main_window_fixture.h"
#include "window/page_click.h"

using namespace Qt::StringLiterals;

#define SOON(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, TMainWindowFixture::LoadTime)

namespace {

constexpr auto User = TRegistryHive::CurrentUser;
const QString Key = QString::fromLatin1(RegistryKey::SystemBrowser);
const QString Images = u"Display Inline Images"_s;
const QString Videos = u"Display Inline Videos"_s;
const QString Sounds = u"Play_Background_Sounds"_s;
const QString Animations = u"Play_Animations"_s;

QByteArray Picture() {
  QImage image(20, 20, QImage::Format_RGB32);
  image.fill(Qt::red);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  image.save(&buffer, "PNG");
  return bytes;
}

// Every way to have an image in a page, with the page's icon. Title: how many of them came.
constexpr const char *Gallery = R"(<!DOCTYPE html><title>...</title><link rel=icon href=/icon.ico>
<style>#style { background: url(/style.png); width: 20px; height: 20px; } li { list-style-image: url(/list.png); }
#data { background: url(%1); }</style>
<img src=/plain.png alt=words><img srcset='/set.png 1x'><picture><source srcset=/source.png><img></picture><img src=%1>
<img id=blob><input type=image src=/input.png><object data=/object.png></object><embed src=/embed.png>
<svg><image href=/svg.png /></svg><video poster=/poster.png></video><div id=style></div><div id=data></div>
<ul><li>x</ul><iframe src=/framed></iframe><iframe src=/itself.png></iframe>
<script>new Image().src = '/script.png';
fetch('/fetched').then(answer => answer.blob()).then(data => document.getElementById('blob').src = URL.createObjectURL(data));
onload = () => setInterval(() => document.title = [...document.images].filter(image => image.naturalWidth > 0).length, 20);</script>)";

// Sound and video of each kind of address. Title: once all has been tried, the kinds that were to be had.
constexpr const char *Players =
    R"(<!DOCTYPE html><title>...</title><audio src=/a.mp3></audio><audio src=/stream></audio>
<video src=/v.webm></video><script>
let left = 12;
const had = [];
const tried = () => --left || (document.title = had.sort().join(' ') || 'none');
for (const element of document.querySelectorAll('audio, video')) element.onerror = tried;
for (const address of ['/script.ogg', '/bare']) new Audio(address).onerror = tried;
const apart = document.createElement('audio');
apart.onerror = tried;
apart.src = '/apart';
const video = document.createElement('video');
video.onerror = tried;
video.src = '/script';
// Those that need no request are either stopped or tried.
const make = (name, made, begin) => {
  const begun = setInterval(() => {
    const isTried = made.error || made.readyState > 0;
    if (!isTried && (made.hasAttribute('src') || made.srcObject)) return;
    clearInterval(begun);
    if (isTried) had.push(name);
    tried();
  }, 10);
  begin(made);
};
const feed = made => made.src = 'data:video/webm;base64,AAAA';
make('data', document.body.appendChild(document.createElement('video')), feed);
make('loose', document.createElement('video'), feed);
const tree = document.body.appendChild(document.createElement('p')).attachShadow({mode: 'closed'});
tree.innerHTML = '<video></video>';
make('tree', tree.firstChild, feed);
const canvas = document.createElement('canvas');
const paper = canvas.getContext('2d');
setInterval(() => paper.fillRect(0, 0, 1, 1), 20);
document.body.insertAdjacentHTML('beforeend', '<video></video>');
make('stream', document.body.lastChild, made => made.srcObject = canvas.captureStream(5));
const source = new MediaSource();
source.onsourceopen = () => {
  for (const kind of ['audio', 'video']) {
    const type = kind + '/webm; codecs="' + (kind === 'audio' ? 'opus' : 'vp8') + '"';
    try {
      source.addSourceBuffer(type);
      if (MediaSource.isTypeSupported(type)) had.push(kind);
    } catch {}
  }
  tried();
};
new Audio().src = URL.createObjectURL(source);
</script>)";

// A page whose worker has its own answers, of which the page's requests tell nobody. Title: what became of the video.
constexpr const char *Served = R"(<!DOCTYPE html><title>...</title><video muted></video><script>
navigator.serviceWorker.register('/worker.js', {scope: '/served'});
navigator.serviceWorker.ready.then(() => {
  const video = document.querySelector('video');
  if (!navigator.serviceWorker.controller) return location.reload();
  video.onemptied = () => document.title = 'stopped';
  video.ontimeupdate = () => video.currentTime > 0 && (document.title = 'plays');
  video.src = '/served.webm';
  video.play().catch(() => {});
});
</script>)";
constexpr const char *Worker = R"(
const header = [0x52494646, 0x24fa0000, 0x57415645, 0x666d7420, 0x10000000, 0x01000100, 0x401f0000, 0x401f0000,
                0x01000800, 0x64617461, 0x00fa0000];
onfetch = event => {
  if (!event.request.url.endsWith('.webm')) return;
  const bytes = new DataView(new ArrayBuffer(44 + 64000));
  header.forEach((word, i) => bytes.setUint32(4 * i, word));
  event.respondWith(new Response(bytes.buffer, {headers: {'Content-Type': 'audio/wav'}}));
};)";

// What moves by style, by script and by markup, each for a hundred seconds.
constexpr const char *Moving = R"(<!DOCTYPE html><title>...</title>
<style>@keyframes go { from { width: 10px } to { width: 20px } } div { height: 5px; width: 30px; }
#style, #endless { animation: go 100s; } #endless { animation-iteration-count: infinite; }
#change { transition: width 100s; }</style>
<div id=style></div><div id=endless></div><div id=change></div><div id=script></div><div id=tree></div>
<svg width=100 height=10><rect width=5 height=5><animate attributeName=x from=0 to=90 dur=100s /></rect></svg>
<script>
const of = id => document.getElementById(id);
const heard = new Set();
of('style').onanimationend = () => heard.add('animation');
of('change').ontransitionend = () => heard.add('transition');
const root = of('tree').attachShadow({mode: 'closed'});
root.innerHTML = '<style>@keyframes in { from { width: 10px } } div { height: 5px; width: 30px; animation: in 100s }' +
    '</style><div></div>';
getComputedStyle(of('change')).width;
of('change').style.width = '60px';
of('script').animate([{width: '10px'}, {width: '70px'}], {duration: 100000, fill: 'forwards'}).onfinish =
    () => heard.add('script');
window.widths = () => [...['style', 'endless', 'change', 'script'].map(of), root.querySelector('div')].map(
    element => Math.round(getComputedStyle(element).width.slice(0, -2))).join(' ') + ' ' +
    document.querySelector('svg').animationsPaused() + ' ' + [...heard].sort().join(' ');
</script>)";

// Two frames, red and blue, in turns for ever.
constexpr const char *MovingPicture =
    "R0lGODlhBAAEAPAAAP8AAAAAACH5BAAEAAAAIf8LTkVUU0NBUEUyLjADAQAAACwAAAAABAAEAAACBISPCQUAIfkEAAQAAAAsAAAAAAQABACAAAD/"
    "AAAA"
    "AgSEjwkFADs=";

// It in every place, one beside the other, 40 pixels wide: in the page's markup, by a script, from other sites (of
// which the second lets it be read), as data, by style, in parts that only styles make, under a name that says nothing,
// in a form, in a drawing, in the place of an element and in a tree of its own.
constexpr const char *Pictures = R"(<!DOCTYPE html><title>...</title><style>* { position: absolute; top: 0; }
img, div { width: 40px; height: 40px; } #style { background: url(/m.gif?style); }
#parts::before, #parts::after { position: absolute; top: 0; }
#parts::before { content: ''; width: 40px; height: 40px; background: url(/m.gif?before); }
#parts::after { content: url(/m.gif?after); left: 40px; font-size: 0; transform: scale(10); transform-origin: 0 0; }</style>
<img style='left: 0' src=/m.gif><img style='left: 40px' id=script>
<img style='left: 80px' src='%1/m.gif'><img style='left: 120px' src='%1/open.gif'>
<img style='left: 160px' src='data:image/gif;base64,%2'><div style='left: 200px' id=style></div>
<div style='left: 240px; background: url(%1/open.gif)'></div><div style='left: 280px' id=parts></div>
<img style='left: 360px' src='/picture?id=3'><img style='left: 400px' src='%1/picture'>
<input style='left: 440px; width: 40px; height: 40px' type=image src='/m.gif?input'>
<svg style='left: 480px'><image href='/m.gif?svg' width=40 height=40 /></svg>
<div style='left: 520px; content: url(/m.gif?content)'></div>
<div style='left: 560px'><template shadowroot=open shadowrootmode=open><img width=40 height=40 src='/m.gif?tree'>
</template></div>
<script>document.getElementById('script').src = '/m.gif?script';</script>
<noscript><img style='left: 40px' src=/m.gif?script></noscript>)";
constexpr int PictureCount = 15;

}  // namespace

// The four switches for what pages show and play: where they are kept, who turns them, and what they bind.
class TestContent final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    m_f.Prepare();
    const QByteArray data = "data:image/png;base64," + Picture().toBase64();
    const QByteArray gallery = QByteArray(Gallery).replace("%1", data);
    m_f.server.Route("/gallery", TTestResponse::Page(gallery));
    m_f.server.Route("/framed", TTestResponse::Page("<img src=/inner.png><img src='" + data + "'>"));
    m_f.server.Route("/players", TTestResponse::Page(Players));
    m_f.server.Route("/served", TTestResponse::Page(Served));
    m_f.server.Route("/worker.js", TTestResponse{.body = Worker, .headers = {{"Content-Type", "text/javascript"}}});
    m_f.server.Route("/moving", TTestResponse::Page(::Moving));
    m_f.server.Route("/frames", TTestResponse::Page("<iframe src=/moving></iframe>"));
    for (const char *path :
         {"/icon.ico", "/plain.png", "/set.png", "/source.png", "/input.png", "/object.png", "/embed.png", "/svg.png",
          "/poster.png", "/style.png", "/list.png", "/script.png", "/inner.png", "/itself.png", "/fetched"}) {
      m_f.server.Route(path, TTestResponse{.body = Picture(), .headers = {{"Content-Type", "image/png"}}});
    }
    const TTestResponse picture{.body = QByteArray::fromBase64(MovingPicture),
                                .headers = {{"Content-Type", "image/gif"}}};
    m_f.server.Route("/m.gif", picture);
    m_f.server.Route("/picture", picture);
    TTestResponse open = picture;
    open.headers.emplaceBack("Access-Control-Allow-Origin", "*");
    m_f.server.Route("/open.gif", open);
    const QByteArray site = m_f.server.Url(QString(), u"localhost"_s).toUtf8();
    m_f.server.Route("/pictures",
                     TTestResponse::Page(QByteArray(Pictures).replace("%1", site).replace("%2", MovingPicture)));
    for (const char *path : {"/kept", "/kept-too"}) {
      m_f.server.Route(path,
                       TTestResponse::Page("<style>* { margin: 0 } div { height: 40px; background: url(/kept.png?b) }"
                                           "</style><div></div><img src=/kept.png>"));
    }
    m_f.server.Route("/kept.png",
                     TTestResponse{.body = Picture(),
                                   .headers = {{"Content-Type", "image/png"}, {"Cache-Control", "max-age=9999"}}});
    m_f.server.RoutePage("/a", "Page A", "<img src=/plain.png>");
  }
  void init() { m_f.Begin(); }
  void cleanup() { m_f.End(); }

  void StoredTexts_data() {
    Columns<QString, bool>("text", "on");
    Row("nothing", QString(), true);
    Row("yes", u"yes"_s, true);
    Row("no", u"no"_s, false);
    Row("in capitals", u"YES"_s, false);
    Row("empty", u""_s, false);
  }
  void StoredTexts() {
    QFETCH(QString, text);
    QFETCH(bool, on);
    for (const auto &[command, name] : Commands()) {
      if (!text.isNull()) m_f.store->Write(User, Key, name, text);
    }
    m_f.Open();
    for (const auto &[command, name] : Commands()) QCOMPARE(Action(command)->isChecked(), on);
    QCOMPARE(Button()->isChecked(), on);
    // Nothing is written by looking.
    QCOMPARE(Stored(Images).value_or(QString()), text);
  }

  void Turning_data() {
    Columns<TCommand, QString>("command", "name");
    for (const auto &[command, name] : Commands()) QTest::newRow(qPrintable(name)) << command << name;
  }
  void Turning() {
    QFETCH(TCommand, command);
    QFETCH(QString, name);
    m_f.Open();
    Load(u"/a"_s);
    Tabs().NewTab();
    Load(u"/framed"_s);
    for (const auto &[text, on] : {std::pair(u"no"_s, false), {u"yes"_s, true}}) {
      m_f.server.ForgetRequests();
      Action(command)->trigger();
      QCOMPARE(Stored(name), text);
      QCOMPARE(Action(command)->isChecked(), on);
      QCOMPARE(Button()->isChecked(), on || command != TCommand::LoadImages);
      SOON(m_f.server.RequestCount("/a"), 1);
      SOON(m_f.server.RequestCount("/framed"), 1);
      for (const auto &[other, otherName] : Commands()) QVERIFY(other == command || !Stored(otherName));
      for (const TBrowserTab *tab : Tabs().Tabs()) SOON(tab->Busy(), false);
    }
  }

  void TheButton() {
    m_f.Open();
    Load(u"/a"_s);
    for (const auto &[text, on] : {std::pair(u"no"_s, false), {u"yes"_s, true}}) {
      m_f.server.ForgetRequests();
      Button()->click();
      QCOMPARE(Stored(Images), text);
      QCOMPARE(Action(TCommand::LoadImages)->isChecked(), on);
      QCOMPARE(Button()->isChecked(), on);
      SOON(m_f.server.RequestCount("/a"), 1);
      SOON(Active()->Busy(), false);
      QCOMPARE(m_f.server.RequestCount("/plain.png") > 0, on);
    }
  }

  // What is changed there turns at OK, nothing else does, and pages are loaded only for that.
  void TheOptions() {
    m_f.Open();
    Load(u"/a"_s);
    const auto take = [this](const QStringList &boxes) {
      m_f.server.ForgetRequests();
      Action(TCommand::Options)->trigger();
      auto *options = m_f.window->findChild<TfrmOptions *>();
      Other().Write(User, Key, Sounds, u"no"_s);
      for (const QString &box : boxes) options->findChild<QAbstractButton *>(box)->click();
      options->findChild<QAbstractButton *>(u"cmdOK"_s)->click();
      QTRY_VERIFY(m_f.window->findChild<TfrmOptions *>() == nullptr);
    };
    take({u"chkContentImages"_s, u"chkContentVideos"_s});
    for (const QString &off : {Images, Videos, Sounds}) QCOMPARE(Stored(off), u"no"_s);
    QVERIFY(!Stored(Animations) && !Action(TCommand::LoadImages)->isChecked() && !Button()->isChecked());
    SOON(m_f.server.RequestCount("/a"), 1);
    SOON(Active()->Busy(), false);
    QCOMPARE(m_f.server.RequestCount("/plain.png"), 0);
    take({});
    Tabs().NewTab();
    Load(u"/framed"_s);
    QCOMPARE(m_f.server.RequestCount("/a"), 0);
    take({u"chkContentImages"_s});
    SOON(m_f.server.RequestCount("/a"), 1);
    QVERIFY(Action(TCommand::LoadImages)->isChecked());
  }

  // What another program has stored is no news to the store, but to the pages.
  void WhatIsStoredAlready() {
    m_f.Open();
    Load(u"/a"_s);
    m_f.server.ForgetRequests();
    Other().Write(User, Key, Images, u"off"_s);
    Action(TCommand::LoadImages)->trigger();
    QCOMPARE(Stored(Images), u"off"_s);
    QVERIFY(!Action(TCommand::LoadImages)->isChecked());
    SOON(m_f.server.RequestCount("/a"), 1);
    SOON(Active()->Busy(), false);
    QCOMPARE(m_f.server.RequestCount("/plain.png"), 0);
  }

  void AnotherProgram() {
    m_f.Open();
    Load(u"/a"_s);
    // When it comes to the front again …
    Other().Write(User, Key, Sounds, u"no"_s);
    QEvent activated(QEvent::WindowActivate);
    QApplication::sendEvent(m_f.window.get(), &activated);
    QVERIFY(!Action(TCommand::LoadSounds)->isChecked());
    // … and at the next page that it opens.
    Other().Write(User, Key, Images, u"no"_s);
    m_f.server.ForgetRequests();
    QTRY_VERIFY_WITH_TIMEOUT((Load(u"/a"_s), !Action(TCommand::LoadImages)->isChecked()), TMainWindowFixture::LoadTime);
    QVERIFY(!Button()->isChecked());
    QVERIFY(Action(TCommand::LoadVideos)->isChecked());
    m_f.server.ForgetRequests();
    Load(u"/a"_s);
    QCOMPARE(m_f.server.RequestCount("/plain.png"), 0);
  }

  // What cannot be read at the start is read as soon as it can be, and not written over.
  void LockedAtTheStart() {
    m_f.store->Write(User, Key, Images, u"no"_s);
    m_f.Open();
    for (const bool isAsked : {true, false}) {
      std::unique_ptr<TContentSwitches> late;
      {
        const TStoreLock lock(m_f.store->FilePath(), TStoreLock::TKind::Unreadable);
        late = std::make_unique<TContentSwitches>(m_f.window.get(), m_f.window->Actions(), Tabs(), *m_f.store);
        QVERIFY(late->IsOn(TContentSwitch::Images) && Action(TCommand::LoadImages)->isChecked());
      }
      if (isAsked) QVERIFY(!late->IsOn(TContentSwitch::Images));
      QTRY_VERIFY(!Action(TCommand::LoadImages)->isChecked());
      QCOMPARE(Stored(Images), u"no"_s);
    }
  }

  void NoImages() {
    m_f.store->Write(User, Key, Images, u"no"_s);
    m_f.Open();
    Load(u"/gallery"_s);
    SOON(Active()->Title(), u"0"_s);
    SOON(m_f.server.RequestCount("/icon.ico"), 1);
    SOON(Active()->Busy(), false);
    QStringList fetched;
    for (const TTestRequest &request : m_f.server.Requests()) fetched.append(QString::fromLatin1(request.path));
    fetched.sort();
    // What is a page of its own in a frame is asked for, and shows nothing.
    QCOMPARE(fetched, (QStringList{u"/fetched"_s, u"/framed"_s, u"/gallery"_s, u"/icon.ico"_s, u"/itself.png"_s}));
    const QString count = u"[...frames[%1].document.images].filter(image => image.naturalWidth > 0).length"_s;
    for (int frame = 0; frame < 2; ++frame) QCOMPARE(Answer(count.arg(frame)).toInt(), 0);
    QVERIFY(Answer(u"document.doctype !== null && document.compatMode === 'CSS1Compat'"_s).toBool());
    // Opened by itself it is what was asked for.
    Load(u"/itself.png"_s);
    QCOMPARE(Answer(u"document.images[0].naturalWidth"_s).toInt(), 20);
    // Another page of the same tab, with images again.
    Action(TCommand::LoadImages)->trigger();
    SOON(Active()->Busy(), false);
    Load(u"/gallery"_s);
    SOON(Active()->Title(), u"5"_s);
    SOON(m_f.server.RequestCount("/inner.png"), 1);
  }

  // What the engine has in its memory is no less an image.
  void ImagesKeptInMemory() {
    m_f.Open();
    const auto shows = [this] {
      const bool hasImage = Answer(u"document.images[0].naturalWidth > 0"_s).toBool();
      const bool hasStyle = Active()->Browser()->grab().toImage().pixel(20, 20) == qRgb(255, 0, 0);
      return std::pair(hasImage, hasStyle);
    };
    Load(u"/kept"_s);
    QTRY_COMPARE(shows(), std::pair(true, true));
    Action(TCommand::LoadImages)->trigger();
    QTRY_COMPARE(shows(), std::pair(false, false));
    Load(u"/kept-too"_s);
    QTRY_COMPARE(shows(), std::pair(false, false));
    Action(TCommand::LoadImages)->trigger();
    QTRY_COMPARE(shows(), std::pair(true, true));
  }

  void SoundsAndVideos_data() {
    Columns<bool, bool, QString, QStringList>("videos", "sounds", "had", "fetched");
    const QStringList video{u"/apart"_s, u"/bare"_s, u"/script"_s, u"/stream"_s, u"/v.webm"_s};
    const QStringList sound{u"/a.mp3"_s, u"/apart"_s, u"/bare"_s, u"/script.ogg"_s, u"/stream"_s};
    Row("all", true, true, u"audio data loose stream tree video"_s,
        QStringList{u"/a.mp3"_s, u"/apart"_s, u"/bare"_s, u"/script"_s, u"/script.ogg"_s, u"/stream"_s, u"/v.webm"_s});
    Row("no videos", false, true, u"audio"_s, sound);
    // Videos go on in silence.
    Row("no sounds", true, false, u"audio data loose stream tree video"_s, video);
    Row("none", false, false, u"audio"_s, QStringList());
  }
  void SoundsAndVideos() {
    QFETCH(bool, videos);
    QFETCH(bool, sounds);
    QFETCH(QString, had);
    QFETCH(QStringList, fetched);
    m_f.Open();
    for (const bool again : {false, true}) {
      Load(u"/a"_s);
      m_f.server.ForgetRequests();
      // The switches are turned while the page is there, and hold from its next time on.
      if (!again && !videos) Action(TCommand::LoadVideos)->trigger();
      if (!again && !sounds) Action(TCommand::LoadSounds)->trigger();
      SOON(Active()->Busy(), false);
      m_f.server.ForgetRequests();
      Load(u"/players"_s);
      SOON(Active()->Title(), had);
      QStringList media;
      for (const TTestRequest &request : m_f.server.Requests()) media.append(QString::fromLatin1(request.path));
      media.removeAll(u"/players"_s);
      media.removeAll(u"/favicon.ico"_s);
      media.removeDuplicates();
      media.sort();
      QCOMPARE(media, fetched);
      QCOMPARE(Active()->Browser()->EnginePage()->isAudioMuted(), !sounds);
    }
    if (!sounds) Action(TCommand::LoadSounds)->trigger();
    SOON(Active()->Browser()->EnginePage()->isAudioMuted(), false);
  }

  void VideosOfWorkers() {
    m_f.Open();
    Load(u"/served"_s);
    SOON(Active()->Title(), u"plays"_s);
    Action(TCommand::LoadVideos)->trigger();
    SOON(Active()->Title(), u"stopped"_s);
    QCOMPARE(m_f.server.RequestCount("/served.webm"), 0);
  }

  void NothingMoves_data() {
    Columns<QString, QString>("path", "document");
    Row("page", u"/moving"_s, u"window"_s);
    Row("frame", u"/frames"_s, u"frames[0]"_s);
  }
  void NothingMoves() {
    QFETCH(QString, path);
    QFETCH(QString, document);
    m_f.Open();
    Load(path);
    const QString widths = document + u".widths()"_s;
    // The start of each, give or take what a slow machine has let go by.
    QVERIFY(Answer(widths).toString().endsWith(u"false "_s));
    Action(TCommand::LoadAnimations)->trigger();
    SOON(Active()->Busy(), false);
    SOON(Answer(widths).toString(), u"30 30 60 70 30 true animation script transition"_s);
    Action(TCommand::LoadAnimations)->trigger();
    SOON(Active()->Busy(), false);
    QTRY_VERIFY(Answer(widths).toString().endsWith(u"false "_s));
  }

  void PicturesStandStill_data() {
    Columns<bool, int>("scripts", "moving");
    Row("page", true, 0);
    // There engines that cannot hold them show nothing that could stand for what may not be read.
    Row("page without scripts", false, QT_VERSION >= QT_VERSION_CHECK(6, 8, 0) ? 0 : 2);
  }
  void PicturesStandStill() {
    QFETCH(bool, scripts);
    QFETCH(int, moving);
    if (!scripts) QVERIFY(TZoneStore(*m_f.store).SetPolicy(3, TUrlAction::Scripting, TZoneStore::Disallow));
    m_f.Open();
    Load(u"/pictures"_s);
    QVERIFY(ComeToMove(PictureCount));
    Action(TCommand::LoadAnimations)->trigger();
    QVERIFY(ComeToMove(moving));
    Action(TCommand::LoadAnimations)->trigger();
    QVERIFY(ComeToMove(PictureCount));
  }

 private:
  [[nodiscard]] static QList<std::pair<TCommand, QString>> Commands() {
    return {{TCommand::LoadImages, Images},
            {TCommand::LoadVideos, Videos},
            {TCommand::LoadSounds, Sounds},
            {TCommand::LoadAnimations, Animations}};
  }
  [[nodiscard]] QAction *Action(TCommand command) const { return m_f.window->Actions()[command]; }
  [[nodiscard]] QToolButton *Button() const { return m_f.window->findChild<QToolButton *>(u"tbLoadImages"_s); }
  [[nodiscard]] TTabStrip &Tabs() const { return m_f.window->Tabs(); }
  [[nodiscard]] TBrowserTab *Active() const { return Tabs().GetActivePage(); }
  [[nodiscard]] std::optional<QString> Stored(const QString &name) const { return m_f.store->Read(User, Key, name); }
  // The store as another process has it.
  [[nodiscard]] TRegistryStore Other() const { return TRegistryStore(m_f.store->FilePath()); }
  [[nodiscard]] QVariant Answer(const QString &script) const {
    return AnswerOf(*Active()->Browser()->EnginePage(), script);
  }
  [[nodiscard]] bool ComeToMove(int count) const {
    return QTest::qWaitFor([&] { return MovingPictures() == count; }, m_f.LoadTime);
  }
  // How many of the pictures change within as much of the page's own time as shows all their frames.
  [[nodiscard]] int MovingPictures() const {
    constexpr int Turns = 8;
    constexpr int Pause = 20;  // milliseconds
    const auto time = [this] {
      const QString script = u"Math.round(document.timeline.currentTime)"_s;
      return AnswerOf(*Active()->Browser()->EnginePage(), script, ScriptWorld::Own).toInt();
    };
    std::array<QSet<QRgb>, PictureCount> seen;
    int last = time();
    for (int turn = 0; turn < Turns; ++turn) {
      if (!QTest::qWaitFor([&] { return time() >= last + Pause; }, m_f.LoadTime)) return -1;
      last = time();
      const QImage page = Active()->Browser()->grab().toImage();
      for (int i = 0; i < PictureCount; ++i) seen.at(size_t(i)).insert(page.pixel(40 * i + 20, 20));
    }
    // One that does not show at all does not stand still either.
    for (const QSet<QRgb> &colors : seen) {
      if (colors.contains(qRgb(255, 255, 255))) return -1;
    }
    return int(std::ranges::count_if(seen, [](const QSet<QRgb> &colors) { return colors.size() > 1; }));
  }
  void Load(const QString &path) const {
    TBrowserTab *tab = Active();
    tab->Navigate(m_f.server.Url(path));
    QTRY_VERIFY_WITH_TIMEOUT(tab->GetLocationUrl() == m_f.server.Url(path) && !tab->Busy(), m_f.LoadTime);
  }

  TMainWindowFixture m_f;
};

ENGINE_MAIN(TestContent)
#include "test_content.moc"
