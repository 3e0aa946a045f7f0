#include <memory>
#include <QCoreApplication>

#include "config/registered_programs.h"
#include "config/registry_paths.h"
#include "config/shell_association.h"
#include "config/user_agent_token.h"
#include "platform/desktop_defaults.h"
#include "platform/desktop_entries.h"
#include "store/registry_store.h"
#include "support/data_row.h"
#include "support/desktop_files.h"
#include "support/fake_programs.h"

using namespace Qt::StringLiterals;

// What the program tells the system of itself: the association, and with it the desktop; its word in the user agent.
// And what the registry says of other programs.
class TestShellAssociation final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY(m_system.isValid());
    qputenv("XDG_DATA_DIRS", m_system.path().toLocal8Bit());
    qputenv("XDG_CONFIG_DIRS", m_system.path().toLocal8Bit());
  }
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<TRegistryStore>(m_folder->filePath(u"registry.sqlite"_s));
    DesktopFiles::Clear();
  }
  void cleanup() {
    m_store.reset();
    m_folder.reset();
  }

  void Keys() {
    TShellAssociation association(*m_store);
    QVERIFY(!association.IsDefaultBrowser());
    association.SetAll(true);
    QVERIFY(association.IsDefaultBrowser());
    // The program's path stands without quotes of its own.
    QCOMPARE(Root(u"http\\shell\\Zarvela\\command"_s), QCoreApplication::applicationFilePath() + u" \"%1\""_s);
    QCOMPARE(Root(u"http\\shell\\Zarvela"_s), u"Zarvela"_s);

    // A class that another program has taken over is left to it, and makes the program no default browser.
    Write(TRegistryHive::ClassesRoot, u"https\\shell"_s, {}, u"Other"_s);
    QVERIFY(!association.IsDefaultBrowser());
    association.SetAll(false);
    QCOMPARE(association.Read(u"http"_s).defaultVerb, u"open"_s);
    QCOMPARE(association.Read(u"https"_s).defaultVerb, u"Other"_s);
    QVERIFY(m_store->KeyExists(TRegistryHive::ClassesRoot, u"http\\shell\\Zarvela"_s));
  }

  // Four of five are the program's: the fifth joins them, and the four stay as they are.
  void OneIsMissing() {
    TShellAssociation association(*m_store);
    association.SetAll(true);
    association.Set(u"file"_s, false);
    Write(TRegistryHive::ClassesRoot, u"http\\shell\\Zarvela\\command"_s, {}, u"as it is"_s);
    QVERIFY(!association.IsDefaultBrowser());
    association.SetAll(true);
    QVERIFY(association.IsDefaultBrowser());
    QCOMPARE(Root(u"http\\shell\\Zarvela\\command"_s), u"as it is"_s);
  }

  // The desktop is told, and told back; what has been its browser before is so again.
  void TheDesktopFollows() {
    TFakePrograms programs;
    programs.Add(u"xdg-settings"_s);
    programs.Add(u"xdg-mime"_s);
    DesktopFiles::WriteEntry(u"other"_s, "Exec=other %u\n");
    const QByteArray others =
        "[Default Applications]\ntext/html=other.desktop\nx-scheme-handler/http=other.desktop;\n"
        "x-scheme-handler/https=other.desktop\nimage/png=viewer.desktop\n";
    DesktopFiles::Write(DesktopFiles::Choices(), others);
    TDesktopDefaults desktop;
    TShellAssociation association(*m_store, &desktop);
    association.SetAll(true);
    QVERIFY(desktop.WaitForDone(Soon));
    QCOMPARE(programs.Calls(), (QStringList{u"xdg-settings|set|default-web-browser|zarvela.desktop"_s, Types(OwnId)}));

    // It runs from no place that the desktop knows, so it has an entry of its own now.
    const TDesktopEntry entry = TDesktopEntries::Installed().Find(OwnId).value_or(TDesktopEntry());
    QCOMPARE(entry.CommandLine({u"http://a.test/"_s}),
             (QStringList{QCoreApplication::applicationFilePath(), u"http://a.test/"_s}));
    QVERIFY(entry.mimeTypes.contains(u"text/html"_s) && QFileInfo::exists(entry.icon));

    // As the tools would have left it, and the user changed one of it since.
    DesktopFiles::WriteEntry(u"third"_s, "Exec=third %u\n");
    DesktopFiles::Write(DesktopFiles::Choices(),
                        QByteArray(others).replace("other", "zarvela").replace("text/html=zarvela", "text/html=third"));
    programs.Forget();
    association.Unregister();
    QVERIFY(desktop.WaitForDone(Soon));
    QCOMPARE(programs.Calls(),
             (QStringList{u"xdg-settings|set|default-web-browser|other.desktop"_s,
                          u"xdg-mime|default|other.desktop|x-scheme-handler/http|x-scheme-handler/https"_s}));
    QVERIFY(!TDesktopEntries::Installed().Find(OwnId));
    QVERIFY(!QFileInfo::exists(entry.icon));
  }

  // Where there was nothing before, nothing is left.
  void LeavesNothingBehind() {
    TFakePrograms programs;
    programs.Add(u"xdg-mime"_s);
    DesktopFiles::WriteEntry(u"zarvela"_s, "Exec=zarvela %u\n");
    DesktopFiles::Write(DesktopFiles::Choices(),
                        "# kept\n[Default Applications]\ntext/html=zarvela.desktop;b.desktop;\n"
                        "x-scheme-handler/http=zarvela.desktop\nimage/png=zarvela.desktop\n");
    TDesktopDefaults desktop;
    TShellAssociation(*m_store, &desktop).Unregister();
    QVERIFY(desktop.WaitForDone(Soon));
    QCOMPARE(programs.Calls(), QStringList());
    // What it opens besides is the user's own affair, and so is an entry that he has made.
    QCOMPARE(DesktopFiles::Read(DesktopFiles::Choices()),
             QByteArray("# kept\n[Default Applications]\ntext/html=b.desktop;\nimage/png=zarvela.desktop\n"));
    QVERIFY(TDesktopEntries::Installed().Find(OwnId));
  }

  void OneClassAlone() {
    TFakePrograms programs;
    programs.Add(u"xdg-settings"_s);
    programs.Add(u"xdg-mime"_s, "exit 4");
    // An entry of the user's own stays as it is, whatever it says.
    DesktopFiles::WriteEntry(u"zarvela"_s, "Exec=zarvela %u\nHidden=true\n");
    const QByteArray entry = DesktopFiles::Read(DesktopFiles::Applications() + OwnId);
    TDesktopDefaults desktop;
    TShellAssociation association(*m_store, &desktop);
    association.Set(u"file"_s, true);
    association.Set(u"http"_s, true);
    association.Set(u"http"_s, true);
    QVERIFY(desktop.WaitForDone(Soon));
    QCOMPARE(programs.Calls(), QStringList(u"xdg-mime|default|zarvela.desktop|x-scheme-handler/http"_s));
    QCOMPARE(association.Read(u"http"_s).defaultVerb, u"Zarvela"_s);
    QCOMPARE(DesktopFiles::Read(DesktopFiles::Applications() + OwnId), entry);
  }

  // Row by row, and the desktop in one: which has a browser when all that it knows of is the program's.
  void ClassesTogether() {
    TFakePrograms programs;
    programs.Add(u"xdg-settings"_s);
    programs.Add(u"xdg-mime"_s);
    DesktopFiles::WriteEntry(u"other"_s, "Exec=other %u\n");
    const QByteArray others =
        "[Default Applications]\ntext/html=other.desktop\nx-scheme-handler/http=other.desktop\n"
        "x-scheme-handler/https=other.desktop\n";
    TDesktopDefaults desktop;
    TShellAssociation association(*m_store, &desktop);
    const QString web = u"x-scheme-handler/http|x-scheme-handler/https"_s;
    const auto only = [&](const QStringList &classes, const QByteArray &choices) {
      DesktopFiles::Write(DesktopFiles::Choices(), choices);
      programs.Forget();
      association.SetOnly(classes);
      QVERIFY(desktop.WaitForDone(Soon));
      for (const char *name : TShellAssociation::Classes) {
        QCOMPARE(association.IsOurs(QString::fromLatin1(name)), classes.contains(QLatin1String(name)));
      }
    };
    QStringList classes{u"http"_s, u"https"_s};
    only(classes, others);
    QCOMPARE(programs.Calls(), QStringList(u"xdg-mime|default|zarvela.desktop|"_s + web));
    classes += {u"htmlfile"_s, u"file"_s, u"InternetShortcut"_s};
    only(classes, QByteArray(others).replace("http=other", "http=zarvela").replace("https=other", "https=zarvela"));
    QCOMPARE(programs.Calls(), (QStringList{u"xdg-settings|set|default-web-browser|zarvela.desktop"_s, Types(OwnId)}));
    only(classes, QByteArray(others).replace("other", "zarvela"));
    QCOMPARE(programs.Calls(), QStringList());
    only({u"file"_s}, QByteArray(others).replace("other", "zarvela"));
    QCOMPARE(programs.Calls(),
             (QStringList{u"xdg-settings|set|default-web-browser|other.desktop"_s, Types(u"other.desktop"_s)}));
  }

  // Without the desktop's tools there are the keys alone.
  void NoTools() {
    TFakePrograms programs(TFakePrograms::TReach::Alone);
    TDesktopDefaults desktop;
    TShellAssociation association(*m_store, &desktop);
    association.SetAll(true);
    QVERIFY(desktop.WaitForDone(0) && association.IsDefaultBrowser());
    QVERIFY(!QFileInfo::exists(DesktopFiles::Applications()));
    association.Unregister();
    QVERIFY(desktop.WaitForDone(0) && !association.IsDefaultBrowser());
  }

  // ---- the user agent ----

  void Token_data() {
    Columns<QStringList, QStringList>("before", "after");  // after a start; an end leaves the same without the token
    const QString token = QString::fromLatin1(UserAgentToken::Name);
    Row("none", QStringList{}, QStringList{token});
    Row("of an earlier version", QStringList{u"Zarvela 6.0"_s, u"Pellisar 1"_s, u"version.dll"_s}, QStringList{token});
    Row("too short", QStringList{u"Zarvela"_s, u"Pellisar"_s}, QStringList{u"Zarvela"_s, u"Pellisar"_s, token});
    Row("of others", QStringList{u"Other 1.0 long"_s, u"zarvela 6.0"_s},
        QStringList{u"Other 1.0 long"_s, u"zarvela 6.0"_s, token});
    Row("there already", QStringList{token}, QStringList{token});
  }
  void Token() {
    QFETCH(QStringList, before);
    QFETCH(QStringList, after);
    const QString key = QString::fromLatin1(RegistryKey::PostPlatform);
    for (const QString &name : before) Write(TRegistryHive::LocalMachine, key, name, u"x"_s);
    const auto names = [&] {
      QStringList found;
      for (const TRegistryValue &value : m_store->Values(TRegistryHive::LocalMachine, key)) found.append(value.name);
      return found;
    };
    UserAgentToken::Register(*m_store, true);
    QCOMPARE(names(), after);
    const QString token = QString::fromLatin1(UserAgentToken::Name);
    QCOMPARE(m_store->Read(TRegistryHive::LocalMachine, key, token), u"IEAK"_s);
    QCOMPARE(UserAgentToken::Registered(*m_store), token);
    UserAgentToken::Register(*m_store, false);
    after.removeAll(token);
    QCOMPARE(names(), after);
    QCOMPARE(UserAgentToken::Registered(*m_store), QString());
  }

  // ---- other programs ----

  void Templates_data() {
    Columns<QString, QStringList>("commandTemplate", "command");
    const QString file = u"/tmp/a \"b\" %1.htm"_s;
    Row("quoted", u"app.exe \"%1\""_s, QStringList{u"app.exe"_s, file});
    Row("first of two", u"app.exe %1 %1"_s, QStringList{u"app.exe"_s, file, u"%1"_s});
    Row("within an argument", u"app.exe --open=%1"_s, QStringList{u"app.exe"_s, u"--open="_s + file});
    Row("no place", u"\"my app\" -x"_s, QStringList{u"my app"_s, u"-x"_s, file});
    Row("empty", QString(), QStringList{});
  }
  void Templates() {
    QFETCH(QString, commandTemplate);
    QTEST(RegisteredPrograms::FillTemplate(commandTemplate, u"/tmp/a \"b\" %1.htm"_s), "command");
  }

  void Editors() {
    const auto root = [this](const QString &key, const QString &name, const QString &data) {
      Write(TRegistryHive::ClassesRoot, key, name, data);
    };
    QVERIFY(RegisteredPrograms::Editors(*m_store).isEmpty());
    for (const QString &program : {u"both"_s, u"opens"_s, u"unknown"_s}) {
      m_store->CreateKey(TRegistryHive::ClassesRoot, u".htm\\OpenWithList\\"_s + program);
    }
    root(u"Applications\\both\\shell"_s, u"FriendlyCache"_s, u"The Editor"_s);
    root(u"Applications\\both\\shell\\edit\\command"_s, {}, u"both --edit %1"_s);
    root(u"Applications\\both\\shell\\open\\command"_s, {}, u"both --open %1"_s);
    root(u"Applications\\opens\\shell\\open\\command"_s, {}, u"opens"_s);
    QStringList names;
    for (const auto &editor : RegisteredPrograms::Editors(*m_store)) names += editor.program + u'=' + editor.name;
    QCOMPARE(names, (QStringList{u"both=The Editor"_s, u"opens=opens"_s}));
    const auto command = [this](const QString &program) {
      return RegisteredPrograms::EditCommand(*m_store, program, u"f"_s).join(u' ');
    };
    QCOMPARE(command(u"both"_s), u"both --edit f"_s);
    QCOMPARE(command(u"opens"_s), u"opens f"_s);
    QCOMPARE(command(u"unknown"_s), QString());
  }

  void Clients() {
    QVERIFY(RegisteredPrograms::MailClients(*m_store).isEmpty());
    QVERIFY(RegisteredPrograms::NewsReader(*m_store).isEmpty());
    QVERIFY(RegisteredPrograms::SystemBrowser(*m_store, u"http://a.test/"_s).isEmpty());
    const auto machine = [this](const QString &key, const QString &data) {
      Write(TRegistryHive::LocalMachine, key, {}, data);
    };
    machine(u"Software\\Clients\\Mail\\Post\\Shell\\Open\\Command"_s, u"post --read"_s);
    machine(u"Software\\Clients\\News\\Groups\\Shell\\Open\\Command"_s, u"%ZV_TEST%/groups %ZV_NONE% \"a b\""_s);
    QCOMPARE(RegisteredPrograms::MailClients(*m_store).size(), 1);
    QCOMPARE(RegisteredPrograms::MailClients(*m_store).first().command, u"post --read"_s);
    // A client that is not the default one is not started.
    QVERIFY(RegisteredPrograms::MailReader(*m_store).isEmpty());
    machine(u"Software\\Clients\\Mail"_s, u"Post"_s);
    machine(u"Software\\Clients\\News"_s, u"Groups"_s);
    QCOMPARE(RegisteredPrograms::MailReader(*m_store), (QStringList{u"post"_s, u"--read"_s}));
    qputenv("ZV_TEST", "/opt");
    QCOMPARE(RegisteredPrograms::NewsReader(*m_store), (QStringList{u"/opt/groups"_s, u"%ZV_NONE%"_s, u"a b"_s}));
    qputenv("ZV_TEST", QByteArray(600, 'x'));
    QVERIFY(RegisteredPrograms::NewsReader(*m_store).isEmpty());
    Write(TRegistryHive::ClassesRoot, QString::fromLatin1(RegistryKey::SystemBrowserServer), {}, u"browser -x"_s);
    QCOMPARE(RegisteredPrograms::SystemBrowser(*m_store, u"http://a.test/"_s),
             (QStringList{u"browser"_s, u"-x"_s, u"http://a.test/"_s}));
  }

 private:
  static constexpr int Soon = 10000;  // milliseconds

  void Write(TRegistryHive hive, const QString &key, const QString &name, const QString &data) {
    QVERIFY(m_store->Write(hive, key, name, data));
  }
  [[nodiscard]] QString Root(const QString &key) const {
    return m_store->Read(TRegistryHive::ClassesRoot, key, {}).value_or(QString());
  }
  [[nodiscard]] static QString Types(const QString &id) {
    return u"xdg-mime|default|%1|text/html|x-scheme-handler/http|x-scheme-handler/https"_s.arg(id);
  }

  const QString OwnId = QString::fromLatin1(TDesktopEntries::OwnId);
  QTemporaryDir m_system;
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_store;
};

QTEST_GUILESS_MAIN(TestShellAssociation)
#include "test_shell_association.moc"
