#pragma once

#include <QObject>

#include "browser/tabs/first_page_wait.h"
#include "chrome/side_bar/halvex_bar.h"

class TActions;
class TFullScreen;
class TLanguage;
class TSettings;
class TSideBarFrame;
class TTabStrip;
class TZVPageControl;

// The side bar in the main window: whether it shows, how wide it is and which page is in front, by command, key and
// mouse; all of it is remembered.
class TSideBarView final : public QObject {
  Q_OBJECT

 public:
  // Makes a frame, a child of `window`, that takes `pages` in. All must outlive this object.
  TSideBarView(QWidget *window, TZVPageControl *pages, TActions &actions, TTabStrip &tabs, TFullScreen &fullScreen,
               const TLanguage &language, TSettings &settings);

  // What the window shows in its middle.
  [[nodiscard]] TSideBarFrame *Frame() const { return m_frame; }
  // The page's command turns to it.
  void AddPage(const TSideBarPage &page);
  // All pages are added, and the first pages of the web are under way: the bar that is open is filled when one of them
  // is there.
  void Begin();
  // Leaves the settings that the bar obeys in the store.
  void Save();

 private:
  void Show(bool open);
  void TurnTo(int page);
  void LeaveBar();

  TActions &m_actions;
  TTabStrip &m_tabs;
  TSettings &m_settings;
  THalvexBar *m_bar;
  TSideBarFrame *m_frame;
  TFirstPageWait m_firstPage{m_tabs};
};
