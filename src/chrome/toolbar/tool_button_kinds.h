#pragma once

#include <array>

#include "actions/command_table.h"
#include "chrome/toolbar/toolbar_definition.h"

// How a button of the tool bar behaves. A drop-down runs its command, and has an arrow beside it that opens its menu;
// of one that is a menu only the whole button opens it.
enum class TToolButtonStyle { Button, Check, DropDown, Menu };

struct TToolButtonKind {
  const char *name;  // object name
  TTextKey hint;     // "short|long"; the short one names the button in menus and lists
  TToolButtonStyle style;
  const char *icon;                    // file name in the icons' folder without its ending
  TCommand command = TCommand::Count;  // Count: what it runs is not here
  TMenu menu = TMenu::Count;           // what a drop-down opens
};

// Every kind of button, by the index that the file "tbmain.dat" has.
// clang-format off
inline constexpr auto ToolButtonKinds = std::to_array<TToolButtonKind>({
    {"tbNew", {"MAIN", "MenuFileNewHint"}, TToolButtonStyle::DropDown, "new_tab", TCommand::NewBlank, TMenu::NewTab},
    {"tbOpen", {"MAIN", "MenuFileOpenHint"}, TToolButtonStyle::Button, "open", TCommand::OpenFile},
    {"tbBack", {"MAIN", "MenuGoBackHint"}, TToolButtonStyle::Button, "back", TCommand::Back},
    {"tbForward", {"MAIN", "MenuGoForwardHint"}, TToolButtonStyle::Button, "forward", TCommand::Forward},
    {"tbStop", {"MAIN", "MenuViewStopHint"}, TToolButtonStyle::Button, "stop", TCommand::Stop},
    {"tbRefresh", {"MAIN", "MenuViewRefreshHint"}, TToolButtonStyle::Button, "refresh", TCommand::Refresh},
    {"tbHome", {"MAIN", "MenuGoHomeHint"}, TToolButtonStyle::Button, "home", TCommand::Home},
    {"tbSearch", {"MAIN", "MenuGoSearchHint"}, TToolButtonStyle::DropDown, "search", TCommand::GoSearch,
     TMenu::SearchEngines},
    {"tbAddFavorite", {"MAIN", "MenuFavoritesAddHint"}, TToolButtonStyle::Button, "add_favorite",
     TCommand::AddFavorite},
    {"tbFavorites", {"FAVORITES_POPUP", "ShowFavoritesHint"}, TToolButtonStyle::Button, "favorites",
     TCommand::ShowFavorites},
    {"tbHalvexBar", {"MAIN", "MenuViewHalvexBarHint"}, TToolButtonStyle::Check, "side_bar",
     TCommand::ViewHalvexBar},
    {"tbMail", {"MAIN", "MailReadHint"}, TToolButtonStyle::DropDown, "mail", TCommand::ReadMail, TMenu::Mail},
    {"tbFontSize", {"MAIN", "FontSizeHint"}, TToolButtonStyle::DropDown, "text_size", TCommand::FontMedium,
     TMenu::FontSize},
    {"tbPrint", {"MAIN", "MenuFilePrintHint"}, TToolButtonStyle::Button, "print", TCommand::Print},
    {"tbViewSource", {"MAIN", "MenuViewSourceHint"}, TToolButtonStyle::DropDown, "source", TCommand::ViewSource,
     TMenu::EditWith},
    {"tbLoadImages", {"MAIN", "MenuOptionsLoadImagesHint"}, TToolButtonStyle::Check, "pictures", TCommand::LoadImages},
    {"tbFullScreen", {"MAIN", "MenuViewFullscreenHint"}, TToolButtonStyle::Check, "full_screen", TCommand::FullScreen},
    {"tbFind", {"MAIN", "MenuEditFindHint"}, TToolButtonStyle::Button, "find", TCommand::Find},
    {"tbSaveAs", {"MAIN", "MenuFileSaveAsHint"}, TToolButtonStyle::Button, "save", TCommand::SaveAs},
    {"tbStopAll", {"MAIN", "MenuViewStopAllHint"}, TToolButtonStyle::Button, "stop_all", TCommand::StopAll},
    {"tbRefreshAll", {"MAIN", "MenuViewRefreshAllHint"}, TToolButtonStyle::Button, "refresh_all",
     TCommand::RefreshAll},
    {"tbSecurity", {"MAIN", "SecurityHint"}, TToolButtonStyle::Menu, "security", TCommand::Count, TMenu::Security},
});
// clang-format on
static_assert(ToolButtonKinds.size() == ToolbarDefinition::KindCount);

// Null for a separator, and for an index that no kind has.
[[nodiscard]] constexpr const TToolButtonKind *ToolButtonKindOf(int index) {
  return index >= 0 && index < ToolbarDefinition::KindCount ? &ToolButtonKinds[static_cast<size_t>(index)] : nullptr;
}
