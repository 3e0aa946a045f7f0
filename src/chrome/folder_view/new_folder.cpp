#include "chrome/folder_view/new_folder.h"

#include <optional>
#include <QPointer>

#include "chrome/folder_view/folder_editor.h"
#include "chrome/folder_view/folder_view.h"
#include "config/language.h"
#include "ui/input_box.h"
#include "ui/message_box.h"

void MakeNewFolder(QWidget *window, const TLanguage &language, TFolderView &folders, TFolderEditor &editor) {
  const QPointer<QWidget> self(window);
  const std::optional<QString> name = AskText(window, language,
                                              {.caption = language.Text("FAVORITES", "NewFolderCaption"),
                                               .prompt = language.Text("FAVORITES", "NewFolderPrompt"),
                                               .text = language.Text("HalvexGroups", "NewFolder")});
  if (!self || !name || name->trimmed().isEmpty()) return;
  const auto make = [folder = folders.Folder(), name = *name] { return FavoritesEdit::AddFolder(folder, name); };
  editor.Do(make, nullptr, [self, &language, &folders](const TFavoritesChange &change) {
    // Not within the change itself, of which others are still to hear.
    const auto tell = [self, &language, &folders, change] {
      if (change.IsGood()) return folders.Reveal(change.paths.value(0));
      ShowWarning(self, language, language.Text("HalvexGroups", "CannotMakeFolder").arg(change.error));
    };
    if (self) QMetaObject::invokeMethod(self, tell, Qt::QueuedConnection);
  });
}
