#include "groups/halvex_group.h"

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
  for (const auto &[name, value] : pairs) m_lines.append(name + QLatin1Char('=') + value);
}

QString THalvexGroup::NameAt(int line) const {
  const QString &text = m_lines.at(line);
  return text.left(text.indexOf(QLatin1Char('=')));
}

QString THalvexGroup::ValueAt(int line) const {
  const QString &text = m_lines.at(line);
  const qsizetype equals = text.indexOf(QLatin1Char('='));
  return equals < 0 ? QString() : text.mid(equals + 1);
}

void THalvexGroup::AddEntry(const QString &name, const QString &address, bool locked) {
  QString key = name.isEmpty() ? QStringLiteral("blank%1").arg(Count() + 1) : name;
  key.remove(QLatin1Char('='));
  m_lines.append(key + (locked ? QLatin1String("=*") : QLatin1String("=")) + address);
}

bool THalvexGroup::Save(QString *error) const {
  TIniFile file;
  if (QFileInfo::exists(m_fileName) && !file.Load(m_fileName, error)) return false;
  const QString section = QString::fromLatin1(Section);
  file.RemoveSection(section);
  QString name;
  QString value;
  for (int line = 0; line < Count(); ++line) {
    if (m_lines.at(line).contains(QLatin1Char('='))) {
      name = NameAt(line);
      value = ValueAt(line);
    }
    file.SetValue(section, name, value);
  }
  return file.Save(m_fileName, error);
}
