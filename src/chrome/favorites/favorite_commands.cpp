#include "chrome/favorites/favorite_commands.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QPointer>

#include "chrome/favorites/favorite_dialog.h"
#include "config/language.h"
#include "favorites/favorites_edit.h"
#include "ui/confirm_dialog.h"
#include "ui/dialog_gate.h"
#include "ui/input_box.h"
#include "ui/message_box.h"

TFavoriteCommands::TFavoriteCommands(QWidget *window, TFavoriteLauncher &launcher, const TLanguage &language)
    : m_window(window), m_launcher(launcher), m_language(language) {}

void TFavoriteCommands::Fill(QMenu &menu, const TFavorite &favorite, const TFlagSetting &newTab) {
  const auto add = [&menu, this](const QString &text, auto command) {
    connect(menu.addAction(text), &QAction::triggered, this, command);
  };
  if (favorite.isFolder) {
    add(m_language.Global("OpenAllFavorites"), [=, this] { m_launcher.OpenAll(favorite.path); });
  } else {
    add(m_language.Global("Open"), [=, this, &newTab] { m_launcher.Open(favorite, TOpenPlace::BySetting, newTab); });
    add(m_language.Text("FAVORITES", "OpenInNewTab"), [=, this] { m_launcher.Open(favorite, TOpenPlace::NewTab); });
    add(m_language.Text("FAVORITES", "OpenInBackground"),
        [=, this] { m_launcher.Open(favorite, TOpenPlace::BackgroundTab); });
    menu.addSeparator();
    add(m_language.Text("FAVORITES", "CopyAddress"), [=, this] { CopyAddress(favorite); });
  }
  menu.addSeparator();
  add(m_language.Text("FAVORITES", "Rename"), [=, this] { Rename(favorite); });
  add(m_language.Text("FAVORITES", "Delete"), [=, this] { Delete(favorite); });
  menu.addSeparator();
  add(m_language.Text("FAVORITES", "Properties"), [=, this] { ShowProperties(favorite); });
}

void TFavoriteCommands::ShowMenu(const TFavorite &favorite, const QPoint &globalPosition, const TFlagSetting &newTab) {
  auto *menu = new QMenu(m_window);
  menu->setObjectName(QStringLiteral("pmFavorite"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  Fill(*menu, favorite, newTab);
  // The menu that the favorite stands in has no business beside a dialog.
  connect(menu, &QMenu::triggered, this, [] {
    while (QWidget *open = QApplication::activePopupWidget()) {
      if (!open->close()) break;
    }
  });
  menu->popup(globalPosition);
}

void TFavoriteCommands::CopyAddress(const TFavorite &favorite) const {
  QGuiApplication::clipboard()->setText(FavoritesFolder::Target(favorite));
}

void TFavoriteCommands::Rename(const TFavorite &favorite) {
  const QPointer<TFavoriteCommands> self(this);
  const std::optional<QString> name = AskText(m_window, m_language,
                                              {.caption = m_language.Text("FAVORITES", "RenameCaption"),
                                               .prompt = m_language.Text("FAVORITES", "Name"),
                                               .text = favorite.caption});
  // The blanks at the edges of a name from elsewhere are no change.
  if (!self || !name || name->trimmed() == favorite.caption.trimmed()) return;
  Do([path = favorite.path, caption = name->trimmed()] { return FavoritesEdit::Rename(path, caption); },
     CannotChange());
}

void TFavoriteCommands::Delete(const TFavorite &favorite) {
  const QPointer<TFavoriteCommands> self(this);
  const TAnswer answer =
      ShowConfirm(m_window, {.caption = TLanguage::ShortHint(m_language.Text("FAVORITES_POPUP", "ShowFavoritesHint")),
                             .firstLine = m_language.Text("HalvexGroups", "DeletePrompt").arg(favorite.caption),
                             .ok = m_language.Text("HalvexGroups", "MoveToTrash"),
                             .cancel = m_language.Global("Cancel")});
  if (!self || !answer.accepted) return;
  const QString failure = m_language.Text("HalvexGroups", "CannotDelete");
  Do([path = favorite.path] { return FavoritesEdit::Trash({path}); },
     [failure, caption = favorite.caption](const QString &reason) { return failure.arg(caption, reason); });
}

void TFavoriteCommands::ShowProperties(const TFavorite &favorite) {
  if (DialogGate::IsClosed()) return;
  const QPointer<TFavoriteCommands> self(this);
  const QPointer<TfrmFavorite> dialog(new TfrmFavorite(m_language, favorite, m_window));
  const bool accepted = dialog->exec() == QDialog::Accepted;
  if (!dialog || !self) return;
  const QString name = dialog->Name();
  const QString address = dialog->Address();
  const bool isOtherName = dialog->IsNameChanged();
  const bool isOtherAddress = dialog->IsAddressChanged();
  delete dialog;
  if (!accepted) return;
  const auto work = [=, path = favorite.path] {
    TFavoritesChange change;
    if (isOtherAddress) change = FavoritesEdit::SetAddress(path, address);
    if (change.IsGood() && isOtherName) {
      const TFavoritesChange renamed = FavoritesEdit::Rename(path, name);
      change = {change.steps + renamed.steps, renamed.paths, renamed.error};
    }
    return change;
  };
  Do(work, CannotChange());
}

TFavoriteCommands::TFailure TFavoriteCommands::CannotChange() const {
  return [text = m_language.Text("FAVORITES", "CannotChange")](const QString &reason) { return text.arg(reason); };
}

void TFavoriteCommands::Do(const TFileWork::TWork &change, const TFailure &failure) {
  m_work.Do(change, [this, failure](const TFavoritesChange &done) {
    const QPointer<TFavoriteCommands> self(this);
    Q_EMIT Done(done);
    if (!done.IsGood()) ShowWarning(m_window, m_language, failure(done.error));
    if (self) Q_EMIT Changed();
  });
}
