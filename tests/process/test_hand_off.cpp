#include <QLocalSocket>

#include "platform/hand_off_record.h"
#include "platform/instance_lock.h"
#include "process/program_fixture.h"

// Starts of the built program beside a running one, with folders of their own for every case.
class TestHandOff final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { m_f.Begin(); }
  void cleanup() { m_f.End(); }

  void SecondStart_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("opens");
    const QString address = QStringLiteral("%1");  // of page 1, where the server listens
    QTest::newRow("an address") << QStringList{address} << true;
    QTest::newRow("only the first of several") << QStringList{address, QStringLiteral("--new")} << true;
    QTest::newRow("a file of its own folder") << QStringList{QStringLiteral("a page.html")} << true;
    QTest::newRow("a page group") << QStringList{QStringLiteral("set.hgp")} << true;
    QTest::newRow("nothing") << QStringList{} << false;
  }
  void SecondStart() {
    QFETCH(QStringList, arguments);
    QFETCH(bool, opens);
    const QString folder = m_f.home + QStringLiteral("/tmp/elsewhere");
    QVERIFY(QDir().mkpath(folder));
    const auto put = [&folder](const QString &name, const QByteArray &contents) {
      QFile file(folder + u'/' + name);
      QVERIFY(file.open(QIODevice::WriteOnly));
      file.write(contents);
    };
    put(QStringLiteral("a page.html"), "<script>location = '" + m_f.Url(1).toUtf8() + "'</script>");
    put(QStringLiteral("set.hgp"), "[HalvexGroup]\nblank1=" + m_f.Url(1).toUtf8() + "\n");
    const auto first = StartFirst();
    for (QString &argument : arguments) argument.replace(QStringLiteral("%1"), m_f.Url(1));
    const auto second = m_f.Start(arguments, folder);
    m_f.WaitForEnd(*second);
    if (opens) QTRY_COMPARE_WITH_TIMEOUT(m_f.Requests(1), 1, m_f.Soon);
    // What was handed over went to the running window and nowhere else; it is still there with its own page.
    HandsOver(2);
    QCOMPARE(m_f.Requests(0), 1);
    QCOMPARE(m_f.Requests(1), opens ? 1 : 0);
    m_f.Quit(*first);
  }

  void OwnInstances_data() {
    QTest::addColumn<bool>("setting");
    QTest::newRow("--new") << false;
    QTest::newRow("AllowMultiInstance") << true;
  }
  void OwnInstances() {
    QFETCH(bool, setting);
    const auto first = StartFirst();
    m_f.Prepare([&](TZVOptions &options) {
      options.Set(Setting::AllowMultiInstance, setting);
      options.Set(Setting::StartupPage, m_f.Url(1));
    });
    const auto second = m_f.Start(setting ? QStringList{m_f.Url(2)} : QStringList{QStringLiteral("--new")});
    // The page of its start shows that it has a window of its own.
    QTRY_COMPARE_WITH_TIMEOUT(m_f.Requests(1), 1, m_f.Soon);
    if (setting) QTRY_COMPARE_WITH_TIMEOUT(m_f.Requests(2), 1, m_f.Soon);
    m_f.Quit(*second);
    m_f.Quit(*first);
  }

  void TenFirstStarts() {
    // Nobody runs yet: one of them becomes the instance and the others wait for its window.
    std::vector<std::unique_ptr<QProcess>> all;
    for (int i = 1; i <= 10; ++i) all.push_back(m_f.Start({m_f.Url(i)}));
    for (int i = 1; i <= 10; ++i) QTRY_COMPARE_WITH_TIMEOUT(m_f.Requests(i), 1, m_f.Soon);
    const auto running = [&all] {
      return std::count_if(all.begin(), all.end(), [](const auto &each) { return each->state() == QProcess::Running; });
    };
    QTRY_COMPARE_WITH_TIMEOUT(running(), 1, m_f.Soon);
    for (const auto &each : all) {
      if (each->state() == QProcess::Running) m_f.Quit(*each);
    }
  }

  void KilledHolder() {
    const auto first = StartFirst();
    first->kill();
    QVERIFY(first->waitForFinished());
    const auto second = m_f.Start({m_f.Url(1)});
    QTRY_COMPARE_WITH_TIMEOUT(m_f.Requests(1), 1, m_f.Soon);
    HandsOver(2);
    m_f.Quit(*second);
  }

  void HandsOverToTheOneThatIsLeft() {
    const auto first = StartFirst();
    m_f.Prepare([&](TZVOptions &options) { options.Set(Setting::StartupPage, m_f.Url(1)); });
    const auto second = m_f.Start({QStringLiteral("--new")});
    QTRY_COMPARE_WITH_TIMEOUT(m_f.Requests(1), 1, m_f.Soon);
    // A start that looks and goes changes nothing.
    QVERIFY(!TInstanceLock().CreateInstanceMutex());
    m_f.Quit(*first);
    // The instance that is left has taken the first one's place as soon as it answers to it.
    QTRY_VERIFY_WITH_TIMEOUT(
        [this] {
          QLocalSocket probe;
          probe.connectToServer(TInstanceLock().SocketFile());
          if (!probe.waitForConnected(1000)) return false;
          probe.write(HandOffRecord::Encode(HandOffRecord::Tag, QString()));
          return probe.waitForReadyRead(1000) && probe.read(1) == QByteArray(1, HandOffRecord::Taken);
        }(),
        m_f.Soon);
    HandsOver(2);
    m_f.Quit(*second);
  }

  void HolderThatNeverAnswers() {
    TInstanceLock holder;
    QVERIFY(holder.CreateInstanceMutex());
    const auto second = m_f.Start({m_f.Url(1)});
    m_f.WaitForEnd(*second);
    QCOMPARE(m_f.Requests(1), 0);
  }

 private:
  // Where no window could be made: what to do with the address must have been decided before one is.
  void HandsOver(int page) {
    const auto start = m_f.StartWithoutScreen({m_f.Url(page)});
    m_f.WaitForEnd(*start);
    QTRY_COMPARE_WITH_TIMEOUT(m_f.Requests(page), 1, m_f.Soon);
  }
  // The first instance, once it shows its first page.
  std::unique_ptr<QProcess> StartFirst() {
    auto program = m_f.Start({m_f.Url(0)});
    if (!QTest::qWaitFor([this] { return m_f.Requests(0) > 0; }, m_f.Soon))
      qWarning("the first instance opened nothing");
    return program;
  }

  TProgramFixture m_f;
};

QTEST_GUILESS_MAIN(TestHandOff)
#include "test_hand_off.moc"
