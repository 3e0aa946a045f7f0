#include "browser/engine/address_fixup.h"

#include <algorithm>
#include <array>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

using TKind = TFixedAddress::TKind;

constexpr std::array EngineSchemes{"http", "https", "file", "data", "blob", "filesystem", "about", "chrome", "zarvela"};
constexpr std::array ExternalSchemes{"mailto"};
constexpr QLatin1String ViewSource("view-source:");
constexpr QLatin1String JavaScript("javascript:");

template <typename TList>
bool Holds(const TList &list, const QString &scheme) {
  return std::any_of(list.begin(), list.end(),
                     [&](const char *known) { return scheme.compare(QLatin1String(known), Qt::CaseInsensitive) == 0; });
}

TFixedAddress UrlOrInvalid(const QUrl &url) {
  if (!url.isValid() || url.isEmpty()) return {};
  return {.kind = TKind::Url, .url = url};
}

// A path is taken as a whole first: "#" and "?" are legal in file names. Only what does not exist that way may be a
// path with a fragment.
TFixedAddress FromPath(const QString &path) {
  if (!QFileInfo::exists(path)) {
    const qsizetype mark = path.lastIndexOf(QLatin1Char('#'));
    if (mark > 0 && QFileInfo::exists(path.left(mark))) {
      QUrl url = QUrl::fromLocalFile(path.left(mark));
      url.setFragment(path.mid(mark + 1));
      return UrlOrInvalid(url);
    }
    if (path.startsWith(QLatin1String("//"))) return UrlOrInvalid(QUrl(QStringLiteral("http:") + path));
  }
  return UrlOrInvalid(QUrl::fromLocalFile(path));
}

TFixedAddress FromHost(const QString &text) {
  const QUrl url(QStringLiteral("http://") + text);
  if (url.host().isEmpty()) return {};
  return UrlOrInvalid(url);
}

TFixedAddress FromKnownScheme(const QString &scheme, const QString &rest, const QString &text) {
  const bool web = scheme == QLatin1String("http") || scheme == QLatin1String("https");
  if (!web) return UrlOrInvalid(QUrl(text));
  // "http:example.org" and "http:/example.org" are typing slips with one meaning.
  qsizetype slashes = 0;
  while (slashes < rest.size() && rest.at(slashes) == QLatin1Char('/')) ++slashes;
  const QUrl url(scheme + QStringLiteral("://") + rest.mid(slashes));
  if (url.host().isEmpty()) return {};
  return UrlOrInvalid(url);
}

// Long addresses are shown with these as places to break.
constexpr QChar ZeroWidthSpace(0x200B);

// Line breaks and other control characters come along when an address is pasted; they are never part of one.
QString WithoutControls(const QString &text) {
  QString clean;
  clean.reserve(text.size());
  std::copy_if(text.begin(), text.end(), std::back_inserter(clean),
               [](QChar c) { return c.category() != QChar::Other_Control && c != ZeroWidthSpace; });
  return clean.trimmed();
}

}  // namespace

TFixedAddress FixUpAddress(const QString &text) {
  const QString trimmed = text.trimmed();
  if (trimmed.startsWith(JavaScript, Qt::CaseInsensitive)) {
    return {.kind = TKind::Script, .script = QUrl::fromPercentEncoding(trimmed.mid(JavaScript.size()).toUtf8())};
  }
  const QString clean = WithoutControls(text);
  if (clean.isEmpty()) return {.kind = TKind::Empty};
  if (clean.startsWith(ViewSource, Qt::CaseInsensitive)) {
    // The source of a source is nothing, however often it is asked for.
    const QString rest = clean.mid(ViewSource.size()).trimmed();
    if (rest.startsWith(ViewSource, Qt::CaseInsensitive)) return {};
    const TFixedAddress inner = FixUpAddress(rest);
    if (inner.kind != TKind::Url) return {};
    return UrlOrInvalid(QUrl(ViewSource + AddressOf(inner.url)));
  }
  if (clean.startsWith(QLatin1Char('/'))) return FromPath(clean);
  if (clean == QLatin1String("~") || clean.startsWith(QLatin1String("~/"))) {
    return FromPath(QDir::homePath() + clean.mid(1));
  }

  static const QRegularExpression schemePattern(QStringLiteral("^([A-Za-z][A-Za-z0-9+.-]*):(.*)$"),
                                                QRegularExpression::DotMatchesEverythingOption);
  // A host with a port looks like a scheme with a path.
  static const QRegularExpression portPattern(QStringLiteral("^\\d{1,5}($|[/?#])"));
  const QRegularExpressionMatch match = schemePattern.match(clean);
  if (!match.hasMatch()) return FromHost(clean);
  const QString scheme = match.captured(1).toLower();
  const QString rest = match.captured(2);
  if (Holds(EngineSchemes, scheme)) return FromKnownScheme(scheme, rest, clean);
  if (Holds(ExternalSchemes, scheme)) return {.kind = TKind::External, .url = QUrl(clean)};
  if (portPattern.match(rest).hasMatch()) return FromHost(clean);
  // "user:password@host" is no scheme either.
  static const QRegularExpression userPattern(QStringLiteral("^[^/?#\\s]+@[^/?#\\s]+"));
  if (userPattern.match(rest).hasMatch()) return FromHost(clean);
  return {.kind = TKind::UnknownKind, .url = QUrl(clean)};
}

bool IsEngineScheme(const QString &scheme) {
  return Holds(EngineSchemes, scheme) || scheme == QLatin1String("view-source");
}

QString AddressOf(const QUrl &url) {
  return QString::fromLatin1(url.toEncoded());
}
