#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include "platform/hand_off_record.h"
#include "platform/hand_off_sender.h"
#include "platform/instance_channel.h"
#include "platform/instance_lock.h"
#include "platform/local_socket.h"

using namespace HandOffRecord;

// The record of the hand-off, the lock, and both ends of the channel inside one process.
class TestHandoffRecord final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();

  void Bytes_data();
  void Bytes();
  void TooLong_data();
  void TooLong();
  void Broken_data();
  void Broken();
  void AnyBytes();

  void OneHolder();
  void Folder_data();
  void Folder();
  void SomebodyElsesFolder();

  void Delivered();
  void WaitsForTheWindow();
  void NoListener();
  void HolderEndsMeanwhile();
  void SomebodyElsesSocket();
  void NextInstanceTakesOver();
  void OtherUsersAreNotHeard();
  void DroppedRecords_data();
  void DroppedRecords();
  void InPieces();
  void HalfSentManyTimes();
  void Flood();

 private:
  void Begin(bool start = true);
  std::unique_ptr<QLocalSocket> Connect() const;
  // Sends from a thread of its own, as another process would, while this one answers.
  [[nodiscard]] THandOff Send(const QString &text, const QString &token = {});

  QByteArray m_session;
  std::unique_ptr<TInstanceLock> m_lock;
  std::unique_ptr<TInstanceChannel> m_channel;
  std::unique_ptr<QSignalSpy> m_received;
};

namespace {

constexpr int Soon = 10000;  // milliseconds; the most that a test waits

// A header and bytes behind it, whatever they are.
QByteArray Raw(quint32 tag, quint32 count, const QByteArray &text) {
  QByteArray bytes;
  for (const quint32 number : {tag, count}) {
    for (int shift = 0; shift < 32; shift += 8) bytes.append(char(number >> shift & 0xFF));
  }
  return bytes + text;
}

// Runs `work` in a child process, which ends with what it returns.
template <typename TWork>
pid_t InChild(TWork work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  return child;
}

// Answers events until the child has ended; -1 when it did not end by itself.
int ExitCode(pid_t child) {
  int status = 0;
  if (!QTest::qWaitFor([&] { return ::waitpid(child, &status, WNOHANG) == child; }, 60000)) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace

void TestHandoffRecord::init() {
  m_session = qgetenv("XDG_RUNTIME_DIR");
  QVERIFY(!m_session.isEmpty());
  QVERIFY(QDir(QFile::decodeName(m_session) + QStringLiteral("/zarvela")).removeRecursively());
}

void TestHandoffRecord::cleanup() {
  m_received.reset();
  m_channel.reset();
  m_lock.reset();
  qputenv("XDG_RUNTIME_DIR", m_session);
}

void TestHandoffRecord::Begin(bool start) {
  m_lock = std::make_unique<TInstanceLock>();
  m_channel = std::make_unique<TInstanceChannel>();
  m_channel->Serve(*m_lock);
  QVERIFY(m_lock->IsFirstInstance());
  m_received = std::make_unique<QSignalSpy>(m_channel.get(), &TInstanceChannel::Received);
  if (start) m_channel->Start();
}

std::unique_ptr<QLocalSocket> TestHandoffRecord::Connect() const {
  auto socket = std::make_unique<QLocalSocket>();
  socket->connectToServer(m_lock->SocketFile());
  return socket;
}

THandOff TestHandoffRecord::Send(const QString &text, const QString &token) {
  THandOff result = THandOff::Nobody;
  const std::unique_ptr<QThread> thread(QThread::create([&] {
    TInstanceLock lock;
    result = SendToRunningInstance(lock, text, token);
  }));
  thread->start();
  return QTest::qWaitFor([&] { return thread->isFinished(); }, Soon) || thread->wait() ? result : THandOff::Nobody;
}

void TestHandoffRecord::Bytes_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<QByteArray>("bytes");
  QTest::newRow("empty") << QString() << QByteArray::fromHex("afaf0000 00000000");
  QTest::newRow("one letter") << "a" << QByteArray::fromHex("afaf0000 02000000 6100");
  QTest::newRow("letters of several bytes")
      << QStringLiteral("é€😀") << QByteArray::fromHex("afaf0000 0a000000 c3a9 e282ac f09f9880 00");
  QTest::newRow("byte-order mark in front")
      << QStringLiteral("\uFEFFa") << QByteArray::fromHex("afaf0000 05000000 efbbbf 6100");
  QTest::newRow("256 and more") << QString(300, u'x')
                                << QByteArray::fromHex("afaf0000 2d010000") + QByteArray(300, 'x') + '\0';
}

void TestHandoffRecord::Bytes() {
  QFETCH(QString, text);
  QFETCH(QByteArray, bytes);
  QCOMPARE(Encode(Tag, text), bytes);
  for (int length = 0; length < bytes.size(); ++length) {
    QCOMPARE(Parse(QByteArrayView(bytes).first(length)).state, TState::Incomplete);
  }
  const TParsed parsed = Parse(bytes + "more");
  QCOMPARE(parsed.state, TState::Complete);
  QCOMPARE(parsed.text, text);
  QCOMPARE(parsed.size, int(bytes.size()));
}

void TestHandoffRecord::TooLong_data() {
  QTest::addColumn<QString>("text");
  QTest::addColumn<QString>("arrives");
  QTest::newRow("just fits") << QString(1024, u'a') << QString(1024, u'a');
  QTest::newRow("one more") << QString(1025, u'a') << QString(1024, u'a');
  QTest::newRow("characters, not bytes") << QString(2000, u'ß') << QString(1024, u'ß');
  QTest::newRow("no character is halved") << QStringLiteral("😀").repeated(1030) << QStringLiteral("😀").repeated(1024);
  QTest::newRow("ends at a zero") << QStringLiteral("a") + QChar(u'\0') + u'b' << QStringLiteral("a");
}

void TestHandoffRecord::TooLong() {
  QFETCH(QString, text);
  QFETCH(QString, arrives);
  const TParsed parsed = Parse(Encode(Tag, text));
  QCOMPARE(parsed.state, TState::Complete);
  QCOMPARE(parsed.text, arrives);
}

void TestHandoffRecord::Broken_data() {
  QTest::addColumn<QByteArray>("bytes");
  QTest::newRow("wrong tag") << Raw(0xAFAE, 2, QByteArray("a\0", 2));
  QTest::newRow("tag in the other byte order") << Raw(0xAFAF0000, 2, QByteArray("a\0", 2));
  QTest::newRow("count too small") << Raw(Tag, 2, QByteArray("abc\0", 4));
  QTest::newRow("count too big") << Raw(Tag, 9, QByteArray("abc\0", 4));
  QTest::newRow("count beyond any text") << Raw(Tag, MostTextBytes + 1, QByteArray(8000, 'a'));
  QTest::newRow("the biggest count") << Raw(Tag, 0xFFFFFFFF, QByteArray("a\0", 2));
  QTest::newRow("no terminating zero") << Raw(Tag, 3, "abc");
  QTest::newRow("a zero in the middle") << Raw(Tag, 4, QByteArray("a\0b\0", 4));
  QTest::newRow("no UTF-8") << Raw(Tag, 3, QByteArray("a\xe4\0", 3));
  QTest::newRow("half a character") << Raw(Tag, 3, QByteArray("\xe2\x82\0", 3));
  QTest::newRow("1025 characters") << Raw(Tag, 1026, QByteArray(1025, 'a') + '\0');
}

void TestHandoffRecord::Broken() {
  QFETCH(QByteArray, bytes);
  QCOMPARE(Parse(bytes).state, TState::Malformed);
}

void TestHandoffRecord::AnyBytes() {
  QRandomGenerator random(4711);
  for (int round = 0; round < 20000; ++round) {
    QByteArray bytes = Encode(Tag, QString(random.bounded(20), u'é'));
    for (int change = random.bounded(4); change > 0; --change) {
      bytes[random.bounded(int(bytes.size()))] = char(random.generate());
    }
    bytes.truncate(random.bounded(int(bytes.size()) + 1));
    const TParsed parsed = Parse(bytes);
    if (parsed.state != TState::Complete) continue;
    // Whatever is taken is exactly what a sender would have sent for that text.
    const QByteArray taken = bytes.first(parsed.size);
    const QByteArray again = Encode(parsed.tag, parsed.text);
    QVERIFY2(taken == again || parsed.text.isEmpty(), taken.toHex());
  }
}

void TestHandoffRecord::OneHolder() {
  auto first = std::make_unique<TInstanceLock>();
  QVERIFY(first->CreateInstanceMutex());
  TInstanceLock second;
  QVERIFY(!second.CreateInstanceMutex());
  QVERIFY(first->CreateInstanceMutex());
  first.reset();
  QVERIFY(second.CreateInstanceMutex());
  struct stat status = {};
  QCOMPARE(::stat(QFile::encodeName(second.SocketFile()).constData(), &status), 0);
  QCOMPARE(status.st_mode & 0777, mode_t(0600));
}

void TestHandoffRecord::Folder_data() {
  QTest::addColumn<QByteArray>("session");
  QTest::addColumn<bool>("ownFolder");
  QTest::newRow("the session's") << qgetenv("XDG_RUNTIME_DIR") << false;
  QTest::newRow("none") << QByteArray() << true;
  QTest::newRow("relative") << QByteArray("run") << true;
  QTest::newRow("missing") << QByteArray("/nonexistent/run") << true;
  QTest::newRow("too long for a socket") << qgetenv("XDG_RUNTIME_DIR") + "/" + QByteArray(100, 'x') << true;
}

void TestHandoffRecord::Folder() {
  QFETCH(QByteArray, session);
  QFETCH(bool, ownFolder);
  qputenv("XDG_RUNTIME_DIR", session);
  TInstanceLock lock;
  QVERIFY(lock.CreateInstanceMutex());
  const QString parent = ownFolder ? QDir::tempPath() : QFile::decodeName(session);
  QVERIFY2(lock.LockFile().startsWith(parent + QStringLiteral("/zarvela")), qPrintable(lock.LockFile()));
  QCOMPARE(QFile::permissions(QFileInfo(lock.LockFile()).path()) & 0x77,
           QFile::Permissions(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser) & 0x77);
}

void TestHandoffRecord::SomebodyElsesFolder() {
  if (::geteuid() != 0) QSKIP("only root can make another user's folder");
  qputenv("XDG_RUNTIME_DIR", QByteArray());
  const QByteArray folder = QFile::encodeName(QDir::tempPath()) + "/zarvela-0";
  QDir(QFile::decodeName(folder)).removeRecursively();
  QCOMPARE(::mkdir(folder.constData(), 0777), 0);
  QCOMPARE(::chown(folder.constData(), 65534, 65534), 0);
  TInstanceLock lock;
  QVERIFY(!lock.IsUsable());
  QVERIFY(!lock.CreateInstanceMutex());
  QCOMPARE(::rmdir(folder.constData()), 0);
}

void TestHandoffRecord::Delivered() {
  Begin();
  const QStringList texts{QStringLiteral("http://127.0.0.1/ä?a=1&b=2"), QString(), QString(1024, u'€'),
                          QStringLiteral("/a file with\nanything")};
  for (const QString &text : texts) {
    QCOMPARE(Send(text, QStringLiteral("token-1_TIME2")), THandOff::Delivered);
    QTRY_COMPARE(m_received->size(), 1);
    QCOMPARE(m_received->takeFirst().first().toString(), text);
  }
}

void TestHandoffRecord::WaitsForTheWindow() {
  Begin(false);
  const std::unique_ptr<QThread> thread(QThread::create([] {
    TInstanceLock lock;
    if (SendToRunningInstance(lock, QStringLiteral("early"), {}) != THandOff::Delivered) qFatal("not delivered");
  }));
  thread->start();
  // A second one that gives up before there is a window: what it has sent is opened all the same.
  const auto hasty = Connect();
  hasty->write(Encode(Tag, QStringLiteral("hasty")));
  hasty->disconnectFromServer();
  QTest::qWait(50);
  QVERIFY(m_received->isEmpty());
  QVERIFY(thread->isRunning());
  m_channel->Start();
  QTRY_COMPARE(m_received->size(), 2);
  QTRY_VERIFY(thread->isFinished());
}

void TestHandoffRecord::NoListener() {
  TInstanceLock lock;
  {
    TInstanceLock holder;
    QVERIFY(holder.CreateInstanceMutex());
    QVERIFY(QFile::remove(holder.SocketFile()));
    QCOMPARE(SendToRunningInstance(lock, QStringLiteral("x"), {}, 100), THandOff::Nobody);
  }
  // One that listens and never answers: the wait has an end, too.
  Begin(false);
  QCOMPARE(SendToRunningInstance(lock, QStringLiteral("x"), {}, 100), THandOff::Nobody);
}

void TestHandoffRecord::HolderEndsMeanwhile() {
  Begin(false);
  THandOff result = THandOff::Nobody;
  const std::unique_ptr<QThread> thread(QThread::create([&] {
    TInstanceLock lock;
    result = SendToRunningInstance(lock, QStringLiteral("late"), {});
  }));
  thread->start();
  QTest::qWait(50);
  m_channel->Close();
  m_lock.reset();
  QTRY_VERIFY(thread->isFinished());
  QCOMPARE(result, THandOff::BecameFirst);
}

void TestHandoffRecord::SomebodyElsesSocket() {
  if (::geteuid() != 0) QSKIP("only root can act as another user");
  TInstanceLock holder;
  QVERIFY(holder.CreateInstanceMutex());
  const QByteArray folder = QFile::encodeName(QFileInfo(holder.SocketFile()).path());
  QVERIFY(QFile::remove(holder.SocketFile()));
  int ready[2];
  QCOMPARE(::pipe(ready), 0);
  // Listens in the place of the holder and takes whatever comes; its exit code tells whether a byte did.
  const sockaddr_un address = LocalSocket::Address(holder.SocketFile());
  const int listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
  QCOMPARE(::bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
  const pid_t other = InChild([&] {
    if (::setuid(65534) != 0 || ::listen(listener, 5) != 0 || ::write(ready[1], "y", 1) != 1) return 2;
    const int connection = ::accept(listener, nullptr, nullptr);
    char byte = 0;
    return ::read(connection, &byte, 1) > 0 ? 1 : 0;
  });
  char byte = 0;
  QCOMPARE(::read(ready[0], &byte, 1), ssize_t(1));
  TInstanceLock lock;
  QCOMPARE(SendToRunningInstance(lock, QStringLiteral("secret"), {}, 200), THandOff::Nobody);
  QCOMPARE(ExitCode(other), 0);
  for (const int descriptor : {listener, ready[0], ready[1]}) ::close(descriptor);
}

void TestHandoffRecord::NextInstanceTakesOver() {
  int release[2];
  int ready[2];
  QCOMPARE(::pipe(release), 0);
  QCOMPARE(::pipe(ready), 0);
  const pid_t first = InChild([&] {
    auto *lock = new TInstanceLock;
    char byte = lock->CreateInstanceMutex() ? 'y' : 'n';
    return ::write(ready[1], &byte, 1) == 1 && ::read(release[0], &byte, 1) == 1 ? 0 : 1;
  });
  char byte = 0;
  QCOMPARE(::read(ready[0], &byte, 1), ssize_t(1));
  QCOMPARE(byte, 'y');
  m_lock = std::make_unique<TInstanceLock>();
  m_channel = std::make_unique<TInstanceChannel>();
  m_channel->Serve(*m_lock);
  m_channel->Start();
  m_received = std::make_unique<QSignalSpy>(m_channel.get(), &TInstanceChannel::Received);
  {
    TInstanceLock passer;  // A start that looks and goes changes nothing.
    QVERIFY(!passer.CreateInstanceMutex());
  }
  QVERIFY(!m_lock->IsFirstInstance());
  QCOMPARE(::write(release[1], "x", 1), ssize_t(1));
  QCOMPARE(ExitCode(first), 0);
  QTRY_VERIFY(m_lock->IsFirstInstance());
  QCOMPARE(Send(QStringLiteral("to the heir")), THandOff::Delivered);
  for (const int descriptor : {release[0], release[1], ready[0], ready[1]}) ::close(descriptor);
}

void TestHandoffRecord::OtherUsersAreNotHeard() {
  if (::geteuid() != 0) QSKIP("only root can act as another user");
  Begin();
  const QByteArray record = Encode(Tag, QStringLiteral("intruder"));
  const sockaddr_un address = LocalSocket::Address(m_lock->SocketFile());
  // Connected as root, which no permission stops, and counted as the user that it has become before connecting.
  QCOMPARE(::chmod(QFile::encodeName(QFileInfo(m_lock->SocketFile()).path()).constData(), 0755), 0);
  QCOMPARE(::chmod(QFile::encodeName(m_lock->SocketFile()).constData(), 0666), 0);
  for (QString folder = QString::fromLocal8Bit(m_session); folder != QDir::tempPath() && folder.size() > 1;
       folder = QFileInfo(folder).path()) {
    ::chmod(QFile::encodeName(folder).constData(), 0755);
    if (folder == QDir::homePath()) break;
  }
  const pid_t other = InChild([&] {
    if (::setuid(65534) != 0) return 2;
    const int connection = ::socket(AF_UNIX, SOCK_STREAM, 0);
    if (::connect(connection, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) return 3;
    if (::send(connection, record.constData(), size_t(record.size()), MSG_NOSIGNAL) < 0) return 0;
    char answer = 0;
    return ::recv(connection, &answer, 1, 0) == 1 ? 4 : 0;
  });
  QCOMPARE(ExitCode(other), 0);
  QCOMPARE(Send(QStringLiteral("own")), THandOff::Delivered);
  QTRY_COMPARE(m_received->size(), 1);
  QCOMPARE(m_received->first().first().toString(), QStringLiteral("own"));
}

void TestHandoffRecord::DroppedRecords_data() {
  Broken_data();
  QTest::newRow("half a header") << QByteArray::fromHex("afaf0000 02");
  QTest::newRow("half a text") << Raw(Tag, 10, "abc");
  QTest::newRow("nothing at all") << QByteArray();
  QTest::newRow("a token alone") << Encode(ActivationTag, QStringLiteral("token"));
  QTest::newRow("two tokens") << Encode(ActivationTag, QStringLiteral("a")).repeated(2) +
                                     Encode(Tag, QStringLiteral("x"));
}

void TestHandoffRecord::DroppedRecords() {
  QFETCH(QByteArray, bytes);
  Begin();
  const auto socket = Connect();
  QVERIFY(socket->waitForConnected());
  socket->write(bytes);
  // The connection is ended from the other side, at the latest when its time is up, and without the answer.
  QTRY_COMPARE_WITH_TIMEOUT(socket->state(), QLocalSocket::UnconnectedState, TInstanceChannel::Patience + Soon);
  QVERIFY(socket->readAll().isEmpty());
  QCOMPARE(Send(QStringLiteral("good")), THandOff::Delivered);
  QTRY_COMPARE(m_received->size(), 1);
  QCOMPARE(m_received->first().first().toString(), QStringLiteral("good"));
}

void TestHandoffRecord::InPieces() {
  Begin();
  const QString text = QStringLiteral("http://127.0.0.1/ü");
  const auto socket = Connect();
  const QByteArray bytes = Encode(ActivationTag, QStringLiteral("token")) + Encode(Tag, text);
  for (const char byte : bytes) {
    socket->write(&byte, 1);
    socket->flush();
    QCoreApplication::processEvents();
  }
  QTRY_COMPARE(m_received->size(), 1);
  QCOMPARE(m_received->first().first().toString(), text);
  QTRY_COMPARE(socket->bytesAvailable(), 1);
  QCOMPARE(socket->readAll(), QByteArray(1, Taken));
}

void TestHandoffRecord::HalfSentManyTimes() {
  Begin();
  std::vector<std::unique_ptr<QLocalSocket>> sockets;
  for (int i = 0; i < 2 * TInstanceChannel::MostConnections; ++i) {
    sockets.push_back(Connect());
    sockets.back()->write("\xaf\xaf", 2);
    if (i % 16 == 0) QCoreApplication::processEvents();
  }
  // A good one gets through as soon as the others' time is up.
  QCOMPARE(Send(QStringLiteral("good")), THandOff::Delivered);
  QCOMPARE(m_received->size(), 1);
}

void TestHandoffRecord::Flood() {
  constexpr int Count = 10000;
  Begin();
  // Every record that is handed out costs what opening a tab costs, so they come far faster than they can be opened.
  connect(m_channel.get(), &TInstanceChannel::Received, this, [] { QThread::msleep(10); });
  const sockaddr_un address = LocalSocket::Address(m_lock->SocketFile());
  const pid_t flooder = InChild([&] {
    const QByteArray record = Encode(Tag, QStringLiteral("flood"));
    for (int i = 0; i < Count; ++i) {
      const int connection = ::socket(AF_UNIX, SOCK_STREAM, 0);
      if (::connect(connection, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) return 1;
      if (::send(connection, record.constData(), size_t(record.size()), MSG_NOSIGNAL) < 0) return 2;
      ::close(connection);
    }
    return 0;
  });
  QCOMPARE(ExitCode(flooder), 0);
  QCOMPARE(Send(QStringLiteral("good")), THandOff::Delivered);
  QTRY_COMPARE(m_received->last().first().toString(), QStringLiteral("good"));
  QVERIFY(m_received->size() < Count / 2);
}

QTEST_GUILESS_MAIN(TestHandoffRecord)
#include "test_handoff_record.moc"
