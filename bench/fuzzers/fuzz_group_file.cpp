// Input: a group file, and after each part separator a page that is added: name, address and, for a locked one, an
// empty third field, with field separators between them; or, without any, a line as it stands.

#include <algorithm>
#include <QFile>
#include <QList>
#include <QSet>
#include <QTemporaryDir>
#include <utility>

#include "groups/halvex_group.h"
#include "require.h"
#include "store/ini_file.h"

namespace {

using TPairs = QList<std::pair<QString, QString>>;

const QString Section = QString::fromLatin1(THalvexGroup::Section);

// A folder for the whole run, in memory where TMPDIR says so.
QString Path() {
  static const QTemporaryDir folder;
  return folder.filePath(QStringLiteral("group.hgp"));
}

void Put(const QByteArray &bytes) {
  QFile file(Path());
  REQUIRE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

QByteArray Contents() {
  QFile file(Path());
  REQUIRE(file.open(QIODevice::ReadOnly));
  return file.readAll();
}

void Save(const THalvexGroup &group) {
  QString error;
  REQUIRE(group.Save(&error) && error.isEmpty());
}

QString Plain(const QString &text) {
  QByteArray bytes = text.toUtf8();
  bytes.replace('\r', ' ').replace('\n', ' ');
  return Fuzz::Text(bytes.trimmed());
}

// A name that would make a comment of its line loses what does.
QString PlainName(const QString &name) {
  QString plain = Plain(name);
  while (plain.startsWith(u';')) plain = Plain(plain.mid(1));
  return plain;
}

// What a file holds once the lines were written: a name's later address in the place of its first.
TPairs Written(const THalvexGroup &group, const QSet<int> &loose) {
  TPairs pairs;
  QString name;
  QString value;
  for (int i = 0; i < group.Count(); ++i) {
    // A line without "=" repeats the one before it.
    if (!loose.contains(i)) {
      name = PlainName(group.At(i).name);
      value = Plain(group.At(i).address);
    }
    const auto isIt = [&](const auto &pair) { return pair.first.toCaseFolded() == name.toCaseFolded(); };
    const auto found = std::find_if(pairs.begin(), pairs.end(), isIt);
    if (found == pairs.end()) {
      pairs.append({name, value});
    } else {
      found->second = value;
    }
  }
  return pairs;
}

// The other sections of the file; in order, as the group's own moves to the end.
QList<std::pair<QString, TPairs>> Others() {
  TIniFile file;
  REQUIRE(file.Load(Path()));
  file.RemoveSection(Section);
  QList<std::pair<QString, TPairs>> others;
  const QStringList sections = file.Sections();
  for (const QString &section : sections) others.append({section, file.Pairs(section)});
  return others;
}

// False when what was added is a line without "=".
bool Add(THalvexGroup &group, const QByteArray &page) {
  const QList<QByteArray> fields = page.split(Fuzz::Field);
  const int count = group.Count();
  if (fields.size() == 1) {
    const QString line = Fuzz::Text(page);
    group.AddLine(line);
    const TNamedAddress added = group.At(count);
    REQUIRE(added.name + u'=' + added.address == (line.contains(u'=') ? line : line + u'='));
    return line.contains(u'=');
  }
  const QString name = Fuzz::Text(fields.at(0));
  const QString address = Fuzz::Text(fields.at(1));
  const bool isLocked = fields.size() > 2;
  group.AddEntry(name, address, isLocked);
  REQUIRE(group.Count() == count + 1);
  REQUIRE(group.At(count).address == (isLocked ? u'*' + address : address));
  REQUIRE(!name.isEmpty() || group.At(count).name == QStringLiteral("blank%1").arg(count + 1));
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size) {
  const QList<QByteArray> parts = Fuzz::Input(data, size).split(Fuzz::Part);
  Put(parts.first());
  THalvexGroup group(Path());
  REQUIRE(group.FileName() == Path() && group.ReadError().isEmpty());
  REQUIRE(Contents() == parts.first());
  QSet<int> loose;
  for (const QByteArray &page : parts.sliced(1)) {
    if (!Add(group, page)) loose.insert(group.Count() - 1);
  }

  const auto others = Others();
  const TPairs written = Written(group, loose);
  Save(group);
  REQUIRE(Others() == others);
  const THalvexGroup read(Path());
  REQUIRE(read.Count() == written.size());
  for (int i = 0; i < read.Count(); ++i) {
    REQUIRE(read.At(i).name == written.at(i).first && read.At(i).address == written.at(i).second);
  }
  // What was once written stays as it is. Only its line ends may still turn into those of the line that has come to
  // stand first.
  const QByteArray once = Contents();
  Save(read);
  const QByteArray twice = Contents();
  REQUIRE(QByteArray(twice).replace("\r\n", "\n") == QByteArray(once).replace("\r\n", "\n"));
  Save(read);
  REQUIRE(Contents() == twice);
  return 0;
}
