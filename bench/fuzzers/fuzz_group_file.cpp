// Input: a group file, and after each part separator a page that is added: name, address and, for a locked one, an
// empty third field, with field separators between them; or, without any, a line as it stands.

#include <algorithm>
#include <QFile>
#include <QList>
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
TPairs Written(const THalvexGroup &group) {
  TPairs pairs;
  QString name;
  QString value;
  for (int i = 0; i < group.Count(); ++i) {
    if (group.Lines().at(i).contains(u'=')) {
      name = PlainName(group.NameAt(i));
      value = Plain(group.ValueAt(i));
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

void Add(THalvexGroup &group, const QByteArray &page) {
  const QList<QByteArray> fields = page.split(Fuzz::Field);
  const int count = group.Count();
  if (fields.size() == 1) {
    group.Lines().append(Fuzz::Text(page));
    return;
  }
  const QString name = Fuzz::Text(fields.at(0));
  const QString address = Fuzz::Text(fields.at(1));
  const bool isLocked = fields.size() > 2;
  group.AddEntry(name, address, isLocked);
  REQUIRE(group.Count() == count + 1);
  REQUIRE(group.ValueAt(count) == (isLocked ? u'*' + address : address));
  REQUIRE(!name.isEmpty() || group.NameAt(count) == QStringLiteral("blank%1").arg(count + 1));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size) {
  const QList<QByteArray> parts = Fuzz::Input(data, size).split(Fuzz::Part);
  Put(parts.first());
  THalvexGroup group(Path());
  REQUIRE(group.FileName() == Path() && group.ReadError().isEmpty());
  REQUIRE(Contents() == parts.first());
  for (const QByteArray &page : parts.sliced(1)) Add(group, page);
  for (int i = 0; i < group.Count(); ++i) {
    const QString &line = group.Lines().at(i);
    REQUIRE(group.NameAt(i) + u'=' + group.ValueAt(i) == (line.contains(u'=') ? line : line + u'='));
  }

  const auto others = Others();
  const TPairs written = Written(group);
  Save(group);
  REQUIRE(Others() == others);
  const THalvexGroup read(Path());
  REQUIRE(read.Count() == written.size());
  for (int i = 0; i < read.Count(); ++i) {
    REQUIRE(read.NameAt(i) == written.at(i).first && read.ValueAt(i) == written.at(i).second);
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
