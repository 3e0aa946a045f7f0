#pragma once

#include <array>
#include <QString>
#include <variant>

// Every scalar setting: its value name, kind, default and the rule by which a written number is brought into range.
// Getters, setters, tests and the options dialog all walk this one table.

struct TFlagSetting {
  const char *name;
  bool fallback;
};

struct TIntegerSetting {
  const char *name;
  int fallback;
  int (*clamp)(int) = nullptr;  // Applied when the value is written; none leaves the number as it is.
  int (*dynamic)() = nullptr;   // The default, where it depends on the desktop (window width and height).
};

struct TStringSetting {
  const char *name;
  const char *fallback;
  QString (*dynamic)() = nullptr;  // The default, where it belongs to the deployment (see TProductInfo).
};

using TSetting = std::variant<TFlagSetting, TIntegerSetting, TStringSetting>;

namespace SettingRule {

int ClampNewAction(int action);
// A negative width asks for the default rather than for no bar at all.
int ClampHalvexBarWidth(int width);
// No less than 0, which stands for ever.
int ClampHistoryDays(int days);
// No less than 0, which stands for never.
int ClampSleepMinutes(int minutes);
// The primary screen without panels and docks, less 40 pixels.
int DefaultWindowWidth();
int DefaultWindowHeight();
QString DefaultSearchBar();

}  // namespace SettingRule

// clang-format off
namespace Setting {

inline constexpr TFlagSetting AllowMultiInstance{"AllowMultiInstance", false};
inline constexpr TFlagSetting MinToTray{"MinToTray", false};
inline constexpr TFlagSetting AddressNewWin{"AddressNewWin", false};
inline constexpr TFlagSetting ShowGo{"ShowGo", false};
inline constexpr TStringSetting AutoCompleteStyle{"AutoCompleteStyle", "IE5"};
inline constexpr TFlagSetting OpenNewAtEnd{"OpenNewAtEnd", false};
inline constexpr TFlagSetting OpenNewInForeground{"OpenNewInForeground", false};
inline constexpr TFlagSetting HGCloseFirst{"HGCloseFirst", false};
inline constexpr TIntegerSetting NewAction{"NewAction", 2, SettingRule::ClampNewAction};
inline constexpr TIntegerSetting LimitTitleLength{"LimitTitleLength", 35};
inline constexpr TIntegerSetting SleepMinutes{"SleepMinutes", 30, SettingRule::ClampSleepMinutes};
inline constexpr TFlagSetting MultipleLines{"MultipleLines", false};
inline constexpr TFlagSetting TabsDown{"TabsDown", true};
inline constexpr TStringSetting TabColorScheme{"TabColorScheme", "custom"};
inline constexpr TIntegerSetting InactiveTabColor{"InactiveTabColor", 0xAAAAAA};
inline constexpr TIntegerSetting InactiveFontColor{"InactiveFontColor", 0};
inline constexpr TStringSetting StartupMode{"StartupMode", "Home"};
inline constexpr TStringSetting StartupHalvexGroup{"StartupHalvexGroup", ""};
inline constexpr TStringSetting StartupPage{"StartupPage", ""};
inline constexpr TStringSetting CommandLine{"CommandLine", ""};
inline constexpr TFlagSetting AskDefaultBrowser{"AskDefaultBrowser", true};
inline constexpr TFlagSetting ConfirmCloseAll{"ConfirmCloseAll", true};
inline constexpr TFlagSetting ConfirmShutdown{"ConfirmShutdown", true};
inline constexpr TFlagSetting UsePopupHalvex{"UsePopupHalvex", true};
inline constexpr TFlagSetting PopupHalvexNotify{"PopupHalvexNotify", true};
inline constexpr TStringSetting CtrlPre{"CtrlPre", "http://www."};
inline constexpr TStringSetting CtrlPost{"CtrlPost", ".com"};
inline constexpr TStringSetting ShiftPre{"ShiftPre", "http://www."};
inline constexpr TStringSetting ShiftPost{"ShiftPost", ".net"};
inline constexpr TStringSetting CtrlShiftPre{"CtrlShiftPre", "http://www."};
inline constexpr TStringSetting CtrlShiftPost{"CtrlShiftPost", ".org"};
inline constexpr TFlagSetting FavoritesNewWin{"FavoritesNewWin", true};
inline constexpr TFlagSetting HistoryNewWin{"HistoryNewWin", true};
inline constexpr TIntegerSetting HistoryDays{"HistoryDays", 365, SettingRule::ClampHistoryDays};
inline constexpr TFlagSetting SearchNewWin{"SearchNewWin", true};
inline constexpr TFlagSetting LinksNewWin{"LinksNewWin", true};
inline constexpr TFlagSetting QuickSearchNewWin{"QuickSearchNewWin", true};
inline constexpr TStringSetting SearchBar{"SearchBar", "", SettingRule::DefaultSearchBar};
inline constexpr TIntegerSetting HalvexBarWidth{"HalvexBarWidth", 234, SettingRule::ClampHalvexBarWidth};
inline constexpr TFlagSetting HBAutoExpand{"HBAutoExpand", true};
inline constexpr TIntegerSetting HalvexBarPage{"HalvexBarPage", 0};
inline constexpr TFlagSetting ViewAddressBar{"ViewAddressBar", true};
inline constexpr TFlagSetting ViewLinksBar{"ViewLinksBar", true};
inline constexpr TFlagSetting ViewToolbar{"ViewToolbar", true};
inline constexpr TFlagSetting ViewStatusBar{"ViewStatusBar", true};
inline constexpr TFlagSetting ViewHalvexBar{"ViewHalvexBar", false};
inline constexpr TFlagSetting FullScreen{"FullScreen", false};
inline constexpr TFlagSetting FullscreenMenuBar{"FullscreenMenuBar", false};
inline constexpr TFlagSetting FullscreenStatusBar{"FullscreenStatusBar", false};
inline constexpr TFlagSetting Maximized{"Maximized", false};
inline constexpr TIntegerSetting Left{"Left", 10};
inline constexpr TIntegerSetting Top{"Top", 10};
inline constexpr TIntegerSetting Width{"Width", 0, nullptr, SettingRule::DefaultWindowWidth};
inline constexpr TIntegerSetting Height{"Height", 0, nullptr, SettingRule::DefaultWindowHeight};
inline constexpr TIntegerSetting FavoritesWidth{"FavoritesWidth", 250};
inline constexpr TIntegerSetting FavoritesHeight{"FavoritesHeight", 400};
inline constexpr TStringSetting LastFavoritesFolder{"LastFavoritesFolder", ""};
// Where downloads go, or where the question for it begins; empty, or one that cannot be written, for the desktop's own.
inline constexpr TStringSetting DownloadFolder{"DownloadFolder", ""};
// Where the question was answered with last, and begins from then on; empty, or one that cannot be written, for none.
inline constexpr TStringSetting LastDownloadFolder{"LastDownloadFolder", ""};
inline constexpr TFlagSetting DownloadAsk{"DownloadAsk", true};
inline constexpr TFlagSetting DisableALTShortcuts{"DisableALTShortcuts", false};
inline constexpr TFlagSetting BreakFavorites{"BreakFavorites", false};
inline constexpr TFlagSetting ShowOpenAllFavorites{"ShowOpenAllFavorites", true};
inline constexpr TFlagSetting ToolbarShowColor{"ToolbarShowColor", false};
inline constexpr TFlagSetting UseCustomIcons{"UseCustomIcons", true};
inline constexpr TIntegerSetting AutoRefresh{"AutoRefresh", 0};
inline constexpr TStringSetting LanguageFile{"LanguageFile", "zveng.ini"};
inline constexpr TFlagSetting LoadBHOs{"LoadBHOs", false};
inline constexpr TIntegerSetting VersionCheck{"VersionCheck", 1};
inline constexpr TIntegerSetting CheckedVersion{"CheckedVersion", 155};
inline constexpr TIntegerSetting LastPong{"LastPong", 0};
inline constexpr TFlagSetting New{"New", false};
inline constexpr TFlagSetting FlyswatEnabled{"FlyswatEnabled", true};
inline constexpr TFlagSetting FlyswatShowLinks{"FlyswatShowLinks", true};
inline constexpr TStringSetting FlyswatAgreed{"FlyswatAgreed", ""};

inline constexpr auto All = std::to_array<TSetting>({
    AllowMultiInstance, MinToTray, AddressNewWin, ShowGo, AutoCompleteStyle, OpenNewAtEnd, OpenNewInForeground,
    HGCloseFirst, NewAction, LimitTitleLength, SleepMinutes, MultipleLines, TabsDown, TabColorScheme, InactiveTabColor,
    InactiveFontColor, StartupMode, StartupHalvexGroup, StartupPage, CommandLine, AskDefaultBrowser,
    ConfirmCloseAll, ConfirmShutdown, UsePopupHalvex, PopupHalvexNotify, CtrlPre, CtrlPost, ShiftPre, ShiftPost,
    CtrlShiftPre, CtrlShiftPost, FavoritesNewWin, HistoryNewWin, HistoryDays, SearchNewWin, LinksNewWin, QuickSearchNewWin,
    SearchBar, HalvexBarWidth, HBAutoExpand, HalvexBarPage, ViewAddressBar, ViewLinksBar, ViewToolbar, ViewStatusBar,
    ViewHalvexBar, FullScreen, FullscreenMenuBar, FullscreenStatusBar, Maximized, Left, Top, Width, Height,
    FavoritesWidth, FavoritesHeight, LastFavoritesFolder, DownloadFolder, LastDownloadFolder, DownloadAsk,
    DisableALTShortcuts, BreakFavorites, ShowOpenAllFavorites, ToolbarShowColor,
    UseCustomIcons, AutoRefresh, LanguageFile, LoadBHOs, VersionCheck, CheckedVersion, LastPong, New,
    FlyswatEnabled, FlyswatShowLinks, FlyswatAgreed
});

}  // namespace Setting
// clang-format on
