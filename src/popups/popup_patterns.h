#pragma once

#include <array>
#include <QHash>
#include <QString>
#include <QStringList>
#include <vector>

// The pop-up list in memory, arranged so that an address is tested without walking through all patterns: those without
// wildcards are looked up by the beginnings of the address, the others by a few characters that the address must hold.
// The answers are those of trying one pattern after the other with MatchWildcard.
class TPopupPatterns final {
 public:
  // `patterns` in the order in which they count. Empty ones never match.
  void Set(const QStringList &patterns);
  [[nodiscard]] const QStringList &Patterns() const { return m_patterns; }
  // The position of the first pattern that the beginning of the address fits (a pattern that does not end in "*" counts
  // as if it did); -1 for none.
  [[nodiscard]] int FirstMatch(const QString &address) const;

 private:
  static constexpr int LongestKey = 4;  // characters; as many as one key holds
  using TKey = quint64;

  // A pattern without wildcards but for the closing star.
  struct TPrefix {
    QString text;
    int position;
    int shorter = -1;  // the longest other prefix that this one begins with
    int first = 0;     // the lowest position among this one and all that it begins with
  };

  // The patterns that need the characters of a key to be in the address. Nearly all keys of an address belong to none,
  // which the filter, a bit for each key that is there and a few others, tells for a fraction of a look into the table.
  struct TKeyed {
    QHash<TKey, std::vector<int>> patterns;
    std::vector<quint64> filter;  // 2 to the power of `filterBits` bits
    int filterBits = 0;

    void MakeFilter();
    [[nodiscard]] bool MayHold(TKey key) const;
    [[nodiscard]] size_t BitOf(TKey key) const;
  };

  [[nodiscard]] static TKey KeyOf(QStringView characters);
  template <typename TVisit>
  static void VisitKeys(QStringView text, int length, TVisit visit);
  void ArrangePrefixes();
  void ArrangeWildcards(const std::vector<int> &positions);
  [[nodiscard]] int FirstPrefix(QStringView address) const;
  void CollectCandidates(QStringView address, std::vector<int> &candidates) const;

  QStringList m_patterns;
  QStringList m_complete;                      // the same with their closing stars
  std::vector<TPrefix> m_prefixes;             // in the order of their characters
  std::array<TKeyed, LongestKey + 1> m_byKey;  // by the length of the key
  std::vector<int> m_always;                   // patterns without any character of their own
};
