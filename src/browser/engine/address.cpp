#include "browser/engine/address.h"

#include <algorithm>
#include <array>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

constexpr std::array EngineSchemes{"http", "https", "file", "data", "blob", "filesystem", "about", "chrome", "zarvela"};
constexpr std::array ExternalSchemes{"mailto"};
constexpr QLatin1String ViewSource("view-source:");
constexpr QLatin1String JavaScript("javascript:");

template <typename TList>
bool Holds(const TList &list, const QString &scheme) {
  return std::any_of(list.begin(), list.end(),
                     [&](const char *known) { return scheme.compare(QLatin1String(known), Qt::CaseInsensitive) == 0; });
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

TAddress::TAddress(const QString &text) : m_text(text) {
  FixUp();
}

TAddress TAddress::OfEngine(const QString &text) {
  TAddress address;
  address.m_text = text;
  if (address.TakeScript(text)) return address;
  address.TakeUrl(QUrl::fromEncoded(text.toLatin1(), QUrl::StrictMode));
  if (address.m_kind != TKind::Url) return TAddress(text);  // the engine is not as strict about spelling
  const QString scheme = address.m_url.scheme();
  if (Holds(ExternalSchemes, scheme)) {
    address.m_kind = TKind::External;
  } else if (!IsEngineScheme(scheme)) {
    address.m_kind = TKind::UnknownKind;
  }
  return address;
}

bool TAddress::IsBlankPage() const {
  return m_kind == TKind::Url && m_url == QUrl(BlankPageAddress);
}

bool TAddress::TakeScript(const QString &text) {
  const QString trimmed = text.trimmed();
  if (!trimmed.startsWith(JavaScript, Qt::CaseInsensitive)) return false;
  m_kind = TKind::Script;
  m_script = QUrl::fromPercentEncoding(trimmed.mid(JavaScript.size()).toUtf8());
  return true;
}

void TAddress::FixUp() {
  if (TakeScript(m_text)) return;
  const QString clean = WithoutControls(m_text);
  if (clean.isEmpty()) return;
  m_kind = TKind::Invalid;
  if (clean.startsWith(ViewSource, Qt::CaseInsensitive)) {
    // The source of a source is nothing, however often it is asked for.
    const QString rest = clean.mid(ViewSource.size()).trimmed();
    if (rest.startsWith(ViewSource, Qt::CaseInsensitive)) return;
    const TAddress inner(rest);
    if (inner.m_kind == TKind::Url) TakeUrl(QUrl(ViewSource + AddressOf(inner.m_url)));
    return;
  }
  if (clean.startsWith(QLatin1Char('/'))) {
    TakePath(clean);
    return;
  }
  if (clean == QLatin1String("~") || clean.startsWith(QLatin1String("~/"))) {
    TakePath(QDir::homePath() + clean.mid(1));
    return;
  }

  static const QRegularExpression schemePattern(QStringLiteral("^([A-Za-z][A-Za-z0-9+.-]*):(.*)$"),
                                                QRegularExpression::DotMatchesEverythingOption);
  // A host with a port looks like a scheme with a path, and "user:password@host" is no scheme either.
  static const QRegularExpression hostPattern(QStringLiteral("^(\\d{1,5}($|[/?#])|[^/?#\\s]+@[^/?#\\s]+)"));
  const QRegularExpressionMatch match = schemePattern.match(clean);
  const QString scheme = match.captured(1).toLower();
  const QString rest = match.captured(2);
  if (Holds(EngineSchemes, scheme)) {
    TakeKnownScheme(scheme, rest, clean);
  } else if (Holds(ExternalSchemes, scheme)) {
    m_kind = TKind::External;
    m_url = QUrl(clean);
  } else if (!match.hasMatch() || hostPattern.match(rest).hasMatch()) {
    TakeHost(clean);
  } else {
    m_kind = TKind::UnknownKind;
    m_url = QUrl(clean);
  }
}

void TAddress::TakeUrl(const QUrl &url) {
  if (!url.isValid() || url.isEmpty()) return;
  m_kind = TKind::Url;
  m_url = url;
}

// A path is taken as a whole first: "#" and "?" are legal in file names. Only what does not exist that way may be a
// path with a fragment.
void TAddress::TakePath(const QString &path) {
  if (!QFileInfo::exists(path)) {
    const qsizetype mark = path.lastIndexOf(QLatin1Char('#'));
    if (mark > 0 && QFileInfo::exists(path.left(mark))) {
      QUrl url = QUrl::fromLocalFile(path.left(mark));
      url.setFragment(path.mid(mark + 1));
      TakeUrl(url);
      return;
    }
    if (path.startsWith(QLatin1String("//"))) {
      TakeUrl(QUrl(QStringLiteral("http:") + path));
      return;
    }
  }
  TakeUrl(QUrl::fromLocalFile(path));
}

void TAddress::TakeHost(const QString &text) {
  const QUrl url(QStringLiteral("http://") + text);
  if (!url.host().isEmpty()) TakeUrl(url);
}

void TAddress::TakeKnownScheme(const QString &scheme, const QString &rest, const QString &text) {
  if (scheme != QLatin1String("http") && scheme != QLatin1String("https")) {
    TakeUrl(QUrl(text));
    return;
  }
  // "http:example.org" and "http:/example.org" are typing slips with one meaning.
  qsizetype slashes = 0;
  while (slashes < rest.size() && rest.at(slashes) == QLatin1Char('/')) ++slashes;
  const QUrl url(scheme + QStringLiteral("://") + rest.mid(slashes));
  if (!url.host().isEmpty()) TakeUrl(url);
}

bool IsEngineScheme(const QString &scheme) {
  return Holds(EngineSchemes, scheme) || scheme == QLatin1String("view-source");
}

QString AddressOf(const QUrl &url) {
  return QString::fromLatin1(url.toEncoded());
}
