#include "popups/popup_patterns.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <optional>

#include "popups/popup_wildcard.h"

namespace {

bool IsWildcard(QChar character) {
  return character == u'*' || character == u'?';
}

// Said apart for the empty prefix, which a null text does not begin with in the toolkit's eyes.
bool BeginsWith(QStringView text, QStringView prefix) {
  return prefix.isEmpty() || text.startsWith(prefix);
}

// The parts of a pattern between its wildcards.
template <typename TVisit>
void VisitLiterals(QStringView pattern, TVisit visit) {
  qsizetype begin = 0;
  for (qsizetype end = 0; end <= pattern.size(); ++end) {
    if (end < pattern.size() && !IsWildcard(pattern[end])) continue;
    if (end > begin) visit(pattern.sliced(begin, end - begin));
    begin = end + 1;
  }
}

}  // namespace

TPopupPatterns::TKey TPopupPatterns::KeyOf(QStringView characters) {
  TKey key = 0;
  for (const QChar character : characters) key = key << 16 | character.unicode();
  return key;
}

template <typename TVisit>
void TPopupPatterns::VisitKeys(QStringView text, int length, TVisit visit) {
  if (text.size() < length) return;
  const TKey mask = length == LongestKey ? ~TKey(0) : (TKey(1) << 16 * length) - 1;
  TKey key = KeyOf(text.first(length));
  visit(key);
  for (const QChar character : text.sliced(length)) {
    key = (key << 16 | character.unicode()) & mask;
    visit(key);
  }
}

// The multiplier scatters keys that differ in a few low bits over the whole filter.
size_t TPopupPatterns::TKeyed::BitOf(TKey key) const {
  return size_t(key * 0x9E37'79B9'7F4A'7C15U >> (64 - filterBits));
}

void TPopupPatterns::TKeyed::MakeFilter() {
  constexpr size_t BitsForEach = 16;
  filterBits = int(std::bit_width(std::max<size_t>(size_t(patterns.size()) * BitsForEach, 64)));
  filter.assign((size_t(1) << filterBits) / 64, 0);
  for (auto key = patterns.keyBegin(); key != patterns.keyEnd(); ++key) {
    filter[BitOf(*key) / 64] |= quint64(1) << BitOf(*key) % 64;
  }
}

bool TPopupPatterns::TKeyed::MayHold(TKey key) const {
  return (filter[BitOf(key) / 64] >> BitOf(key) % 64 & 1) != 0;
}

void TPopupPatterns::Set(const QStringList &patterns) {
  m_patterns = patterns;
  m_complete.clear();
  m_complete.reserve(patterns.size());
  m_prefixes.clear();
  std::vector<int> wildcards;
  for (int position = 0; position < patterns.size(); ++position) {
    const QString &pattern = patterns[position];
    const bool isClosed = pattern.endsWith(u'*');
    m_complete.append(isClosed ? pattern : pattern + u'*');
    if (pattern.isEmpty()) continue;  // It would otherwise stop everything.
    const QStringView body = QStringView(pattern).chopped(isClosed ? 1 : 0);
    if (std::none_of(body.begin(), body.end(), IsWildcard)) {
      m_prefixes.push_back({body.toString(), position});
    } else {
      wildcards.push_back(position);
    }
  }
  ArrangePrefixes();
  ArrangeWildcards(wildcards);
}

void TPopupPatterns::ArrangePrefixes() {
  std::ranges::stable_sort(m_prefixes, [](const TPrefix &a, const TPrefix &b) { return a.text < b.text; });
  for (int i = 0; i < int(m_prefixes.size()); ++i) {
    TPrefix &prefix = m_prefixes[i];
    // In this order everything that a text begins with stands before it, among its neighbour and what that begins with.
    int shorter = i - 1;
    while (shorter >= 0 && !BeginsWith(prefix.text, m_prefixes[shorter].text)) shorter = m_prefixes[shorter].shorter;
    prefix.shorter = shorter;
    prefix.first = shorter < 0 ? prefix.position : std::min(prefix.position, m_prefixes[shorter].first);
  }
}

void TPopupPatterns::ArrangeWildcards(const std::vector<int> &positions) {
  m_always.clear();
  for (TKeyed &keyed : m_byKey) keyed = {};
  std::array<QHash<TKey, int>, LongestKey + 1> frequencies;
  const auto visitKeys = [this](int position, auto visit) {
    VisitLiterals(m_complete[position], [&](QStringView literal) {
      const int length = int(std::min<qsizetype>(literal.size(), LongestKey));
      VisitKeys(literal, length, [&](TKey key) { visit(length, key); });
    });
  };
  for (const int position : positions) {
    visitKeys(position, [&](int length, TKey key) { ++frequencies[length][key]; });
  }
  // Each pattern stands under the rarest of its keys, so that an address meets few patterns that it does not fit; a
  // short key is in more addresses.
  constexpr std::array<qint64, LongestKey + 1> Weights{0, 64, 4, 2, 1};
  for (const int position : positions) {
    int bestLength = 0;
    TKey rarest = 0;
    qint64 lowest = std::numeric_limits<qint64>::max();
    visitKeys(position, [&](int length, TKey key) {
      const qint64 weight = Weights[length] * frequencies[length].value(key);
      if (weight >= lowest) return;
      lowest = weight;
      bestLength = length;
      rarest = key;
    });
    if (bestLength == 0) {
      m_always.push_back(position);
    } else {
      m_byKey[bestLength].patterns[rarest].push_back(position);
    }
  }
  for (TKeyed &keyed : m_byKey) keyed.MakeFilter();
}

int TPopupPatterns::FirstPrefix(QStringView address) const {
  const auto after = std::ranges::upper_bound(
      m_prefixes, address, [](QStringView a, QStringView b) { return a < b; }, &TPrefix::text);
  int candidate = int(after - m_prefixes.begin()) - 1;
  while (candidate >= 0 && !BeginsWith(address, m_prefixes[candidate].text)) candidate = m_prefixes[candidate].shorter;
  return candidate < 0 ? -1 : m_prefixes[candidate].first;
}

void TPopupPatterns::CollectCandidates(QStringView address, std::vector<int> &candidates) const {
  candidates = m_always;
  std::vector<TKey> keys;
  for (int length = 1; length <= LongestKey; ++length) {
    const TKeyed &keyed = m_byKey[length];
    if (keyed.patterns.isEmpty()) continue;
    keys.clear();
    std::optional<TKey> previous;
    VisitKeys(address, length, [&](TKey key) {
      // Runs of one character are what makes addresses long.
      if (previous == key) return;
      previous = key;
      if (keyed.MayHold(key)) keys.push_back(key);
    });
    std::ranges::sort(keys);
    const auto repeated = std::ranges::unique(keys);
    keys.erase(repeated.begin(), repeated.end());
    for (const TKey key : keys) {
      const auto found = keyed.patterns.constFind(key);
      if (found != keyed.patterns.constEnd()) candidates.insert(candidates.end(), found->begin(), found->end());
    }
  }
  std::ranges::sort(candidates);
}

int TPopupPatterns::FirstMatch(const QString &address) const {
  const int prefix = FirstPrefix(address);
  std::vector<int> candidates;
  CollectCandidates(address, candidates);
  for (const int position : candidates) {
    if (prefix >= 0 && position > prefix) break;
    if (MatchWildcard(address, m_complete[position])) return position;
  }
  return prefix;
}
