#include "groups/group_folder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QWidget>

#include "config/language.h"
#include "favorites/favorites_edit.h"
#include "groups/halvex_group.h"
#include "platform/program_folders.h"
#include "store/private_folder.h"
#include "ui/confirm_dialog.h"
#include "ui/input_box.h"
#include "ui/message_box.h"

TGroupFolder::TGroupFolder(QWidget *window, const TLanguage &language, QObject *parent)
    : QObject(parent), m_window(window), m_language(language) {
  connect(&m_watcher, &TFolderWatcher::Changed, this, &TGroupFolder::Changed);
}

QString TGroupFolder::Path() {
  const QString path = ProgramFolders::UserData() + QStringLiteral("/HalvexGroups");
  MakePrivateFolder(path);
  return path;
}

void TGroupFolder::Watch() {
  if (m_watcher.Folder().isEmpty()) m_watcher.Watch(Path());
}

QString TGroupFolder::Rename(const QString &path) {
  const QFileInfo file(path);
  if (!file.isFile()) return {};
  const QString extension = QString::fromLatin1(THalvexGroup::Extension);
  QString name = file.fileName();
  // Only this spelling is taken off, which is meant: "Work.HGP" is offered as it stands.
  if (name.endsWith(extension)) name.chop(extension.size());

  const QString text = m_language.Global("RenameHalvexGroup");
  // The window may go meanwhile, and this object with it.
  const auto answer = AskText(m_window, m_language, {.caption = text, .prompt = text, .text = name});
  if (!answer || answer->isEmpty()) return {};
  return Move(path, file.path() + QLatin1Char('/') + *answer + extension);
}

QString TGroupFolder::RenameFolder(const QString &path, const QString &name) {
  const QFileInfo folder(QDir::cleanPath(path));
  if (!folder.isDir() || name.isEmpty() || folder.filePath() == Path()) return {};
  return Move(folder.filePath(), folder.path() + QLatin1Char('/') + name);
}

QString TGroupFolder::Move(const QString &from, const QString &to) {
  const bool isMoved = !QFileInfo::exists(to) && QFile::rename(from, to);
  Q_EMIT Changed();
  return isMoved ? to : QString();
}

QString TGroupFolder::RenameFolder(const QString &path) {
  const auto answer = AskText(m_window, m_language,
                              {.caption = m_language.Text("FAVORITES", "RenameCaption"),
                               .prompt = m_language.Text("FAVORITES", "Name"),
                               .text = QFileInfo(QDir::cleanPath(path)).fileName()});
  // The window may go meanwhile, and this object with it.
  return answer ? RenameFolder(path, *answer) : QString();
}

void TGroupFolder::BringBack(const TFavoritesChange &change) {
  const TFavoritesChange back = FavoritesEdit::Undo(change);
  Q_EMIT Changed();
  if (back.IsGood()) return;
  ShowWarning(m_window, m_language, m_language.Text("HalvexGroups", "CannotChange").arg(back.error),
              m_language.Global("HalvexGroup"));
}

bool TGroupFolder::Delete(const QString &path) {
  const QFileInfo info(QDir::cleanPath(path));
  const bool isLink = info.isSymLink();
  if ((!info.exists() && !isLink) || info.filePath() == Path()) return false;
  const QPointer<TGroupFolder> self(this);
  const TAnswer answer =
      ShowConfirm(m_window, {.caption = m_language.Global("HalvexGroup"),
                             .firstLine = m_language.Text("HalvexGroups", "DeletePrompt").arg(info.fileName()),
                             .secondText = m_language.Text("CONFIRM", "Proceed"),
                             .ok = m_language.Text("HalvexGroups", "MoveToTrash"),
                             .cancel = m_language.Global("Cancel"),
                             .isRisky = true});
  if (!answer.accepted || !self) return false;
  const TFavoritesChange change = FavoritesEdit::Trash({info.filePath()});
  if (change.IsGood()) {
    Q_EMIT Trashed(info.fileName(), [self, change] {
      if (self) self->BringBack(change);
    });
  } else {
    const QString text = m_language.Text("HalvexGroups", "CannotDelete").arg(info.fileName(), change.error);
    ShowWarning(m_window, m_language, text, m_language.Global("HalvexGroup"));
  }
  Q_EMIT Changed();
  return change.IsGood();
}
