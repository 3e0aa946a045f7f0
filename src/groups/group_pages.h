#pragma once

#include <optional>
#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

class THalvexGroup;

// One page of a page group.
struct TGroupPage {
  QString name{};     // empty for one that has none
  QString address{};  // without its "*"
  bool isLocked = false;

  bool operator==(const TGroupPage &) const = default;
};

// A page as it was seen in its file: the line's place, from 0, and the line. The file may have changed since; the line
// then counts where it stands now, the nearest of several.
struct TGroupLine {
  int position = -1;
  QString line{};
};

// What was done to group files, so that it can be undone.
struct TGroupChange {
  struct TFile {
    QString path;
    std::optional<QByteArray> before;  // nothing where there was no such file
    QByteArray after;
  };
  QList<TFile> files{};
  // The lines that are new in a group or moved in it, as they are now.
  QString path{};
  QStringList lines{};
  // Why not all was done; empty when it was. What is in `files` stays done.
  QString error{};
};

// Changes of single pages in group files. Each looks at the file as it is now and writes it whole, by the rules of
// THalvexGroup::Save. Other than a tab that is saved, a page that comes into a group never takes the place of another
// of its name: it gets a number, "News (2)"; one without a name gets the next "blank" number that is free.
namespace GroupPages {

// The page in a line of a group. Only the lower-case "blank" means no name, as when the group is opened.
[[nodiscard]] TGroupPage PageOf(const QString &line);
// The lines of a group file, in their order; empty with the reason for one that cannot be read.
[[nodiscard]] QStringList LinesIn(const QString &path, QString *error = nullptr);

// Puts new pages before a line; at the end when there is no such line.
TGroupChange Insert(const QString &path, const TGroupLine &before, const QList<TGroupPage> &pages);
// Takes lines out; what is not there any more does not count.
TGroupChange Remove(const QString &path, const QList<TGroupLine> &lines);
// Takes them from one group, keeping their order, into another or to another place in the same one. They are written in
// their new place first, so that a failure in between leaves them in both.
TGroupChange Move(const QString &from, const QList<TGroupLine> &lines, const QString &to, const TGroupLine &before);
// Writes a whole group, see THalvexGroup::Save.
TGroupChange Write(const THalvexGroup &group);

// Takes a change back; the reason why not all of it, or empty. A file that nobody has touched since gets its old bytes.
// In one that was changed meanwhile only what the change did is undone. A file that was new goes to the trash.
[[nodiscard]] QString Undo(const TGroupChange &change);

}  // namespace GroupPages
