#include "actions/command_table.h"

#include <iterator>

namespace {

using enum TCommand;

constexpr TCommandTraits Hint(const char *key) {
  return {.hint = {CommandSection, key}};
}
constexpr TCommandTraits Check(const char *hint = nullptr) {
  return {.hint = {hint != nullptr ? CommandSection : nullptr, hint}, .checkable = true};
}
constexpr TCommandTraits Radio(TChoice choice) {
  return {.checkable = true, .choice = choice};
}
constexpr TCommandTraits Flag(const TFlagSetting &setting, const TCommandTraits &hint = {}) {
  return {.hint = hint.hint, .checkable = true, .setting = &setting};
}
constexpr TCommandTraits Opens(TMenu menu) {
  return {.menu = menu};
}

constexpr TCommandRow Rows[] = {
    {NewBlank, "actNewBlank", "__NewTab", "new_tab", "Ctrl+T", Hint("MenuFileNewHint")},
    {NewHome, "actNewHome", "__NewHome", "home", ""},
    {NewCurrent, "actNewCurrent", "__NewCurrent", "", "Ctrl+Shift+K"},
    {NewClipboard, "pmNewClipboard", "__NewClipboard", "paste", ""},
    {OpenFile, "actOpen", "__Open", "open", "Ctrl+O", Hint("MenuFileOpenHint")},
    {SaveAs, "actSaveAs", "__SaveAs", "save", "Ctrl+S", Hint("MenuFileSaveAsHint")},
    {PageSetup, "actPageSetup", "__PageSetup", "", ""},
    {Print, "actPrint", "__Print", "print", "Ctrl+P", Hint("MenuFilePrintHint")},
    {PrintNow, "actPrintNow", "__PrintNow", "", "Ctrl+Shift+P"},
    {PrintPreview, "actPrintPreview", "__PrintPreview", "print_preview", ""},
    {MailNewMessage, "pmMailNewsNewMessage", "__MailNewMessage", "mail", ""},
    {MailLink, "pmMailNewsSendALink", "__MailLink", "", ""},
    {MailPage, "pmMailSendFile", "__MailPage", "", ""},
    {ReadMail, "actReadMail", "__MailRead", "mail", "", Hint("MailReadHint")},
    {ReadNews, "pmReadNews", "__NewsRead", "", ""},
    {Properties, "actProperties", "__Properties", "properties", "Alt+Return"},
    {CloseTab, "actClose", "__CloseTab", "close_tab", "Ctrl+W; Ctrl+F4"},
    {CloseAll, "actCloseAll", "__CloseAllDefault", "", "Ctrl+Shift+W"},
    {CloseAllKeepCurrent, "pmCloseAllKeepCurrent", "__CloseAllKeepCurrent", "", ""},
    {CloseAllShowList, "pmCloseAllShowList", "__CloseAllShowList", "", ""},
    {ReopenTab, "actReopenTab", "__ReopenTab", "", "Ctrl+Shift+T"},
    {Exit, "actExit", "__Exit", "", "Ctrl+Q"},
    {Undo, "actUndo", "__Undo", "", "Ctrl+Z"},
    {Redo, "actRedo", "__Redo", "", "Ctrl+Shift+Z"},
    {Cut, "actCut", "__Cut", "cut", "Ctrl+X"},
    {Copy, "actCopy", "__Copy", "copy", "Ctrl+C"},
    {Paste, "actPaste", "__Paste", "paste", "Ctrl+V"},
    {SelectAll, "actSelectAll", "__SelectAll", "", "Ctrl+A"},
    {Find, "actFind", "__Find", "find", "Ctrl+F", Hint("MenuEditFindHint")},
    {FindNext, "actFindNext", "__FindNext", "", "F3; Ctrl+G"},
    {FindPrevious, "actFindPrevious", "__FindPrevious", "", "Shift+F3; Ctrl+Shift+G"},
    {EditAddress, "actEditAddress", "__EditAddress", "", "Ctrl+L; Alt+D"},
    {ViewToolbar, "mnuViewToolbar", "__ViewToolbar", "", "", Flag(Setting::ViewToolbar)},
    {ViewAddressBar, "mnuViewAddressBar", "__ViewAddressBar", "", "", Flag(Setting::ViewAddressBar)},
    {ViewLinksBar, "mnuViewLinksBar", "__ViewLinksBar", "", "", Check()},
    {ViewStatusBar, "mnuViewStatusBar", "__ViewStatusBar", "", "", Check()},
    {ViewHalvexBar, "pmViewHalvexBar", "__ViewHalvexBar", "", "Ctrl+B", Check("MenuViewHalvexBarHint")},
    {SideBarFavorites, "pmHBFavorites", "__SideBarFavorites", "favorites", "Ctrl+Shift+F"},
    {SideBarHistory, "pmHBHistory", "__SideBarHistory", "history", "Ctrl+Shift+H"},
    {SideBarSearch, "pmHBSearch", "__SideBarSearch", "search", "Ctrl+Shift+S"},
    // Where Ctrl+Shift+G searches backwards.
    {SideBarGroups, "pmHBGroups", "__SideBarGroups", "groups", "Ctrl+Alt+G"},
    {ViewMenuBar, "mnuViewMenuBar", "__ViewMenuBar", "", "Ctrl+M", Check()},
    {CustomizeViewAddressBar, "pmCustomizeViewAddressBar", "__CustomizeViewAddressBar", "", "",
     Flag(Setting::ViewAddressBar, Hint("CustomizeViewAddressBarHint"))},
    {CustomizeViewToolbar, "pmCustomizeViewToolbar", "__CustomizeViewToolbar", "", "",
     Flag(Setting::ViewToolbar, Hint("CustomizeViewToolbarHint"))},
    {CustomizeViewMenuBar, "pmCustomizeViewMenubar", "__CustomizeViewMenubar", "", "",
     Check("CustomizeViewMenubarHint")},
    {CustomizeViewLinksBar, "pmCustomizeLinksBar", "__CustomizeViewLinksBar", "", "",
     Check("CustomizeViewLinksBarHint")},
    {CustomizeToolbar, "pmCustomizeToolbarDialog", "__CustomizeToolbar", "settings", "", Hint("CustomizeToolbarHint")},
    {CustomizeOrganizeLinks, "pmCustomizeOrganizeLinks", "__CustomizeLinks", "", "", Hint("CustomizeLinksHint")},
    {CustomizeColor, "pmCustomizeColor", "__CustomizeColor", "", "", Flag(Setting::ToolbarShowColor)},
    {Back, "tbBack", "__Back", "back", "Alt+Left; Back", Hint("MenuGoBackHint")},
    {Forward, "tbForward", "__Forward", "forward", "Alt+Right; Forward", Hint("MenuGoForwardHint")},
    {Home, "actHome", "__Home", "home", "Alt+Home", Hint("MenuGoHomeHint")},
    {GoSearch, "actGoSearch", "", "search", "Ctrl+E", Hint("MenuGoSearchHint")},
    {Stop, "actStop", "__Stop", "stop", "Esc", Hint("MenuViewStopHint")},
    {Refresh, "actRefresh", "__Refresh", "refresh", "F5", Hint("MenuViewRefreshHint")},
    {RefreshPlain, "actRefreshPlain", "", "", "Ctrl+R"},
    {RefreshCompletely, "actRefreshCompletely", "__RefreshCompletely", "", "Ctrl+F5; Ctrl+Shift+R"},
    {StopAll, "actViewStopAll", "__StopAll", "stop_all", "Shift+Esc", Hint("MenuViewStopAllHint")},
    {RefreshAll, "actRefreshAll", "__RefreshAll", "refresh_all", "Shift+F5", Hint("MenuViewRefreshAllHint")},
    {AutoRefreshNone, "pmARefNo", "__AutoRefreshNone", "", "", Radio(TChoice::AutoRefresh)},
    {AutoRefresh15, "pmARef15", "__AutoRefresh15", "", "", Radio(TChoice::AutoRefresh)},
    {AutoRefresh30, "pmARef30", "__AutoRefresh30", "", "", Radio(TChoice::AutoRefresh)},
    {AutoRefresh60, "pmARef60", "__AutoRefresh60", "", "", Radio(TChoice::AutoRefresh)},
    {AutoRefresh120, "pmARef120", "__AutoRefresh120", "", "", Radio(TChoice::AutoRefresh)},
    {AutoRefresh300, "pmARef300", "__AutoRefresh300", "", "", Radio(TChoice::AutoRefresh)},
    {FontLargest, "mnuFontLargest", "__FontLargest", "", "", Radio(TChoice::FontSize)},
    {FontLarge, "mnuFontLarge", "__FontLarge", "", "", Radio(TChoice::FontSize)},
    {FontMedium, "mnuFontMedium", "__FontMedium", "", "", Radio(TChoice::FontSize)},
    {FontSmaller, "mnuFontSmaller", "__FontSmaller", "", "", Radio(TChoice::FontSize)},
    {FontSmallest, "mnuFontSmallest", "__FontSmallest", "", "", Radio(TChoice::FontSize)},
    {ZoomIn, "actZoomIn", "__ZoomIn", "zoom_in", "Ctrl++; Ctrl+="},
    {ZoomOut, "actZoomOut", "__ZoomOut", "zoom_out", "Ctrl+-"},
    {ZoomReset, "actZoomReset", "__ZoomReset", "", "Ctrl+0"},
    {ViewSource, "actViewSource", "__ViewSource", "source", "Ctrl+U", Hint("MenuViewSourceHint")},
    {FullScreen, "tbFullScreen", "__FullScreen", "full_screen", "F11", Check("MenuViewFullscreenHint")},
    {NextTab, "actNextBrowserTab", "__NextTab", "", "Ctrl+Tab; Ctrl+PgDown"},
    {PreviousTab, "actPreviousBrowserTab", "__PreviousTab", "", "Ctrl+Shift+Tab; Ctrl+PgUp"},
    {FirstTab, "actFirstTab", "", "", "Ctrl+1"},
    {SecondTab, "actSecondTab", "", "", "Ctrl+2"},
    {ThirdTab, "actThirdTab", "", "", "Ctrl+3"},
    {FourthTab, "actFourthTab", "", "", "Ctrl+4"},
    {FifthTab, "actFifthTab", "", "", "Ctrl+5"},
    {SixthTab, "actSixthTab", "", "", "Ctrl+6"},
    {SeventhTab, "actSeventhTab", "", "", "Ctrl+7"},
    {EighthTab, "actEighthTab", "", "", "Ctrl+8"},
    {LastTab, "actLastTab", "", "", "Ctrl+9"},
    {FocusStrip, "actFocusStrip", "__FocusStrip", "", "Ctrl+Shift+L"},
    {FocusMenuBar, "actFocusMenuBar", "", "", "F10"},
    {TabsBelow, "mnuTabsBelow", "__TabsBelow", "", "", Radio(TChoice::TabSide)},
    {TabsAbove, "mnuTabsAbove", "__TabsAbove", "", "", Radio(TChoice::TabSide)},
    {TabsOneRow, "mnuTabsOneRow", "__TabsOneRow", "", "", Radio(TChoice::TabRows)},
    {TabsSeveralRows, "mnuTabsSeveralRows", "__TabsSeveralRows", "", "", Radio(TChoice::TabRows)},
    {OpenNewAtEnd, "mnuOpenNewAtEnd", "__OpenNewAtEnd", "", "", Flag(Setting::OpenNewAtEnd)},
    {OpenNewInForeground, "mnuOpenNewInForeground", "__OpenNewInForeground", "", "",
     Flag(Setting::OpenNewInForeground)},
    {CloseTabsFirst, "mnuCloseTabsFirst", "__CloseTabsFirst", "", "", Flag(Setting::HGCloseFirst)},
    {TabLocked, "pmTabLocked", "__TabLocked", "", "", Check()},
    {TabName, "pmStickyTitle", "~~StickyNameSet", "", "F9"},
    {TabSpared, "pmHideFromCloseAll", "__TabHideFromCloseAll", "", "", Check()},
    {TabKeptAwake, "pmTabKeepAwake", "__TabKeepAwake", "", "", Check()},
    {TabHome, "pmTabHome", "__TabHome", "home", ""},
    {TabStop, "pmTabStop", "__TabStop", "stop", ""},
    {TabRefresh, "pmTabRefresh", "__TabRefresh", "refresh", ""},
    {TabAddToFavorites, "pmTabAddToFavorites", "__TabAddToFavorites", "favorites", ""},
    {TabAddToGroup, "pmTabAddToHalvexGroup", "__TabAddToGroup", "groups", ""},
    {TabBlockPopups, "pmAddToPopupHalvex", "__TabBlockPopups", "popup_blocked", "F8"},
    {TabCloseAll, "pmTabCloseAllDefault", "__CloseAllDefault", "", ""},
    {TabCloseAllKeepCurrent, "pmTabCloseAllKeepCurrent", "__CloseAllKeepCurrent", "", ""},
    {TabCloseAllShowList, "pmTabCloseAllShowList", "__CloseAllShowList", "", ""},
    {TabClose, "pmTabClose", "__TabClose", "close_tab", ""},
    {AddFavorite, "mnuFavoritesAdd", "__FavoritesAdd", "favorites", "Ctrl+D", Hint("MenuFavoritesAddHint")},
    {ShowFavorites, "actShowFavorites", "", "favorites", "Ctrl+Shift+D"},
    {OrganizeFavorites, "mnuFavoritesOrganize", "__FavoritesOrganize", "", ""},
    {OpenAllFavorites, "miOpenAll", "~~OpenAllFavorites", "", ""},
    {ImportFavorites, "mnuFavoritesImport", "__FavoritesImport", "", ""},
    {ExportFavorites, "mnuFavoritesExport", "__FavoritesExport", "", ""},
    {AddToGroup, "pmAddToHalvexGroup", "__GroupsAddTab", "", "F6"},
    {SaveAsGroup, "actSaveAsHalvexGroup", "__GroupsSaveAll", "", "F7"},
    {OrganizeGroups, "actOrganizeHalvexGroups", "__GroupsOrganize", "", ""},
    {Downloads, "actDownloads", "__Downloads", "downloads", "Ctrl+J", Hint("DownloadsHint")},
    {UsePopupBlocker, "mnuUsePopupHalvex", "__UsePopupBlocker", "", "", Flag(Setting::UsePopupHalvex)},
    {LoadImages, "pmOptionsLoadImages", "__LoadImages", "", "", Check("MenuOptionsLoadImagesHint")},
    {LoadVideos, "pmOptionsLoadVideos", "__LoadVideos", "", "", Check("LoadVideosHint")},
    {LoadSounds, "pmOptionsLoadSounds", "__LoadSounds", "", "", Check("LoadSoundsHint")},
    {LoadAnimations, "pmOptionsLoadAnimations", "__LoadAnimations", "", "", Check("LoadAnimationsHint")},
    {FavoritesInNewTab, "mnuFavoritesNewWin", "__FavoritesInNewTab", "", "", Flag(Setting::FavoritesNewWin)},
    {LinksInNewTab, "mnuLinksNewWin", "__LinksInNewTab", "", "", Flag(Setting::LinksNewWin)},
    {FavoritesInColumns, "mnuBreakFavorites", "__FavoritesInColumns", "", "", Flag(Setting::BreakFavorites)},
    {OfferOpenAll, "mnuShowOpenAllFavorites", "__OfferOpenAll", "", "", Flag(Setting::ShowOpenAllFavorites)},
    {ShowPageIcons, "mnuUseCustomIcons", "__ShowPageIcons", "", "", Flag(Setting::UseCustomIcons)},
    {HistoryInNewTab, "mnuHistoryNewWin", "__HistoryInNewTab", "", "", Flag(Setting::HistoryNewWin)},
    {SearchInNewTab, "mnuSearchNewWin", "__SearchInNewTab", "", "", Flag(Setting::SearchNewWin)},
    {SideBarAutoExpand, "mnuHBAutoExpand", "__SideBarAutoExpand", "", "", Flag(Setting::HBAutoExpand)},
    {AnnotationsEnabled, "pmFlyswatEnabled", "__AnnotationsEnabled", "", "", Flag(Setting::FlyswatEnabled)},
    {AnnotationsShowLinks, "pmFlyswatShowLinks", "__AnnotationsShowLinks", "", "", Flag(Setting::FlyswatShowLinks)},
    {OrganizeSearchEngines, "mnuOrganizeSearchEngines", "__OrganizeSearchEngines", "", ""},
    {OrganizeQuickSearch, "mnuOrganizeQuickSearch", "__OrganizeQuickSearch", "", ""},
    {ClearAddresses, "mnuClearAddr", "__CustomizeClearAddresses", "", "", Hint("CustomizeClearAddressesHint")},
    {SetHomePage, "mnuSetHomePage", "__SetHomePage", "", ""},
    {MakeDefaultBrowser, "mnuMakeDefaultBrowser", "__MakeDefaultBrowser", "", ""},
    {Options, "mnuOptions", "__Options", "settings", "Ctrl+,"},
    {StartHome, "mnuStartHome", "__StartHome", "", "", Radio(TChoice::Startup)},
    {StartBlank, "mnuStartBlank", "__StartBlank", "", "", Radio(TChoice::Startup)},
    {StartLast, "mnuStartLast", "__StartLast", "", "", Radio(TChoice::Startup)},
    {StartGroup, "mnuStartGroup", "__StartGroup", "", "", Radio(TChoice::Startup)},
    // What they say depends on the page in front.
    {SecurityCurrent, "pmSecurityCurrent", "", "", ""},
    {SecurityAddTrusted, "pmSecurityAddTrusted", "", "", ""},
    {SecurityAddIntra, "pmSecurityAddIntra", "", "", ""},
    {SecurityAddRestricted, "pmSecurityAddRestricted", "", "", ""},
    {SecurityRemove, "pmSecurityRemove", "", "", ""},
    {SecurityActiveXAllow, "pmSecurityActiveXAllow", "__SecurityAllow", "", "", Radio(TChoice::SecurityActiveX)},
    {SecurityActiveXQuery, "pmSecurityActiveXQuery", "__SecurityQuery", "", "", Radio(TChoice::SecurityActiveX)},
    {SecurityActiveXDisallow, "pmSecurityActiveXDisallow", "__SecurityDisallow", "", "",
     Radio(TChoice::SecurityActiveX)},
    {SecurityScriptingAllow, "pmSecurityScriptingAllow", "__SecurityAllow", "", "", Radio(TChoice::SecurityScripting)},
    {SecurityScriptingQuery, "pmSecurityScriptingQuery", "__SecurityQuery", "", "", Radio(TChoice::SecurityScripting)},
    {SecurityScriptingDisallow, "pmSecurityScriptingDisallow", "__SecurityDisallow", "", "",
     Radio(TChoice::SecurityScripting)},
    {SecurityCookiesAllow, "pmSecurityCookiesAllow", "__SecurityAllow", "", "", Radio(TChoice::SecurityCookies)},
    {SecurityCookiesQuery, "pmSecurityCookiesQuery", "__SecurityQuery", "", "", Radio(TChoice::SecurityCookies)},
    {SecurityCookiesDisallow, "pmSecurityCookiesDisallow", "__SecurityDisallow", "", "",
     Radio(TChoice::SecurityCookies)},
    {SecuritySessionAllow, "pmSecuritySessionAllow", "__SecurityAllow", "", "", Radio(TChoice::SecuritySession)},
    {SecuritySessionQuery, "pmSecuritySessionQuery", "__SecurityQuery", "", "", Radio(TChoice::SecuritySession)},
    {SecuritySessionDisallow, "pmSecuritySessionDisallow", "__SecurityDisallow", "", "",
     Radio(TChoice::SecuritySession)},
    {SecuritySettings, "pmSecuritySettings", "__SecuritySettings", "settings", ""},
    // Says what it would do now.
    {TrayRestore, "pmTrayRestore", "__TrayRestore", "", "", Hint("TrayRestoreHint")},
    {TrayExit, "pmTrayExit", "__TrayExit", "", "", Hint("TrayExitHint")},
    {Manual, "mnuManual", "__Manual", "question", "F1"},
    {About, "mnuAbout", "__About", "information", ""},
    {Go, "tbGo", "__Go", "go", ""},
    {TabListButton, "tbTabs", "__TabListName", "tab_list", "", Opens(TMenu::TabList)},
};
static_assert(std::size(Rows) == static_cast<size_t>(TCommand::Count));

constexpr TMenuRow Menus[] = {
    {TMenu::File, TMenu::File, "mnuFile", "__File"},
    {TMenu::NewTab, TMenu::File, "pmNew", "__NewTabOther"},
    {TMenu::Transfer, TMenu::File, "mnuFavoritesTransfer", "__FavoritesTransfer"},
    {TMenu::Send, TMenu::File, "pmMail", "__Send"},
    {TMenu::EditWith, TMenu::File, "mnuEditWith", "__EditWith"},
    {TMenu::OpenWith, TMenu::File, "mnuOpenWith", "__OpenWith"},
    {TMenu::CloseAll, TMenu::File, "pmFileCloseAll", "__CloseAll"},
    {TMenu::Edit, TMenu::Edit, "mnuEdit", "__Edit"},
    {TMenu::View, TMenu::View, "mnuView", "__View"},
    {TMenu::SideBar, TMenu::View, "mnuSideBar", "__SideBar"},
    {TMenu::FontSize, TMenu::View, "pmFontSize", "__FontSize"},
    {TMenu::AutoRefresh, TMenu::View, "mnuAutoRefresh", "__AutoRefresh"},
    {TMenu::Languages, TMenu::View, "mnuLanguages", "__Languages"},
    {TMenu::Tabs, TMenu::Tabs, "mnuTabs", "__Tabs"},
    {TMenu::TabList, TMenu::Tabs, "pmTabs", "__TabList"},
    {TMenu::ThisTab, TMenu::Tabs, "mnuThisTab", "__ThisTab"},
    {TMenu::TabPosition, TMenu::Tabs, "mnuTabPosition", "__TabPosition"},
    {TMenu::Favorites, TMenu::Favorites, "pmFavorites", "__Favorites"},
    {TMenu::Groups, TMenu::Groups, "pmHalvexGroupsPopup", "__Groups"},
    {TMenu::Tools, TMenu::Tools, "mnuTools", "__Tools"},
    {TMenu::Mail, TMenu::Tools, "pmMailNews", "__MailNews"},
    {TMenu::SearchEngines, TMenu::Tools, "mnuSearchEngines", "__SearchEngines"},
    {TMenu::Content, TMenu::Tools, "mnuContent", "__Content"},
    {TMenu::FavoritesOptions, TMenu::Tools, "mnuFavoritesOptions", "__FavoritesOptions"},
    {TMenu::Startup, TMenu::Tools, "mnuStartup", "__Startup"},
    {TMenu::Security, TMenu::Security, "pmSecurity", "__Security"},
    {TMenu::SecurityActiveX, TMenu::Security, "pmSecurityActiveX", ""},
    {TMenu::SecurityScripting, TMenu::Security, "pmSecurityScripting", ""},
    {TMenu::SecurityCookies, TMenu::Security, "pmSecurityCookies", ""},
    {TMenu::SecuritySession, TMenu::Security, "pmSecuritySessionCookies", ""},
    {TMenu::Help, TMenu::Help, "mnuHelp", "__Help"},
    {TMenu::Tab, TMenu::Count, "pmTab", ""},
    {TMenu::Customize, TMenu::Count, "pmCustomize", ""},
    {TMenu::Annotations, TMenu::Tools, "pmFlyswat", "__Annotations"},
    {TMenu::Tray, TMenu::Count, "pmTray", ""},
};
static_assert(std::size(Menus) == static_cast<size_t>(TMenu::Count));

constexpr TMenuEntry Put(TMenu menu, TCommand command) {
  return {menu, TMenuEntry::TKind::Command, static_cast<int>(command)};
}
constexpr TMenuEntry Put(TMenu menu, TMenu child) {
  return {menu, TMenuEntry::TKind::Menu, static_cast<int>(child)};
}
constexpr TMenuEntry Line(TMenu menu) {
  return {menu, TMenuEntry::TKind::Separator};
}
// All that another menu has.
constexpr TMenuEntry ContentsOf(TMenu menu, TMenu other) {
  return {menu, TMenuEntry::TKind::ContentsOf, static_cast<int>(other)};
}

// One line of the table for each part of a menu.
// clang-format off
constexpr TMenuEntry Entries[] = {
    Put(TMenu::File, NewBlank), Put(TMenu::File, TMenu::NewTab), Put(TMenu::File, OpenFile), Line(TMenu::File),
    Put(TMenu::File, SaveAs), Put(TMenu::File, TMenu::EditWith), Put(TMenu::File, TMenu::OpenWith),
    Put(TMenu::File, TMenu::Send), Put(TMenu::File, TMenu::Transfer), Line(TMenu::File),
    Put(TMenu::File, PageSetup), Put(TMenu::File, PrintPreview), Put(TMenu::File, Print), Put(TMenu::File, PrintNow),
    Line(TMenu::File), Put(TMenu::File, Properties), Line(TMenu::File), Put(TMenu::File, CloseTab),
    Put(TMenu::File, TMenu::CloseAll), Put(TMenu::File, ReopenTab), Put(TMenu::File, Exit),

    Put(TMenu::NewTab, NewHome), Put(TMenu::NewTab, NewCurrent), Put(TMenu::NewTab, NewClipboard),
    Put(TMenu::Send, MailNewMessage), Put(TMenu::Send, MailLink), Put(TMenu::Send, MailPage),
    Put(TMenu::Transfer, ImportFavorites), Put(TMenu::Transfer, ExportFavorites),
    Put(TMenu::CloseAll, CloseAll), Put(TMenu::CloseAll, CloseAllKeepCurrent), Put(TMenu::CloseAll, CloseAllShowList),

    Put(TMenu::Edit, Undo), Put(TMenu::Edit, Redo), Line(TMenu::Edit), Put(TMenu::Edit, Cut), Put(TMenu::Edit, Copy),
    Put(TMenu::Edit, Paste), Put(TMenu::Edit, SelectAll), Line(TMenu::Edit), Put(TMenu::Edit, Find),
    Put(TMenu::Edit, FindNext), Put(TMenu::Edit, FindPrevious), Line(TMenu::Edit), Put(TMenu::Edit, EditAddress),

    Put(TMenu::View, ViewToolbar), Put(TMenu::View, ViewAddressBar), Put(TMenu::View, ViewLinksBar),
    Put(TMenu::View, ViewStatusBar), Put(TMenu::View, ViewMenuBar), Put(TMenu::View, ViewHalvexBar),
    Put(TMenu::View, TMenu::SideBar), Put(TMenu::View, CustomizeToolbar),
    Line(TMenu::View),
    Put(TMenu::View, Back), Put(TMenu::View, Forward), Put(TMenu::View, Home), Line(TMenu::View),
    Put(TMenu::View, Stop),
    Put(TMenu::View, Refresh), Put(TMenu::View, RefreshCompletely), Put(TMenu::View, StopAll),
    Put(TMenu::View, RefreshAll), Put(TMenu::View, TMenu::AutoRefresh), Line(TMenu::View),
    Put(TMenu::View, TMenu::FontSize), Put(TMenu::View, ViewSource), Put(TMenu::View, TMenu::Languages),
    Put(TMenu::View, FullScreen),

    Put(TMenu::SideBar, SideBarFavorites), Put(TMenu::SideBar, SideBarHistory), Put(TMenu::SideBar, SideBarSearch),
    Put(TMenu::SideBar, SideBarGroups), Line(TMenu::SideBar), Put(TMenu::SideBar, HistoryInNewTab),
    Put(TMenu::SideBar, SearchInNewTab), Put(TMenu::SideBar, SideBarAutoExpand),

    Put(TMenu::AutoRefresh, AutoRefreshNone), Put(TMenu::AutoRefresh, AutoRefresh15),
    Put(TMenu::AutoRefresh, AutoRefresh30), Put(TMenu::AutoRefresh, AutoRefresh60),
    Put(TMenu::AutoRefresh, AutoRefresh120), Put(TMenu::AutoRefresh, AutoRefresh300),

    Put(TMenu::FontSize, FontLargest), Put(TMenu::FontSize, FontLarge), Put(TMenu::FontSize, FontMedium),
    Put(TMenu::FontSize, FontSmaller), Put(TMenu::FontSize, FontSmallest), Line(TMenu::FontSize),
    Put(TMenu::FontSize, ZoomIn), Put(TMenu::FontSize, ZoomOut), Put(TMenu::FontSize, ZoomReset),

    Put(TMenu::Tabs, NextTab), Put(TMenu::Tabs, PreviousTab), Put(TMenu::Tabs, FocusStrip),
    Put(TMenu::Tabs, TMenu::TabList),
    Put(TMenu::Tabs, TMenu::ThisTab), Line(TMenu::Tabs), Put(TMenu::Tabs, OpenNewAtEnd),
    Put(TMenu::Tabs, OpenNewInForeground), Put(TMenu::Tabs, CloseTabsFirst), Put(TMenu::Tabs, TMenu::TabPosition),

    Put(TMenu::Tab, TabLocked), Put(TMenu::Tab, TabName), Put(TMenu::Tab, TabSpared),
    Put(TMenu::Tab, TabKeptAwake), Line(TMenu::Tab),
    Put(TMenu::Tab, TabHome), Put(TMenu::Tab, TabStop), Put(TMenu::Tab, TabRefresh), Line(TMenu::Tab),
    Put(TMenu::Tab, TabAddToFavorites), Put(TMenu::Tab, TabAddToGroup), Put(TMenu::Tab, TabBlockPopups),
    Line(TMenu::Tab), Put(TMenu::Tab, TabCloseAll),
    Put(TMenu::Tab, TabCloseAllKeepCurrent), Put(TMenu::Tab, TabCloseAllShowList), Put(TMenu::Tab, TabClose),
    Put(TMenu::Tab, ReopenTab), ContentsOf(TMenu::ThisTab, TMenu::Tab),

    Put(TMenu::Favorites, AddFavorite), Put(TMenu::Favorites, OrganizeFavorites), Put(TMenu::Favorites, OpenAllFavorites), Line(TMenu::Favorites),

    Put(TMenu::Customize, CustomizeViewAddressBar), Put(TMenu::Customize, CustomizeViewToolbar),
    Put(TMenu::Customize, CustomizeViewMenuBar), Put(TMenu::Customize, CustomizeViewLinksBar), Put(TMenu::Customize, CustomizeColor),
    Line(TMenu::Customize),
    Put(TMenu::Customize, CustomizeToolbar), Put(TMenu::Customize, CustomizeOrganizeLinks),
    Put(TMenu::Customize, ClearAddresses),

    Put(TMenu::Annotations, AnnotationsEnabled), Put(TMenu::Annotations, AnnotationsShowLinks), Line(TMenu::Annotations),

    Put(TMenu::Groups, AddToGroup), Put(TMenu::Groups, SaveAsGroup), Put(TMenu::Groups, OrganizeGroups),
    Line(TMenu::Groups),

    Put(TMenu::SearchEngines, OrganizeSearchEngines), Line(TMenu::SearchEngines),

    Put(TMenu::Mail, MailNewMessage), Put(TMenu::Mail, MailLink), Put(TMenu::Mail, MailPage), Line(TMenu::Mail),
    Put(TMenu::Mail, ReadMail), Put(TMenu::Mail, ReadNews), Line(TMenu::Mail),

    Put(TMenu::Tools, Downloads), Put(TMenu::Tools, TMenu::Mail), Line(TMenu::Tools),
    Put(TMenu::Tools, TMenu::SearchEngines), Put(TMenu::Tools, OrganizeQuickSearch),
    Put(TMenu::Tools, ClearAddresses), Line(TMenu::Tools),
    Put(TMenu::Tools, UsePopupBlocker), Put(TMenu::Tools, TMenu::Content), Put(TMenu::Tools, TMenu::FavoritesOptions),
    Put(TMenu::Tools, TMenu::Annotations), Line(TMenu::Tools),
    Put(TMenu::Tools, SetHomePage), Put(TMenu::Tools, TMenu::Startup), Put(TMenu::Tools, MakeDefaultBrowser),
    Line(TMenu::Tools), Put(TMenu::Tools, Options),
    Put(TMenu::Content, LoadImages), Put(TMenu::Content, LoadVideos), Put(TMenu::Content, LoadSounds),
    Put(TMenu::Content, LoadAnimations),
    Put(TMenu::FavoritesOptions, FavoritesInNewTab), Put(TMenu::FavoritesOptions, LinksInNewTab),
    Line(TMenu::FavoritesOptions), Put(TMenu::FavoritesOptions, OfferOpenAll),
    Put(TMenu::FavoritesOptions, FavoritesInColumns), Put(TMenu::FavoritesOptions, ShowPageIcons),
    Put(TMenu::Startup, StartHome), Put(TMenu::Startup, StartBlank), Put(TMenu::Startup, StartLast),
    Put(TMenu::Startup, StartGroup),

    Put(TMenu::Security, SecurityCurrent), Line(TMenu::Security),
    Put(TMenu::Security, SecurityAddTrusted), Put(TMenu::Security, SecurityAddIntra),
    Put(TMenu::Security, SecurityAddRestricted), Put(TMenu::Security, SecurityRemove), Line(TMenu::Security),
    Put(TMenu::Security, TMenu::SecurityCookies), Put(TMenu::Security, TMenu::SecuritySession),
    Put(TMenu::Security, TMenu::SecurityScripting), Put(TMenu::Security, TMenu::SecurityActiveX),
    Line(TMenu::Security), Put(TMenu::Security, SecuritySettings),
    Put(TMenu::SecurityActiveX, SecurityActiveXAllow), Put(TMenu::SecurityActiveX, SecurityActiveXQuery),
    Put(TMenu::SecurityActiveX, SecurityActiveXDisallow),
    Put(TMenu::SecurityScripting, SecurityScriptingAllow), Put(TMenu::SecurityScripting, SecurityScriptingQuery),
    Put(TMenu::SecurityScripting, SecurityScriptingDisallow),
    Put(TMenu::SecurityCookies, SecurityCookiesAllow), Put(TMenu::SecurityCookies, SecurityCookiesQuery),
    Put(TMenu::SecurityCookies, SecurityCookiesDisallow),
    Put(TMenu::SecuritySession, SecuritySessionAllow), Put(TMenu::SecuritySession, SecuritySessionQuery),
    Put(TMenu::SecuritySession, SecuritySessionDisallow),

    Put(TMenu::Help, Manual), Put(TMenu::Help, About),

    Put(TMenu::Tray, TrayRestore), Line(TMenu::Tray), Put(TMenu::Tray, TrayExit),
};
// clang-format on

}  // namespace

std::span<const TCommandRow> CommandRows() {
  return Rows;
}

std::span<const TMenuRow> MenuRows() {
  return Menus;
}

std::span<const TMenuEntry> MenuEntries() {
  return Entries;
}
