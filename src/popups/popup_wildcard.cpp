#include "popups/popup_wildcard.h"

#include <algorithm>

namespace {

bool FitsAt(QStringView text, qsizetype position, QStringView segment) {
  if (position + segment.size() > text.size()) return false;
  for (qsizetype i = 0; i < segment.size(); ++i) {
    if (segment[i] != u'?' && segment[i] != text[position + i]) return false;
  }
  return true;
}

// The first place from `from` on where the segment fits; -1 for none.
qsizetype Find(QStringView text, qsizetype from, QStringView segment) {
  if (!segment.contains(u'?')) return text.indexOf(segment, from);
  // Looking for one character is many times faster than comparing everywhere.
  const auto sure = std::find_if(segment.begin(), segment.end(), [](QChar character) { return character != u'?'; });
  const qsizetype offset = sure - segment.begin();
  const qsizetype last = text.size() - segment.size();
  for (qsizetype position = from; position <= last; ++position) {
    if (sure != segment.end()) position = text.indexOf(*sure, position + offset) - offset;
    if (position < 0 || position > last) break;
    if (FitsAt(text, position, segment)) return position;
  }
  return -1;
}

}  // namespace

// Between stars a segment may always take its first place: whatever fits behind a later one fits behind it too. So no
// star is ever tried again.
bool MatchWildcard(QStringView text, QStringView pattern) {
  qsizetype end = pattern.size();
  while (end > 0 && pattern[end - 1] == u'*') --end;
  const qsizetype closingStars = pattern.size() - end;
  const QStringView body = pattern.first(end);

  const qsizetype firstStar = body.indexOf(u'*');
  const QStringView head = firstStar < 0 ? body : body.first(firstStar);
  if (!FitsAt(text, 0, head)) return false;
  qsizetype taken = head.size();

  for (qsizetype star = firstStar; star >= 0;) {
    const qsizetype next = body.indexOf(u'*', star + 1);
    const QStringView segment = next < 0 ? body.sliced(star + 1) : body.sliced(star + 1, next - star - 1);
    star = next;
    if (next < 0 && closingStars == 0) {
      // The last segment stands at the end of the text.
      const qsizetype place = text.size() - segment.size();
      return place >= taken && FitsAt(text, place, segment);
    }
    if (segment.isEmpty()) continue;
    const qsizetype place = Find(text, taken, segment);
    if (place < 0) return false;
    taken = place + segment.size();
  }
  if (closingStars == 0) return taken == text.size();
  return closingStars == 1 || taken < text.size();
}
