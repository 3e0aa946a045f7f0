#pragma once

#include <QObject>

class QMainWindow;
class TBrowserTab;
class TActions;
class TSettings;
class TTabStrip;

// The window without its frame: the user's full screen (F11), which keeps the tabs and the tool bars, and the one that
// a page asks for (a video), which keeps nothing but the page.
class TFullScreen final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  TFullScreen(QMainWindow *window, TActions &actions, TTabStrip &tabs, TSettings &settings);

  void Enter();
  void Leave();
  [[nodiscard]] bool IsOn() const { return m_on; }
  [[nodiscard]] bool IsPageFullScreen() const { return m_page; }
  // As it was when the last window went.
  void Restore();
  void Save();
  void ShowPageOnly(TBrowserTab *tab, bool on);

  // Both kinds end when the desktop takes the window out of full screen.
  bool eventFilter(QObject *watched, QEvent *event) override;

 Q_SIGNALS:
  // Which bars are to be seen has changed.
  void BarsChanged();

 private:
  void GoFull();
  void GoBack();
  void LeavePage();

  QMainWindow *m_window;
  TActions &m_actions;
  TTabStrip &m_tabs;
  TSettings &m_settings;
  bool m_on = false;
  bool m_page = false;
};
