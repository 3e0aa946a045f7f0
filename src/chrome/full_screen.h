#pragma once

#include <QObject>

class QMainWindow;
class TBrowserTab;
class TCommands;
class TTabStrip;

// The window without its frame: the user's full screen (F11), which keeps the tabs and the tool bars, and the one that
// a page asks for (a video), which keeps nothing but the page.
class TFullScreen final : public QObject {
  Q_OBJECT

 public:
  TFullScreen(QMainWindow *window, TCommands &commands, TTabStrip &tabs);

  void Enter();
  void Leave();
  [[nodiscard]] bool IsOn() const { return m_on; }
  [[nodiscard]] bool IsPageFullScreen() const { return m_page; }
  // Both kinds end: the desktop has taken the window out of full screen.
  void LeaveAll();
  void ShowPageOnly(TBrowserTab *tab, bool on);

 Q_SIGNALS:
  // Which bars are to be seen has changed.
  void BarsChanged();

 private:
  void GoFull();
  void GoBack();
  void LeavePage();

  QMainWindow *m_window;
  TCommands &m_commands;
  TTabStrip &m_tabs;
  bool m_on = false;
  bool m_page = false;
};
