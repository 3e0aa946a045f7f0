#pragma once

#include <optional>
#include <QByteArray>
#include <QList>
#include <QString>

// A page that a word is explained by.
struct TAnnotationLink {
  QString title;  // may be empty
  QString address;

  friend bool operator==(const TAnnotationLink &, const TAnnotationLink &) = default;
};

// A word, or several with single blanks between them, that a service explains.
struct TAnnotatedWord {
  QString word;
  QString title;  // what it is; may be empty when there are links
  QList<TAnnotationLink> links;

  friend bool operator==(const TAnnotatedWord &, const TAnnotatedWord &) = default;
};

using TAnnotatedWords = QList<TAnnotatedWord>;

// What an annotation service answers; docs/annotations.md tells the format. The service is somebody else's, so that
// nothing in its answer is believed: all texts come out as one line of plain text, within these limits.
namespace AnnotationAnswer {

inline constexpr qsizetype Longest = 64 * 1024;  // bytes of an answer
inline constexpr qsizetype MostWords = 200;
inline constexpr qsizetype MostLinks = 10;         // of a word
inline constexpr qsizetype LongestWord = 64;       // characters; longer ones are left out
inline constexpr qsizetype LongestTitle = 200;     // characters; the rest is cut off
inline constexpr qsizetype LongestAddress = 2048;  // characters; longer ones are left out

// The words in their order. Left out is what is no word, comes a second time (in whatever case), has neither title nor
// link, or is beyond a limit, and of the links what is no http or https address or holds a user's name. Nothing where
// the answer is longer than Longest, no JSON, or no list.
[[nodiscard]] std::optional<TAnnotatedWords> Read(const QByteArray &answer);

}  // namespace AnnotationAnswer
