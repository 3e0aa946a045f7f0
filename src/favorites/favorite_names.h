#pragma once

#include <QHash>
#include <QSet>
#include <QString>

// The names of new favorites in one folder: fit for every file system, and each only once, also where upper and lower
// case are the same.
class TFavoriteNames final {
 public:
  // A name without ending for that caption, or, where nothing is left of it, for the address. Never empty, at most 200
  // bytes.
  [[nodiscard]] static QString For(const QString &caption, const QString &address);

  void Take(const QString &name) { m_taken.insert(Folded(name)); }
  // The first of "stem.ending", "stem (2).ending", "stem (3).ending", ... that nobody has; takes it.
  [[nodiscard]] QString Free(const QString &stem, const QString &ending);

 private:
  [[nodiscard]] static QString Folded(const QString &name);

  QSet<QString> m_taken;
  QHash<QString, int> m_numbers;  // the last that was given, so that thousands of one name cost no more than others
};
