#include <linux/capability.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include "store/registry_store.h"
#include "store/store_file.h"
#include "support/data_row.h"
#include "support/store_trouble.h"

namespace {

constexpr TRegistryHive User = TRegistryHive::CurrentUser;
constexpr const char *Key = R"(Software\Test)";

QStringList Names(const TRegistryStore &store, const QString &key) {
  QStringList names;
  for (const TRegistryValue &value : store.Values(User, key)) names.append(value.name + u'=' + value.data);
  return names;
}

QByteArray Contents(const QString &path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void WriteFile(const QString &path, const QByteArray &bytes) {
  QFile file(path);
  QVERIFY(file.open(QIODevice::WriteOnly));
  QCOMPARE(file.write(bytes), bytes.size());
}

// A store file with `count` values, closed again.
void MakeStore(const QString &path, int count) {
  TRegistryStore store(path);
  QList<TRegistryValue> values;
  for (int i = 0; i < count; ++i) values.append({"v" + QString::number(i), QString(200, u'x')});
  QVERIFY(store.ReplaceKey(User, Key, values));
}

// The file as another program has it open, after it has run the statement.
sqlite3 *OpenedByAnother(const QString &path, const char *statement) {
  sqlite3 *database = nullptr;
  QDir().mkpath(QFileInfo(path).path());
  sqlite3_open(QFile::encodeName(path).constData(), &database);
  if (sqlite3_exec(database, statement, nullptr, nullptr, nullptr) != SQLITE_OK)
    QTest::qFail("refused", __FILE__, __LINE__);
  return database;
}

// Runs `work` in a process of its own, which ends without any clean-up.
template <typename TWork>
pid_t Fork(TWork work) {
  const pid_t child = ::fork();
  if (child == 0) {
    work();
    ::_exit(0);
  }
  return child;
}

// Runs `check` in a process that file modes hold for, even when root runs the tests.
template <typename TCheck>
bool InUnprivilegedProcess(TCheck check) {
  const pid_t child = Fork([&] {
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct none[2] = {};
    if (::syscall(SYS_capset, &header, none) != 0 || !check()) ::_exit(1);
  });
  int status = -1;
  return ::waitpid(child, &status, 0) == child && status == 0;
}

}  // namespace

class TTestRegistryStore final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_path = m_folder->filePath("deep/er/registry.sqlite");
  }

  void ValuesSurviveReopening() {
    {
      TRegistryStore store(m_path);
      QVERIFY(store.IsWritable());
      QVERIFY(store.SetAsideFile().isEmpty());
      // Others may not read it.
      const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
      QVERIFY(!((QFile::permissions(m_path) | QFile::permissions(QFileInfo(m_path).path())) & others));
      QVERIFY(store.Write(User, R"(\Software\Ünïcode\)", "Größe", "a\nb=c \U0001F600"));
      QVERIFY(store.WriteInteger(User, R"(Software\Ünïcode)", "n", -5000000000));
      QVERIFY(store.Write(User, R"(Software\Ünïcode)", {}, "unnamed"));
      QVERIFY(store.Write(TRegistryHive::ClassesRoot, R"(Software\Ünïcode)", "n", "other hive"));
    }
    const TRegistryStore store(m_path);
    // Names compare without regard to case beyond ASCII too.
    QCOMPARE(store.Read(User, R"(SOFTWARE\\üNÏCODE)", "gRÖSSE"), std::optional<QString>());
    QCOMPARE(store.Read(User, R"(SOFTWARE\\üNÏCODE)", "gRÖßE"), "a\nb=c \U0001F600");
    QCOMPARE(store.Read(User, R"(software\ÜNÏCODE)", {}), "unnamed");
    QCOMPARE(store.Read(TRegistryHive::ClassesRoot, R"(Software\Ünïcode)", "N"), "other hive");
    QVERIFY(!store.KeyExists(TRegistryHive::LocalMachine, "Software"));
    const QList<TRegistryValue> values = store.Values(User, R"(Software\Ünïcode)");
    QCOMPARE(values.size(), 3);
    QCOMPARE(values.at(0).name, "Größe");
    QCOMPARE(values.at(1).data, "-5000000000");
    QVERIFY(values.at(1).isInteger && !values.at(0).isInteger);
    QCOMPARE(store.Subkeys(User, "SOFTWARE"), QStringList{"Ünïcode"});
    QCOMPARE(store.Subkeys(User, {}), QStringList{"Software"});
  }

  void OverwrittenValuesKeepTheirPlaceAndSpelling() {
    TRegistryStore store(m_path);
    for (const char *name : {"Zeta", "alpha", "Mid"}) store.Write(User, Key, name, "1");
    store.Write(User, Key, "ALPHA", "2");
    QCOMPARE(Names(store, Key), (QStringList{"Zeta=1", "alpha=2", "Mid=1"}));
    store.DeleteValue(User, Key, "zeta");
    store.Write(User, Key, "Zeta", "3");
    QCOMPARE(Names(store, Key), (QStringList{"alpha=2", "Mid=1", "Zeta=3"}));
  }

  void DeletingAKeyTakesItsSubkeysAndNothingElse() {
    TRegistryStore store(m_path);
    // The neighbours sort directly before and after what lies below the key.
    const QStringList kept{"Soft", R"(Software\Tes)", R"(Software\Test!)", R"(Software\Test])",
                           R"(Software\Testing\A)"};
    for (const QString &key : kept) store.Write(User, key, "v", "1");
    for (const char *key : {R"(Software\Test)", R"(Software\Test\A)", "Software\\Test\\A\\\U0001F600"}) {
      store.Write(User, key, "v", "1");
    }
    QVERIFY(store.DeleteKey(User, R"(SOFTWARE\TEST)"));
    QVERIFY(!store.KeyExists(User, Key));
    QVERIFY(!store.KeyExists(User, R"(Software\Test\A)"));
    for (const QString &key : kept) QCOMPARE(store.Read(User, key, "v"), "1");
    QVERIFY(store.DeleteKey(User, "never there"));
    // A key that is made again starts without the values that the deleted one had.
    store.CreateKey(User, Key);
    QVERIFY(store.KeyExists(User, Key) && store.Values(User, Key).isEmpty());

    store.Write(User, "\U0001F600", "v", "1");
    QVERIFY(store.DeleteKey(User, {}));
    QVERIFY(store.Subkeys(User, {}).isEmpty());
    QVERIFY(!store.Read(User, "\U0001F600", "v"));
  }

  void ReplacingAKeyIsInOrderAndComplete() {
    TRegistryStore store(m_path);
    store.Write(User, R"(Software\Test\Sub)", "v", "1");
    QVERIFY(store.ReplaceKey(User, Key, {{"b", "1"}, {"a", "2"}, {"B", "3"}, {"n", "7", true}, {"t", "x7", true}}));
    QCOMPARE(Names(store, Key), (QStringList{"b=3", "a=2", "n=7", "t=x7"}));
    QVERIFY(store.Subkeys(User, Key).isEmpty());
    QVERIFY(store.ReplaceKey(User, Key, {}));
    QVERIFY(!store.KeyExists(User, Key));
    QVERIFY(store.KeyExists(User, "Software"));
  }

  void TransactionsAreWholeAndNest() {
    TRegistryStore store(m_path);
    TRegistryStore other(m_path);
    store.Write(User, Key, "a", "old");
    QVERIFY(!store.InTransaction([&] {
      store.Write(User, Key, "a", "new");
      if (other.Read(User, Key, "a") != "old") QTest::qFail("an open transaction was seen", __FILE__, __LINE__);
      return false;
    }));
    QCOMPARE(store.Read(User, Key, "a"), "old");

    QVERIFY(store.InTransaction([&] {
      store.Write(User, Key, "a", "outer");
      const bool inner = store.InTransaction([&] {
        store.Write(User, Key, "b", "inner");
        return false;
      });
      return !inner && store.ReplaceKey(User, R"(Software\List)", {{"c", "1"}});
    }));
    QCOMPARE(Names(other, Key), QStringList{"a=outer"});
    QCOMPARE(Names(other, R"(Software\List)"), QStringList{"c=1"});

    QVERIFY_THROWS_EXCEPTION(std::runtime_error, store.InTransaction([&]() -> bool {
      store.Write(User, Key, "a", "thrown");
      throw std::runtime_error("left");
    }));
    QCOMPARE(store.Read(User, Key, "a"), "outer");
    QVERIFY(other.Write(User, Key, "a", "the lock is free again"));
  }

  void DamagedFilesAreSetAside_data() {
    Columns<QByteArray, bool>("contents", "isDamaged");
    const QString path = m_folder->filePath("good.sqlite");
    MakeStore(path, 400);
    const QByteArray good = Contents(path);
    QByteArray random(good.size(), '\0');
    QRandomGenerator generator(1);
    for (char &byte : random) byte = char(generator.generate());
    QTest::newRow("random bytes") << random << true;
    sqlite3_close(OpenedByAnother(path + '2', "CREATE TABLE theirs(x); INSERT INTO theirs VALUES(1)"));
    QTest::newRow("another program's") << Contents(path + '2') << true;
    QTest::newRow("one byte") << QByteArray("S") << true;
    QTest::newRow("cut off in the middle") << good.first(good.size() / 2) << true;
    QTest::newRow("pages overwritten") << good.first(4096) + random.first(good.size() - 4096) << true;
    QTest::newRow("newer version") << QByteArray(good).replace(60, 4, QByteArray("\0\0\0\x63", 4)) << true;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("good") << good << false;
  }
  void DamagedFilesAreSetAside() {
    QFETCH(QByteArray, contents);
    QFETCH(bool, isDamaged);
    QVERIFY(QDir().mkpath(QFileInfo(m_path).path()));
    for (int round = 1; round <= 2; ++round) {
      WriteFile(m_path, contents);
      {
        // Who only looks leaves everything as it is.
        TRegistryStore looked(m_path, TRegistryStore::TReadOnly());
        QVERIFY(!looked.Write(User, Key, "before", "1") || looked.IsInMemory());
        QVERIFY(looked.SetAsideFile().isEmpty());
        QCOMPARE(Contents(m_path), contents);
      }
      TRegistryStore store(m_path);
      QCOMPARE(!store.SetAsideFile().isEmpty(), isDamaged);
      if (isDamaged) {
        QCOMPARE(Contents(store.SetAsideFile()), contents);
        QCOMPARE(QFileInfo(store.SetAsideFile()).path(), QFileInfo(m_path).path());
        QVERIFY(store.Subkeys(User, {}).isEmpty());
      }
      QVERIFY(store.IsWritable() && !store.IsInMemory());
      QVERIFY(store.Write(User, Key, "after", "1"));
      QCOMPARE(TRegistryStore(m_path, TRegistryStore::TReadOnly()).Read(User, Key, "after"), "1");
      QCOMPARE(TRegistryStore(m_path).Read(User, Key, "after"), "1");
      // A second damaged file gets another name.
      const qsizetype aside = QDir(QFileInfo(m_path).path()).entryList({"*damaged*"}).size();
      QCOMPARE(aside, isDamaged ? round : 0);
    }
  }

  void FileThatWasReplacedIsLeft() {
    TRegistryStore store(m_path);
    QVERIFY(store.Write(User, Key, "a", "old"));
    QVERIFY(QFile::rename(m_path, m_path + ".away"));
    QFile::rename(m_path + "-wal", m_path + ".away-wal");
    TRegistryStore other(m_path);
    QVERIFY(other.Write(User, Key, "a", "new"));
    QCOMPARE(store.Read(User, Key, "a"), "new");
    QVERIFY(store.Write(User, Key, "a", "newer"));
    QCOMPARE(other.Read(User, Key, "a"), "newer");
  }

  // Of two that find the same damage one sets the file aside, and the other leaves the new file alone. Who only reads
  // makes none.
  void OneOfTwoSetsAside() {
    constexpr TStoreFile::TSchema schema{1, "CREATE TABLE t(x); PRAGMA user_version = 1", {}};
    const QString path = m_folder->filePath("file.sqlite");
    TStoreFile one(path, schema, {.first = 100, .usual = 100});
    TStoreFile other(path, schema, {.first = 100, .usual = 100});
    QVERIFY(one.Ensure(false) == TStoreFile::TState::Unavailable && !QFileInfo::exists(path));
    WriteFile(path, QByteArray(5000, 'x'));
    QVERIFY(one.Ensure(false) == TStoreFile::TState::Damaged && other.Ensure(true) == TStoreFile::TState::Damaged);
    QVERIFY(one.SetAside(one.Identity()) && one.Ensure(true) == TStoreFile::TState::Ready);
    QVERIFY(other.SetAside(other.Identity()) && other.SetAsideFile().isEmpty());
    QVERIFY(one.Ensure(true) == TStoreFile::TState::Ready && one.Identity() != other.Identity());
    QCOMPARE(Contents(one.SetAsideFile()), QByteArray(5000, 'x'));
  }

  void DamageFoundWhileRunningIsSetAside() {
    MakeStore(m_path, 4000);
    TRegistryStore store(m_path);
    {
      QFile file(m_path);
      QVERIFY(file.open(QIODevice::ReadWrite));
      file.seek(file.size() / 2);  // deep enough for the file to open
      file.write(QByteArray(file.size() - file.pos(), '\x5A'));
    }
    TRegistryStore later(m_path);
    int told = 0;
    later.SetTroubleHandler([&told] { ++told; });
    const auto read = [](TRegistryStore &one) { return one.Values(User, Key).size(); };
    read(later);
    QVERIFY(later.Write(User, Key, "after", "1"));
    QVERIFY(QFile::exists(later.SetAsideFile()));
    QCOMPARE(told, 1);
    QCOMPARE(TRegistryStore(m_path).Read(User, Key, "after"), "1");
    // The store that had the old file open goes on with the new one.
    read(store);
    QVERIFY(store.Write(User, Key, "late", "1"));
    QCOMPARE(TRegistryStore(m_path).Read(User, Key, "after"), "1");
    QCOMPARE(TRegistryStore(m_path).Read(User, Key, "late"), "1");
  }

  void ALockedFileIsNotDamage() {
    std::optional<TStoreLock> lock(std::in_place, m_path, TStoreLock::TKind::Unreadable);
    TRegistryStore store(m_path);
    QVERIFY(store.SetAsideFile().isEmpty() && !store.IsInMemory());
    // It was waited for once; from then on nothing waits long.
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!store.HasMissedReads() && !store.KnownValues(User, Key) && !store.KnownKeyExists(User, Key));
    QVERIFY(store.Write(User, Key, "a", "1"));
    QVERIFY(timer.elapsed() < 500);
    // What is written here is known here; what others have written is not.
    QCOMPARE(store.Read(User, Key, "A"), "1");
    QVERIFY(!store.KnownValues(User, Key));
    QVERIFY(store.ReplaceKey(User, Key, {{"b", "2"}}));
    QCOMPARE(Names(store, Key), QStringList{"b=2"});
    QVERIFY(!store.Flush(50));
    lock.reset();
    QVERIFY(store.Flush(0) && store.KnownValues(User, Key) && store.HasMissedReads());
    QCOMPARE(Names(TRegistryStore(m_path), Key), QStringList{"b=2"});
  }

  // While another process keeps the lock all that is done shows at once, in the right order, and reaches the file
  // later: by a timer, by the next write, or at the end.
  void ChangesWaitForTheLock_data() {
    Columns<QString>("way");
    for (const char *way : {"timer", "write", "flush", "end"}) QTest::newRow(way) << QString(way);
  }
  void ChangesWaitForTheLock() {
    QFETCH(QString, way);
    auto store = std::make_unique<TRegistryStore>(m_path);
    for (const char *name : {"Zeta", "alpha"}) store->Write(User, Key, name, "1");
    store->Write(User, R"(Software\Gone\Sub)", "v", "1");
    store->Write(User, R"(Software\List)", "x", "theirs");
    std::optional<TStoreLock> lock(std::in_place, m_path);
    QElapsedTimer timer;
    timer.start();
    const auto check = [](const TRegistryStore &seen) {
      QCOMPARE(Names(seen, Key), (QStringList{"Zeta=2", "mid=1", "new=7"}));
      QVERIFY(seen.Values(User, Key).last().isInteger);
      QCOMPARE(seen.Read(User, Key, "ZETA"), "2");
      QVERIFY(!seen.Read(User, Key, "alpha") && !seen.KeyExists(User, R"(Software\Gone\Sub)"));
      QCOMPARE(seen.Subkeys(User, "Software"), (QStringList{"Test", "List", "Made"}));
      QVERIFY(seen.KeyExists(User, R"(Software\Made\Below)") && seen.KeyExists(User, R"(Software\Made)"));
      QCOMPARE(Names(seen, R"(Software\List)"), (QStringList{"mine=1", "x=theirs"}));
    };
    store->Write(User, Key, "zeta", "2");
    store->WriteIfAbsent(User, Key, "ZETA", "default");
    store->WriteIfAbsent(User, Key, "mid", "1");
    store->DeleteValue(User, Key, "ALPHA");
    store->WriteInteger(User, Key, "new", 7);
    store->DeleteKey(User, R"(Software\Gone)");
    store->CreateKey(User, R"(Software\Made\Below)");
    store->EditKey(User, R"(Software\List)", [](const QList<TRegistryValue> &values) {
      return QList<TRegistryValue>{{"mine", "1"}} + values;
    });
    QVERIFY(!store->InTransaction([&] { return store->Write(User, Key, "undone", "1") && false; }));
    check(*store);
    QVERIFY2(timer.elapsed() < 500, "the lock was waited for more than once");
    {
      const TRegistryStore late(m_path);
      QCOMPARE(Names(late, Key), (QStringList{"Zeta=1", "alpha=1"}));
    }
    lock.reset();
    if (way == u"end") store.reset();
    if (way == u"flush") QVERIFY(store->Flush(1000));
    if (way == u"write") QVERIFY(store->CreateKey(User, "Software"));
    const TRegistryStore late(m_path);
    QTRY_COMPARE(late.Read(User, Key, "new"), "7");
    check(late);
  }

  // What another process adds while an edit waits is in the list that the edit is made on.
  void EditsJoinWhatOthersWrote() {
    TRegistryStore store(m_path);
    TRegistryStore other(m_path);
    QVERIFY(store.EditKey(User, Key, [](const QList<TRegistryValue> &) { return QList<TRegistryValue>(); }));
    QVERIFY(other.KeyExists(User, Key));
    std::optional<TStoreLock> lock(std::in_place, m_path);
    store.EditKey(User, Key, [](QList<TRegistryValue> values) { return values << TRegistryValue{"mine", "1"}; });
    store.WriteIfAbsent(User, R"(Software\Other)", "a", "default");
    lock.reset();
    QVERIFY(other.Write(User, Key, "theirs", "1") && other.Write(User, R"(Software\Other)", "a", "theirs"));
    QVERIFY(store.Flush(1000));
    QCOMPARE(Names(other, Key), (QStringList{"theirs=1", "mine=1"}));
    QCOMPARE(other.Read(User, R"(Software\Other)", "a"), "theirs");
  }

  // A disk that is full is told once, and everything is written as soon as there is room.
  // For those who keep what they have read. One write is one change, and reading is none.
  void RevisionsTellOfWrites() {
    TRegistryStore mine(m_path);
    TRegistryStore other(m_path);
    quint64 seen = mine.Revision();
    QVERIFY(mine.Write(User, Key, "a", "mine"));
    QCOMPARE(mine.Revision(), ++seen);
    for (const QString data : {"theirs", "theirs again"}) {
      QVERIFY(other.Write(User, Key, "a", data));
      ++seen;
      QTRY_COMPARE(mine.Revision(), seen);
      QCOMPARE(mine.Read(User, Key, "a"), data);
    }
    QVERIFY(QFile::rename(m_path, m_path + ".away"));
    QTRY_VERIFY(mine.Revision() > seen);
  }

  void AFullDiskIsToldAndSatOut() {
    TRegistryStore store(m_path);
    store.Write(User, Key, "a", "old");
    int told = 0;
    store.SetTroubleHandler([&told] { ++told; });
    const QList<TRegistryValue> list{{"big", QString(300000, u'x')}};
    {
      const TSmallFiles limit(100000);
      QVERIFY(store.ReplaceKey(User, R"(Software\List)", list) && store.IsRefused());
      QVERIFY(store.Write(User, Key, "a", "new") && !store.Flush(20));
      QCOMPARE(told, 1);
      QCOMPARE(store.Values(User, R"(Software\List)"), list);
      QCOMPARE(TRegistryStore(m_path, TRegistryStore::TReadOnly()).Read(User, Key, "a"), "old");
    }
    QTRY_VERIFY(!store.IsRefused());
    QCOMPARE(TRegistryStore(m_path).Values(User, R"(Software\List)"), list);
    QCOMPARE(TRegistryStore(m_path).Read(User, Key, "a"), "new");
  }

  void AFullDiskAtTheStartIsSatOut_data() {
    Columns<int>("values");
    Row("of many", 3);
    Row("the very first", 0);
  }
  void AFullDiskAtTheStartIsSatOut() {
    QFETCH(int, values);
    if (values > 0) MakeStore(m_path, values);
    auto limit = std::make_unique<TSmallFiles>(1000);
    TRegistryStore store(m_path);
    QVERIFY(store.IsWritable() && !store.IsInMemory());
    QCOMPARE(store.Values(User, Key).size(), values);
    QVERIFY(store.Write(User, Key, "late", "1") && store.IsRefused());
    QCOMPARE(store.Values(User, Key).size(), values + 1);
    limit.reset();
    QTRY_VERIFY(!store.IsWaiting());
    QCOMPARE(TRegistryStore(m_path).Read(User, Key, "late"), "1");
  }

  void WhatCannotBeWrittenIsReadAndWhatCannotBeReadIsForgotten() {
    MakeStore(m_path, 3);
    const QByteArray folder = QFileInfo(m_path).path().toUtf8();
    ::chmod(folder, 0555);
    ::chmod(m_path.toUtf8(), 0444);
    QVERIFY(InUnprivilegedProcess([this] {
      TRegistryStore store(m_path);
      return store.Values(User, Key).size() == 3 && !store.IsWritable() && !store.IsInMemory() &&
             !store.Write(User, Key, "a", "1") && !store.InTransaction([] { return true; });
    }));
    ::chmod(m_path.toUtf8(), 0000);
    QVERIFY(InUnprivilegedProcess([this] {
      TRegistryStore store(m_path);
      return store.IsInMemory() && store.Values(User, Key).isEmpty() && store.Write(User, Key, "a", "1") &&
             store.Read(User, Key, "A") == "1";
    }));
    ::chmod(m_path.toUtf8(), 0600);
    ::chmod(folder, 0755);
    QCOMPARE(QDir(folder).entryList({"*damaged*"}), QStringList());
    QVERIFY(TRegistryStore("/dev/null/registry.sqlite").IsInMemory());
    QVERIFY(TRegistryStore(folder).IsInMemory());
  }

  // Several processes open the missing file at once, then write and replace lists; nothing is lost, nothing is mixed.
  void ProcessesShareOneFile() {
    constexpr int Processes = 4;
    constexpr int Rounds = 150;
    QList<pid_t> children;
    for (int process = 0; process < Processes; ++process) {
      children.append(Fork([&] {
        TRegistryStore store(m_path);
        const QString mine = "p" + QString::number(process);
        bool isGood = store.SetAsideFile().isEmpty();
        for (int i = 0; i < Rounds; ++i) {
          isGood &= store.Write(User, Key, mine + u'.' + QString::number(i), mine);
          isGood &= store.ReplaceKey(User, R"(Software\List)", {{"1", mine}, {"2", mine}, {"3", mine}});
          isGood &= IsWhole(store.Values(User, R"(Software\List)"));
        }
        ::_exit(isGood && store.Flush(20000) ? 0 : 1);
      }));
    }
    for (const pid_t child : children) {
      int status = -1;
      QCOMPARE(::waitpid(child, &status, 0), child);
      QCOMPARE(status, 0);
    }
    const TRegistryStore store(m_path);
    QCOMPARE(store.Values(User, Key).size(), Processes * Rounds);
    QVERIFY(IsWhole(store.Values(User, R"(Software\List)")));
  }

 private:
  // All three of the same process.
  [[nodiscard]] static bool IsWhole(const QList<TRegistryValue> &list) {
    return list.size() == 3 && list.at(0).data == list.at(1).data && list.at(1).data == list.at(2).data;
  }

  std::unique_ptr<QTemporaryDir> m_folder;
  QString m_path;
};

QTEST_GUILESS_MAIN(TTestRegistryStore)
#include "test_registry_store.moc"
