#pragma once

#include <functional>
#include <QObject>
#include <utility>

class TActions;
class TCoolBar;
class TEdgeBars;
class TFullScreen;
class TMainMenuBar;
class TMainStatusBar;
class TSettings;
class TZVPageControl;

// Which bars of the main window are to be seen: the user's choice for the normal window, another one for full screen
// (and there what the mouse or the keyboard brings back for a while), and none at all while a page has the screen to
// itself.
class TWindowBars final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  TWindowBars(TActions &actions, TCoolBar &bands, const TMainMenuBar &menuBar, TMainStatusBar &status,
              TZVPageControl &pages, TFullScreen &fullScreen, TEdgeBars &edges, TSettings &settings);

  // The links bar shows while ViewLinksBar is set and `hasLinks` says that there is something for it. Its command is
  // there always, and checked while the bar shows.
  void SetHasLinks(std::function<bool()> hasLinks) { m_hasLinks = std::move(hasLinks); }
  // Shows the bars as the settings say; what changes them later does so by itself.
  void Apply();
  // Leaves the settings that the bars obey in the store.
  void Save();

 Q_SIGNALS:
  // The user wants the links bar, and there is nothing for it yet.
  void LinksWanted();

 private:
  [[nodiscard]] bool ShowsStatusBar() const;
  [[nodiscard]] bool ShowsMenuBar() const;

  TActions &m_actions;
  TCoolBar &m_bands;
  const TMainMenuBar &m_menuBar;
  TMainStatusBar &m_status;
  TZVPageControl &m_pages;
  TFullScreen &m_fullScreen;
  TEdgeBars &m_edges;
  TSettings &m_settings;
  std::function<bool()> m_hasLinks;
};
