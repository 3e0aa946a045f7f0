#include "favorites/favorites_edit.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QUuid>
#include <utility>

#include "favorites/favorite_names.h"
#include "favorites/favorites_folder.h"
#include "favorites/favorites_order.h"
#include "favorites/shortcut_file.h"
#include "platform/folder_entries.h"
#include "platform/native_path.h"

namespace {

using TStep = TFavoritesChange::TStep;
using TKind = TStep::TKind;

constexpr int MostTries = 100;
constexpr qsizetype MostEntries = 5000;
constexpr qint64 MostBytes = 64 * 1024 * 1024;
const QString UrlEnding = QStringLiteral(".url");

QString NameOf(const QString &path) {
  return path.mid(path.lastIndexOf(u'/') + 1);
}

QString FolderOf(const QString &path) {
  return path.left(qMax<qsizetype>(0, path.lastIndexOf(u'/')));
}

QString Clean(const QString &path) {
  return path.size() > 1 && path.endsWith(u'/') ? path.chopped(1) : path;
}

// The ending of a file's name with its dot.
QString EndingOfName(const QString &name) {
  const qsizetype dot = name.lastIndexOf(u'.');
  return dot > 0 ? name.mid(dot) : QString();
}

QString EndingOf(const QString &path) {
  return FolderEntries::IsFolder(path) ? QString() : EndingOfName(NameOf(path));
}

void Fail(TFavoritesChange &change, const QString &error) {
  if (change.error.isEmpty()) change.error = error;
}

void Fail(TFavoritesChange &change, int code) {
  Fail(change, qt_error_string(code));
}

// `moved` is a path whose own name does not count.
TFavoriteNames NamesIn(const QString &folder, const QString &moved = {}) {
  TFavoriteNames names;
  const auto entries = FolderEntries::List(folder);
  if (!entries) return names;
  for (const FolderEntries::TEntry &entry : *entries) {
    if (folder + u'/' + entry.name != moved) names.Take(entry.name);
  }
  return names;
}

QStringList OrderedNames(const QString &folder) {
  QStringList names;
  for (const TFavorite &favorite : FavoritesFolder::List(folder)) names.append(NameOf(favorite.path));
  return names;
}

// Puts something into `folder` by `put`, which is given the path and answers 0 or the reason, under the first name that
// is free. The path, or empty.
QString Place(TFavoritesChange &change, const QString &folder, TFavoriteNames &names, const QString &stem,
              const QString &ending, const std::function<int(const QString &)> &put) {
  int code = EEXIST;
  // Another program may take the name meanwhile.
  for (int tries = 0; tries < MostTries && code == EEXIST; ++tries) {
    const QString path = folder + u'/' + names.Free(stem, ending);
    code = put(path);
    if (code == 0) return path;
  }
  Fail(change, code);
  return {};
}

void WriteOrder(TFavoritesChange &change, const QString &folder, const std::optional<QStringList> &names) {
  std::optional<QStringList> before = FavoritesOrder::Read(folder);
  if (before == names) return;
  if (FavoritesOrder::Write(folder, names)) {
    change.steps.append({TKind::Ordered, folder, {}, std::move(before)});
  } else {
    Fail(change, EACCES);
  }
}

// Puts these names of the folder before the place `position` of what `before` was, where there is an order by hand or
// is to be one.
void Arrange(TFavoritesChange &change, const QString &folder, const QStringList &before, const QStringList &names,
             int position) {
  if (names.isEmpty() || (position < 0 && !FavoritesOrder::Read(folder))) return;
  const QSet<QString> own(names.begin(), names.end());
  QStringList order;
  qsizetype place = -1;
  for (qsizetype i = 0; i < before.size(); ++i) {
    if (i == position) place = order.size();
    if (!own.contains(before.at(i))) order.append(before.at(i));
  }
  if (place < 0) place = order.size();
  for (const QString &name : names) order.insert(place++, name);
  WriteOrder(change, folder, order);
}

bool IsInside(const QString &folder, const QString &path) {
  if (FolderEntries::IsLink(path)) return false;
  const QByteArray own = FolderEntries::Identity(path);
  if (own.isEmpty()) return false;
  for (QString above = QFileInfo(folder).absoluteFilePath(); !above.isEmpty(); above = FolderOf(above)) {
    if (FolderEntries::Identity(above) == own) return true;
  }
  return false;
}

// Hidden files stay behind, but for the order; a move takes them along.
enum class THidden { StayBehind, Come };

int CopyTree(const QString &from, const QString &to, THidden hidden) {
  if (FolderEntries::IsLink(from) || !FolderEntries::IsFolder(from)) return FolderEntries::Copy(from, to);
  if (const int code = FolderEntries::MakeFolder(to); code != 0) return code;
  QString error;
  const bool isWhole = hidden == THidden::Come;
  using FolderEntries::THidden::LeftOut, FolderEntries::THidden::Listed;
  const auto entries = FolderEntries::List(from, &error, isWhole ? Listed : LeftOut);
  if (!entries) return EACCES;
  const QString order = u'/' + QLatin1String(FavoritesOrder::FileName);
  const int copied = isWhole ? 0 : FolderEntries::Copy(from + order, to + order);
  if (copied != 0 && copied != ENOENT) return copied;
  for (const FolderEntries::TEntry &entry : *entries) {
    if (const int code = CopyTree(from + u'/' + entry.name, to + u'/' + entry.name, hidden); code != 0) return code;
  }
  return 0;
}

// Whole or not at all.
int CopyToFree(const QString &from, const QString &to, THidden which) {
  const QString hidden = FolderOf(to) + QLatin1String("/.zv-") + QUuid::createUuid().toString(QUuid::Id128);
  int code = FolderEntries::Exists(to) ? EEXIST : CopyTree(from, hidden, which);
  if (code == 0) code = FolderEntries::MoveToFree(hidden, to);
  if (code != 0 && FolderEntries::Exists(hidden)) (void)FolderEntries::Remove(hidden);
  return code;
}

// `left` is set to the reason where all has come to `to`, but `from`, on another disk, could not be taken away or not
// all of it.
int MoveToFree(const QString &from, const QString &to, int &left) {
  int code = FolderEntries::MoveToFree(from, to);
  if (code != EXDEV) return code;
  code = CopyToFree(from, to, THidden::Come);
  if (code == 0) left = FolderEntries::Remove(from);
  return code;
}

// What MoveToFree has done. What is still in its old place was not moved: to undo it takes the copy away.
void AddMoved(TFavoritesChange &change, const QString &from, const QString &to, int left) {
  change.steps.append(left == 0 ? TStep{TKind::Moved, from, to, {}} : TStep{TKind::Added, {}, to, {}});
  if (left != 0) Fail(change, left);
}

void AddTrashed(TFavoritesChange &change, const QString &path) {
  QString plain = path;
  // The trash can only be told of names that are UTF-8.
  if (!NativePath::IsPlain(path)) {
    TFavoriteNames names = NamesIn(FolderOf(path));
    const QString ending = NativePath::Shown(EndingOf(path));
    const QString stem = TFavoriteNames::For(FavoritesFolder::CaptionOf(path, ending.isEmpty()), {});
    plain = Place(change, FolderOf(path), names, stem, ending,
                  [&](const QString &to) { return FolderEntries::MoveToFree(path, to); });
    if (plain.isEmpty()) return;
  }
  QFile file(plain);
  const bool isTrashed = file.moveToTrash();
  if (!isTrashed) Fail(change, file.errorString());
  // What stays keeps its name.
  const bool isBack = !isTrashed && plain != path && FolderEntries::MoveToFree(plain, path) == 0;
  if (plain != path && !isBack) change.steps.append({TKind::Moved, path, plain, {}});
  if (isTrashed) change.steps.append({TKind::Trashed, plain, file.fileName(), {}});
}

// Moves `from` to the folder and name of `to`, or to a name close by. For `left` see MoveToFree.
QString Return(TFavoritesChange &change, const QString &from, const QString &to, int &left) {
  const QString folder = FolderOf(to);
  if (!FavoritesFolder::Make(folder)) {
    Fail(change, ENOENT);
    return {};
  }
  TFavoriteNames names = NamesIn(folder, from);
  const QString name = NameOf(to);
  // Not that of `from`: the trash may have given it another name, with a number at its end.
  const QString ending = FolderEntries::IsFolder(from) ? QString() : EndingOfName(name);
  return Place(change, folder, names, name.chopped(ending.size()), ending,
               [&](const QString &path) { return MoveToFree(from, path, left); });
}

void UndoTrashed(TFavoritesChange &change, const TStep &step) {
  int left = 0;
  const QString path = Return(change, step.to, step.from, left);
  if (path.isEmpty()) return;
  change.steps.append({TKind::Added, {}, path, {}});
  if (left != 0) return Fail(change, left);
  // The note of where it came from, in the layout of the desktops' trash.
  QString note = FolderOf(step.to);
  if (note.endsWith(QLatin1String("/files"))) {
    note = FolderOf(note) + QLatin1String("/info/") + NameOf(step.to) + QLatin1String(".trashinfo");
    (void)FolderEntries::Remove(note);
  }
}

TFavoritesChange UndoStep(const TStep &step) {
  TFavoritesChange change;
  int left = 0;
  switch (step.kind) {
    case TKind::Added:
      AddTrashed(change, step.to);
      break;
    case TKind::Moved:
      if (const QString path = Return(change, step.to, step.from, left); !path.isEmpty()) {
        AddMoved(change, step.to, path, left);
      }
      break;
    case TKind::Trashed:
      UndoTrashed(change, step);
      break;
    case TKind::Ordered:
      WriteOrder(change, step.from, step.order);
      break;
    case TKind::Changed:
      change = FavoritesEdit::SetAddress(step.from, step.to);
      break;
  }
  return change;
}

// What the step was about: as long as it is there its undo can be tried again.
bool IsThere(const TStep &step) {
  const bool isNew = step.kind == TKind::Added || step.kind == TKind::Moved || step.kind == TKind::Trashed;
  return FolderEntries::Exists(isNew ? step.to : step.from);
}

// Each path once, and none that goes along with a folder above it.
QStringList Outermost(const QStringList &paths) {
  QSet<QString> given;
  for (const QString &path : paths) given.insert(Clean(path));
  QStringList outermost;
  QSet<QString> taken;
  for (const QString &one : paths) {
    const QString path = Clean(one);
    bool isWithin = false;
    for (QString above = FolderOf(path); !above.isEmpty() && !isWithin; above = FolderOf(above)) {
      isWithin = given.contains(above);
    }
    if (isWithin || taken.contains(path)) continue;
    taken.insert(path);
    outermost.append(path);
  }
  return outermost;
}

bool MakeTarget(TFavoritesChange &change, const QString &folder) {
  if (FolderEntries::IsFolder(folder) || FavoritesFolder::Make(folder)) return true;
  Fail(change, FolderEntries::Exists(folder) ? ENOTDIR : EACCES);
  return false;
}

TFavoritesChange Add(const QString &folder, const QString &stem, const QString &ending, int position,
                     const std::function<int(const QString &)> &put) {
  TFavoritesChange change;
  if (!MakeTarget(change, folder)) return change;
  const QStringList before = OrderedNames(folder);
  TFavoriteNames names = NamesIn(folder);
  const QString path = Place(change, folder, names, stem, ending, put);
  if (path.isEmpty()) return change;
  change.steps.append({TKind::Added, {}, path, {}});
  change.paths.append(path);
  Arrange(change, folder, before, {NameOf(path)}, position);
  return change;
}

// Brings what is elsewhere into `folder`, by `put`; what is there already stays, or gets another name.
TFavoritesChange Bring(const QStringList &paths, const QString &folder, int position, bool isCopy) {
  TFavoritesChange change;
  if (!MakeTarget(change, folder)) return change;
  const QStringList before = OrderedNames(folder);
  const QByteArray target = FolderEntries::Identity(folder);
  TFavoriteNames names = NamesIn(folder);
  QStringList arranged;
  for (const QString &path : Outermost(paths)) {
    if (!FolderEntries::Exists(path)) {
      Fail(change, ENOENT);
      continue;
    }
    if (IsInside(folder, path)) {
      Fail(change, EINVAL);
      continue;
    }
    if (!isCopy && FolderEntries::Identity(FolderOf(path)) == target) {
      change.paths.append(path);
      arranged.append(NameOf(path));
      continue;
    }
    const QString ending = EndingOf(path);
    int left = 0;
    const QString to =
        Place(change, folder, names, NameOf(path).chopped(ending.size()), ending, [&](const QString &free) {
          return isCopy ? CopyToFree(path, free, THidden::StayBehind) : MoveToFree(path, free, left);
        });
    if (to.isEmpty()) continue;
    if (isCopy) {
      change.steps.append({TKind::Added, {}, to, {}});
    } else {
      AddMoved(change, path, to, left);
    }
    change.paths.append(to);
    arranged.append(NameOf(to));
  }
  Arrange(change, folder, before, arranged, position);
  return change;
}

}  // namespace

namespace FavoritesEdit {

QString NameFor(const QString &caption, const QString &address) {
  return TFavoriteNames::For(caption, address);
}

TFavoritesChange AddPage(const QString &folder, const QString &caption, const QString &address, int position) {
  const QString line = ShortcutFile::OneLine(address);
  if (line.isEmpty()) return {.error = qt_error_string(EINVAL)};
  if (line.toUtf8().size() > ShortcutFile::LongestAddress) return {.error = qt_error_string(EMSGSIZE)};
  return Add(Clean(folder), NameFor(caption, line), UrlEnding, position,
             [&line](const QString &path) { return FolderEntries::Create(path, ShortcutFile::Bytes(line)); });
}

TFavoritesChange AddFolder(const QString &folder, const QString &caption, int position) {
  return Add(Clean(folder), NameFor(caption, {}), {}, position, FolderEntries::MakeFolder);
}

TFavoritesChange Rename(const QString &given, const QString &caption) {
  const QString path = Clean(given);
  const QString folder = FolderOf(path);
  const QString ending = EndingOf(path);
  const QString stem = NameFor(caption, {});
  TFavoritesChange change{.paths = {path}};
  if (caption.trimmed().isEmpty() || stem + ending == NameOf(path)) return change;
  const QStringList before = OrderedNames(folder);
  TFavoriteNames names = NamesIn(folder, path);
  const QString to = Place(change, folder, names, stem, ending,
                           [&](const QString &free) { return FolderEntries::MoveToFree(path, free); });
  if (to.isEmpty()) return change;
  change.steps.append({TKind::Moved, path, to, {}});
  change.paths = {to};
  if (FavoritesOrder::Read(folder)) {
    QStringList after = before;
    std::ranges::replace(after, NameOf(path), NameOf(to));
    WriteOrder(change, folder, after);
  }
  return change;
}

TFavoritesChange SetAddress(const QString &path, const QString &address) {
  TFavoritesChange change{.paths = {path}};
  const QString before = ShortcutFile::Read(path);
  if (before == ShortcutFile::OneLine(address)) return change;
  if (ShortcutFile::SetAddress(path, address, &change.error)) {
    change.steps.append({TKind::Changed, path, before, {}});
  }
  return change;
}

TFavoritesChange Move(const QStringList &paths, const QString &folder, int position) {
  return Bring(paths, Clean(folder), position, false);
}

TFavoritesChange Copy(const QStringList &paths, const QString &folder, int position) {
  return Bring(paths, Clean(folder), position, true);
}

bool IsTooMuch(const QStringList &paths) {
  QStringList open = Outermost(paths);
  qsizetype entries = open.size();
  qint64 bytes = 0;
  while (!open.isEmpty() && entries <= MostEntries && bytes <= MostBytes) {
    const QString path = open.takeLast();
    bytes += FolderEntries::Size(path);
    if (FolderEntries::IsLink(path) || !FolderEntries::IsFolder(path)) continue;
    const auto within = FolderEntries::List(path);
    if (!within) continue;
    entries += within->size();
    for (const FolderEntries::TEntry &entry : *within) open.append(path + u'/' + entry.name);
  }
  return entries > MostEntries || bytes > MostBytes;
}

TFavoritesChange Trash(const QStringList &paths) {
  TFavoritesChange change;
  for (const QString &path : Outermost(paths)) AddTrashed(change, path);
  return change;
}

TFavoritesChange Order(const QString &folder, const std::optional<QStringList> &names) {
  TFavoritesChange change;
  WriteOrder(change, Clean(folder), names);
  return change;
}

TFavoritesChange Undo(const TFavoritesChange &change, TFavoritesChange *left) {
  TFavoritesChange back;
  for (auto step = change.steps.rbegin(); step != change.steps.rend(); ++step) {
    const TFavoritesChange one = UndoStep(*step);
    back.steps += one.steps;
    Fail(back, one.error);
    if (left != nullptr && one.IsEmpty() && !one.IsGood() && IsThere(*step)) left->steps.prepend(*step);
  }
  for (const TStep &step : std::as_const(back.steps)) {
    if (step.kind == TKind::Added || step.kind == TKind::Moved) back.paths.append(step.to);
  }
  return back;
}

}  // namespace FavoritesEdit
