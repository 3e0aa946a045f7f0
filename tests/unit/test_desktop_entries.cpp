#include <sys/stat.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServer>
#include <QDBusVirtualObject>
#include <QLocale>
#include <QSignalSpy>
#include <QTemporaryDir>

#include "platform/desktop_entries.h"
#include "platform/desktop_services.h"
#include "platform/mail_address.h"
#include "support/data_row.h"
#include "support/desktop_files.h"
#include "support/fake_programs.h"

using namespace Qt::StringLiterals;

// A file manager, or something in its place that knows nothing of folders.
class TFileManager final : public QDBusVirtualObject {
 public:
  QString introspect(const QString &) const override { return {}; }
  bool handleMessage(const QDBusMessage &call, const QDBusConnection &bus) override {
    if (call.member() == u"ShowFolders"_s) shown = call.arguments().value(0).toStringList();
    bus.send(isThere ? call.createReply() : call.createErrorReply(QDBusError::UnknownMethod, u"?"_s));
    return true;
  }

  QStringList shown;
  bool isThere = true;
};

// What the desktop says of its programs, and what happens when they are started.
class TestDesktopEntries final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    // Nothing but what the tests write.
    QVERIFY(m_system.isValid());
    qputenv("XDG_DATA_DIRS", m_system.path().toLocal8Bit());
    qputenv("XDG_CONFIG_DIRS", m_system.path().toLocal8Bit());
    QLocale::setDefault(QLocale(u"de_AT"_s));
  }
  void cleanup() {
    DesktopFiles::Clear();
    qputenv("XDG_CURRENT_DESKTOP", "");
  }

  void CommandLine_data() {
    Columns<QString, QStringList, QStringList>("exec", "targets", "command");
    const QString file = u"/tmp/a b.htm"_s;
    const QString url = u"file:///tmp/a%20b.htm"_s;
    const QString page = u"http://a.test/?q=$(x)"_s;
    Row("file", u"edit %f"_s, QStringList{file}, QStringList{u"edit"_s, file});
    Row("address of a file", u"edit %u"_s, QStringList{file}, QStringList{u"edit"_s, url});
    Row("file of an address", u"edit %f"_s, QStringList{url}, QStringList{u"edit"_s, file});
    Row("address", u"browse %u"_s, QStringList{page}, QStringList{u"browse"_s, page});
    Row("one of several", u"edit %f end"_s, QStringList{file, page}, QStringList{u"edit"_s, file, u"end"_s});
    Row("all of several", u"edit %F -- %U"_s, QStringList{file, page},
        QStringList{u"edit"_s, file, page, u"--"_s, url, page});
    Row("nothing to open", u"mail %U -x %u --y=%f"_s, QStringList{}, QStringList{u"mail"_s, u"-x"_s, u"--y="_s});
    Row("no code", u"edit --new"_s, QStringList{file}, QStringList{u"edit"_s, u"--new"_s, file});
    Row("icon, name and place", u"edit %i %c %k %F"_s, QStringList{file},
        QStringList{u"edit"_s, u"--icon"_s, u"pen"_s, u"The Editor"_s, u"/e/e.desktop"_s, file});
    Row("retired codes", u"edit %d %n %v %m -- %F"_s, QStringList{file}, QStringList{u"edit"_s, u"--"_s, file});
    Row("within an argument", u"\"my editor\" --file=%f"_s, QStringList{file},
        QStringList{u"my editor"_s, u"--file="_s + file});
    Row("escapes in quotes", u"e \"a \\\"b\\\" \\$c \\\\d\" '%f'"_s, QStringList{file},
        QStringList{u"e"_s, u"a \"b\" $c \\d"_s, u"'"_s + file + u"'"_s});
    Row("empty argument", u"e \"\" %f"_s, QStringList{file}, QStringList{u"e"_s, QString(), file});
    Row("percent", u"edit 100%% %f"_s, QStringList{file}, QStringList{u"edit"_s, u"100%"_s, file});
    Row("lone percent at the end", u"edit %"_s, QStringList{file}, QStringList{u"edit"_s, u"%"_s, file});
    Row("open quotes", u"edit \"%f"_s, QStringList{file}, QStringList{});
    Row("empty", QString(), QStringList{file}, QStringList{});
  }
  void CommandLine() {
    QFETCH(QString, exec);
    QFETCH(QStringList, targets);
    const TDesktopEntry entry{.path = u"/e/e.desktop"_s, .name = u"The Editor"_s, .icon = u"pen"_s, .exec = exec};
    QTEST(entry.CommandLine(targets), "command");
  }

  // A program at any path comes back from its Exec line as it is.
  void QuotedProgramsAreRead() {
    const QString program = u"/opt/a \"b\" $c `d` \\e 100% x\\n"_s;
    DesktopFiles::WriteEntry(u"odd"_s, "Exec=" + TDesktopEntries::Quoted(program).toUtf8() + " %u\n");
    QCOMPARE(Find(u"odd"_s).CommandLine({u"x"_s}), (QStringList{program, u"x"_s}));
  }

  void ReadsEntries() {
    DesktopFiles::WriteEntry(u"named"_s, "Name[de]=Benannt\nIcon=pen\nExec=a\\sb\nMimeType=text/html;image/png;\n");
    DesktopFiles::WriteEntry(u"fr"_s, "Name[fr]=Fr\nExec=a\n");
    DesktopFiles::WriteEntry(u"sub/folder"_s, "Exec=a\n");
    DesktopFiles::WriteEntry(u"hidden"_s, "Exec=a\nHidden=true\n");
    DesktopFiles::WriteEntry(u"without"_s, "TryExec=no-such-program\nExec=a\n");
    DesktopFiles::WriteEntry(u"with"_s, "TryExec=sh\nExec=a\n");
    DesktopFiles::WriteEntry(u"idle"_s, "Comment=starts nothing\n");
    DesktopFiles::Write(DesktopFiles::Applications() + u"link.desktop"_s, "[Desktop Entry]\nType=Link\nExec=a\n");
    DesktopFiles::Write(DesktopFiles::Applications() + u"broken.desktop"_s, QByteArray("\0\xff[[==\nExec", 12));
    QCOMPARE(::mkfifo(QFile::encodeName(DesktopFiles::Applications() + u"pipe.desktop"_s).constData(), 0600), 0);
    DesktopFiles::WriteEntry(u"actions"_s, "Exec=own\n[Desktop Action x]\nName=Action\nExec=action\n");
    // The user's own entries hide those of the system, even where they only take them away.
    DesktopFiles::Write(m_system.filePath(u"applications/hidden.desktop"_s),
                        "[Desktop Entry]\nType=Application\nName=hidden\nExec=system\n");
    DesktopFiles::Write(m_system.filePath(u"applications/named.desktop"_s),
                        "[Desktop Entry]\nType=Application\nName=of the system\nExec=system\n");
    DesktopFiles::Write(m_system.filePath(u"applications/system.desktop"_s),
                        "[Desktop Entry]\nType=Application\nName=system\nExec=system\n");
    QCOMPARE(Find(u"named"_s).name, u"Benannt"_s);
    QCOMPARE(Find(u"named"_s).CommandLine({}), (QStringList{u"a"_s, u"b"_s}));
    QCOMPARE(Find(u"named"_s).mimeTypes, (QStringList{u"text/html"_s, u"image/png"_s}));
    QCOMPARE(Find(u"fr"_s).name, u"fr"_s);
    QCOMPARE(Find(u"actions"_s).exec, u"own"_s);
    const TDesktopEntries entries = TDesktopEntries::Installed();
    for (const char *id : {"sub-folder", "with", "system"}) QVERIFY2(entries.Find(QLatin1String(id) + Ending), id);
    for (const char *id : {"hidden", "without", "idle", "link", "broken", "pipe"}) {
      QVERIFY2(!entries.Find(QLatin1String(id) + Ending), id);
    }
    QVERIFY(QDir(m_system.filePath(u"applications"_s)).removeRecursively());
  }

  void OnlyThisDesktopsShow_data() {
    Columns<QString, QByteArray, bool>("desktop", "line", "isShown");
    Row("any", u"GNOME"_s, QByteArray(), true);
    Row("no menu", u"GNOME"_s, QByteArray("NoDisplay=true\n"), false);
    Row("this one", u"X:GNOME"_s, QByteArray("OnlyShowIn=KDE;GNOME;\n"), true);
    Row("another one", u"GNOME"_s, QByteArray("OnlyShowIn=KDE;\n"), false);
    Row("not this one", u"GNOME"_s, QByteArray("NotShowIn=GNOME;\n"), false);
  }
  void OnlyThisDesktopsShow() {
    QFETCH(QString, desktop);
    QFETCH(QByteArray, line);
    qputenv("XDG_CURRENT_DESKTOP", desktop.toLocal8Bit());
    DesktopFiles::WriteEntry(u"some"_s, "Exec=a\nMimeType=text/html;\n" + line);
    QTEST(!TDesktopEntries::Installed().HandlersOf(u"text/html"_s).isEmpty(), "isShown");
    // Whatever shows, it is what opens the type.
    QVERIFY(TDesktopEntries::Installed().DefaultOf(u"text/html"_s));
  }

  void ChoosesByTheUsersLists() {
    for (const char *name : {"a", "b", "c"}) {
      DesktopFiles::WriteEntry(QLatin1String(name), "Exec=x %u\nMimeType=text/html;\n");
    }
    DesktopFiles::WriteEntry(u"other"_s, "Exec=x %u\n");
    const auto handlers = [] {
      QString names;
      for (const TDesktopEntry &entry : TDesktopEntries::Installed().HandlersOf(u"text/html"_s)) {
        names += entry.name + u' ';
      }
      return names.trimmed();
    };
    QCOMPARE(handlers(), u"a b c"_s);
    QCOMPARE(TDesktopEntries::Installed().ChosenFor(u"text/html"_s), QString());
    // One that is gone does not count.
    DesktopFiles::Write(
        DesktopFiles::Choices(),
        "[Default Applications]\ntext/html=gone.desktop;c.desktop;\n"
        "[Added Associations]\ntext/html=other.desktop;\n[Removed Associations]\ntext/html=a.desktop\n");
    QCOMPARE(handlers(), u"c b other"_s);
    QCOMPARE(TDesktopEntries::Installed().ChosenFor(u"text/html"_s), u"c.desktop"_s);
    // The desktop's own list comes first, also with what it takes away.
    qputenv("XDG_CURRENT_DESKTOP", "Some");
    const QString own = QFileInfo(DesktopFiles::Choices()).path() + u"/some-mimeapps.list"_s;
    DesktopFiles::Write(own,
                        "[Default Applications]\ntext/html=b.desktop\n"
                        "[Removed Associations]\ntext/html=other.desktop\n");
    QCOMPARE(handlers(), u"b c"_s);
    QVERIFY(QFile::remove(own));
  }

  void OffersPrograms() {
    DesktopFiles::WriteEntry(u"editor"_s, "Exec=x %F\nCategories=Utility;TextEditor;\n");
    DesktopFiles::WriteEntry(u"writer"_s, "Exec=x %F\nCategories=Office;\nMimeType=text/html;\n");
    DesktopFiles::WriteEntry(u"browser"_s,
                             "Exec=x %u\nMimeType=text/html;x-scheme-handler/mailto;\n"
                             "Categories=Network;WebBrowser;TextEditor;\n");
    DesktopFiles::WriteEntry(u"terminal"_s, "Exec=x\nTerminal=true\nCategories=TextEditor;WebBrowser;\n");
    DesktopFiles::WriteEntry(u"mail"_s, "Exec=x %u\nMimeType=x-scheme-handler/mailto;\n");
    DesktopFiles::WriteEntry(u"zarvela"_s, "Exec=x %u\nMimeType=text/html;\nCategories=WebBrowser;\n");
    const TDesktopEntries entries = TDesktopEntries::Installed();
    QCOMPARE(Names(entries.Editors()), u"editor writer"_s);
    QCOMPARE(Names(entries.MailClients()), u"mail"_s);
    QCOMPARE(Names(entries.Browsers()), u"browser"_s);
  }

  // Whoever wrote the address: nothing in it but whom the message is for, what it is about and what it says.
  void MailAddresses_data() {
    Columns<QString, QString>("address", "safe");
    Row("whom", "MAILTO:a@x.test,b@x.test", "mailto:a@x.test,b@x.test");
    Row("all fields", "mailto:a@x.test?to=b@x.test&CC=c&bcc=d&subject=e&body=f",
        "mailto:a@x.test?to=b@x.test&cc=c&bcc=d&subject=e&body=f");
    Row("a file", "mailto:a@x.test?attach=/etc/passwd&subject=s&Attachment=x&body=b",
        "mailto:a@x.test?subject=s&body=b");
    Row("hidden name", "mailto:?%61ttach=/etc/passwd&body=b&%73ubject=s", "mailto:?body=b&subject=s");
    Row("nothing but a file", "mailto:a@x.test?attach=/etc/passwd", "mailto:a@x.test");
    Row("title that looks like fields",
        "mailto:?subject=Q&attach=/etc/passwd (http://x.test/?a=1)&body=http://x.test/?a=1",
        "mailto:?subject=Q&body=http://x.test/%3Fa%3D1");
    Row("title as it is", "mailto:?subject=Q&A? 100% #1 é&body=b",
        "mailto:?subject=Q%26A%3F%20100%25%20%231%20%C3%A9&body=b");
    Row("encoded already", "mailto:?subject=a%20%26%3D%c3%A9%&body=%zz",
        "mailto:?subject=a%20%26%3D%C3%A9%25&body=%25zz");
    Row("another header", "mailto:a%0D%0ABcc:b?subject=a%0ABcc: b&body=a%0D%0Ab",
        "mailto:aBcc:b?subject=aBcc:%20b&body=a%0D%0Ab");
    Row("a switch", "--attach=/etc/passwd", "");
  }
  void MailAddresses() {
    QFETCH(QString, address);
    QTEST(MailAddress::Safe(address), "safe");
  }

  // Whatever stands in an address, it is one argument, and nothing of it is run.
  void StartsWithoutAShell() {
    TFakePrograms programs;
    programs.Add(u"xdg-email"_s);
    programs.Add(u"xdg-open"_s);
    TDesktopServices desktop;
    const QString address = u"mailto:?subject=a b; $(touch x) `y` \"z' & 100%"_s;
    QVERIFY(desktop.OpenMailAddress(address));
    QTRY_COMPARE(
        programs.Calls(),
        QStringList(u"xdg-email|mailto:?subject=a%20b%3B%20%24%28touch%20x%29%20%60y%60%20%22z%27%20%26%20100%25"_s));
    programs.Forget();
    QVERIFY(!desktop.OpenMailAddress(u"--attach=/etc/passwd"_s));
    QVERIFY(desktop.Open(QUrl::fromEncoded("file:///tmp/a%20%E9.txt")));
    QTRY_COMPARE(programs.Calls(), QStringList(u"xdg-open|file:///tmp/a%20%E9.txt"_s));
    programs.Forget();
    QVERIFY(desktop.SendDocuments({u"/tmp/a b"_s, u"/tmp/c"_s}));
    QTRY_COMPARE(programs.Calls(), QStringList(u"xdg-email|--attach|/tmp/a b|--attach|/tmp/c"_s));
    programs.Forget();
    QVERIFY(desktop.OpenFolder(m_system.path()));
    QTRY_COMPARE(programs.Calls(), QStringList(u"xdg-open|"_s + m_system.path()));
    QVERIFY(!desktop.OpenFolder(m_system.filePath(u"gone"_s)));
  }

  // By the file manager that the desktop has on its bus, and without it by what opens files.
  void FolderGoesToTheFileManager_data() {
    Columns<bool>("isThere");
    Row("it answers", true);
    Row("it does not", false);
  }
  void FolderGoesToTheFileManager() {
    QFETCH(bool, isThere);
    TFakePrograms programs;
    programs.Add(u"xdg-open"_s);
    TFileManager manager;
    manager.isThere = isThere;
    QDBusServer server(u"unix:tmpdir="_s + QDir::tempPath());
    server.setAnonymousAuthenticationAllowed(true);
    bool isJoined = false;
    connect(&server, &QDBusServer::newConnection, &server, [&](QDBusConnection peer) {
      isJoined = peer.registerVirtualObject(u"/"_s, &manager, QDBusConnection::SubPath);
    });
    const QDBusConnection bus = QDBusConnection::connectToPeer(server.address(), u"folders"_s);
    QTRY_VERIFY(isJoined);
    TDesktopServices desktop;
    QVERIFY(desktop.OpenFolderOn(bus, u"/tmp/a b"_s));
    QTRY_COMPARE(manager.shown, QStringList(u"file:///tmp/a%20b"_s));
    if (!isThere) QTRY_COMPARE(programs.Calls(), QStringList(u"xdg-open|/tmp/a b"_s));
    QDBusConnection::disconnectFromPeer(u"folders"_s);
    if (isThere) QCOMPARE(programs.Calls(), QStringList());
  }

  void TellsOfALateFailure_data() {
    Columns<QByteArray, bool>("then", "isTold");
    Row("error", QByteArray("sleep 0.3; exit 3"), true);
    Row("killed", QByteArray("kill -9 $$"), true);
    Row("done", QByteArray("exit 0"), false);
  }
  void TellsOfALateFailure() {
    QFETCH(QByteArray, then);
    QFETCH(bool, isTold);
    TFakePrograms programs;
    programs.Add(u"late"_s, then);
    programs.Add(u"last"_s, "sleep 0.6; exit 1");
    TDesktopServices desktop;
    const QSignalSpy failed(&desktop, &TDesktopServices::Failed);
    QVERIFY(desktop.StartCommand({u"late"_s}));
    // Ends after the other one, so that what is not told by then will never be.
    QVERIFY(desktop.StartCommand({u"last"_s}));
    QTRY_VERIFY(!failed.isEmpty() && failed.last().first() == u"last"_s);
    QCOMPARE(failed.first().first() == u"late"_s, isTold);
  }

  void KnowsAtOnceWhatCannotStart() {
    TFakePrograms programs;
    DesktopFiles::Write(programs.Path(u"broken"_s), "#!/no/such/interpreter\n");
    QFile::setPermissions(programs.Path(u"broken"_s), QFile::ReadOwner | QFile::ExeOwner);
    TDesktopServices desktop;
    for (const QStringList &command : {QStringList(), QStringList(u"no-such-program"_s), QStringList(u"broken"_s)}) {
      QVERIFY(!desktop.StartCommand(command));
    }
  }

  // What the user has started stays when this program ends.
  void ProgramsOutliveTheProgram() {
    TFakePrograms programs;
    const QString go = m_system.filePath(u"go"_s);
    const QString done = m_system.filePath(u"done"_s);
    programs.Add(u"editor"_s, "until [ -e '" + go.toUtf8() + "' ]; do sleep 0.05; done; : > '" + done.toUtf8() + "'");
    {
      TDesktopServices desktop;
      QVERIFY(desktop.StartCommand({u"editor"_s}));
      QTRY_COMPARE(programs.Calls().size(), 1);
    }
    DesktopFiles::Write(go, {});
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(done), 10000);
  }

 private:
  static constexpr QLatin1String Ending{".desktop"};

  [[nodiscard]] static TDesktopEntry Find(const QString &name) {
    return TDesktopEntries::Installed().Find(name + Ending).value_or(TDesktopEntry());
  }
  [[nodiscard]] static QString Names(const QList<TDesktopEntry> &entries) {
    QStringList names;
    for (const TDesktopEntry &entry : entries) names.append(entry.name);
    return names.join(u' ');
  }

  QTemporaryDir m_system;
};

QTEST_GUILESS_MAIN(TestDesktopEntries)
#include "test_desktop_entries.moc"
