#include "user_scripts/address_rules.h"

#include <QUrl>

namespace {

// Steps after which an expression is given up: some would take years for one address.
const QString Limit = QStringLiteral("(*LIMIT_MATCH=100000)");

const QRegularExpression MatchForm(
    QStringLiteral(R"(^(\*|https?)://(\*|(?:\*\.)?[^/*:?#\s]+|\[[0-9a-fA-F:.]+\])(?::(\*|\d+))?(/\S*)$)"));

// A text with "*" for any text.
QString ExpressionOf(const QString &text) {
  QStringList parts = text.split(u'*');
  for (QString &part : parts) part = QRegularExpression::escape(part);
  return parts.join(QStringLiteral(".*"));
}

QString HostExpressionOf(const QString &host) {
  if (host == u'*') return QStringLiteral("[^/]*");
  const bool isBelow = host.startsWith(QStringLiteral("*."));
  const QString name = isBelow ? host.mid(2) : host;
  // As addresses write it.
  const QString plain = name.startsWith(u'[') ? name.toLower() : QString::fromLatin1(QUrl::toAce(name));
  if (plain.isEmpty()) return {};
  return (isBelow ? QStringLiteral("(?:[^/@]+\\.)?") : QString()) + QRegularExpression::escape(plain);
}

}  // namespace

bool TAddressRules::AddMatch(const QString &pattern) {
  if (pattern == QLatin1String("<all_urls>")) return Add(QStringLiteral("^https?://"), {});
  const QRegularExpressionMatch parts = MatchForm.match(pattern);
  const QString host = parts.hasMatch() ? HostExpressionOf(parts.captured(2)) : QString();
  if (host.isEmpty()) return false;
  const QString scheme = parts.captured(1) == u'*' ? QStringLiteral("https?") : parts.captured(1);
  const QString port = parts.captured(3);
  const QString portExpression =
      port.isEmpty() || port == u'*' ? QStringLiteral("(?::\\d+)?") : QStringLiteral(":") + port;
  return Add(QStringLiteral("^%1://%2%3%4\\z").arg(scheme, host, portExpression, ExpressionOf(parts.captured(4))), {});
}

bool TAddressRules::AddText(const QString &pattern) {
  const bool isExpression = pattern.size() > 2 && pattern.startsWith(u'/') && pattern.endsWith(u'/');
  if (isExpression) return Add(pattern.mid(1, pattern.size() - 2), QRegularExpression::CaseInsensitiveOption);
  return !pattern.isEmpty() && Add(u'^' + ExpressionOf(pattern) + QStringLiteral("\\z"), {});
}

bool TAddressRules::Add(const QString &expression, QRegularExpression::PatternOptions options) {
  const QRegularExpression rule(Limit + expression, options | QRegularExpression::DotMatchesEverythingOption);
  if (rule.isValid()) m_rules.append(rule);
  return rule.isValid();
}

bool TAddressRules::Hold(const QUrl &address, bool orTooLong) const {
  const QString text = address.toString(QUrl::FullyEncoded | QUrl::RemoveFragment | QUrl::RemoveUserInfo);
  for (const QRegularExpression &rule : m_rules) {
    const QRegularExpressionMatch match = rule.match(text);
    if (match.hasMatch() || (!match.isValid() && orTooLong)) return true;
  }
  return false;
}
