#include "favorites/favorite_names.h"

#include <QUrl>

#include "platform/native_path.h"
#include "platform/safe_name.h"

namespace {

constexpr qsizetype LongestOnDisk = 255;    // bytes
constexpr qsizetype LongestName = 200;      // bytes, so that numbers and endings can be appended
constexpr qsizetype LongestCaption = 1000;  // characters that are looked at

QString Safe(const QString &text) {
  QString name = text.left(LongestCaption).simplified().normalized(QString::NormalizationForm_C);
  name.replace(u'/', u'_').replace(u'\\', u'_');
  name = SafeName::Shortened(SafeName::Cleaned(name), LongestName);
  // What stood in the middle may stand at the end now.
  while (name.endsWith(u'.') || name.endsWith(u' ')) name.chop(1);
  return name;
}

}  // namespace

QString TFavoriteNames::For(const QString &caption, const QString &address) {
  QString name = Safe(caption);
  if (name.isEmpty()) name = Safe(QUrl(address.left(LongestCaption)).host());
  if (name.isEmpty()) name = Safe(address);
  return name.isEmpty() ? QStringLiteral("_") : name;
}

QString TFavoriteNames::Free(const QString &stem, const QString &ending) {
  QString name = stem + ending;
  const QString first = Folded(name);
  if (m_taken.contains(first)) {
    int &number = m_numbers[first];
    if (number == 0) number = 1;
    do {
      const QString end = QStringLiteral(" (%1)").arg(++number) + ending;
      // A name from elsewhere may be as long as names can be.
      name = SafeName::Shortened(stem, LongestOnDisk - NativePath::ToBytes(end).size()) + end;
    } while (m_taken.contains(Folded(name)));
  }
  Take(name);
  return name;
}

QString TFavoriteNames::Folded(const QString &name) {
  return name.toCaseFolded().normalized(QString::NormalizationForm_C);
}
