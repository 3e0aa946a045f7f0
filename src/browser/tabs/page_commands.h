#pragma once

#include <functional>
#include <QObject>

class TBrowserTab;
class TActions;
class THalvexBrowser;
class TTabStrip;

// The commands that work on the page in front: save, print, edit, zoom, find, source. Each does nothing when the
// active tab has no browser. Those of the clipboard, find and zoom go to a browser beside the tabs while the user has
// the keyboard in it.
class TPageCommands final : public QObject {
  Q_OBJECT

 public:
  // Both must outlive this object.
  TPageCommands(TActions &actions, TTabStrip &tabs);

  // `focused` gives the browser beside the tabs that has the keyboard, nullptr for none. It is called as long as this
  // object lives.
  void SetFocusedBrowser(std::function<THalvexBrowser *()> focused) { m_focused = std::move(focused); }

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
  [[nodiscard]] THalvexBrowser *FocusedBrowser() const;  // that of the tab where no other has the keyboard

  TActions &m_actions;
  TTabStrip &m_tabs;
  std::function<THalvexBrowser *()> m_focused;
};
