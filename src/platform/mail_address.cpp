#include "platform/mail_address.h"

#include <algorithm>
#include <cctype>
#include <QByteArrayList>
#include <QList>
#include <utility>

namespace {

const QString Scheme = QStringLiteral("mailto:");
constexpr const char *Fields[] = {"to", "cc", "bcc", "subject", "body"};
constexpr const char *PlainCharacters = "@,:/";  // beside those that are plain anywhere
constexpr const char *TextField = "body";

bool IsNameCharacter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || character == '-' || character == '_' || character == '%';
}

bool IsHexDigit(char character) {
  return std::isxdigit(uchar(character)) != 0;
}

// A percent sign that begins no code stands for itself.
QByteArray Cleaned(const QByteArray &text, bool keepsLines) {
  QByteArray bytes;
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QByteArray code = text.mid(i + 1, 2);
    if (text.at(i) == '%' && code.size() == 2 && std::ranges::all_of(code, IsHexDigit)) {
      bytes += QByteArray::fromHex(code);
      i += 2;
    } else {
      bytes += text.at(i);
    }
  }
  const auto isDropped = [keepsLines](char character) {
    const bool isLine = character == '\r' || character == '\n';
    return uchar(character) < ' ' && character != '\t' && !(isLine && keepsLines);
  };
  bytes.erase(std::remove_if(bytes.begin(), bytes.end(), isDropped), bytes.end());
  return bytes.toPercentEncoding(PlainCharacters);
}

}  // namespace

QString MailAddress::Encoded(const QString &text) {
  return QString::fromLatin1(text.toUtf8().toPercentEncoding(PlainCharacters));
}

QString MailAddress::Safe(const QString &address) {
  if (!address.startsWith(Scheme, Qt::CaseInsensitive)) return {};
  const QByteArray text = address.mid(Scheme.size()).toUtf8();
  const qsizetype query = text.indexOf('?');
  QList<std::pair<QByteArray, QByteArray>> fields;
  if (query >= 0) {
    for (const QByteArray &part : text.mid(query + 1).split('&')) {
      const qsizetype equals = part.indexOf('=');
      const QByteArray name = part.left(std::max<qsizetype>(equals, 0));
      if (!name.isEmpty() && std::ranges::all_of(name, IsNameCharacter)) {
        fields.append({QByteArray::fromPercentEncoding(name).toLower(), part.mid(equals + 1)});
      } else if (!fields.isEmpty()) {
        fields.last().second += '&' + part;
      }
    }
  }
  QByteArrayList kept;
  for (const auto &[name, value] : std::as_const(fields)) {
    if (std::ranges::none_of(Fields, [&name = name](const char *one) { return name == one; })) continue;
    kept.append(name + '=' + Cleaned(value, name == TextField));
  }
  const QByteArray safe =
      Cleaned(query < 0 ? text : text.left(query), false) + (kept.isEmpty() ? "" : "?") + kept.join('&');
  return Scheme + QString::fromLatin1(safe);
}
