// Input: a pattern, and after a part separator the text.

#include <QList>
#include <vector>

#include "popups/popup_wildcard.h"
#include "require.h"

namespace {

// The rules one by one, from every place in text and pattern; each place is answered once.
class TPlainReading final {
 public:
  TPlainReading(QStringView text, QStringView pattern)
      : m_text(text), m_pattern(pattern), m_known(size_t(text.size() + 1) * size_t(pattern.size() + 1)) {}

  [[nodiscard]] bool Fits(qsizetype t, qsizetype p) {
    char &known = m_known[size_t(t * (m_pattern.size() + 1) + p)];
    if (known == 0) known = Decide(t, p) ? 'y' : 'n';
    return known == 'y';
  }

 private:
  [[nodiscard]] bool Decide(qsizetype t, qsizetype p) {
    if (m_pattern.sliced(p) == u"*") return true;
    if (t == m_text.size()) return p == m_pattern.size();
    if (p == m_pattern.size()) return false;
    if (m_pattern[p] == u'*') return Fits(t, p + 1) || Fits(t + 1, p);
    return (m_pattern[p] == u'?' || m_pattern[p] == m_text[t]) && Fits(t + 1, p + 1);
  }

  QStringView m_text;
  QStringView m_pattern;
  std::vector<char> m_known;
};

// Deep enough for every turn of the rules, and small enough for the recursion.
constexpr qsizetype MostPlain = 300;
constexpr int ManyTimes = 200;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size) {
  const QByteArray input = Fuzz::Input(data, size);
  const qsizetype end = input.indexOf(Fuzz::Part);
  const QString pattern = Fuzz::Text(end < 0 ? input : input.first(end));
  const QString text = end < 0 ? QString() : Fuzz::Text(input.sliced(end + 1));
  const bool matches = MatchWildcard(text, pattern);
  if (text.size() <= MostPlain && pattern.size() <= MostPlain) {
    REQUIRE(matches == TPlainReading(text, pattern).Fits(0, 0));
  }
  REQUIRE(!matches || MatchWildcard(text, pattern + u'*') || pattern.endsWith(u'*'));
  REQUIRE(!matches || MatchWildcard(text + u'x', pattern + u'?'));
  REQUIRE(!matches || MatchWildcard(u'x' + text, u'*' + pattern) || (text.isEmpty() && pattern.isEmpty()));
  // Nothing that a pattern says makes a long text slow: the time limit of a run would find it.
  (void)MatchWildcard(text.repeated(ManyTimes), pattern.repeated(ManyTimes) + u'x');
  (void)MatchWildcard(text.repeated(ManyTimes), pattern);
  return 0;
}
