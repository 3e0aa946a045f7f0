#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <future>
#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include "platform/hand_off.h"
#include "platform/hand_off_record.h"
#include "platform/instance_channel.h"
#include "platform/instance_lock.h"
#include "platform/local_socket.h"
#include "support/data_row.h"

using namespace HandOffRecord;

// The record of the hand-off, the lock, and both ends of the channel inside one process.

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

class TestHandoffRecord final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    m_session = qgetenv("XDG_RUNTIME_DIR");
    QVERIFY(!m_session.isEmpty());
    QVERIFY(QDir(QFile::decodeName(m_session) + QStringLiteral("/zarvela")).removeRecursively());
  }

  void cleanup() {
    m_received.reset();
    m_channel.reset();
    m_lock.reset();
    qputenv("XDG_RUNTIME_DIR", m_session);
  }

  void Bytes_data() {
    Columns<QString, QByteArray>("text", "bytes");
    Row("one letter", "a", QByteArray::fromHex("afaf0000 02000000 6100"));
    Row("letters of several bytes", "é€😀", QByteArray::fromHex("afaf0000 0a000000 c3a9 e282ac f09f9880 00"));
    Row("byte-order mark in front", QStringLiteral("\uFEFFa"), QByteArray::fromHex("afaf0000 05000000 efbbbf 6100"));
    Row("256 and more", QString(300, u'x'), QByteArray::fromHex("afaf0000 2d010000") + QByteArray(300, 'x') + '\0');
    QTest::newRow("empty") << QString() << QByteArray::fromHex("afaf0000 00000000");
  }
  void Bytes() {
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

  void Broken_data() {
    Columns<QByteArray>("bytes");
    QTest::newRow("wrong tag") << Raw(0xAFAE, 2, QByteArray("a\0", 2));
    QTest::newRow("count too big") << Raw(Tag, 9, QByteArray("abc\0", 4));
    QTest::newRow("count beyond any text") << Raw(Tag, MostTextBytes + 1, QByteArray(8000, 'a'));
    QTest::newRow("no terminating zero") << Raw(Tag, 3, "abc");
    QTest::newRow("a zero in the middle") << Raw(Tag, 4, QByteArray("a\0b\0", 4));
    QTest::newRow("no UTF-8") << Raw(Tag, 3, QByteArray("a\xe4\0", 3));
    QTest::newRow("1025 characters") << Raw(Tag, 1026, QByteArray(1025, 'a') + '\0');
  }
  void Broken() {
    QFETCH(QByteArray, bytes);
    QCOMPARE(Parse(bytes).state, TState::Malformed);
  }

  void OneHolder() {
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

  void Folder_data() {
    Columns<QByteArray, bool>("session", "ownFolder");
    QTest::newRow("the session's") << qgetenv("XDG_RUNTIME_DIR") << false;
    QTest::newRow("none") << QByteArray() << true;
    QTest::newRow("relative") << QByteArray("run") << true;
    QTest::newRow("missing") << QByteArray("/nonexistent/run") << true;
    // As where nothing can be written, whoever runs the tests.
    const QByteArray taken = qgetenv("XDG_RUNTIME_DIR") + "/taken";
    QDir().mkpath(QFile::decodeName(taken) + QStringLiteral("/zarvela/instance.lock"));
    QTest::newRow("takes no lock file") << taken << true;
    QTest::newRow("too long for a socket") << qgetenv("XDG_RUNTIME_DIR") + "/" + QByteArray(100, 'x') << true;
  }
  void Folder() {
    QFETCH(QByteArray, session);
    QFETCH(bool, ownFolder);
    qputenv("XDG_RUNTIME_DIR", session);
    TInstanceLock lock;
    QVERIFY(lock.CreateInstanceMutex());
    const QString parent = ownFolder ? QDir::tempPath() : QFile::decodeName(session);
    QVERIFY2(lock.LockFile().startsWith(parent + QStringLiteral("/zarvela")), qPrintable(lock.LockFile()));
    const QByteArray folder = QFile::encodeName(QFileInfo(lock.LockFile()).path());
    struct stat status = {};
    QVERIFY(::stat(folder.constData(), &status) == 0 && (status.st_mode & 0777) == 0700);
    // One that was opened to others meanwhile is closed again.
    QCOMPARE(::chmod(folder.constData(), 0755), 0);
    QVERIFY(TInstanceLock().IsUsable());
    QVERIFY(::stat(folder.constData(), &status) == 0 && (status.st_mode & 0777) == 0700);
  }

  void SomebodyElsesFolder() {
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

  void Delivered() {
    Begin();
    // What is too long is cut between two characters, and a text ends at a zero.
    const std::pair<QString, QString> texts[] = {
        {"http://127.0.0.1/ä?a=1&b=2\n", "http://127.0.0.1/ä?a=1&b=2\n"},
        {QString(), QString()},
        {QString("😀").repeated(1030), QString("😀").repeated(1024)},
        {QString("a") + QChar(u'\0') + u'b', "a"},
    };
    for (const auto &[text, arrives] : texts) {
      QCOMPARE(Send(text, "token-1_TIME2"), THandOff::Delivered);
      QTRY_COMPARE(m_received->size(), 1);
      QCOMPARE(m_received->takeFirst().first().toString(), arrives);
    }
  }

  void WaitsForTheWindow() {
    Begin(false);
    auto early = Sending(QStringLiteral("early"));
    QTRY_COMPARE(m_channel->findChildren<QLocalSocket *>().size(), 1);
    // A second one that gives up before there is a window: what it has sent is opened all the same.
    const auto hasty = Connect();
    hasty->write(Encode(Tag, QStringLiteral("hasty")));
    hasty->disconnectFromServer();
    QTRY_COMPARE(hasty->state(), QLocalSocket::UnconnectedState);
    QVERIFY(m_received->isEmpty() && !IsReady(early));
    m_channel->Start();
    QTRY_COMPARE(m_received->size(), 2);
    QCOMPARE(ResultOf(early), THandOff::Delivered);
  }

  void NoListener() {
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

  void HolderEndsMeanwhile() {
    Begin(false);
    auto late = Sending(QStringLiteral("late"));
    QTRY_COMPARE(m_channel->findChildren<QLocalSocket *>().size(), 1);
    m_channel->Close();
    m_lock.reset();
    QCOMPARE(ResultOf(late), THandOff::BecameFirst);
  }

  void SomebodyElsesSocket() {
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

  void OtherUsersAreNotHeard() {
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
    OnlyOurOwnArrives();
  }

  void DroppedRecords_data() {
    Columns<QByteArray>("bytes");
    QTest::newRow("wrong tag") << Raw(0xAFAE, 2, QByteArray("a\0", 2));
    QTest::newRow("half a text") << Raw(Tag, 10, "abc");
    QTest::newRow("a token alone") << Encode(ActivationTag, QStringLiteral("token"));
    QTest::newRow("two tokens") << Encode(ActivationTag, QStringLiteral("a")).repeated(2) +
                                       Encode(Tag, QStringLiteral("x"));
  }
  void DroppedRecords() {
    QFETCH(QByteArray, bytes);
    Begin();
    const auto socket = Connect();
    QVERIFY(socket->waitForConnected());
    socket->write(bytes);
    // The connection is ended from the other side, at the latest when its time is up, and without the answer.
    QTRY_COMPARE_WITH_TIMEOUT(socket->state(), QLocalSocket::UnconnectedState, TInstanceChannel::Patience + Soon);
    QVERIFY(socket->readAll().isEmpty());
    OnlyOurOwnArrives();
  }

  void InPieces() {
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

  void HalfSentManyTimes() {
    Begin();
    std::vector<std::unique_ptr<QLocalSocket>> sockets;
    for (int i = 0; i < 2 * TInstanceChannel::MostConnections; ++i) {
      sockets.push_back(Connect());
      sockets.back()->write("\xaf\xaf", 2);
      if (i % 16 == 0) QCoreApplication::processEvents();
    }
    QCoreApplication::processEvents();
    QVERIFY(m_channel->findChildren<QLocalSocket *>().size() <= TInstanceChannel::MostConnections);
    // A good one gets through as soon as the others' time is up.
    OnlyOurOwnArrives();
  }

  void Flood() {
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

 private:
  void Begin(bool start = true) {
    m_lock = std::make_unique<TInstanceLock>();
    m_channel = std::make_unique<TInstanceChannel>();
    m_channel->Serve(*m_lock);
    QVERIFY(m_lock->IsFirstInstance());
    m_received = std::make_unique<QSignalSpy>(m_channel.get(), &TInstanceChannel::Received);
    if (start) m_channel->Start();
  }

  std::unique_ptr<QLocalSocket> Connect() const {
    auto socket = std::make_unique<QLocalSocket>();
    socket->connectToServer(m_lock->SocketFile());
    return socket;
  }
  // Sends from a thread of its own, as another process would, while this one answers.
  static std::future<THandOff> Sending(const QString &text, const QString &token = {}) {
    return std::async(std::launch::async, [text, token] {
      TInstanceLock lock;
      return SendToRunningInstance(lock, text, token);
    });
  }
  static bool IsReady(const std::future<THandOff> &result) {
    return result.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
  }
  static THandOff ResultOf(std::future<THandOff> &result) {
    (void)QTest::qWaitFor([&] { return IsReady(result); }, Soon);
    return result.get();
  }
  [[nodiscard]] static THandOff Send(const QString &text, const QString &token = {}) {
    auto result = Sending(text, token);
    return ResultOf(result);
  }

  void OnlyOurOwnArrives() const {
    QCOMPARE(Send(QStringLiteral("good")), THandOff::Delivered);
    QTRY_COMPARE(m_received->size(), 1);
    QCOMPARE(m_received->first().first().toString(), QStringLiteral("good"));
  }

  QByteArray m_session;
  std::unique_ptr<TInstanceLock> m_lock;
  std::unique_ptr<TInstanceChannel> m_channel;
  std::unique_ptr<QSignalSpy> m_received;
};

QTEST_GUILESS_MAIN(TestHandoffRecord)
#include "test_handoff_record.moc"
