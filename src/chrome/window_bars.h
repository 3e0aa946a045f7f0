#pragma once

#include <QObject>

class QMainWindow;
class TCommands;
class TFullScreen;
class TMainStatusBar;
class TMainToolbars;
class TRegistryStore;

// Which bars of the main window are to be seen: the user's choice for the normal window, another one for full screen,
// and none at all while a page has the screen to itself.
class TWindowBars final : public QObject {
  Q_OBJECT

 public:
  TWindowBars(QMainWindow *window, TCommands &commands, TMainToolbars &toolbars, TMainStatusBar &status,
              TFullScreen &fullScreen, TRegistryStore &store);

  // Reads the choice into the check marks and shows the bars accordingly.
  void Restore();
  // In the order in which the window writes its bars; the links bar's choice is handed through.
  void Write(bool linksBar) const;

 Q_SIGNALS:
  // With `pageOnly` the tab strip is to go as well.
  void Applied(bool pageOnly);

 private:
  void Apply();
  void ToggleStatusBar(bool on);
  void ToggleMenuBar(bool on);

  QMainWindow *m_window;
  TCommands &m_commands;
  TMainToolbars &m_toolbars;
  TMainStatusBar &m_status;
  TFullScreen &m_fullScreen;
  TRegistryStore &m_store;
  bool m_statusBar = true;  // the choice for the normal window; full screen does not touch it
  bool m_fullScreenMenuBar = false;
  bool m_fullScreenStatusBar = false;
};
