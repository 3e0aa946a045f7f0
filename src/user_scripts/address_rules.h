#pragma once

#include <QList>
#include <QRegularExpression>
#include <QString>

class QUrl;

// The addresses that a user script names.
class TAddressRules final {
 public:
  // A pattern of scheme, host and path: "*" is http or https, "*" or "*.example.test" any host or those below one, and
  // in the path any text. Without a port it holds for all. False, and nothing is added, for what is no such pattern.
  [[nodiscard]] bool AddMatch(const QString &pattern);
  // A text for the whole address in which "*" stands for any text, or a regular expression between slashes. False for
  // one that is none.
  [[nodiscard]] bool AddText(const QString &pattern);

  [[nodiscard]] bool IsEmpty() const { return m_rules.isEmpty(); }
  // Whether one of them holds for the address, which counts without its fragment and who signs in. `orTooLong` is the
  // answer where an expression takes too long to say.
  [[nodiscard]] bool Hold(const QUrl &address, bool orTooLong) const;

 private:
  [[nodiscard]] bool Add(const QString &expression, QRegularExpression::PatternOptions options);

  QList<QRegularExpression> m_rules;
};
