#include "groups/group_pages.h"

#include <algorithm>
#include <cerrno>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QStringList>

#include "groups/halvex_group.h"
#include "platform/folder_entries.h"
#include "store/ini_file.h"

namespace {

constexpr qint64 LargestFile = 64 * 1024 * 1024;  // as an INI file may be
constexpr QLatin1String Blank("blank");

QString KeyOf(const QString &line) {
  return line.section(u'=', 0, 0).trimmed().toCaseFolded();
}

std::optional<QByteArray> BytesOf(const QString &path) {
  return FolderEntries::Read(path, LargestFile);
}

// Of several lines of one name the first with its place and the last with its address, as they are written.
QStringList LinesOf(const QByteArray &bytes) {
  QStringList lines;
  QHash<QString, qsizetype> places;
  for (const auto &[name, value] : TIniFile::FromBytes(bytes).Pairs(QString::fromLatin1(THalvexGroup::Section))) {
    const QString line = name + u'=' + value;
    const auto place = places.constFind(KeyOf(line));
    if (place != places.cend()) {
      lines[*place] = line;
      continue;
    }
    places.insert(KeyOf(line), lines.size());
    lines.append(line);
  }
  return lines;
}

int PlaceOf(const QStringList &lines, const TGroupLine &seen) {
  int nearest = -1;
  for (int i = 0; i < int(lines.size()); ++i) {
    if (lines.at(i) != seen.line) continue;
    if (nearest < 0 || qAbs(i - seen.position) < qAbs(nearest - seen.position)) nearest = i;
  }
  return nearest;
}

// Where something is to stand before that line; one that has gone leaves its place.
int PlaceBefore(const QStringList &lines, const TGroupLine &seen) {
  if (seen.position < 0) return int(lines.size());
  const int place = PlaceOf(lines, seen);
  return place >= 0 ? place : qMin(seen.position, int(lines.size()));
}

// The places of the lines that are still there, each once, from the first to the last.
QList<int> PlacesOf(const QStringList &lines, const QList<TGroupLine> &seen) {
  QList<int> places;
  for (const TGroupLine &one : seen) {
    if (const int place = PlaceOf(lines, one); place >= 0 && !places.contains(place)) places.append(place);
  }
  std::ranges::sort(places);
  return places;
}

// The lines that these pages get in a group that has `lines`.
QStringList NewLines(const QStringList &lines, const QList<TGroupPage> &pages) {
  QSet<QString> taken;
  THalvexGroup group;
  for (const QString &line : lines) {
    taken.insert(KeyOf(line));
    group.AddLine(line);
  }
  QStringList added;
  for (const TGroupPage &page : pages) {
    const QString wanted = QString(page.name).remove(u'=');
    QString name = wanted;
    for (int number = 2; !name.isEmpty() && taken.contains(KeyOf(name)); ++number) {
      name = QStringLiteral("%1 (%2)").arg(wanted, QString::number(number));
    }
    group.AddEntry(name, page.address, page.isLocked);
    const TNamedAddress entry = group.At(group.Count() - 1);
    added.append(entry.name + u'=' + entry.address);
    taken.insert(KeyOf(added.last()));
  }
  return added;
}

TGroupChange Written(const QString &path, const QStringList &lines) {
  THalvexGroup group;
  group.SetFileName(path);
  for (const QString &line : lines) group.AddLine(line);
  return GroupPages::Write(group);
}

// The lines of a file that is to be changed; nothing, with the reason in `change`, for one that is not there or cannot
// be read.
std::optional<QStringList> LinesToChange(const QString &path, TGroupChange &change) {
  const THalvexGroup group(path);
  if (group.FileName().isEmpty()) change.error = qt_error_string(ENOENT);
  if (!group.ReadError().isEmpty()) change.error = group.ReadError();
  if (!change.error.isEmpty()) return std::nullopt;
  return GroupPages::LinesIn(path);
}

void InsertAt(QStringList &lines, int place, const QStringList &added) {
  for (const QString &line : added) lines.insert(place++, line);
}

QHash<QString, QString> ByKey(const QStringList &lines) {
  QHash<QString, QString> byKey;
  for (const QString &line : lines) byKey.insert(KeyOf(line), line);
  return byKey;
}

QStringList CommonKeys(const QStringList &lines, const QHash<QString, QString> &other) {
  QStringList keys;
  for (const QString &line : lines) {
    if (const QString key = KeyOf(line); other.contains(key)) keys.append(key);
  }
  return keys;
}

// What the lines are `now`, without what turned `before` into `after`.
QStringList TakenBack(const QStringList &before, const QStringList &after, const QStringList &now) {
  const auto old = ByKey(before);
  const auto made = ByKey(after);
  const auto current = ByKey(now);
  QHash<QString, QString> kept;
  for (auto one = old.cbegin(); one != old.cend(); ++one) {
    const QString &key = one.key();
    if (made.contains(key) && !current.contains(key)) continue;  // somebody else has taken it out
    const bool isOurs = !current.contains(key) || current.value(key) == made.value(key);
    kept.insert(key, isOurs ? *one : current.value(key));
  }
  for (auto one = current.cbegin(); one != current.cend(); ++one) {
    const bool isOurs = !old.contains(one.key()) && made.value(one.key()) == *one;
    if (!isOurs && !kept.contains(one.key())) kept.insert(one.key(), *one);
  }
  // The old order, unless somebody else has brought in another; what it does not know stands behind what it stood
  // behind.
  const bool isOldOrder = CommonKeys(after, current) == CommonKeys(now, made);
  QStringList order;
  const QStringList &first = isOldOrder ? before : now;
  const QStringList &second = isOldOrder ? now : before;
  for (const QString &line : first) {
    if (kept.contains(KeyOf(line))) order.append(KeyOf(line));
  }
  qsizetype place = 0;
  for (const QString &line : second) {
    const QString key = KeyOf(line);
    if (!kept.contains(key)) continue;
    const qsizetype there = order.indexOf(key);
    if (there < 0) order.insert(place, key);
    place = order.indexOf(key) + 1;
  }
  QStringList lines;
  for (const QString &key : std::as_const(order)) lines.append(kept.value(key));
  return lines;
}

QString UndoFile(const TGroupChange::TFile &file) {
  const auto now = BytesOf(file.path);
  if (!now) return FolderEntries::Exists(file.path) ? qt_error_string(EACCES) : qt_error_string(ENOENT);
  if (!file.before) {
    QFile made(file.path);
    // What nobody has touched since may also go where there is no trash.
    const bool isGone = made.moveToTrash() || (*now == file.after && made.remove());
    return isGone ? QString() : made.errorString();
  }
  if (*now == file.after) {
    const int code = FolderEntries::Replace(file.path, *file.before);
    return code == 0 ? QString() : qt_error_string(code);
  }
  return Written(file.path, TakenBack(LinesOf(*file.before), LinesOf(file.after), LinesOf(*now))).error;
}

}  // namespace

namespace GroupPages {

TGroupPage PageOf(const QString &line) {
  TGroupPage page{.name = line.section(u'=', 0, 0), .address = line.section(u'=', 1)};
  if (page.name.startsWith(Blank)) page.name.clear();
  page.isLocked = page.address.startsWith(u'*');
  if (page.isLocked) page.address.remove(0, 1);
  return page;
}

QStringList LinesIn(const QString &path, QString *error) {
  const THalvexGroup group(path);
  if (error != nullptr) *error = group.ReadError();
  QStringList lines;
  lines.reserve(group.Count());
  for (int i = 0; i < group.Count(); ++i) {
    const TNamedAddress entry = group.At(i);
    lines.append(entry.name + u'=' + entry.address);
  }
  return lines;
}

TGroupChange Insert(const QString &path, const TGroupLine &before, const QList<TGroupPage> &pages) {
  TGroupChange change;
  auto lines = LinesToChange(path, change);
  if (!lines || pages.isEmpty()) return change;
  const int place = PlaceBefore(*lines, before);
  const QStringList added = NewLines(*lines, pages);
  InsertAt(*lines, place, added);
  change = Written(path, *lines);
  change.path = path;
  change.lines = added;
  return change;
}

TGroupChange Remove(const QString &path, const QList<TGroupLine> &seen) {
  TGroupChange change;
  auto lines = LinesToChange(path, change);
  if (!lines) return change;
  const QList<int> places = PlacesOf(*lines, seen);
  if (places.isEmpty()) return change;
  for (auto place = places.crbegin(); place != places.crend(); ++place) lines->removeAt(*place);
  return Written(path, *lines);
}

TGroupChange Move(const QString &from, const QList<TGroupLine> &seen, const QString &to, const TGroupLine &before) {
  TGroupChange change;
  auto lines = LinesToChange(from, change);
  if (!lines) return change;
  const QList<int> places = PlacesOf(*lines, seen);
  if (places.isEmpty()) return change;
  QStringList moved;
  for (const int place : places) moved.append(lines->at(place));
  if (FolderEntries::Identity(from) != FolderEntries::Identity(to)) {
    QList<TGroupPage> pages;
    for (const QString &line : std::as_const(moved)) pages.append(PageOf(line));
    change = Insert(to, before, pages);
    if (!change.error.isEmpty()) return change;
    const TGroupChange removed = Remove(from, seen);
    change.files += removed.files;
    change.error = removed.error;
    return change;
  }
  int place = PlaceBefore(*lines, before);
  const QStringList was = *lines;
  for (auto one = places.crbegin(); one != places.crend(); ++one) {
    lines->removeAt(*one);
    if (*one < place) --place;
  }
  InsertAt(*lines, place, moved);
  if (*lines != was) change = Written(from, *lines);
  change.path = from;
  change.lines = moved;
  return change;
}

TGroupChange Write(const THalvexGroup &group) {
  TGroupChange change;
  const QString path = group.FileName();
  auto before = BytesOf(path);
  if (!group.Save(&change.error)) return change;
  change.files.append({path, std::move(before), BytesOf(path).value_or(QByteArray())});
  return change;
}

QString Undo(const TGroupChange &change) {
  QString error;
  for (auto file = change.files.crbegin(); file != change.files.crend(); ++file) {
    const QString one = UndoFile(*file);
    if (error.isEmpty()) error = one;
  }
  return error;
}

}  // namespace GroupPages
