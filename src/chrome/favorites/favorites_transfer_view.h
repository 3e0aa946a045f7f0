#pragma once

#include <functional>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>

#include "favorites/bookmark_sources.h"
#include "favorites/favorites_job.h"

class QProgressDialog;
class QWidget;
class TLanguage;

// Brings bookmarks of other browsers and of bookmark files into the favorites, and favorites into a bookmark file: asks
// what and where, shows how far it is, and tells what came of it.
class TFavoritesTransferView final : public QObject {
  Q_OBJECT

 public:
  // `folder` says where the favorites are. `window` owns the dialogs; all must outlive this object.
  TFavoritesTransferView(QWidget *window, const TLanguage &language, std::function<QString()> folder);

  // Offers the profiles of this user's browsers, and any file.
  void Import();
  // Asks for the file.
  void Export();

 Q_SIGNALS:
  // Favorites have come.
  void Changed();

 private:
  [[nodiscard]] QString LineOf(const TBookmarkSource &source) const;
  [[nodiscard]] QString AskFile(bool isSaved);
  void Run(TFavoritesJob::TWork work, const QString &caption, const QString &doneText);
  void Tell(const TTransferReport &report, const QString &caption, const QString &doneText);

  QWidget *m_window;
  const TLanguage &m_language;
  std::function<QString()> m_folder;
  QPointer<TFavoritesJob> m_job;
  QPointer<QProgressDialog> m_progress;
};
