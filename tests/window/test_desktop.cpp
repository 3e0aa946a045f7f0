#include <QCheckBox>
#include <QDesktopServices>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTextEdit>
#include <QWebEnginePage>

#include "config/registry_paths.h"
#include "config/shell_association.h"
#include "config/user_agent_token.h"
#include "support/data_row.h"
#include "support/desktop_files.h"
#include "support/fake_programs.h"
#include "support/modal_dialogs.h"
#include "ui/confirm_dialog.h"
#include "window/main_window_fixture.h"
#include "window/page_click.h"

using namespace Qt::StringLiterals;

// The main window and the desktop around it: the question for the default browser, other programs, and what pages are
// told of this one.
class TestDesktop final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY(m_system.isValid());
    qputenv("XDG_DATA_DIRS", m_system.path().toLocal8Bit());
    m_f.Prepare();
    m_f.server.RoutePage("/a", "Page A");
    for (const char *name : {"xdg-settings", "xdg-mime", "xdg-open", "editor", "post", "browse", "news"}) {
      m_programs.Add(QLatin1String(name));
    }
  }
  void init() {
    DesktopFiles::Clear();
    m_programs.Forget();
    m_f.Begin();
  }
  void cleanup() { m_f.End(); }

  void AsksForTheDefaultBrowser_data() {
    Columns<QString, bool, bool, bool, bool>("page", "yes", "tick", "isDefault", "asksAgain");
    Row("yes", "/a", true, true, true, true);
    Row("no", "/a", false, true, false, true);
    Row("never again", "/a", false, false, false, false);
    Row("yes, and never again", "/a", true, false, true, false);
    Row("on a blank page", "", true, true, true, true);
  }
  void AsksForTheDefaultBrowser() {
    QFETCH(QString, page);
    QFETCH(bool, yes);
    QFETCH(bool, tick);

    TZVOptions options(*m_f.store);
    options.Set(Setting::AskDefaultBrowser, true);
    if (!page.isEmpty()) options.Set(Setting::CommandLine, m_f.server.Url(page));
    bool isAsked = false;
    OnModalDialog<TfrmConfirm>([&](TfrmConfirm &dialog) {
      isAsked = true;
      // The page is there first.
      QCOMPARE(m_f.server.RequestCount("/a"), page.isEmpty() ? 0 : 1);
      QVERIFY(m_f.window->isVisible());
      const TLanguage &language = m_f.window->Language();
      QCOMPARE(dialog.windowTitle(), QApplication::applicationDisplayName());
      QCOMPARE(dialog.findChild<QLabel *>(u"lblTitle"_s)->text(), language.Text("Default", "NotCurrent"));
      QCOMPARE(dialog.findChild<QTextEdit *>(u"mmoPrompt2"_s)->toPlainText(), language.Text("Default", "AskDefault"));
      QCOMPARE(dialog.findChild<QPushButton *>(u"cmdOK"_s)->text(), language.Global("Yes"));
      auto *box = dialog.findChild<QCheckBox *>(u"chkConfirm"_s);
      QVERIFY(box->isChecked() && box->text() == language.Text("Default", "AlwaysAsk"));
      box->setChecked(tick);
      dialog.findChild<QPushButton *>(yes ? u"cmdOK"_s : u"cmdCancel"_s)->click();
    });
    m_f.Show();
    QTRY_VERIFY_WITH_TIMEOUT(isAsked, m_f.LoadTime);
    QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
    QTEST(TShellAssociation(*m_f.store).IsDefaultBrowser(), "isDefault");
    QTEST(options.Get(Setting::AskDefaultBrowser), "asksAgain");
    if (yes) {
      QTRY_COMPARE(m_programs.Calls().size(), 2);
      QCOMPARE(m_programs.Calls().first(), u"xdg-settings|set|default-web-browser|zarvela.desktop"_s);
    } else {
      QVERIFY(m_f.store->Subkeys(TRegistryHive::ClassesRoot, {}).isEmpty());
      // Who has said no can still change his mind.
      m_f.window->Actions()[TCommand::MakeDefaultBrowser]->trigger();
      QVERIFY(TShellAssociation(*m_f.store).IsDefaultBrowser());
      QTRY_COMPARE(m_programs.Calls().value(0), u"xdg-settings|set|default-web-browser|zarvela.desktop"_s);
    }
  }

  void AsksNothing_data() {
    Columns<bool, bool>("ask", "isDefault");
    Row("not wanted", false, false);
    Row("it is already", true, true);
  }
  void AsksNothing() {
    QFETCH(bool, ask);
    QFETCH(bool, isDefault);
    TZVOptions options(*m_f.store);
    options.Set(Setting::AskDefaultBrowser, ask);
    options.Set(Setting::CommandLine, m_f.server.Url(u"/a"_s));
    TShellAssociation(*m_f.store).SetAll(isDefault);
    bool isAsked = false;
    QTimer look;
    connect(&look, &QTimer::timeout, this, [&] {
      if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget())) {
        isAsked = true;
        dialog->reject();
      }
    });
    look.start(0);
    m_f.Open();
    QTRY_COMPARE_WITH_TIMEOUT(Active()->Load(), TLoad::Shown, m_f.LoadTime);
    // What would be asked now is asked within the next turns of the loop.
    for (int i = 0; i < 10; ++i) QCoreApplication::processEvents();
    QVERIFY(!isAsked);
    QCOMPARE(m_programs.Calls(), QStringList());
  }

  // Pages see the token behind the platform, and it is in the registry only while the window is there.
  void TellsPagesItsToken() {
    const auto registered = [this] { return UserAgentToken::Registered(*m_f.store); };
    TZVOptions(*m_f.store).Set(Setting::CommandLine, m_f.server.Url(u"/a"_s));
    m_f.Open();
    QTRY_COMPARE_WITH_TIMEOUT(Active()->Load(), TLoad::Shown, m_f.LoadTime);
    QVERIFY(!registered().isEmpty());
    const QString sent = QString::fromLatin1(m_f.server.Requests("/a").last().Header("user-agent"));
    const qsizetype platform = sent.indexOf(u'(');
    QVERIFY2(sent.mid(platform, sent.indexOf(u')') - platform).endsWith(u"; Zarvela 6.2.1A"_s), qPrintable(sent));
    QCOMPARE(AnswerOf(*Active()->Browser()->EnginePage(), u"navigator.userAgent"_s).toString(), sent);
    m_f.window.reset();
    QCOMPARE(registered(), QString());
  }

  void StartsPrograms_data() {
    Columns<TMenu, QString, QString>("menu", "item", "call");
    Row("editor", TMenu::EditWith, "Editor", "editor|FILE");
    Row("editor of the registry", TMenu::EditWith, "Registered", "editor|--reg|FILE");
    Row("browser", TMenu::OpenWith, "Browser & more", "browse|URL");
    Row("mail client", TMenu::Mail, "Mail", "post");
    Row("mail client of the registry", TMenu::Mail, "Post", "post|--reg");
  }
  void StartsPrograms() {
    QFETCH(TMenu, menu);
    QFETCH(QString, item);
    QFETCH(QString, call);
    WritePrograms();
    OpenPage();
    QMenu *opened = m_f.window->Actions().Menu(menu);
    const auto items = [&] {
      // Which of them shows is known when the menu above opens.
      Q_EMIT m_f.window->Actions().Menu(TMenu::File)->aboutToShow();
      Q_EMIT opened->aboutToShow();
      QStringList texts;
      for (const QAction *action : opened->actions()) texts.append(action->text());
      return texts;
    };
    const QStringList first = items();
    QCOMPARE(items(), first);
    const qsizetype place = first.indexOf(QString(item).replace(u"&"_s, u"&&"_s));
    QVERIFY2(place >= 0, qPrintable(first.join(u", "_s)));
    QVERIFY(opened->menuAction()->isVisible());
    opened->actions().at(place)->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(m_programs.Calls().size(), 1, m_f.LoadTime);
    const QString made = m_programs.Calls().first();
    const QString file = made.section(u'|', -1);
    QCOMPARE(made, QString(call).replace(u"FILE"_s, file).replace(u"URL"_s, m_f.server.Url(u"/a"_s)));
    if (call.endsWith(u"FILE"_s)) {
      QVERIFY(DesktopFiles::Read(file).contains("Page A"));
      QFile::remove(file);
    }
  }

  void NothingToOffer() {
    OpenPage();
    Q_EMIT m_f.window->Actions().Menu(TMenu::File)->aboutToShow();
    for (const TMenu menu : {TMenu::EditWith, TMenu::OpenWith}) {
      QVERIFY(!m_f.window->Actions().Menu(menu)->menuAction()->isVisible());
    }
    for (const TCommand command : {TCommand::ReadMail, TCommand::ReadNews}) m_f.window->Actions()[command]->trigger();
    QCOMPARE(m_programs.Calls(), QStringList());
  }

  // A program that gives up only after it was started, whoever has started it.
  void FailureIsTold_data() {
    Columns<QString, QString, QString>("address", "program", "then");
    Row("command", "", "xdg-email", "sleep 0.3; exit 4");
    Row("mail address", "mailto:a@example.test", "xdg-email", "sleep 0.3; exit 4");
    Row("news address", "news:some.group", "xdg-open", "sleep 0.3; exit 3");
  }
  void FailureIsTold() {
    QFETCH(QString, address);
    QFETCH(QString, program);
    QFETCH(QString, then);
    m_programs.Add(program, then.toLatin1());
    OpenPage();
    if (address.isEmpty()) {
      m_f.window->Actions()[TCommand::MailNewMessage]->trigger();
    } else {
      QDesktopServices::openUrl(QUrl(address));
    }
    const auto *note = m_f.window->findChild<QLabel *>(u"pnlStatusNote"_s);
    QTRY_COMPARE(note->text(), m_f.window->Language().Text("MAIN", "ProgramFailed").arg(program));
    QCOMPARE(m_programs.Calls(), QStringList(program + u'|' + (address.isEmpty() ? u"mailto:"_s : address)));
    m_programs.Add(program);
  }

  // Page, pictures and links of the manual are there.
  void Manual() {
    m_f.Open();
    QTest::keyClick(m_f.window.get(), Qt::Key_F1);
    QCOMPARE(m_f.window->Tabs().TabCount(), 2);
    QTRY_COMPARE_WITH_TIMEOUT(Active()->Load(), TLoad::Shown, m_f.LoadTime);
    QWebEnginePage &page = *Active()->Browser()->EnginePage();
    QVERIFY(Active()->GetLocationUrl().startsWith(u"file:"_s));
    const auto answer = [&](const QString &script) { return AnswerOf(page, script); };
    QTRY_VERIFY(answer(u"[...document.images].every(i => i.complete)"_s).toBool());
    QVERIFY(answer(u"document.images.length > 0 && [...document.images].every(i => i.naturalWidth > 0)"_s).toBool());
    QCOMPARE(answer(u"document.links.length"_s).toInt(), answer(u"document.querySelectorAll('h2').length"_s).toInt());
    QVERIFY(answer(u"[...document.links].every(l => document.getElementById(decodeURIComponent(l.hash.slice(1))))"_s)
                .toBool());
    QVERIFY(!answer(u"document.body.innerText"_s).toString().contains(QRegularExpression(uR"(\*\*|\]\(|\{\{)"_s)));
  }

 private:
  [[nodiscard]] TBrowserTab *Active() const { return m_f.window->Tabs().GetActivePage(); }
  void OpenPage() {
    TZVOptions(*m_f.store).Set(Setting::CommandLine, m_f.server.Url(u"/a"_s));
    m_f.Open();
    QTRY_COMPARE_WITH_TIMEOUT(Active()->Load(), TLoad::Shown, m_f.LoadTime);
  }
  void WritePrograms() {
    DesktopFiles::WriteEntry(u"Editor"_s, "Exec=editor %F\nCategories=TextEditor;\n");
    DesktopFiles::WriteEntry(u"Browser & more"_s, "Exec=browse %u\nCategories=WebBrowser;\n");
    DesktopFiles::WriteEntry(u"Mail"_s, "Exec=post %u\nMimeType=x-scheme-handler/mailto;\n");
    const auto write = [this](TRegistryHive hive, const QString &key, const QString &name, const QString &data) {
      QVERIFY(m_f.store->Write(hive, key, name, data));
    };
    m_f.store->CreateKey(TRegistryHive::ClassesRoot, u".htm\\OpenWithList\\reg"_s);
    write(TRegistryHive::ClassesRoot, u"Applications\\reg\\shell"_s, u"FriendlyCache"_s, u"Registered"_s);
    write(TRegistryHive::ClassesRoot, u"Applications\\reg\\shell\\edit\\command"_s, {}, u"editor --reg"_s);
    write(TRegistryHive::LocalMachine, u"Software\\Clients\\Mail\\Post\\Shell\\Open\\Command"_s, {}, u"post --reg"_s);
  }

  TMainWindowFixture m_f;
  TFakePrograms m_programs;
  QTemporaryDir m_system;
};

ENGINE_MAIN(TestDesktop)
#include "test_desktop.moc"
