#include <memory>
#include <QSemaphore>
#include <QtTest>

#include "chrome/folder_view/file_work.h"

using namespace Qt::StringLiterals;

// What is done to files off the window's thread.
class TestFileWork final : public QObject {
  Q_OBJECT

 private:
  static TFavoritesChange Done(const QString &path) { return {.paths = {path}}; }

 private Q_SLOTS:
  void init() { qunsetenv("ZV_FILE_MOMENT"); }

  void WhatIsQuickIsDoneAtOnce() {
    qputenv("ZV_FILE_MOMENT", "20000");
    TFileWork work;
    QStringList told;
    work.Do([] { return Done(u"a"_s); }, [&](const TFavoritesChange &change) { told += change.paths; });
    QCOMPARE(told, QStringList{u"a"_s});
    QVERIFY(!work.IsBusy());
  }

  void WhatIsSlowKeepsNobodyWaiting() {
    QSemaphore disk;
    QStringList told;
    TFileWork work;
    QSignalSpy busy(&work, &TFileWork::BusyChanged);
    const auto tell = [&](const TFavoritesChange &change) { told += change.paths; };
    work.Do(
        [&] {
          disk.acquire();
          return Done(u"slow"_s);
        },
        tell);
    work.Do([] { return Done(u"next"_s); }, tell);
    QVERIFY(told.isEmpty() && work.IsBusy());
    QCOMPARE(busy, QList<QVariantList>{{true}});
    disk.release();
    QTRY_COMPARE(told, (QStringList{u"slow"_s, u"next"_s}));
    QCOMPARE(busy, (QList<QVariantList>{{true}, {false}}));
  }

  // It may go while it tells, and before it could.
  void EndsWithItsOwner() {
    auto work = std::make_unique<TFileWork>();
    work->Do([] { return Done({}); }, [&](const TFavoritesChange &) { work.reset(); });
    QTRY_VERIFY(work == nullptr);

    QSemaphore disk;
    bool isWritten = false;
    bool isTold = false;
    work = std::make_unique<TFileWork>();
    work->Do(
        [&] {
          disk.acquire();
          isWritten = true;
          return Done({});
        },
        [&](const TFavoritesChange &) { isTold = true; });
    disk.release();
    isTold = false;
    work.reset();
    QVERIFY(isWritten);
    QCoreApplication::processEvents();
    QVERIFY(!isTold);
  }
};

QTEST_GUILESS_MAIN(TestFileWork)
#include "test_file_work.moc"
