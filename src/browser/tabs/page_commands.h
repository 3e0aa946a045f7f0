#pragma once

#include <QObject>

class TBrowserTab;
class TActions;
class THalvexBrowser;
class TTabStrip;

// The commands that work on the page in front: save, print, edit, zoom, find, source. Each does nothing when the
// active tab has no browser.
class TPageCommands final : public QObject {
  Q_OBJECT

 public:
  // Both must outlive this object.
  TPageCommands(TActions &actions, TTabStrip &tabs);

  // Back, forward, stop and the like follow the active tab. Tells whether that has changed any.
  bool UpdateFor(TBrowserTab *tab);

 private:
  using TOperation = void (THalvexBrowser::*)();
  struct TSimple;
  struct TFont;
  static const TSimple SimpleCommands[];
  static const TFont Fonts[];

  void ConnectSimple();
  void ConnectNavigation();
  void ConnectClipboard();
  void ConnectFonts();
  [[nodiscard]] THalvexBrowser *Browser() const;

  TActions &m_actions;
  TTabStrip &m_tabs;
};
