#include "store/ini_file.h"

#include <algorithm>
#include <cerrno>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QVarLengthArray>
#include <string_view>

#include "store/utf8_text.h"

namespace {

constexpr qint64 MaxFileSize = 64 * 1024 * 1024;
// Only the file's own, in front, is none of its text.
constexpr QByteArrayView ByteOrderMark("\xEF\xBB\xBF");

QString Decoded(QByteArrayView line, QByteArrayView part) {
  return line.isValidUtf8() ? TextOfUtf8(part) : QString::fromLatin1(part);
}

bool IsBlank(QByteArrayView line) {
  return line.trimmed().isEmpty();
}

// The name in a header line "[name]"; a null view when the line is none. A "=" before or after the bracket makes it a
// pair: keys are free text that users type, "[News]" among it.
QByteArrayView HeaderName(QByteArrayView line) {
  const QByteArrayView text = line.trimmed();
  if (text.isEmpty() || text.front() != '[') return {};
  const qsizetype end = text.indexOf(']');
  if (end < 0 || text.contains('=')) return {};
  return text.sliced(1, end - 1).trimmed();
}

bool IsHeader(QByteArrayView line) {
  return HeaderName(line).data() != nullptr;
}

// The place of the "=" of a pair; -1 when the line is none.
qsizetype EqualsSign(QByteArrayView line) {
  const QByteArrayView text = line.trimmed();
  return text.isEmpty() || text.front() == ';' ? -1 : line.indexOf('=');
}

// The key of a pair, folded for comparison. Nearly all keys are ASCII and take the short way.
using TFolded = QVarLengthArray<char, 128>;
TFolded FoldedKey(QByteArrayView line, qsizetype equals) {
  const QByteArrayView key = line.first(equals).trimmed();
  TFolded folded(key.size());
  for (qsizetype i = 0; i < key.size(); ++i) {
    const char c = key[i];
    if ((c & 0x80) != 0) {
      const QByteArray full = Decoded(line, key).toCaseFolded().toUtf8();
      return TFolded(full.begin(), full.end());
    }
    folded[i] = c >= 'A' && c <= 'Z' ? char(c + ('a' - 'A')) : c;
  }
  return folded;
}

size_t HashOf(QByteArrayView folded) {
  return std::hash<std::string_view>()(std::string_view(folded.data(), size_t(folded.size())));
}

QByteArray WithoutBreaks(QByteArray text) {
  return text.replace('\r', ' ').replace('\n', ' ').trimmed();
}

// Keys and section names as they can stand in a file. Most need no change, and they are looked up often.
QString KeyName(const QString &key) {
  const auto isPlain = [](QChar c) { return c.unicode() > u' ' && c != u'=' && c != u';'; };
  if (std::all_of(key.begin(), key.end(), isPlain)) return key;
  QByteArray bytes = WithoutBreaks(key.toUtf8().replace('=', ""));
  while (bytes.startsWith(';')) bytes = bytes.sliced(1).trimmed();
  return TextOfUtf8(bytes);
}

QString SectionName(const QString &section) {
  return TextOfUtf8(WithoutBreaks(section.toUtf8().replace('=', "").replace(']', "")));
}

}  // namespace

TIniFile TIniFile::FromBytes(const QByteArray &bytes) {
  TIniFile file;
  file.m_source = QByteArray(bytes.constData(), bytes.size());  // Lines point into it, so it must be our own.
  file.m_blocks.append(TBlock());
  QByteArrayView rest(file.m_source);
  file.m_hasByteOrderMark = rest.startsWith(ByteOrderMark);
  if (file.m_hasByteOrderMark) rest = rest.sliced(ByteOrderMark.size());
  bool isFirst = true;
  while (!rest.isEmpty()) {
    const qsizetype feed = rest.indexOf('\n');
    QByteArrayView text = feed < 0 ? rest : rest.first(feed);
    TLineEnd end = feed < 0 ? TLineEnd::None : TLineEnd::Lf;
    rest = feed < 0 ? QByteArrayView() : rest.sliced(feed + 1);
    if (end == TLineEnd::Lf && text.endsWith('\r')) {
      text.chop(1);
      end = TLineEnd::CrLf;
    }
    if (isFirst && end != TLineEnd::None) file.m_lineEnd = end;
    isFirst = false;
    if (IsHeader(text)) {
      const QString name = Decoded(text, HeaderName(text));
      const QString folded = name.toCaseFolded();
      const qsizetype number = file.m_sectionIndex.value(folded, file.m_sections.size());
      if (number == file.m_sections.size()) {
        file.m_sectionIndex.insert(folded, number);
        file.m_sections.append({name, {}, {}, {}, false});
      }
      file.m_sections[number].blocks.append(int(file.m_blocks.size()));
      file.m_blocks.append(TBlock());
    }
    file.m_blocks.last().lines.append({QByteArray::fromRawData(text.data(), text.size()), end, false});
  }
  return file;
}

QByteArray TIniFile::ToBytes() const {
  QByteArray bytes;
  bytes.reserve(m_source.size() + 1024);
  if (m_hasByteOrderMark) bytes.append(ByteOrderMark);
  for (const TBlock &block : m_blocks) {
    for (const TLine &line : block.lines) {
      if (line.isRemoved) continue;
      bytes.append(line.bytes);
      if (line.end != TLineEnd::None) bytes.append(line.end == TLineEnd::CrLf ? "\r\n" : "\n");
    }
  }
  return bytes;
}

bool TIniFile::Load(const QString &path, QString *error) {
  *this = TIniFile();
  const QFileInfo info(path);
  int refusal = 0;
  if (info.isDir()) {
    refusal = EISDIR;
  } else if (info.exists() && !info.isFile()) {
    refusal = EINVAL;
  } else if (info.size() > MaxFileSize) {
    refusal = EFBIG;
  }
  QFile file(path);
  QByteArray bytes;
  // Room is made for as much as is asked for, so that is no more than the file has.
  const bool isRead = refusal == 0 && file.open(QIODevice::ReadOnly) &&
                      (bytes = file.read(qMin(file.size(), MaxFileSize)), file.error() == QFileDevice::NoError);
  if (isRead) {
    *this = FromBytes(bytes);
  } else if (error != nullptr) {
    *error = refusal != 0 ? qt_error_string(refusal) : file.errorString();
  }
  return isRead;
}

bool TIniFile::Save(const QString &path, QString *error) const {
  const QString target = QFileInfo(path).canonicalFilePath();
  QSaveFile file(target.isEmpty() ? path : target);
  const bool isSaved = file.open(QIODevice::WriteOnly) && file.write(ToBytes()) >= 0 && file.commit();
  if (!isSaved && error != nullptr) *error = file.errorString();
  return isSaved;
}

const TIniFile::TSection *TIniFile::FindSection(const QString &section) const {
  auto found = m_sectionIndex.constFind(section.toCaseFolded());
  if (found == m_sectionIndex.constEnd()) found = m_sectionIndex.constFind(SectionName(section).toCaseFolded());
  return found == m_sectionIndex.constEnd() ? nullptr : &m_sections.at(*found);
}

void TIniFile::Index(const TSection &section) const {
  for (const int block : section.blocks) {
    const QList<TLine> &lines = m_blocks.at(block).lines;
    section.index.reserve(section.index.size() + lines.size());
    for (int i = 0; i < int(lines.size()); ++i) {
      const QByteArrayView line = lines.at(i).bytes;
      const qsizetype equals = EqualsSign(line);
      if (equals >= 0) section.index.emplaceBack(HashOf(FoldedKey(line, equals)), TPlace{block, i});
    }
  }
  std::sort(section.index.begin(), section.index.end());
  section.isIndexed = true;
}

std::optional<TIniFile::TPlace> TIniFile::FindFolded(const TSection &section, const QByteArray &folded) const {
  if (!section.isIndexed) Index(section);
  const auto isIt = [&](TPlace place) {
    const TLine &line = m_blocks.at(place.block).lines.at(place.line);
    return !line.isRemoved && QByteArrayView(FoldedKey(line.bytes, EqualsSign(line.bytes))) == folded;
  };
  const size_t hash = HashOf(folded);
  for (auto entry = std::lower_bound(section.index.cbegin(), section.index.cend(), TIndexEntry(hash, TPlace()));
       entry != section.index.cend() && entry->first == hash; ++entry) {
    if (isIt(entry->second)) return entry->second;
  }
  for (auto entry = section.added.constFind(hash); entry != section.added.cend() && entry.key() == hash; ++entry) {
    if (isIt(*entry)) return *entry;
  }
  return std::nullopt;
}

std::optional<TIniFile::TPlace> TIniFile::FindKey(const TSection &section, const QString &key) const {
  const auto found = FindFolded(section, key.toCaseFolded().toUtf8());
  if (found) return found;
  const QString name = KeyName(key);
  return name == key ? std::nullopt : FindFolded(section, name.toCaseFolded().toUtf8());
}

bool TIniFile::HasSection(const QString &section) const {
  return FindSection(section) != nullptr;
}

bool TIniFile::HasKey(const QString &section, const QString &key) const {
  const TSection *found = FindSection(section);
  return found != nullptr && FindKey(*found, key).has_value();
}

QStringList TIniFile::Sections() const {
  QStringList names;
  for (const TSection &section : m_sections) {
    if (!section.blocks.isEmpty()) names.append(section.name);
  }
  return names;
}

QList<std::pair<QString, QString>> TIniFile::Pairs(const QString &section) const {
  QList<std::pair<QString, QString>> pairs;
  const TSection *found = FindSection(section);
  if (found == nullptr) return pairs;
  for (const int block : found->blocks) {
    for (const TLine &line : m_blocks.at(block).lines) {
      const QByteArrayView bytes = line.bytes;
      const qsizetype equals = line.isRemoved ? -1 : EqualsSign(bytes);
      if (equals < 0) continue;
      pairs.append({Decoded(bytes, bytes.first(equals).trimmed()), Decoded(bytes, bytes.sliced(equals + 1).trimmed())});
    }
  }
  return pairs;
}

QString TIniFile::Value(const QString &section, const QString &key, const QString &fallback) const {
  const TSection *found = FindSection(section);
  const std::optional<TPlace> place = found == nullptr ? std::nullopt : FindKey(*found, key);
  if (!place) return fallback;
  const QByteArrayView line = m_blocks.at(place->block).lines.at(place->line).bytes;
  return Decoded(line, line.sliced(EqualsSign(line) + 1).trimmed());
}

TIniFile::TSection &TIniFile::MakeSection(const QString &section) {
  if (const TSection *found = FindSection(section)) return m_sections[found - m_sections.constData()];
  // The line before the new section must have an end, and a blank line keeps the two apart.
  for (auto block = m_blocks.rbegin(); block != m_blocks.rend(); ++block) {
    const auto last =
        std::find_if(block->lines.rbegin(), block->lines.rend(), [](const TLine &line) { return !line.isRemoved; });
    if (last == block->lines.rend()) continue;
    if (last->end == TLineEnd::None) last->end = m_lineEnd;
    if (!IsBlank(last->bytes)) AppendLine(*block, block->lines.size(), {});
    break;
  }
  const QString name = SectionName(section);
  m_sectionIndex.insert(name.toCaseFolded(), m_sections.size());
  m_sections.append({name, {int(m_blocks.size())}, {}, {}, false});
  m_blocks.append(TBlock());
  AppendLine(m_blocks.last(), 0, '[' + name.toUtf8() + ']');
  return m_sections.last();
}

void TIniFile::AppendLine(TBlock &block, qsizetype place, const QByteArray &bytes) {
  if (place > 0 && block.lines.at(place - 1).end == TLineEnd::None) block.lines[place - 1].end = m_lineEnd;
  block.lines.insert(place, {bytes, m_lineEnd, false});
}

void TIniFile::SetValue(const QString &section, const QString &key, const QString &value) {
  TSection &found = MakeSection(section);
  const QByteArray data = WithoutBreaks(value.toUtf8());
  if (const auto place = FindKey(found, key)) {
    TLine &line = m_blocks[place->block].lines[place->line];
    const QByteArrayView bytes = line.bytes;
    const qsizetype equals = EqualsSign(bytes);
    if (Decoded(bytes, bytes.sliced(equals + 1).trimmed()) == TextOfUtf8(data)) return;
    line.bytes = Decoded(bytes, bytes.first(equals + 1)).toUtf8() + data;
    return;
  }
  const int blockNumber = found.blocks.last();
  TBlock &block = m_blocks[blockNumber];
  int place = int(block.lines.size());
  while (place > 1 && !block.lines.at(place - 1).isRemoved && IsBlank(block.lines.at(place - 1).bytes)) --place;
  const QString name = KeyName(key);
  AppendLine(block, place, name.toUtf8() + '=' + data);
  found.added.insert(HashOf(name.toCaseFolded().toUtf8()), {blockNumber, place});
}

void TIniFile::RemoveKey(const QString &section, const QString &key) {
  const TSection *found = FindSection(section);
  const std::optional<TPlace> place = found == nullptr ? std::nullopt : FindKey(*found, key);
  if (!place) return;
  const QByteArrayView first = m_blocks.at(place->block).lines.at(place->line).bytes;
  const TFolded folded = FoldedKey(first, EqualsSign(first));
  for (const int block : found->blocks) {
    for (TLine &line : m_blocks[block].lines) {
      const qsizetype equals = line.isRemoved ? -1 : EqualsSign(line.bytes);
      if (equals >= 0 && FoldedKey(line.bytes, equals) == folded) line.isRemoved = true;
    }
  }
}

void TIniFile::RemoveSection(const QString &section) {
  const TSection *found = FindSection(section);
  if (found == nullptr) return;
  const qsizetype number = found - m_sections.constData();
  for (const int block : found->blocks) m_blocks[block].lines.clear();
  m_sectionIndex.remove(m_sections.at(number).name.toCaseFolded());
  m_sections[number] = {};
}
