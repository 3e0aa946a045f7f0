#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <QtTest>

#include "platform/product_info.h"
#include "platform/profile_folder.h"
#include "platform/program_folders.h"
#include "store/private_folder.h"

class TTestProgramFolders final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    qputenv("XDG_DATA_HOME", m_folder->filePath("data").toUtf8());
    qputenv("XDG_CACHE_HOME", m_folder->filePath("cache").toUtf8());
  }

  void RelativeBaseFoldersAreIgnored() {
    QCOMPARE(ProgramFolders::UserData(), m_folder->filePath("data/zarvela"));
    for (const char *value : {"relative", "", "./x"}) {
      qputenv("XDG_DATA_HOME", value);
      QCOMPARE(ProgramFolders::UserData(), QDir::homePath() + "/.local/share/zarvela");
    }
  }

  void OnlyPlainNamesAreFound() {
    const QString own = ProgramFolders::UserData() + "/Things";
    QVERIFY(MakePrivateFolder(own + "/folder"));
    for (const char *name : {"/a.ini", "/../outside.ini", "/folder/b.ini"}) {
      QVERIFY(QFile(own + name).open(QIODevice::WriteOnly));
    }
    QCOMPARE(ProgramFolders::Find("Things", "a.ini"), own + "/a.ini");
    QCOMPARE(ProgramFolders::Find({}, "outside.ini"), ProgramFolders::UserData() + "/outside.ini");
    for (const QString &name :
         {QString(), QString("."), QString(".."), QString("../outside.ini"), QString("folder"), QString("folder/b.ini"),
          QString("folder\\b.ini"), own + "/a.ini", QString("none"), QString::fromLatin1("a.ini\0x", 7)}) {
      QVERIFY2(ProgramFolders::Find("Things", name).isEmpty(), qPrintable(name));
    }
  }

  void TheUsersOwnFileIsFoundFirst() {
    const QString shipped = ProgramFolders::Find("Languages", "zveng.ini");
    QVERIFY(shipped.startsWith(ProgramFolders::Shipped()));
    const QString own = ProgramFolders::UserData() + "/Languages";
    QVERIFY(MakePrivateFolder(own) && QFile::copy(shipped, own + "/zveng.ini"));
    QCOMPARE(ProgramFolders::Find("Languages", "zveng.ini"), own + "/zveng.ini");
  }

  void MadeFoldersArePrivateAndFilesAreInTheWay() {
    const QString path = m_folder->filePath("a/b/c");
    QVERIFY(MakePrivateFolder(path) && MakePrivateFolder(path));
    QCOMPARE(QFile::permissions(m_folder->filePath("a")) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    QVERIFY(QFile(m_folder->filePath("file")).open(QIODevice::WriteOnly));
    QVERIFY(!MakePrivateFolder(m_folder->filePath("file")));
    QVERIFY(!MakePrivateFolder(m_folder->filePath("file/x")));
  }

  void NoAddressIsBuiltIn() {
    const TProductInfo info = TProductInfo::Load();
    QVERIFY(info.defaultHomePage.isEmpty() && info.startupPage.isEmpty() && info.searchPanelPage.isEmpty() &&
            info.updateServer.isEmpty());
  }

  void EveryHolderHasAProfileOfItsOwn() {
    auto first = std::make_unique<TProfileFolder>();
    const TProfileFolder second;
    QVERIFY(first->IsHeld() && second.IsHeld());
    QVERIFY(QFileInfo(first->StoragePath()).isDir() && QFileInfo(first->CachePath()).isDir());
    QVERIFY(first->StoragePath() != second.StoragePath() && first->CachePath() != second.CachePath());
    const QString path = first->StoragePath();
    first.reset();
    QCOMPARE(TProfileFolder().StoragePath(), path);
  }

  // A process that was killed leaves its lock file behind; the profile must be free all the same.
  void AKilledHolderFreesItsProfile() {
    int ends[2];
    QCOMPARE(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
      const TProfileFolder held;
      const char answer = held.IsHeld() ? 'y' : 'n';
      if (::write(ends[1], &answer, 1) == 1) ::pause();
      ::_exit(1);
    }
    char answer = 0;
    QCOMPARE(::read(ends[0], &answer, 1), 1);
    QCOMPARE(answer, 'y');
    const QString taken = ProgramFolders::UserData() + "/profile";
    QVERIFY(TProfileFolder().StoragePath() != taken);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    QCOMPARE(TProfileFolder().StoragePath(), taken);
    ::close(ends[0]);
    ::close(ends[1]);
  }

  void WithoutAFolderNothingIsHeld() {
    QVERIFY(QFile(m_folder->filePath("data")).open(QIODevice::WriteOnly));
    const TProfileFolder folder;
    QVERIFY(!folder.IsHeld() && folder.StoragePath().isEmpty());
  }

 private:
  std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TTestProgramFolders)
#include "test_program_folders.moc"
