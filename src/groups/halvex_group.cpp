#include "groups/halvex_group.h"

#include <algorithm>
#include <QFileInfo>

#include "store/ini_file.h"

bool IsHalvexGroupFile(const QString &path) {
  return path.endsWith(QLatin1String(THalvexGroup::Extension), Qt::CaseInsensitive);
}

THalvexGroup::THalvexGroup(const QString &fileName) {
  if (!QFileInfo::exists(fileName)) return;
  m_fileName = fileName;
  TIniFile file;
  if (!file.Load(fileName, &m_readError)) return;
  const auto pairs = file.Pairs(QString::fromLatin1(Section));
  m_lines.reserve(pairs.size());
  for (const auto &[name, value] : pairs) AddLine(name + QLatin1Char('=') + value);
}

TNamedAddress THalvexGroup::At(int line) const {
  const QString &text = m_lines.at(line);
  const qsizetype equals = text.indexOf(QLatin1Char('='));
  return equals < 0 ? TNamedAddress{.name = text} : TNamedAddress{text.left(equals), text.sliced(equals + 1)};
}

void THalvexGroup::AddEntry(const QString &name, const QString &address, bool locked) {
  QString key = name;
  key.remove(QLatin1Char('='));
  if (name.isEmpty()) {
    // After a deletion by hand the number may be taken; the page that has it must not be written over.
    int number = Count();
    do key = QStringLiteral("blank%1").arg(++number);
    while (Names(key));
  }
  AddLine(key + (locked ? QLatin1String("=*") : QLatin1String("=")) + address);
}

bool THalvexGroup::Names(const QString &key) const {
  return std::ranges::any_of(m_lines, [start = key + QLatin1Char('=')](const QString &line) {
    return line.startsWith(start, Qt::CaseInsensitive);
  });
}

bool THalvexGroup::Save(QString *error) const {
  TIniFile file;
  if (QFileInfo::exists(m_fileName) && !file.Load(m_fileName, error)) return false;
  const QString section = QString::fromLatin1(Section);
  file.RemoveSection(section);
  TNamedAddress page;
  for (int line = 0; line < Count(); ++line) {
    if (m_lines.at(line).contains(QLatin1Char('='))) page = At(line);
    file.SetValue(section, page.name, page.address);
  }
  return file.Save(m_fileName, error);
}
