#pragma once

#include <span>

#include "config/language.h"
#include "config/settings_table.h"

// Every command of the program. The table says what each is called, which text, icon, keys and hint it has, which flag
// it switches and where it stands in the menus; the module that owns a command connects it.
enum class TCommand {
  NewBlank,
  NewHome,
  NewCurrent,
  NewClipboard,
  OpenFile,
  SaveAs,
  PageSetup,
  Print,
  PrintNow,
  PrintPreview,
  MailNewMessage,
  MailLink,
  MailPage,
  ReadMail,
  ReadNews,
  Properties,
  CloseTab,
  CloseAll,
  CloseAllKeepCurrent,
  CloseAllShowList,
  ReopenTab,
  Exit,
  Undo,
  Redo,
  Cut,
  Copy,
  Paste,
  SelectAll,
  Find,
  FindNext,
  FindPrevious,
  EditAddress,
  ViewToolbar,
  ViewAddressBar,
  ViewLinksBar,
  ViewStatusBar,
  ViewHalvexBar,
  SideBarFavorites,
  SideBarHistory,
  SideBarSearch,
  SideBarGroups,
  ViewMenuBar,
  CustomizeViewAddressBar,
  CustomizeViewToolbar,
  CustomizeViewMenuBar,
  CustomizeViewLinksBar,
  CustomizeToolbar,
  CustomizeOrganizeLinks,
  CustomizeColor,
  Back,
  Forward,
  Home,
  GoSearch,
  Stop,
  Refresh,
  RefreshPlain,
  RefreshCompletely,
  StopAll,
  RefreshAll,
  AutoRefreshNone,
  AutoRefresh15,
  AutoRefresh30,
  AutoRefresh60,
  AutoRefresh120,
  AutoRefresh300,
  FontLargest,
  FontLarge,
  FontMedium,
  FontSmaller,
  FontSmallest,
  ZoomIn,
  ZoomOut,
  ZoomReset,
  ViewSource,
  FullScreen,
  NextTab,
  PreviousTab,
  FirstTab,
  SecondTab,
  ThirdTab,
  FourthTab,
  FifthTab,
  SixthTab,
  SeventhTab,
  EighthTab,
  LastTab,
  FocusStrip,
  FocusMenuBar,
  TabsBelow,
  TabsAbove,
  TabsOneRow,
  TabsSeveralRows,
  OpenNewAtEnd,
  OpenNewInForeground,
  CloseTabsFirst,
  TabLocked,
  TabName,
  TabSpared,
  TabKeptAwake,
  TabHome,
  TabStop,
  TabRefresh,
  TabAddToFavorites,
  TabAddToGroup,
  TabBlockPopups,
  TabCloseAll,
  TabCloseAllKeepCurrent,
  TabCloseAllShowList,
  TabClose,
  AddFavorite,
  ShowFavorites,
  OrganizeFavorites,
  OpenAllFavorites,
  ImportFavorites,
  ExportFavorites,
  AddToGroup,
  SaveAsGroup,
  OrganizeGroups,
  Downloads,
  UsePopupBlocker,
  LoadImages,
  LoadVideos,
  LoadSounds,
  LoadAnimations,
  FavoritesInNewTab,
  LinksInNewTab,
  FavoritesInColumns,
  OfferOpenAll,
  ShowPageIcons,
  HistoryInNewTab,
  SearchInNewTab,
  SideBarAutoExpand,
  AnnotationsEnabled,
  AnnotationsShowLinks,
  OrganizeSearchEngines,
  OrganizeQuickSearch,
  ClearAddresses,
  SetHomePage,
  MakeDefaultBrowser,
  Options,
  StartHome,
  StartBlank,
  StartLast,
  StartGroup,
  SecurityCurrent,
  SecurityAddTrusted,
  SecurityAddIntra,
  SecurityAddRestricted,
  SecurityRemove,
  SecurityActiveXAllow,
  SecurityActiveXQuery,
  SecurityActiveXDisallow,
  SecurityScriptingAllow,
  SecurityScriptingQuery,
  SecurityScriptingDisallow,
  SecurityCookiesAllow,
  SecurityCookiesQuery,
  SecurityCookiesDisallow,
  SecuritySessionAllow,
  SecuritySessionQuery,
  SecuritySessionDisallow,
  SecuritySettings,
  TrayRestore,
  TrayExit,
  Manual,
  About,
  Go,
  TabListButton,
  Count
};

// The menus of the menu bar, their sub-menus, and the pop-up menus of a tab, of the bars and
// of the icon in the notification area.
enum class TMenu {
  File,
  NewTab,
  Transfer,
  Send,
  EditWith,
  OpenWith,
  CloseAll,
  Edit,
  View,
  SideBar,
  FontSize,
  AutoRefresh,
  Languages,
  Tabs,
  TabList,
  ThisTab,
  TabPosition,
  Favorites,
  Groups,
  Tools,
  Mail,
  SearchEngines,
  Content,
  FavoritesOptions,
  Startup,
  Security,
  SecurityActiveX,
  SecurityScripting,
  SecurityCookies,
  SecuritySession,
  Help,
  Tab,
  Customize,
  Annotations,
  Tray,
  Count
};

// Commands of which one at a time is checked.
enum class TChoice {
  None,
  AutoRefresh,
  FontSize,
  TabSide,
  TabRows,
  Startup,
  SecurityActiveX,
  SecurityScripting,
  SecurityCookies,
  SecuritySession
};

// What only some commands have.
struct TCommandTraits {
  TTextKey hint{};  // "short|long"; no section: none
  bool checkable = false;
  TChoice choice = TChoice::None;
  const TFlagSetting *setting = nullptr;  // the flag that a checkable command shows and switches, at once
  TMenu menu = TMenu::Count;              // the menu that a button of the tool bar opens; Count for none
};

struct TCommandRow {
  TCommand command;
  const char *name;  // object name
  const char *text;  // marker; empty for what only keys reach
  const char *icon;  // file name in the icons' folder without its ending; empty for none
  const char *keys;  // portable key sequences, separated by "; "
  TCommandTraits traits{};
};

struct TMenuRow {
  TMenu menu;
  TMenu parent;       // the menu itself: it stands in the menu bar; Count: it stands by itself
  const char *name;   // object name
  const char *title;  // marker
};

// A menu's contents from top to bottom. Where modules fill in more, what stands in the table stays in front.
struct TMenuEntry {
  enum class TKind { Command, Menu, Separator, ContentsOf };

  TMenu menu;
  TKind kind;
  int index = 0;  // of the command or the menu
};

// The section of the language file that the markers belong to; "~~" marks texts that all sections share.
inline constexpr const char *CommandSection = "MAIN";

// In the order of the enumerations.
[[nodiscard]] std::span<const TCommandRow> CommandRows();
[[nodiscard]] std::span<const TMenuRow> MenuRows();
[[nodiscard]] std::span<const TMenuEntry> MenuEntries();
