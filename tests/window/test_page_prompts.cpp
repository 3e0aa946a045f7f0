#include <QComboBox>
#include <QFile>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QSslCertificate>
#include <QSslKey>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>
#include <QWebEngineCertificateError>
#include <QWebEngineClientCertificateStore>
#include <QWebEngineContextMenuRequest>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineView>

#include "browser/page/full_screen_notice.h"
#include "browser/page/page_menu.h"
#include "browser/page/page_prompts.h"
#include "browser/page/permission_bar.h"
#include "browser/page/question_sheet.h"
#include "browser/page/sign_in_dialog.h"
#include "browser/page/site_permissions.h"
#include "config/language.h"
#include "config/registry_paths.h"
#include "store/registry_store.h"
#include "support/data_row.h"
#include "support/shipped_files.h"
#include "support/test_server.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int LongWait = 20000;  // ms; the first page also starts the engine

using TRequest = QWebEngineContextMenuRequest;

}  // namespace

Q_DECLARE_METATYPE(TPageMenuPlace)

// The questions of real pages, and the menu over them.
class TestPagePrompts final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY(m_language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini"))));
    QVERIFY(m_server.Listen());
    m_server.RoutePage("/page", "Page", "<a id=a href='/target' style='font-size:80px'>link</a>");
  }
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    BeginRun();
  }
  void cleanup() { EndRun(); }

  void menuHasWhatWorks_data() {
    Columns<TPageMenuPlace, QString>("place", "lines");
    const QUrl link(u"https://example.test/a"_s);
    const QUrl image(u"https://example.test/a.png"_s);
    const QString page = u"Reload | SaveAs Print Find SelectAll | ViewSource Properties"_s;
    const QString links = u"OpenLink OpenLinkInBackground CopyLink SaveLink"_s;
    const QString images = u"OpenImage SaveImage CopyImage CopyImageAddress"_s;
    Row("page", TPageMenuPlace{}, page);
    Row("page with history", TPageMenuPlace{.canGoBack = true, .canGoForward = true}, u"Back Forward "_s + page);
    Row("link", TPageMenuPlace{.link = link, .canGoBack = true}, links);
    Row("script link", TPageMenuPlace{.link = QUrl(u"javascript:alert(1)"_s)}, u"CopyLink"_s);
    Row("image", TPageMenuPlace{.media = image, .mediaType = TRequest::MediaTypeImage}, images);
    Row("image in a link", TPageMenuPlace{.link = link, .media = image, .mediaType = TRequest::MediaTypeImage},
        links + u" | "_s + images);
    Row("broken image",
        TPageMenuPlace{.media = image, .mediaType = TRequest::MediaTypeImage, .mediaFlags = TRequest::MediaInError},
        u"OpenImage CopyImageAddress"_s);
    Row("canvas", TPageMenuPlace{.mediaType = TRequest::MediaTypeCanvas}, page);
    Row("paused video",
        TPageMenuPlace{.media = image,
                       .mediaType = TRequest::MediaTypeVideo,
                       .mediaFlags = {TRequest::MediaPaused, TRequest::MediaHasAudio, TRequest::MediaCanToggleControls,
                                      TRequest::MediaCanSave, TRequest::MediaLoop}},
        u"Play Mute +Loop Controls SaveMedia"_s);
    Row("running sound",
        TPageMenuPlace{.mediaType = TRequest::MediaTypeAudio,
                       .mediaFlags = {TRequest::MediaHasAudio, TRequest::MediaMuted}},
        u"Pause +Mute Loop"_s);
    Row("selection", TPageMenuPlace{.editFlags = TRequest::CanCopy, .hasSelection = true}, u"Copy"_s);
    Row("empty editor", TPageMenuPlace{.editFlags = {TRequest::CanPaste, TRequest::CanSelectAll}, .editable = true},
        u"Paste SelectAll"_s);
    Row("editor",
        TPageMenuPlace{.editFlags = {TRequest::CanUndo, TRequest::CanRedo, TRequest::CanCut, TRequest::CanCopy,
                                     TRequest::CanPaste, TRequest::CanSelectAll},
                       .hasSelection = true,
                       .editable = true},
        u"Undo Redo | Cut Copy Paste SelectAll"_s);
  }

  void menuHasWhatWorks() {
    QFETCH(TPageMenuPlace, place);
    const TPageMenu menu(m_language, place, m_page);
    QStringList found;
    for (const QAction *action : menu.actions()) {
      found.append(action->isSeparator() ? u"|"_s : (action->isChecked() ? u"+"_s : QString()) + action->objectName());
    }
    QTEST(found.join(' '), "lines");
  }

  void menuOpens() {
    TPageMenu menu(m_language,
                   {.link = QUrl(u"https://example.test/a b?c=ü"_s),
                    .media = QUrl(u"https://example.test/p.png"_s),
                    .mediaType = TRequest::MediaTypeImage},
                   m_page);
    QSignalSpy opened(&menu, &TPageMenu::OpenRequested);
    for (const char *name : {"OpenLink", "OpenLinkInBackground", "OpenImage"}) {
      menu.findChild<QAction *>(QLatin1String(name))->trigger();
    }
    const QString link = u"https://example.test/a%20b?c=%C3%BC"_s;
    QCOMPARE(opened, (QList<QList<QVariant>>{{link, false}, {link, true}, {u"https://example.test/p.png"_s, false}}));
  }

  void menuOverARealLink() {
    Load(u"/page"_s);
    std::unique_ptr<TPageMenu> menu;
    m_view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_view, &QWidget::customContextMenuRequested, m_view, [&] {
      menu = std::make_unique<TPageMenu>(m_language, TPageMenuPlace::Of(*m_view->lastContextMenuRequest(), *m_page),
                                         m_page);
    });
    QTRY_VERIFY_WITH_TIMEOUT(m_view->focusProxy() != nullptr, LongWait);
    QTRY_VERIFY_WITH_TIMEOUT(
        (QTest::mouseClick(m_view->focusProxy(), Qt::RightButton, {}, QPoint(40, 50)), menu != nullptr), LongWait);
    QSignalSpy opened(menu.get(), &TPageMenu::OpenRequested);
    menu->findChild<QAction *>("OpenLink")->trigger();
    QCOMPARE(opened.first().first().toString(), m_server.Url(u"/target"_s));
  }

  void signIn_data() {
    Columns<QStringList, bool>("passwords", "in");
    QTest::newRow("right") << QStringList{u"secret"_s} << true;
    QTest::newRow("wrong, then right") << QStringList{u"oops"_s, u"secret"_s} << true;
    QTest::newRow("wrong, then cancelled") << QStringList{u"oops"_s, QString()} << false;
    QTest::newRow("cancelled") << QStringList{QString()} << false;
  }

  void signIn() {
    QFETCH(QStringList, passwords);
    m_server.RouteSignIn("/members", "user", "secret", TTestResponse::Page("<title>Welcome</title>"));
    Load(u"/members"_s);
    for (bool refused = false; !passwords.isEmpty(); refused = true) {
      auto *dialog = OpenSignIn();
      QVERIFY(dialog != nullptr && !dialog->isWindow());
      const QString text = dialog->findChild<QLabel *>("lblHost")->text();
      QVERIFY(text.contains(u"127.0.0.1"_s));
      QVERIFY(dialog->findChild<QLabel *>("lblWarning")->isVisible());
      // Asked again, the name stands there already and the password is typed next.
      QCOMPARE(text.contains(m_language.Text("SIGN_IN", "Refused")), refused);
      QWidget *field = dialog->focusProxy();
      QCOMPARE(field->objectName(), refused ? u"txtPassword"_s : u"txtUser"_s);
      if (!refused) QTest::keyClicks(field, "user");
      const QString password = passwords.takeFirst();
      QTest::keyClicks(dialog->findChild<QLineEdit *>("txtPassword"), password);
      const QSignalSpy loaded(m_page, &QWebEnginePage::loadFinished);
      QTest::keyClick(dialog, password.isNull() ? Qt::Key_Escape : Qt::Key_Return);
      if (!password.isNull()) QTRY_VERIFY_WITH_TIMEOUT(!loaded.isEmpty(), LongWait);
    }
    QVERIFY(!m_sheet->IsOpen());
    QTEST(m_page->title() == u"Welcome"_s, "in");
  }

  // A page with pictures that all ask: one answer holds for all, a cancel for this load of the page.
  void signInOncePerPlace() {
    QByteArray body;
    for (const QByteArray path : {"/a", "/b", "/c", "/d", "/e", "/f"}) {
      m_server.RouteSignIn(path, "user", "secret", TTestResponse::Text("picture"));
      body += "<img src='" + path + "'>";
    }
    m_server.RoutePage("/album", "Album", body);
    int loads = 0;
    for (const bool signsIn : {false, false, true}) {
      if (loads == 2) {
        // Refused twice, it is not heard again before the user does something.
        Load(u"/album"_s);
        QVERIFY(!m_sheet->IsOpen());
        m_prompts->AllowSignIns();
      }
      Load(u"/album"_s);
      ++loads;
      auto *dialog = OpenSignIn();
      QVERIFY(dialog != nullptr);
      dialog->findChild<QLineEdit *>("txtUser")->setText(u"user"_s);
      dialog->findChild<QLineEdit *>("txtPassword")->setText(u"secret"_s);
      const QSignalSpy loaded(m_page, &QWebEnginePage::loadFinished);
      signsIn ? dialog->accept() : dialog->reject();
      if (signsIn) QTRY_VERIFY_WITH_TIMEOUT(!loaded.isEmpty(), LongWait);
      // One answer is enough for all.
      QVERIFY(!m_sheet->IsOpen());
    }
    for (const char *path : {"/a", "/f"}) QVERIFY(!m_server.Requests(path).last().Header("authorization").isEmpty());
  }

  void clientCertificate_data() {
    Columns<bool>("shows");
    Row("shown", true);
    Row("not shown", false);
  }
  void clientCertificate() {
    QFETCH(bool, shows);
    const auto read = [](const QString &name) {
      QFile file(SourceFile(QStringLiteral("tests/support/") + name));
      return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    m_profile->clientCertificateStore()->add(QSslCertificate(read(u"test_certificate.pem"_s)),
                                             QSslKey(read(u"test_key.pem"_s), QSsl::Rsa));
    TTestServer server;
    QVERIFY(server.ListenWithTls(true));
    server.RoutePage("/who", "Who");
    connect(m_page, &QWebEnginePage::certificateError, m_page,
            [](QWebEngineCertificateError error) { error.acceptCertificate(); });
    const QSignalSpy loaded(m_page, &QWebEnginePage::loadFinished);
    m_page->load(QUrl(server.Url(u"/who"_s)));
    QTRY_VERIFY_WITH_TIMEOUT(m_sheet->IsOpen(), LongWait);
    QCOMPARE(QApplication::activeModalWidget(), nullptr);
    auto *question = m_sheet->findChild<QInputDialog *>();
    QVERIFY(question->labelText().contains(u"127.0.0.1"_s));
    QCOMPARE(question->comboBoxItems().size(), 1);
    QTest::keyClick(question->findChild<QListView *>(), Qt::Key_Down);
    shows ? question->accept() : question->reject();
    QTRY_COMPARE_WITH_TIMEOUT(m_page->title(), u"Who"_s, LongWait);
    QCOMPARE(server.Requests("/who").last().saysWho, shows);
  }

  void permissionIsAskedAndRemembered_data() {
    Columns<QString, QString, bool, bool>("button", "answer", "remembered", "lasts");
    QTest::newRow("allow") << u"cmdAllow"_s << u"granted"_s << true << true;
    QTest::newRow("deny") << u"cmdDeny"_s << u"denied"_s << true << false;
    QTest::newRow("never") << u"cmdNever"_s << u"denied"_s << true << true;
    QTest::newRow("not now") << u"cmdClose"_s << u"denied"_s << false << false;
  }

  void permissionIsAskedAndRemembered() {
    QFETCH(QString, button);
    QFETCH(QString, answer);
    QFETCH(bool, remembered);
    QFETCH(bool, lasts);
    Load(u"/page"_s);
    QVERIFY(!m_prompts->Bar()->isVisible());
    AskForNotifications(*m_page);
    QTRY_VERIFY_WITH_TIMEOUT(m_prompts->Bar()->isVisible(), LongWait);
    QVERIFY(m_prompts->Bar()->findChild<QLabel *>("lblQuestion")->text().contains(u"127.0.0.1"_s));
    m_window->activateWindow();
    QTRY_VERIFY(m_window->isActiveWindow());
    m_view->setFocus();
    Press(button);
    QVERIFY(!m_prompts->Bar()->isVisible());
    QVERIFY(m_view->isAncestorOf(QApplication::focusWidget()));
    QTRY_COMPARE_WITH_TIMEOUT(Answer(*m_page), answer, LongWait);

    {
      // Another page of the same site, in another tab.
      QWebEnginePage other(m_profile.get());
      const TPagePrompts prompts(&other, m_sheet, m_window.get(), m_language);
      Load(u"/page"_s, other);
      AskForNotifications(other);
      QTRY_VERIFY_WITH_TIMEOUT(!prompts.Bar()->isHidden() || !Answer(other).isEmpty(), LongWait);
      QCOMPARE(Answer(other), remembered ? answer : QString());
    }

    EndRun();
    BeginRun();
    Load(u"/page"_s);
    // What holds is known to the page before it asks.
    QCOMPARE(Run(*m_page, u"Notification.permission"_s), lasts ? answer : u"default"_s);
    AskForNotifications(*m_page);
    QTRY_VERIFY_WITH_TIMEOUT(m_prompts->Bar()->isVisible() || !Answer(*m_page).isEmpty(), LongWait);
    QCOMPARE(Answer(*m_page), lasts ? answer : QString());
  }

  // The same site in two tabs: it is answered in one of them.
  void permissionIsAnsweredInAnotherTab_data() {
    Columns<QString, int>("button", "answer");
    Row("allow", "cmdAllow", int(TPermissionAnswer::Allow));
    Row("deny", "cmdDeny", int(TPermissionAnswer::Deny));
    Row("not now", "cmdClose", -1);
  }
  void permissionIsAnsweredInAnotherTab() {
    QFETCH(QString, button);
    Load(u"/page"_s);
    QWebEnginePage other(m_profile.get());
    TPagePrompts prompts(&other, m_sheet, m_window.get(), m_language);
    int answer = -1;
    int later = -1;
    const auto ask = [this](TPagePrompts &of, TPermission permission, int &given) {
      of.AskPermission({m_page->url(), permission, [&given](TPermissionAnswer said) { given = int(said); }});
    };
    int here = -1;
    ask(*m_prompts, TPermission::Scripts, here);
    ask(prompts, TPermission::Scripts, answer);
    ask(prompts, TPermission::PlugIns, later);
    Press(button);
    QTEST(answer, "answer");
    QCOMPARE(later, -1);
    const bool follows = answer != -1;
    auto &never = *prompts.Bar()->findChild<QPushButton *>(u"cmdNever"_s);
    QTRY_VERIFY(never.isEnabled());
    never.click();
    QCOMPARE(prompts.Bar()->isHidden(), follows);
    QCOMPARE(later, follows ? int(TPermissionAnswer::Deny) : -1);
  }

  void permissionIsChanged_data() {
    Columns<TPermissionDecision, QString, bool>("decision", "answer", "elsewhere");
    Row("ask again", TPermissionDecision::Ask, QString(), false);
    Row("all forgotten", TPermissionDecision::Ask, QString(), true);
    Row("allowed", TPermissionDecision::Allowed, u"granted"_s, false);
    Row("refused for now", TPermissionDecision::RefusedForNow, u"denied"_s, false);
    Row("refused", TPermissionDecision::Refused, u"denied"_s, false);
  }
  void permissionIsChanged() {
    QFETCH(TPermissionDecision, decision);
    // Others hear of it too, and none is woken up by that.
    QWebEnginePage unused(m_profile.get());
    QWebEnginePage asleep(m_profile.get());
    const TPagePrompts ofUnused(&unused, m_sheet, m_window.get(), m_language);
    const TPagePrompts ofAsleep(&asleep, m_sheet, m_window.get(), m_language);
    Load(u"/page"_s, asleep);
    asleep.setLifecycleState(QWebEnginePage::LifecycleState::Discarded);
    const auto before = decision == TPermissionDecision::Allowed ? u"cmdNever"_s : u"cmdAllow"_s;
    Load(u"/page"_s);
    QVERIFY(m_prompts->SitePermissions(nullptr).isEmpty());
    AskForNotifications(*m_page);
    QTRY_VERIFY_WITH_TIMEOUT(m_prompts->Bar()->isVisible(), LongWait);
    Press(before);
    QTRY_VERIFY_WITH_TIMEOUT(!Answer(*m_page).isEmpty(), LongWait);
    const std::unique_ptr<TSitePermissions> list(m_prompts->SitePermissions(nullptr).value(0));
    QVERIFY(list->title().contains(u"127.0.0.1"_s));
    QFETCH(bool, elsewhere);
    if (elsewhere) TPermissionDecisions::Of(*m_profile).ForgetAll();
    auto *choice = list->findChild<QComboBox *>();
    list->show();
    if (!elsewhere) QTest::keyClick(choice, Qt::Key_Home);
    while (!elsewhere && choice->currentData().toInt() != int(decision)) QTest::keyClick(choice, Qt::Key_Down);
    QFETCH(QString, answer);
    QTRY_COMPARE(Run(*m_page, u"Notification.permission"_s), answer.isEmpty() ? u"default"_s : answer);
    AskForNotifications(*m_page);
    QTRY_VERIFY_WITH_TIMEOUT(m_prompts->Bar()->isVisible() || !Answer(*m_page).isEmpty(), LongWait);
    QCOMPARE(Answer(*m_page), answer);
    QCOMPARE(m_prompts->SitePermissions(list.get()).isEmpty(), decision == TPermissionDecision::Ask);
    QCOMPARE(asleep.lifecycleState(), QWebEnginePage::LifecycleState::Discarded);
  }

  // What a site asks from within another one's page can be looked at there, too.
  void permissionOfAnEmbeddedSite() {
    m_server.RoutePage("/asks", "Asks", "<script>navigator.geolocation.getCurrentPosition(() => {})</script>");
    const QByteArray inner = m_server.Url(u"/asks"_s).replace(u"127.0.0.1"_s, u"localhost"_s).toUtf8();
    m_server.RoutePage("/embeds", "Embeds", "<iframe allow=geolocation src='" + inner + "'></iframe>");
    Load(u"/embeds"_s);
    QTRY_VERIFY_WITH_TIMEOUT(m_prompts->Bar()->isVisible(), LongWait);
    QVERIFY(m_prompts->SitePermissions(nullptr).isEmpty());
    Press(u"cmdNever"_s);
    QWidget parent;
    QTRY_COMPARE(m_prompts->SitePermissions(&parent).size(), 1);
    QVERIFY(parent.findChild<TSitePermissions *>()->title().contains(u"localhost"_s));
    Load(u"/page"_s);
    QVERIFY(m_prompts->SitePermissions(&parent).isEmpty());
  }

  // Two windows decide side by side; what neither of them has written is passed over.
  void permissionsOfTwoWindows() {
    using D = TPermissionDecision;
    using P = TPermission;
    TRegistryStore otherStore(m_store->FilePath());
    QWebEngineProfile otherProfile;
    auto &here = TPermissionDecisions::Of(*m_profile);
    auto &there = TPermissionDecisions::Of(otherProfile);
    there.KeepIn(otherStore);
    const QUrl site(u"https://a.test:8443/page"_s);
    here.Remember(site, P::CameraAndMicrophone, D::Allowed);
    there.Remember(site, P::Microphone, D::Refused);
    there.Remember(site, P::Location, D::Allowed);
    QCOMPARE(here.Decided(site), (QList<P>{P::Location, P::Microphone, P::Camera}));
    QCOMPARE(here.Find(site, P::Camera), D::Allowed);
    QCOMPARE(here.Find(site, P::CameraAndMicrophone), D::Refused);
    here.Remember(site, P::Location, D::RefusedForNow);
    QCOMPARE(there.Find(site, P::Location), D::Ask);
    // The whole screen is not shown unasked in the next run, nor are all files of the disk one site for good.
    here.Remember(site, P::Screen, D::Allowed);
    QCOMPARE(here.Find(site, P::Screen), D::Allowed);
    QCOMPARE(there.Find(site, P::Screen), D::Ask);
    const QUrl file(u"file:///page.html"_s);
    here.Remember(file, P::Camera, D::Allowed);
    QCOMPARE(here.Find(file, P::Camera), D::Allowed);
    QCOMPARE(there.Find(file, P::Camera), D::Ask);
    QCOMPARE(here.Find(QUrl(u"https://a.test/"_s), P::Camera), D::Ask);
    const QString key = QString::fromLatin1(RegistryKey::SitePermissions);
    m_store->Write(TRegistryHive::CurrentUser, key, u"https://b.test Camera"_s, u"yes"_s);
    QCOMPARE(there.Find(QUrl(u"https://b.test/"_s), P::Camera), D::Ask);
  }

  void permissionBarSleepsFirst() {
    Load(u"/page"_s);
    (void)Run(*m_page, u"navigator.geolocation.getCurrentPosition(() => {}); 0"_s);
    QTRY_VERIFY_WITH_TIMEOUT(m_prompts->Bar()->isVisible(), LongWait);
    auto &allow = *m_prompts->Bar()->findChild<QPushButton *>("cmdAllow");
    QTRY_VERIFY(allow.isEnabled());
    AskForNotifications(*m_page);
    // Closing the first question shows the second, whose buttons do not take the same click.
    m_prompts->Bar()->findChild<QAbstractButton *>("cmdClose")->click();
    QTRY_VERIFY_WITH_TIMEOUT(m_prompts->Bar()->isVisible(), LongWait);
    QVERIFY(!allow.isEnabled());
    QTRY_VERIFY(allow.isEnabled());
    // Nor the second one of two quick clicks, of which the first went to something that covered the bar.
    const QPointF place = QRectF(allow.rect()).center();
    QMouseEvent second(QEvent::MouseButtonDblClick, place, allow.mapToGlobal(place), Qt::LeftButton, Qt::LeftButton,
                       {});
    QApplication::sendEvent(&allow, &second);
    QTest::mouseRelease(&allow, Qt::LeftButton);
    QVERIFY(m_prompts->Bar()->isVisible());
    // Its tab comes to the front under the mouse.
    m_window->hide();
    m_window->show();
    QVERIFY(m_prompts->Bar()->isVisible() && !allow.isEnabled());
    QTRY_VERIFY(allow.isEnabled());
    // Leaving the page takes its questions along.
    Load(u"/other"_s);
    QVERIFY(!m_prompts->Bar()->isVisible());
  }

  void fullScreenNoticeFades() {
    m_prompts->ShowFullScreenNotice(m_view, QUrl(u"https://example.test"_s));
    QPointer<TFullScreenNotice> notice = m_view->findChild<TFullScreenNotice *>();
    QVERIFY(notice != nullptr && notice->isVisible());
    QVERIFY(notice->text().contains(u"example.test"_s));
    QVERIFY(m_view->rect().contains(notice->geometry()));
    QTRY_VERIFY_WITH_TIMEOUT(notice.isNull(), LongWait);
    m_prompts->ShowFullScreenNotice(m_view, QUrl(u"https://example.test"_s));
    m_prompts->HideFullScreenNotice();
    QVERIFY(m_view->findChild<TFullScreenNotice *>() == nullptr);
  }

 private:
  // As by a start of the program; the profile lies on disk.
  void BeginRun() {
    m_profile = std::make_unique<QWebEngineProfile>(u"prompts"_s);
    m_store = std::make_unique<TRegistryStore>(m_folder->filePath(u"registry.sqlite"_s));
    TPermissionDecisions::Of(*m_profile).KeepIn(*m_store);
    m_window = std::make_unique<QWidget>();
    m_window->resize(600, 400);
    auto *layout = new QVBoxLayout(m_window.get());
    m_view = new QWebEngineView(m_window.get());
    m_page = new QWebEnginePage(m_profile.get(), m_view);
    m_view->setPage(m_page);
    m_sheet = new TQuestionSheet(m_window.get());
    m_prompts = new TPagePrompts(m_page, m_sheet, m_window.get(), m_language);
    layout->addWidget(m_prompts->Bar());
    layout->addWidget(m_view);
    // What comes next to the bar for the Tab key.
    layout->addWidget(new QLineEdit(m_window.get()));
    m_window->show();
  }
  void EndRun() {
    m_window.reset();
    m_profile.reset();
    m_store.reset();
  }
  void Press(const QString &button) {
    auto &chosen = *m_prompts->Bar()->findChild<QAbstractButton *>(button);
    QTRY_VERIFY(chosen.isEnabled());
    QTest::mouseClick(&chosen, Qt::LeftButton);
  }
  [[nodiscard]] TSignInDialog *OpenSignIn() {
    [this] { QTRY_VERIFY_WITH_TIMEOUT(m_sheet->IsOpen(), LongWait); }();
    return m_sheet->findChild<TSignInDialog *>();
  }
  void Load(const QString &path) { Load(path, *m_page); }
  void Load(const QString &path, QWebEnginePage &page) {
    QSignalSpy loaded(&page, &QWebEnginePage::loadFinished);
    page.load(QUrl(m_server.Url(path)));
    QTRY_VERIFY_WITH_TIMEOUT(!loaded.isEmpty(), LongWait);
  }
  [[nodiscard]] static QString Run(QWebEnginePage &page, const QString &script) {
    QString result;
    bool done = false;
    page.runJavaScript(script, [&](const QVariant &value) {
      result = value.toString();
      done = true;
    });
    [&] { QTRY_VERIFY_WITH_TIMEOUT(done, LongWait); }();
    return result;
  }
  static void AskForNotifications(QWebEnginePage &page) {
    (void)Run(page, u"window.answer = ''; Notification.requestPermission().then(given => answer = given); 0"_s);
  }
  [[nodiscard]] static QString Answer(QWebEnginePage &page) { return Run(page, u"answer"_s); }

  TLanguage m_language;
  TTestServer m_server;
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_store;
  std::unique_ptr<QWebEngineProfile> m_profile;
  std::unique_ptr<QWidget> m_window;
  QWebEngineView *m_view = nullptr;
  QWebEnginePage *m_page = nullptr;
  TQuestionSheet *m_sheet = nullptr;
  TPagePrompts *m_prompts = nullptr;
};

QTEST_MAIN(TestPagePrompts)
#include "test_page_prompts.moc"
