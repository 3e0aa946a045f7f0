// Input: a file, and after each part separator a change to it: section, key and value to set, section and key to
// remove, or a section to remove, with field separators between them.

#include <algorithm>
#include <QList>
#include <utility>

#include "require.h"
#include "store/ini_file.h"

namespace {

using TPairs = QList<std::pair<QString, QString>>;

// What is left of a text in a file: no line breaks, and no blanks around it.
QString Plain(const QString &text) {
  QByteArray bytes = text.toUtf8();
  for (char &byte : bytes) {
    if (byte == '\r' || byte == '\n') byte = ' ';
  }
  return Fuzz::Text(bytes.trimmed());
}

const QString *FirstValue(const TPairs &pairs, const QString &key) {
  for (const auto &[name, value] : pairs) {
    if (name.toCaseFolded() == key.toCaseFolded()) return &value;
  }
  return nullptr;
}

void RequireSame(const TIniFile &one, const TIniFile &other) {
  REQUIRE(one.Sections() == other.Sections());
  const QStringList sections = one.Sections();
  for (const QString &section : sections) REQUIRE(one.Pairs(section) == other.Pairs(section));
}

void RequireLookUps(const TIniFile &file) {
  const QStringList sections = file.Sections();
  for (qsizetype i = 0; i < sections.size(); ++i) {
    for (qsizetype j = 0; j < i; ++j) REQUIRE(sections.at(i).toCaseFolded() != sections.at(j).toCaseFolded());
    REQUIRE(file.HasSection(sections.at(i)) && file.HasSection(sections.at(i).toCaseFolded()));
    const TPairs pairs = file.Pairs(sections.at(i));
    for (const auto &[key, value] : pairs) {
      REQUIRE(!key.contains(u'=') && !key.startsWith(u';') && !key.contains(u'\n') && !value.contains(u'\n'));
      REQUIRE(file.HasKey(sections.at(i), key));
      REQUIRE(file.Value(sections.at(i), key) == *FirstValue(pairs, key));
    }
  }
}

// The pairs of every other section than `section`.
QList<std::pair<QString, TPairs>> Others(const TIniFile &file, const QString &section) {
  QList<std::pair<QString, TPairs>> others;
  const QStringList sections = file.Sections();
  for (const QString &other : sections) {
    if (other.toCaseFolded() != section.toCaseFolded()) others.append({other, file.Pairs(other)});
  }
  return others;
}

bool StandsIn(const TIniFile &file, const QString &section) {
  const QStringList sections = file.Sections();
  return std::ranges::any_of(sections,
                             [&](const QString &other) { return other.toCaseFolded() == section.toCaseFolded(); });
}

// The name that a section has or would get.
QString SectionFor(const TIniFile &file, QString section) {
  return StandsIn(file, section) ? section : Plain(section.remove(u'=').remove(u']'));
}

void Set(TIniFile &file, const QString &section, const QString &key, const QString &value) {
  const auto others = Others(file, SectionFor(file, section));
  const qsizetype count = file.Pairs(section).size();
  const bool isNew = !file.HasKey(section, key);
  file.SetValue(section, key, value);
  REQUIRE(file.HasKey(section, key));
  REQUIRE(file.Value(section, key) == Plain(value));
  REQUIRE(file.Pairs(section).size() == count + (isNew ? 1 : 0));
  REQUIRE(Others(file, SectionFor(file, section)) == others);
  REQUIRE(TIniFile::FromBytes(file.ToBytes()).Value(section, key) == Plain(value));
}

// A name with a carriage return stands for itself first and then for the one that it would be written as, so that one
// of the two may be left.
void Remove(TIniFile &file, const QString &section, const QString &key) {
  file.RemoveKey(section, key);
  if (key.contains(u'\r')) file.RemoveKey(section, key);
  REQUIRE(!file.HasKey(section, key));
  REQUIRE(file.Value(section, key, QStringLiteral("none")) == QLatin1String("none"));
}

void RemoveSection(TIniFile &file, const QString &section) {
  const QString name = SectionFor(file, section);
  const auto others = Others(file, name);
  file.RemoveSection(section);
  REQUIRE(!StandsIn(file, name) && Others(file, name) == others);
  if (section.contains(u'\r')) file.RemoveSection(section);
  REQUIRE(!file.HasSection(section));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size) {
  const QList<QByteArray> parts = Fuzz::Input(data, size).split(Fuzz::Part);
  TIniFile file = TIniFile::FromBytes(parts.first());
  REQUIRE(file.ToBytes() == parts.first());
  RequireLookUps(file);
  const TIniFile untouched = file;
  for (const QByteArray &change : parts.sliced(1)) {
    const QList<QByteArray> fields = change.split(Fuzz::Field);
    const QString section = Fuzz::Text(fields.first());
    if (fields.size() > 2) {
      Set(file, section, Fuzz::Text(fields.at(1)), Fuzz::Text(fields.at(2)));
    } else if (fields.size() == 2) {
      Remove(file, section, Fuzz::Text(fields.at(1)));
    } else {
      RemoveSection(file, section);
    }
    RequireSame(file, TIniFile::FromBytes(file.ToBytes()));
    RequireLookUps(file);
  }
  REQUIRE(untouched.ToBytes() == parts.first());
  return 0;
}
