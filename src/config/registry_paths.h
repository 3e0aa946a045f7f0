#pragma once

// The keys of the registry store, one place for all.
namespace RegistryKey {

// Below TRegistryHive::CurrentUser.

// The settings, and the lists and other subkeys beside them.
inline constexpr const char *CurrentVersion = R"(Software\Velmora\Zarvela\CurrentVersion)";
inline constexpr const char *LastOpenSites = R"(Software\Velmora\Zarvela\CurrentVersion\Last Open Sites)";
// Below it a key for each window, with what the list does not say of its tabs.
inline constexpr const char *OpenTabs = R"(Software\Velmora\Zarvela\CurrentVersion\Open Tabs)";
inline constexpr const char *SearchEngines = R"(Software\Velmora\Zarvela\CurrentVersion\Search Engines)";
inline constexpr const char *SearchBar = R"(Software\Velmora\Zarvela\CurrentVersion\Search Bar)";
inline constexpr const char *QuickSearch = R"(Software\Velmora\Zarvela\CurrentVersion\QuickSearch)";
inline constexpr const char *PopupHalvex = R"(Software\Velmora\Zarvela\CurrentVersion\PopupHalvex)";
// What the user has allowed and refused to sites, see TPermissionDecisions.
inline constexpr const char *SitePermissions = R"(Software\Velmora\Zarvela\CurrentVersion\Site Permissions)";
// The zoom of sites in percent, by their hosts, see TSiteZoom.
inline constexpr const char *SiteZoom = R"(Software\Velmora\Zarvela\CurrentVersion\Site Zoom)";
// What was downloaded, see TKeptDownloads.
inline constexpr const char *Downloads = R"(Software\Velmora\Zarvela\CurrentVersion\Downloads)";
inline constexpr const char *BrowserHelperObjects = R"(Software\Velmora\Zarvela\CurrentVersion\Browser Helper Objects)";
inline constexpr const char *Bands = R"(Software\Velmora\Zarvela\CurrentVersion\Bands)";
inline constexpr const char *PageSetup = R"(Software\Velmora\Zarvela\CurrentVersion\Page Setup)";
// Shared with other programs of the desktop: the start page, and the addresses that were typed.
inline constexpr const char *SystemBrowser = R"(Software\Microsoft\Internet Explorer\Main)";
inline constexpr const char *TypedUrls = R"(Software\Microsoft\Internet Explorer\TypedUrls)";
// The security zones are below it, see TZoneStore.
inline constexpr const char *InternetSettings = R"(Software\Microsoft\Windows\CurrentVersion\Internet Settings)";
// Where the favorites lie: the shell's folders in both of its ways to write them, and what the links folder is called.
inline constexpr const char *UserShellFolders =
    R"(Software\Microsoft\Windows\CurrentVersion\Explorer\User Shell Folders)";
inline constexpr const char *ShellFolders = R"(Software\Microsoft\Windows\CurrentVersion\Explorer\Shell Folders)";
inline constexpr const char *SystemToolbar = R"(Software\Microsoft\Internet Explorer\Toolbar)";

// Below TRegistryHive::LocalMachine: the version of the system's browser.
inline constexpr const char *BrowserVersion = R"(Software\Microsoft\Internet Explorer)";

// Below TRegistryHive::ClassesRoot: in a class's own key its verbs, in a verb's key what it runs.
inline constexpr const char *Shell = "shell";
inline constexpr const char *Command = "command";
// What edits web pages: the programs as subkeys, and what each can do.
inline constexpr const char *OpenWithList = R"(.htm\OpenWithList)";
inline constexpr const char *Applications = "Applications";
// What starts the system's own browser.
inline constexpr const char *SystemBrowserServer = R"(CLSID\{0002DF01-0000-0000-C000-000000000046}\LocalServer32)";

// Below TRegistryHive::LocalMachine: clients as subkeys, the default one as the unnamed value.
inline constexpr const char *MailClients = R"(Software\Clients\Mail)";
inline constexpr const char *NewsClients = R"(Software\Clients\News)";
// What browsers add to the user agent, each as the name of a value.
inline constexpr const char *PostPlatform =
    R"(Software\Microsoft\Windows\CurrentVersion\Internet Settings\User Agent\Post Platform)";

}  // namespace RegistryKey
