// Measures favorites as files, with far more of them than anybody has: what a menu waits for when it opens, and what an
// import takes.
//   bench_favorites folder    keeps the filled folders in this one, for the next time

#include <cstdio>
#include <optional>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>

#include "favorites/bookmark_file.h"
#include "favorites/favorites_finder.h"
#include "favorites/favorites_folder.h"
#include "favorites/favorites_order.h"
#include "favorites/favorites_transfer.h"
#include "table.h"

namespace {

constexpr int Repeats = 15;

constexpr int Folders = 500;
constexpr int InEach = 20;
constexpr int InOne = 5'000;
constexpr int Imported = 50'000;

// Milliseconds. Half of what a menu may take to open: its items have to be made, too.
constexpr double TopLimit = 25;
constexpr double FolderLimit = 10;
constexpr double HintLimit = 1;
constexpr double FindLimit = 50;  // until the first that are found are there

template <typename TWork>
double Time(TWork work) {
  std::vector<double> milliseconds;
  for (int repeat = 0; repeat < Repeats; ++repeat) {
    QElapsedTimer clock;
    clock.start();
    work();
    milliseconds.push_back(double(clock.nsecsElapsed()) / 1e6);
  }
  return Median(milliseconds);
}

// Folders with so many pages each.
TBookmarks Made(int folders, int inEach) {
  TBookmarks bookmarks;
  for (int folder = 0; folder < folders; ++folder) {
    bookmarks.append({TBookmark::TKind::Folder, 0, QStringLiteral("Folder %1").arg(folder * 7919 % folders)});
    for (int page = 0; page < inEach; ++page) {
      const QString number = QString::number(page * 7919 % inEach);
      bookmarks.append(
          {TBookmark::TKind::Page, 1, QStringLiteral("A page of many words, number ") + number,
           QStringLiteral("https://www.site%1.example/page?number=%2").arg(QString::number(folder), number)});
    }
  }
  return bookmarks;
}

// The path of that tree in `folder`, which is filled once; empty when it cannot be.
QString Filled(const QString &folder, const QString &name, const TBookmarks &bookmarks) {
  const QString path = folder + u'/' + name;
  if (QDir(path).exists()) return path;
  std::fprintf(stderr, "bench: filling %s, once\n", qPrintable(name));
  TTransferControl control;
  const TTransferReport report = FavoritesTransfer::Import(bookmarks, folder, name, {}, control);
  if (report.end == TTransferReport::TEnd::Done && report.path == path) return path;
  std::fprintf(stderr, "bench: %s could not be filled: %s\n", qPrintable(path), qPrintable(report.error));
  return {};
}

bool MeasureList(const char *what, const QString &folder, qsizetype expected, double limit) {
  TFavorites favorites;
  const double milliseconds = Time([&] { favorites = FavoritesFolder::List(folder); });
  if (favorites.size() != expected) {
    std::fprintf(stderr, "bench: %d favorites in %s\n", int(favorites.size()), qPrintable(folder));
    return false;
  }
  return PrintValue(QString::fromLatin1(what), milliseconds, "ms", limit);
}

bool MeasureMenus(const QString &folder) {
  const QString many = Filled(folder, QStringLiteral("favorites-500x20"), Made(Folders, InEach));
  const QString one = Filled(folder, QStringLiteral("favorites-1x5000"), Made(1, InOne));
  if (many.isEmpty() || one.isEmpty()) return false;
  // Without the order by hand, so that names have to be sorted.
  (void)FavoritesOrder::Write(many, std::nullopt);
  bool isGood = MeasureList("favorites: top of 10,000 in 500 folders", many, Folders, TopLimit);
  const QString inner = FavoritesFolder::List(many).first().path;
  isGood = MeasureList("favorites: a folder of 20", inner, InEach, FolderLimit) && isGood;
  const TFavorite page = FavoritesFolder::List(inner).first();
  const double hint = Time([&page] { (void)FavoritesFolder::Hint(page); });
  isGood = PrintValue(QStringLiteral("favorites: a hint"), hint, "ms", HintLimit) && isGood;
  const QString crowded = FavoritesFolder::List(one).first().path;
  isGood = MeasureList("favorites: a folder of 5,000, by hand", crowded, InOne, 0) && isGood;
  const auto order = FavoritesOrder::Read(crowded);
  (void)FavoritesOrder::Write(crowded, std::nullopt);
  isGood = MeasureList("favorites: a folder of 5,000, by name", crowded, InOne, 0) && isGood;
  (void)FavoritesOrder::Write(crowded, order);
  return isGood;
}

// What somebody looks for in all of them, the slowest of several texts.
bool MeasureFind(const QString &folder) {
  const QString many = Filled(folder, QStringLiteral("favorites-500x20"), Made(Folders, InEach));
  if (many.isEmpty()) return false;
  TFavoritesFinder finder;
  QEventLoop loop;
  QElapsedTimer clock;
  std::optional<qint64> first;
  qsizetype count = 0;
  QObject::connect(&finder, &TFavoritesFinder::Found, &loop, [&](const TFoundFavorites &found) {
    if (!first) first = clock.nsecsElapsed();
    count += found.size();
  });
  QObject::connect(&finder, &TFavoritesFinder::Finished, &loop, &QEventLoop::quit);
  double slowestFirst = 0;
  double slowestAll = 0;
  const auto run = [&](const char *text, qsizetype expected) {
    std::vector<double> firsts;
    const double all = Time([&] {
      first.reset();
      count = 0;
      clock.start();
      finder.Find(many, QString::fromLatin1(text));
      loop.exec();
      firsts.push_back(double(first.value_or(clock.nsecsElapsed())) / 1e6);
    });
    slowestFirst = qMax(slowestFirst, Median(firsts));
    slowestAll = qMax(slowestAll, all);
    if (count != expected) std::fprintf(stderr, "bench: %d favorites found for %s\n", int(count), text);
    return count == expected;
  };
  const bool isFound = run("words", Folders * InEach) && run("NUMBER 7", Folders) && run("site499.", InEach);
  const bool isGood = PrintValue(QStringLiteral("favorites: first found of 10,000"), slowestFirst, "ms", FindLimit);
  PrintValue(QStringLiteral("favorites: all found of 10,000"), slowestAll, "ms", 0);
  return isFound && isGood;
}

bool MeasureImport(const QString &folder) {
  const QTemporaryDir place(folder + QStringLiteral("/import.XXXXXX"));
  const TBookmarks bookmarks = Made(Imported / 1'000, 999);
  const QByteArray bytes = BookmarkFile::Write(bookmarks, QString());
  qsizetype read = 0;
  PrintValue(QStringLiteral("bookmark file: 50,000 read"), Time([&] { read = BookmarkFile::Read(bytes).size(); }), "ms",
             0);
  TTransferControl control;
  QElapsedTimer clock;
  clock.start();
  const TTransferReport report = FavoritesTransfer::Import(bookmarks, place.path(), QStringLiteral("All"), {}, control);
  const double imported = double(clock.elapsed());
  // What is beyond the disk's own time to make as many files.
  clock.start();
  for (int i = 0; i < Imported; ++i) {
    QFile file(place.filePath(QString::number(i)));
    if (!file.open(QIODevice::WriteOnly) || file.write(QByteArray(60, 'x')) != 60) return false;
  }
  const double bare = double(clock.elapsed());
  PrintValue(QStringLiteral("import: 50,000 files, all of it"), imported, "ms", 0);
  PrintValue(QStringLiteral("import: as many bare files"), bare, "ms", 0);
  return report.end == TTransferReport::TEnd::Done && report.pages + report.folders == Imported && read == Imported;
}

}  // namespace

int main(int argc, char **argv) {
  QCoreApplication application(argc, argv);
  if (argc != 2) {
    std::fprintf(stderr, "usage: bench_favorites folder\n");
    return 2;
  }
  const QString folder = QString::fromLocal8Bit(argv[1]);
  std::printf("\nFavorites on disk, medians of %d times; an import is made once.\n\n", Repeats);
  const bool menusAreGood = MeasureMenus(folder);
  const bool findIsGood = MeasureFind(folder);
  return MeasureImport(folder) && menusAreGood && findIsGood ? 0 : 1;
}
