#include "actions/commands.h"

#include <QMenu>
#include <QMenuBar>

namespace {

struct TCommandRow {
  TCommand command;
  const char *name;  // object name
  const char *text;  // marker
  const char *icon;  // nullptr for none
  const char *keys;  // portable key sequences, separated by "; "
  bool checkable;
  TTextKey hint;  // "short|long"; no section: none
};

using enum TCommand;

constexpr TTextKey NoHint{};

constexpr TCommandRow Rows[] = {
    {NewBlank, "actNewBlank", "__NewTab", ":/icons/new_tab.svg", "Ctrl+T", false, TTextKey{"MAIN", "MenuFileNewHint"}},
    {NewHome, "actNewHome", "__NewHome", ":/icons/home.svg", "", false, NoHint},
    {NewCurrent, "actNewCurrent", "__NewCurrent", nullptr, "Ctrl+Shift+K", false, NoHint},
    {NewClipboard, "pmNewClipboard", "__NewClipboard", ":/icons/paste.svg", "", false, NoHint},
    {OpenFile, "actOpen", "__Open", ":/icons/open.svg", "Ctrl+O", false, TTextKey{"MAIN", "MenuFileOpenHint"}},
    {SaveAs, "actSaveAs", "__SaveAs", ":/icons/save.svg", "Ctrl+S", false, TTextKey{"MAIN", "MenuFileSaveAsHint"}},
    {PageSetup, "actPageSetup", "__PageSetup", nullptr, "", false, NoHint},
    {Print, "actPrint", "__Print", ":/icons/print.svg", "Ctrl+P", false, TTextKey{"MAIN", "MenuFilePrintHint"}},
    {PrintNow, "actPrintNow", "__PrintNow", nullptr, "Ctrl+Shift+P", false, NoHint},
    {PrintPreview, "actPrintPreview", "__PrintPreview", ":/icons/print_preview.svg", "", false, NoHint},
    {MailNewMessage, "pmMailNewsNewMessage", "__MailNewMessage", ":/icons/mail.svg", "", false, NoHint},
    {MailLink, "pmMailNewsSendALink", "__MailLink", nullptr, "", false, NoHint},
    {MailPage, "pmMailSendFile", "__MailPage", nullptr, "", false, NoHint},
    {Properties, "actProperties", "__Properties", ":/icons/properties.svg", "Alt+Return", false, NoHint},
    {CloseTab, "actClose", "__CloseTab", ":/icons/close_tab.svg", "Ctrl+W; Ctrl+F4", false, NoHint},
    {CloseAll, "actCloseAll", "__CloseAllDefault", nullptr, "Ctrl+Shift+W", false, NoHint},
    {CloseAllKeepCurrent, "pmCloseAllKeepCurrent", "__CloseAllKeepCurrent", nullptr, "", false, NoHint},
    {CloseAllShowList, "pmCloseAllShowList", "__CloseAllShowList", nullptr, "", false, NoHint},
    {Exit, "actExit", "__Exit", nullptr, "Ctrl+Q", false, NoHint},
    {Undo, "actUndo", "__Undo", nullptr, "Ctrl+Z", false, NoHint},
    {Redo, "actRedo", "__Redo", nullptr, "Ctrl+Shift+Z", false, NoHint},
    {Cut, "actCut", "__Cut", ":/icons/cut.svg", "Ctrl+X", false, NoHint},
    {Copy, "actCopy", "__Copy", ":/icons/copy.svg", "Ctrl+C", false, NoHint},
    {Paste, "actPaste", "__Paste", ":/icons/paste.svg", "Ctrl+V", false, NoHint},
    {SelectAll, "actSelectAll", "__SelectAll", nullptr, "Ctrl+A", false, NoHint},
    {Find, "actFind", "__Find", ":/icons/find.svg", "Ctrl+F", false, TTextKey{"MAIN", "MenuEditFindHint"}},
    {FindNext, "actFindNext", "__FindNext", nullptr, "F3; Ctrl+G", false, NoHint},
    {FindPrevious, "actFindPrevious", "__FindPrevious", nullptr, "Shift+F3; Ctrl+Shift+G", false, NoHint},
    {EditAddress, "actEditAddress", "__EditAddress", nullptr, "Ctrl+L; Alt+D", false, NoHint},
    {ViewToolbar, "mnuViewToolbar", "__ViewToolbar", nullptr, "", true, NoHint},
    {ViewAddressBar, "mnuViewAddressBar", "__ViewAddressBar", nullptr, "", true, NoHint},
    {ViewStatusBar, "mnuViewStatusBar", "__ViewStatusBar", nullptr, "", true, NoHint},
    {ViewMenuBar, "mnuViewMenuBar", "__ViewMenuBar", nullptr, "Ctrl+M", true, NoHint},
    {Back, "tbBack", "__Back", ":/icons/back.svg", "Alt+Left; Back", false, TTextKey{"MAIN", "MenuGoBackHint"}},
    {Forward, "tbForward", "__Forward", ":/icons/forward.svg", "Alt+Right; Forward", false,
     TTextKey{"MAIN", "MenuGoForwardHint"}},
    {Home, "actHome", "__Home", ":/icons/home.svg", "Alt+Home", false, TTextKey{"MAIN", "MenuGoHomeHint"}},
    {Stop, "actStop", "__Stop", ":/icons/stop.svg", "Esc", false, TTextKey{"MAIN", "MenuViewStopHint"}},
    {Refresh, "actRefresh", "__Refresh", ":/icons/refresh.svg", "F5", false, TTextKey{"MAIN", "MenuViewRefreshHint"}},
    {RefreshCompletely, "actRefreshCompletely", "__RefreshCompletely", nullptr, "Ctrl+F5; Ctrl+Shift+R", false, NoHint},
    {StopAll, "actViewStopAll", "__StopAll", ":/icons/stop_all.svg", "Shift+Esc", false,
     TTextKey{"MAIN", "MenuViewStopAllHint"}},
    {RefreshAll, "actRefreshAll", "__RefreshAll", ":/icons/refresh_all.svg", "Shift+F5", false,
     TTextKey{"MAIN", "MenuViewRefreshAllHint"}},
    {FontLargest, "mnuFontLargest", "__FontLargest", nullptr, "", true, NoHint},
    {FontLarge, "mnuFontLarge", "__FontLarge", nullptr, "", true, NoHint},
    {FontMedium, "mnuFontMedium", "__FontMedium", nullptr, "", true, NoHint},
    {FontSmaller, "mnuFontSmaller", "__FontSmaller", nullptr, "", true, NoHint},
    {FontSmallest, "mnuFontSmallest", "__FontSmallest", nullptr, "", true, NoHint},
    {ZoomIn, "actZoomIn", "__ZoomIn", ":/icons/zoom_in.svg", "Ctrl++; Ctrl+=", false, NoHint},
    {ZoomOut, "actZoomOut", "__ZoomOut", ":/icons/zoom_out.svg", "Ctrl+-", false, NoHint},
    {ZoomReset, "actZoomReset", "__ZoomReset", nullptr, "Ctrl+0", false, NoHint},
    {ViewSource, "actViewSource", "__ViewSource", ":/icons/source.svg", "Ctrl+U", false,
     TTextKey{"MAIN", "MenuViewSourceHint"}},
    {FullScreen, "tbFullScreen", "__FullScreen", ":/icons/full_screen.svg", "F11", true,
     TTextKey{"MAIN", "MenuViewFullscreenHint"}},
    {NextTab, "actNextBrowserTab", "__NextTab", nullptr, "", false, NoHint},
    {PreviousTab, "actPreviousBrowserTab", "__PreviousTab", nullptr, "", false, NoHint},
    {FocusStrip, "actFocusStrip", "__FocusStrip", nullptr, "Ctrl+Shift+L", false, NoHint},
    {TabsBelow, "mnuTabsBelow", "__TabsBelow", nullptr, "", true, NoHint},
    {TabsAbove, "mnuTabsAbove", "__TabsAbove", nullptr, "", true, NoHint},
    {TabsOneRow, "mnuTabsOneRow", "__TabsOneRow", nullptr, "", true, NoHint},
    {TabsSeveralRows, "mnuTabsSeveralRows", "__TabsSeveralRows", nullptr, "", true, NoHint},
    {OpenNewAtEnd, "mnuOpenNewAtEnd", "__OpenNewAtEnd", nullptr, "", true, NoHint},
    {OpenNewInForeground, "mnuOpenNewInForeground", "__OpenNewInForeground", nullptr, "", true, NoHint},
    {CloseTabsFirst, "mnuCloseTabsFirst", "__CloseTabsFirst", nullptr, "", true, NoHint},
    {Downloads, "actDownloads", "__Downloads", ":/icons/downloads.svg", "Ctrl+J", false,
     TTextKey{"MAIN", "DownloadsHint"}},
    {UsePopupBlocker, "mnuUsePopupHalvex", "__UsePopupBlocker", nullptr, "", true, NoHint},
    {OrganizeQuickSearch, "mnuOrganizeQuickSearch", "__OrganizeQuickSearch", nullptr, "", false, NoHint},
    {ClearAddresses, "mnuClearAddr", "__ClearAddresses", nullptr, "", false,
     TTextKey{"MAIN", "MenuToolsClearAddressesHint"}},
    {SetHomePage, "mnuSetHomePage", "__SetHomePage", nullptr, "", false, NoHint},
    {StartHome, "mnuStartHome", "__StartHome", nullptr, "", true, NoHint},
    {StartBlank, "mnuStartBlank", "__StartBlank", nullptr, "", true, NoHint},
    {StartLast, "mnuStartLast", "__StartLast", nullptr, "", true, NoHint},
    {StartGroup, "mnuStartGroup", "__StartGroup", nullptr, "", true, NoHint},
    {About, "mnuAbout", "__About", ":/icons/information.svg", "", false, NoHint},
};
static_assert(std::size(Rows) == static_cast<size_t>(TCommand::Count));

struct TMenuRow {
  TMenu menu;
  TMenu parent;  // the menu itself: it stands in the menu bar
  const char *name;
  const char *title;  // marker
};

constexpr TMenuRow Menus[] = {
    {TMenu::File, TMenu::File, "mnuFile", "__File"},
    {TMenu::NewTab, TMenu::File, "pmNew", "__NewTabOther"},
    {TMenu::Send, TMenu::File, "pmMail", "__Send"},
    {TMenu::EditWith, TMenu::File, "mnuEditWith", "__EditWith"},
    {TMenu::CloseAll, TMenu::File, "pmFileCloseAll", "__CloseAll"},
    {TMenu::Edit, TMenu::Edit, "mnuEdit", "__Edit"},
    {TMenu::View, TMenu::View, "mnuView", "__View"},
    {TMenu::FontSize, TMenu::View, "pmFontSize", "__FontSize"},
    {TMenu::AutoRefresh, TMenu::View, "mnuAutoRefresh", "__AutoRefresh"},
    {TMenu::Languages, TMenu::View, "mnuLanguages", "__Languages"},
    {TMenu::Tabs, TMenu::Tabs, "mnuTabs", "__Tabs"},
    {TMenu::TabList, TMenu::Tabs, "pmTabs", "__TabList"},
    {TMenu::ThisTab, TMenu::Tabs, "mnuThisTab", "__ThisTab"},
    {TMenu::TabPosition, TMenu::Tabs, "mnuTabPosition", "__TabPosition"},
    {TMenu::Groups, TMenu::Groups, "pmHalvexGroupsPopup", "__Groups"},
    {TMenu::Tools, TMenu::Tools, "mnuTools", "__Tools"},
    {TMenu::SearchEngines, TMenu::Tools, "mnuSearchEngines", "__SearchEngines"},
    {TMenu::Startup, TMenu::Tools, "mnuStartup", "__Startup"},
    {TMenu::Help, TMenu::Help, "mnuHelp", "__Help"},
};
static_assert(std::size(Menus) == static_cast<size_t>(TMenu::Count));

// A menu's contents from top to bottom: a command, a sub-menu or a separator.
struct TEntry {
  TMenu menu;
  enum class TKind { Command, Menu, Separator } kind;
  int index = 0;
};

constexpr TEntry Put(TMenu menu, TCommand command) {
  return {menu, TEntry::TKind::Command, static_cast<int>(command)};
}
constexpr TEntry Put(TMenu menu, TMenu child) {
  return {menu, TEntry::TKind::Menu, static_cast<int>(child)};
}
constexpr TEntry Line(TMenu menu) {
  return {menu, TEntry::TKind::Separator};
}

// One line of the table for each part of a menu.
// clang-format off
constexpr TEntry Entries[] = {
    Put(TMenu::File, NewBlank), Put(TMenu::File, TMenu::NewTab), Put(TMenu::File, OpenFile), Line(TMenu::File),
    Put(TMenu::File, SaveAs), Put(TMenu::File, TMenu::EditWith), Put(TMenu::File, TMenu::Send), Line(TMenu::File),
    Put(TMenu::File, PageSetup), Put(TMenu::File, PrintPreview), Put(TMenu::File, Print), Put(TMenu::File, PrintNow),
    Line(TMenu::File), Put(TMenu::File, Properties), Line(TMenu::File), Put(TMenu::File, CloseTab),
    Put(TMenu::File, TMenu::CloseAll), Put(TMenu::File, Exit),

    Put(TMenu::NewTab, NewHome), Put(TMenu::NewTab, NewCurrent), Put(TMenu::NewTab, NewClipboard),
    Put(TMenu::Send, MailNewMessage), Put(TMenu::Send, MailLink), Put(TMenu::Send, MailPage),
    Put(TMenu::CloseAll, CloseAll), Put(TMenu::CloseAll, CloseAllKeepCurrent), Put(TMenu::CloseAll, CloseAllShowList),

    Put(TMenu::Edit, Undo), Put(TMenu::Edit, Redo), Line(TMenu::Edit), Put(TMenu::Edit, Cut), Put(TMenu::Edit, Copy),
    Put(TMenu::Edit, Paste), Put(TMenu::Edit, SelectAll), Line(TMenu::Edit), Put(TMenu::Edit, Find),
    Put(TMenu::Edit, FindNext), Put(TMenu::Edit, FindPrevious), Line(TMenu::Edit), Put(TMenu::Edit, EditAddress),

    Put(TMenu::View, ViewToolbar), Put(TMenu::View, ViewAddressBar), Put(TMenu::View, ViewStatusBar),
    Put(TMenu::View, ViewMenuBar), Line(TMenu::View),
    Put(TMenu::View, Back), Put(TMenu::View, Forward), Put(TMenu::View, Home), Line(TMenu::View), Put(TMenu::View, Stop),
    Put(TMenu::View, Refresh), Put(TMenu::View, RefreshCompletely), Put(TMenu::View, StopAll),
    Put(TMenu::View, RefreshAll), Put(TMenu::View, TMenu::AutoRefresh), Line(TMenu::View),
    Put(TMenu::View, TMenu::FontSize), Put(TMenu::View, ViewSource), Put(TMenu::View, TMenu::Languages),
    Put(TMenu::View, FullScreen),

    Put(TMenu::FontSize, FontLargest), Put(TMenu::FontSize, FontLarge), Put(TMenu::FontSize, FontMedium),
    Put(TMenu::FontSize, FontSmaller), Put(TMenu::FontSize, FontSmallest), Line(TMenu::FontSize),
    Put(TMenu::FontSize, ZoomIn), Put(TMenu::FontSize, ZoomOut), Put(TMenu::FontSize, ZoomReset),

    Put(TMenu::Tabs, NextTab), Put(TMenu::Tabs, PreviousTab), Put(TMenu::Tabs, FocusStrip),
    Put(TMenu::Tabs, TMenu::TabList),
    Put(TMenu::Tabs, TMenu::ThisTab), Line(TMenu::Tabs), Put(TMenu::Tabs, OpenNewAtEnd),
    Put(TMenu::Tabs, OpenNewInForeground), Put(TMenu::Tabs, CloseTabsFirst), Put(TMenu::Tabs, TMenu::TabPosition),

    Put(TMenu::Tools, Downloads), Line(TMenu::Tools), Put(TMenu::Tools, TMenu::SearchEngines),
    Put(TMenu::Tools, OrganizeQuickSearch), Put(TMenu::Tools, ClearAddresses), Line(TMenu::Tools),
    Put(TMenu::Tools, UsePopupBlocker), Line(TMenu::Tools), Put(TMenu::Tools, SetHomePage),
    Put(TMenu::Tools, TMenu::Startup),
    Put(TMenu::Startup, StartHome), Put(TMenu::Startup, StartBlank), Put(TMenu::Startup, StartLast),
    Put(TMenu::Startup, StartGroup),

    Put(TMenu::Help, About),
};
// clang-format on

QList<QKeySequence> KeysOf(const char *keys) {
  QList<QKeySequence> sequences;
  for (const QString &key : QString::fromLatin1(keys).split(QStringLiteral("; "), Qt::SkipEmptyParts)) {
    sequences.append(QKeySequence(key, QKeySequence::PortableText));
  }
  return sequences;
}

QString WithoutMnemonic(const QString &text) {
  QString plain;
  for (int i = 0; i < text.size(); ++i) {
    if (text[i] == QLatin1Char('&')) {
      if (++i == text.size()) break;
      if (text[i] == QLatin1Char('&')) plain += QLatin1Char('&');
    }
    plain += text[i];
  }
  return plain;
}

}  // namespace

TCommands::TCommands(QWidget *window) : QObject(window), m_window(window) {
  for (const TCommandRow &row : Rows) {
    auto *action = new QAction(QString::fromLatin1(row.text), window);
    action->setObjectName(QString::fromLatin1(row.name));
    action->setCheckable(row.checkable);
    action->setShortcuts(KeysOf(row.keys));
    if (row.icon != nullptr) action->setIcon(QIcon(QString::fromLatin1(row.icon)));
    m_actions[static_cast<size_t>(row.command)] = action;
  }
  window->addActions(QList<QAction *>(m_actions.begin(), m_actions.end()));
}

void TCommands::BuildMenus(QMenuBar *bar) {
  for (const TMenuRow &row : Menus) {
    auto *menu = new QMenu(QString::fromLatin1(row.title), m_window);
    menu->setObjectName(QString::fromLatin1(row.name));
    m_menus[static_cast<size_t>(row.menu)] = menu;
    if (row.menu == row.parent) bar->addMenu(menu);
  }
  for (const TEntry &entry : Entries) {
    QMenu *menu = Menu(entry.menu);
    switch (entry.kind) {
      case TEntry::TKind::Command:
        menu->addAction(m_actions[static_cast<size_t>(entry.index)]);
        break;
      case TEntry::TKind::Menu:
        menu->addMenu(m_menus[static_cast<size_t>(entry.index)]);
        break;
      case TEntry::TKind::Separator:
        menu->addSeparator();
        break;
    }
  }
}

void TCommands::FinishTexts(const TLanguage &language, bool plainMenus) {
  for (const TCommandRow &row : Rows) {
    QAction *action = (*this)[row.command];
    if (row.hint.section == nullptr) continue;
    const QString hint = language.Text(row.hint);
    const QString keys = action->shortcut().toString(QKeySequence::NativeText);
    const QString shortHint = TLanguage::ShortHint(hint);
    action->setToolTip(keys.isEmpty() ? shortHint : QStringLiteral("%1 (%2)").arg(shortHint, keys));
    action->setStatusTip(TLanguage::LongHint(hint));
  }
  if (!plainMenus) return;
  for (const TMenuRow &row : Menus) {
    if (row.menu == row.parent) Menu(row.menu)->setTitle(WithoutMnemonic(Menu(row.menu)->title()));
  }
}
