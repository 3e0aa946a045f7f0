#include "favorites/shortcut_file.h"

#include <cerrno>
#include <optional>
#include <QStringDecoder>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include "favorites/binary_plist.h"
#include "platform/folder_entries.h"
#include "store/ini_file.h"

namespace {

constexpr qint64 MostRead = 1024 * 1024;
constexpr QByteArrayView BinaryHeader("bplist00");
constexpr QLatin1StringView ScriptScheme("javascript:");

const QString UrlSection = QStringLiteral("InternetShortcut");
const QString DesktopSection = QStringLiteral("Desktop Entry");
const QString UrlKey = QStringLiteral("URL");
// As one desktop writes it, where the value may name variables of the environment.
const QString ExpandedUrlKey = QStringLiteral("URL[$e]");

bool IsUtf16(QByteArrayView bytes, bool isBigEndian) {
  if (bytes.size() < 2) return false;
  const auto [high, low] = isBigEndian ? std::pair(bytes[0], bytes[1]) : std::pair(bytes[1], bytes[0]);
  return (high == '\xFE' && low == '\xFF') || (high == '\0' && low != '\0');
}

// In UTF-8 where it was UTF-16, else as it is; with "\n" for every line end.
QByteArray Lines(QByteArrayView bytes) {
  QByteArray lines;
  if (IsUtf16(bytes, false)) {
    lines = QString(QStringDecoder(QStringDecoder::Utf16LE)(bytes)).toUtf8();
  } else if (IsUtf16(bytes, true)) {
    lines = QString(QStringDecoder(QStringDecoder::Utf16BE)(bytes)).toUtf8();
  } else {
    lines = QByteArray(bytes.data(), bytes.size());
  }
  return lines.replace("\r\n", "\n").replace('\r', '\n');
}

bool IsEdge(QChar character) {
  return character.unicode() <= ' ' || character.isSpace();
}

QStringView WithoutEdges(QStringView text) {
  while (!text.isEmpty() && IsEdge(text.front())) text = text.sliced(1);
  while (!text.isEmpty() && IsEdge(text.back())) text.chop(1);
  return text;
}

bool IsBreak(QChar character) {
  return character == u'\n' || character == u'\r' || character == u'\t';
}

bool IsControl(QChar character) {
  return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
         character == QChar::ParagraphSeparator;
}

QString Encoded(QChar character) {
  return QString::fromLatin1(QString(character).toUtf8().toPercentEncoding());
}

// The escapes of the desktop entry format.
QString Unescaped(const QString &value) {
  QString text;
  for (qsizetype i = 0; i < value.size(); ++i) {
    const QChar character = value.at(i);
    if (character != u'\\' || i + 1 == value.size()) {
      text += character;
      continue;
    }
    const QChar kind = value.at(++i);
    text += kind == u's' ? u' ' : kind == u'n' ? u'\n' : kind == u't' ? u'\t' : kind == u'r' ? u'\r' : kind;
  }
  return text;
}

QString DesktopAddress(const TIniFile &file) {
  if (file.Value(DesktopSection, QStringLiteral("Type")).compare(QLatin1String("Link"), Qt::CaseInsensitive) != 0) {
    return {};
  }
  return Unescaped(file.Value(DesktopSection, UrlKey, file.Value(DesktopSection, ExpandedUrlKey)));
}

// What follows <key>URL</key> in a property list.
QString XmlAddress(QByteArrayView bytes) {
  QXmlStreamReader reader(bytes.toByteArray());
  bool isNext = false;
  while (!reader.atEnd()) {
    if (reader.readNext() != QXmlStreamReader::StartElement) continue;
    const QString name = reader.name().toString();
    if (name != QLatin1String("key") && name != QLatin1String("string")) continue;
    const QString text = reader.readElementText(QXmlStreamReader::IncludeChildElements);
    if (isNext && name == QLatin1String("string")) return text;
    isNext = name == QLatin1String("key") && text.compare(UrlKey, Qt::CaseInsensitive) == 0;
  }
  return {};
}

QByteArray XmlBytes(const QString &address) {
  QByteArray bytes;
  QXmlStreamWriter writer(&bytes);
  writer.setAutoFormatting(true);
  writer.writeStartDocument();
  writer.writeStartElement(QStringLiteral("plist"));
  writer.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
  writer.writeStartElement(QStringLiteral("dict"));
  writer.writeTextElement(QStringLiteral("key"), UrlKey);
  writer.writeTextElement(QStringLiteral("string"), address);
  writer.writeEndDocument();
  return bytes;
}

void Tell(QString *error, int code) {
  if (error != nullptr) *error = qt_error_string(code);
}

}  // namespace

ShortcutFile::TKind ShortcutFile::KindOf(const QString &path) {
  if (path.endsWith(QLatin1String(".url"), Qt::CaseInsensitive)) return TKind::Url;
  if (path.endsWith(QLatin1String(".desktop"), Qt::CaseInsensitive)) return TKind::Desktop;
  if (path.endsWith(QLatin1String(".webloc"), Qt::CaseInsensitive)) return TKind::Webloc;
  return TKind::None;
}

QString ShortcutFile::AddressIn(QByteArrayView bytes, TKind kind) {
  switch (kind) {
    case TKind::Url:
      return OneLine(TIniFile::FromBytes(Lines(bytes)).Value(UrlSection, UrlKey));
    case TKind::Desktop:
      return OneLine(DesktopAddress(TIniFile::FromBytes(Lines(bytes))));
    case TKind::Webloc:
      return OneLine(bytes.startsWith(BinaryHeader) ? BinaryPlist::TextOf(bytes, UrlKey) : XmlAddress(bytes));
    case TKind::None:
      break;
  }
  return {};
}

QString ShortcutFile::Read(const QString &path, QString *error) {
  const TKind kind = KindOf(path);
  if (kind == TKind::None) return {};
  const std::optional<QByteArray> bytes = FolderEntries::Read(path, MostRead, error);
  return bytes ? AddressIn(*bytes, kind) : QString();
}

QString ShortcutFile::OneLine(const QString &address) {
  QStringView text = WithoutEdges(address);
  // Some programs write the value in quotes, and shells of old take them off.
  while (text.size() >= 2 && text.front() == u'"' && text.back() == u'"') {
    text = WithoutEdges(text.sliced(1, text.size() - 2));
  }
  QString line;
  line.reserve(text.size());
  bool isScript = false;
  for (const QChar character : text) {
    if (IsBreak(character) && !isScript) continue;
    line += IsControl(character) ? Encoded(character) : QString(character);
    if (character == u':' && line.size() == ScriptScheme.size()) {
      isScript = IsScript(line);
    }
  }
  return line;
}

bool ShortcutFile::IsScript(const QString &address) {
  return address.startsWith(ScriptScheme, Qt::CaseInsensitive);
}

QByteArray ShortcutFile::Bytes(const QString &address) {
  return "[InternetShortcut]\r\nURL=" + OneLine(address).toUtf8() + "\r\n";
}

bool ShortcutFile::SetAddress(const QString &path, const QString &address, QString *error) {
  const QString line = OneLine(address);
  const TKind kind = KindOf(path);
  if (line.isEmpty() || kind == TKind::None) {
    Tell(error, EINVAL);
    return false;
  }
  if (line.toUtf8().size() > LongestAddress) {
    Tell(error, EMSGSIZE);
    return false;
  }
  const std::optional<QByteArray> before = FolderEntries::Read(path, MostRead + 1, error);
  if (!before) return false;
  QByteArray after;
  if (kind == TKind::Webloc) {
    after = XmlBytes(line);
  } else if (before->size() > MostRead) {
    // The rest of it would be lost.
    Tell(error, EFBIG);
    return false;
  } else {
    TIniFile file = TIniFile::FromBytes(Lines(*before));
    const bool isDesktop = kind == TKind::Desktop;
    const QString section = isDesktop ? DesktopSection : UrlSection;
    file.SetValue(section, UrlKey, isDesktop ? QString(line).replace(u'\\', QLatin1String("\\\\")) : line);
    if (isDesktop) {
      file.RemoveKey(section, ExpandedUrlKey);
      // A starter of a program would become something else.
      if (DesktopAddress(file).isEmpty()) {
        Tell(error, EINVAL);
        return false;
      }
    }
    after = file.ToBytes();
  }
  const int code = FolderEntries::Replace(path, after);
  if (code != 0) Tell(error, code);
  return code == 0;
}
