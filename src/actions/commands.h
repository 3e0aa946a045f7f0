#pragma once

#include <array>
#include <QAction>
#include <QObject>

#include "config/language.h"

class QMenuBar;
class QMenu;

// Every command of the main window's menus and tool bar. The table in commands.cpp says what each is called, which
// text, icon and keys it has and in which menu it stands; modules connect the commands that they own.
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
  Properties,
  CloseTab,
  CloseAll,
  CloseAllKeepCurrent,
  CloseAllShowList,
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
  ViewStatusBar,
  ViewMenuBar,
  Back,
  Forward,
  Home,
  Stop,
  Refresh,
  RefreshCompletely,
  StopAll,
  RefreshAll,
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
  FocusStrip,
  TabsBelow,
  TabsAbove,
  TabsOneRow,
  TabsSeveralRows,
  OpenNewAtEnd,
  OpenNewInForeground,
  CloseTabsFirst,
  Downloads,
  UsePopupBlocker,
  OrganizeQuickSearch,
  ClearAddresses,
  SetHomePage,
  StartHome,
  StartBlank,
  StartLast,
  StartGroup,
  About,
  Count
};

// The menus of the menu bar and those of their sub-menus that the table fills.
enum class TMenu {
  File,
  NewTab,
  Send,
  EditWith,
  CloseAll,
  Edit,
  View,
  FontSize,
  AutoRefresh,
  Languages,
  Tabs,
  TabList,
  ThisTab,
  TabPosition,
  Groups,
  Tools,
  SearchEngines,
  Startup,
  Help,
  Count
};

class TCommands final : public QObject {
  Q_OBJECT

 public:
  explicit TCommands(QWidget *window);

  // Builds the menus in `bar`, with marker texts; the window's translation replaces them.
  void BuildMenus(QMenuBar *bar);
  // After the translation: tool tips and status texts, and no Alt+letter keys when `plainMenus` is set.
  void FinishTexts(const TLanguage &language, bool plainMenus);

  [[nodiscard]] QAction *operator[](TCommand command) const { return m_actions[static_cast<size_t>(command)]; }
  [[nodiscard]] QMenu *Menu(TMenu menu) const { return m_menus[static_cast<size_t>(menu)]; }

 private:
  QWidget *m_window;
  std::array<QAction *, static_cast<size_t>(TCommand::Count)> m_actions{};
  std::array<QMenu *, static_cast<size_t>(TMenu::Count)> m_menus{};
};
