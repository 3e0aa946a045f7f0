#pragma once

#include <QObject>

class QMainWindow;
class TActions;
class TEdgeBars;
class TFullScreen;
class TMainStatusBar;
class TMainToolbars;
class TSettings;
class TZVPageControl;

// Which bars of the main window are to be seen: the user's choice for the normal window, another one for full screen
// (and there what the mouse or the keyboard brings back for a while), and none at all while a page has the screen to
// itself.
class TWindowBars final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  TWindowBars(QMainWindow *window, TActions &actions, TMainToolbars &toolbars, TMainStatusBar &status,
              TZVPageControl &pages, TFullScreen &fullScreen, TEdgeBars &edges, TSettings &settings);

  // Shows the bars as the settings say; what changes them later does so by itself.
  void Apply();
  // Leaves the settings that the bars obey in the store.
  void Save();

 private:
  [[nodiscard]] bool ShowsStatusBar() const;
  [[nodiscard]] bool ShowsMenuBar() const;

  QMainWindow *m_window;
  TActions &m_actions;
  TMainToolbars &m_toolbars;
  TMainStatusBar &m_status;
  TZVPageControl &m_pages;
  TFullScreen &m_fullScreen;
  TEdgeBars &m_edges;
  TSettings &m_settings;
};
