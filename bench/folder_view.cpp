// Measures the tree over a folder of favorites, with far more of them than anybody has: what a user waits for until he
// sees what he has opened.
//   bench_folder_view folder    keeps the filled folders in this one, for the next time

#include <cstdio>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>

#include "chrome/folder_view/folder_editor.h"
#include "chrome/folder_view/folder_kind.h"
#include "chrome/folder_view/folder_view.h"
#include "config/language.h"
#include "favorites/favorites_order.h"
#include "favorites/favorites_transfer.h"
#include "table.h"

namespace {

constexpr int Repeats = 9;

constexpr int Folders = 2'000;
constexpr int InEach = 10;
constexpr int InOne = 5'000;

// Milliseconds: what still feels like at once.
constexpr double Limit = 100;

QString Filled(const QString &folder, const QString &name, int folders, int inEach) {
  const QString path = folder + u'/' + name;
  if (QDir(path).exists()) return path;
  std::fprintf(stderr, "bench: filling %s, once\n", qPrintable(name));
  TBookmarks bookmarks;
  for (int i = 0; i < folders; ++i) {
    bookmarks.append({TBookmark::TKind::Folder, 0, QStringLiteral("Folder %1").arg(i * 7919 % folders)});
    for (int page = 0; page < inEach; ++page) {
      bookmarks.append({TBookmark::TKind::Page, 1, QStringLiteral("A page of many words, number %1").arg(page),
                        QStringLiteral("https://www.site%1.example/%2").arg(i).arg(page)});
    }
  }
  TTransferControl control;
  if (FavoritesTransfer::Import(bookmarks, folder, name, {}, control).end != TTransferReport::TEnd::Done) return {};
  // Names have to be sorted.
  (void)FavoritesOrder::Write(path, std::nullopt);
  for (const TFavorite &one : FavoritesFolder::List(path)) (void)FavoritesOrder::Write(one.path, std::nullopt);
  return path;
}

void Finish(TFolderView &view) {
  while (!view.Model().IsIdle()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  view.viewport()->repaint();
}

double Milliseconds(const QElapsedTimer &clock) {
  return double(clock.nsecsElapsed()) / 1e6;
}

bool Measure(const QString &many, const QString &one) {
  const TLanguage language;
  TFolderKind kind;
  std::vector<double> shown, opened, looked;
  for (int repeat = 0; repeat < Repeats; ++repeat) {
    TFolderEditor editor;
    TFolderView view(kind, editor, language, TFolderView::TLook::Tree);
    view.resize(300, 800);
    view.show();
    QCoreApplication::processEvents();
    QElapsedTimer clock;
    clock.start();
    view.SetRoot(many, QString());
    Finish(view);
    shown.push_back(Milliseconds(clock));
    if (view.model()->rowCount(view.rootIndex()) != Folders) return false;

    view.SetRoot(one, QString());
    Finish(view);
    const QModelIndex folder = view.model()->index(0, 0, view.rootIndex());
    clock.start();
    view.expand(folder);
    Finish(view);
    opened.push_back(Milliseconds(clock));
    if (view.model()->rowCount(folder) != InOne) return false;
    clock.start();
    view.Refresh();
    Finish(view);
    looked.push_back(Milliseconds(clock));
  }
  bool isGood = PrintValue(QStringLiteral("tree: top of 20,000 in 2,000 folders"), Median(shown), "ms", Limit);
  isGood = PrintValue(QStringLiteral("tree: a folder of 5,000 opens"), Median(opened), "ms", Limit) && isGood;
  return PrintValue(QStringLiteral("tree: the same looked at again"), Median(looked), "ms", 0) && isGood;
}

}  // namespace

int main(int argc, char **argv) {
  QApplication application(argc, argv);
  if (argc != 2) {
    std::fprintf(stderr, "usage: bench_folder_view folder\n");
    return 2;
  }
  const QString folder = QString::fromLocal8Bit(argv[1]);
  const QString many = Filled(folder, QStringLiteral("tree-2000x10"), Folders, InEach);
  const QString one = Filled(folder, QStringLiteral("tree-1x5000"), 1, InOne);
  if (many.isEmpty() || one.isEmpty()) return 1;
  std::printf("\nA tree over folders, medians of %d times, until it is painted.\n\n", Repeats);
  return Measure(many, one) ? 0 : 1;
}
