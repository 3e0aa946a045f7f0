#pragma once

#include <array>
#include <QAction>
#include <QIcon>
#include <QObject>

#include "actions/command_table.h"

class QActionGroup;
class QMenu;
class QMenuBar;
class QToolBar;
class QToolButton;
class TSettings;

// The icon of this name (see TCommandRow); where reading runs from right to left, its mirrored counterpart.
[[nodiscard]] QIcon CommandIcon(const char *name);

// The commands of a window as actions, and its menus. Modules connect the commands that they own and fill the
// sub-menus that are theirs; whoever builds a bar takes commands from here.
//
//   connect(actions[TCommand::Find], &QAction::triggered, …)
class TActions final : public QObject {
  Q_OBJECT

 public:
  // Makes every action and menu of the table, translated, with its keys working in `window`. A command that switches a
  // flag does so by itself. All must outlive this object.
  TActions(QWidget *window, const TLanguage &language, TSettings &settings);

  [[nodiscard]] QAction *operator[](TCommand command) const { return m_actions[static_cast<size_t>(command)]; }
  [[nodiscard]] QMenu *Menu(TMenu menu) const { return m_menus[static_cast<size_t>(menu)]; }

  // Adds the menus that stand in the menu bar. Their Alt+letter keys come and go with DisableALTShortcuts.
  void FillMenuBar(QMenuBar *bar);
  // Adds a command as a button; one with a menu opens it at once.
  void AddTo(QToolBar *bar, TCommand command) const;
  // Makes a button that of a command, in the same way.
  void Equip(QToolButton *button, TCommand command) const;
  // A tool tip with the keys of the action behind it, if it has any; the hint alone where `action` is null.
  [[nodiscard]] static QString WithKeys(const QString &hint, const QAction *action);

  // Leaves the settings that the menus obey in the store.
  void Save();

 private:
  void MakeActions();
  void MakeMenus();
  void FillMenus();
  void SwitchFlag(const TCommandRow &row);
  void GiveHint(const TCommandRow &row) const;
  void ShowMnemonics();

  QWidget *m_window;
  const TLanguage &m_language;
  TSettings &m_settings;
  std::array<QAction *, static_cast<size_t>(TCommand::Count)> m_actions{};
  std::array<QMenu *, static_cast<size_t>(TMenu::Count)> m_menus{};
  std::array<QString, static_cast<size_t>(TMenu::Count)> m_titles;  // with their mnemonics
};
