#pragma once

#include <functional>
#include <QWidget>
#include <vector>

class QAction;
class QButtonGroup;
class QMenu;
class QStackedWidget;
class QToolButton;
class TLanguage;

// A page of the side bar.
struct TSideBarPage {
  int number = 0;              // of its kind, by which it is remembered, whichever of the others there are
  QAction *command = nullptr;  // that turns to it: its icon and keys are the page's
  QString name{};
  std::function<QWidget *()> make;  // once, when it shows for the first time; its focus proxy gets the keyboard
  std::function<void(QMenu &)> fillOptions{};  // each time before the menu of its options opens; empty: it has none
};

// The side bar itself: a row of buttons, one for each page, and the page in front below them.
class THalvexBar final : public QWidget {
  Q_OBJECT

 public:
  explicit THalvexBar(const TLanguage &language, QWidget *parent = nullptr);

  // They stand in the order in which they are added.
  void AddPage(const TSideBarPage &page);
  // By its number; one that no page has shows the first one.
  void SetCurrent(int page);
  // While it is held, a page that shows is not made yet.
  void Hold(bool held);
  // Gives the keyboard to the page in front, held or not.
  void FocusPage();

 Q_SIGNALS:
  // By a click on its button, or something dragged that rests on it.
  void PageChosen(int page);
  void CloseWanted();
  // The keyboard wants back to where the pages of the web are.
  void LeaveWanted();

 protected:
  bool event(QEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;
  void showEvent(QShowEvent *event) override;

 private:
  struct TPage {
    TSideBarPage traits;
    QToolButton *button = nullptr;
    QWidget *widget = nullptr;  // once it is made
  };

  [[nodiscard]] int PlaceOf(int number) const;
  void MakeCurrent();
  void FitButtons();
  void ShowOptions();

  std::vector<TPage> m_pages;
  int m_current = -1;  // its place
  bool m_isHeld = false;
  QButtonGroup *m_buttons;
  QWidget *m_head;
  QToolButton *m_options;   // tbHBOptions
  QMenu *m_optionsMenu;     // pmHBOptions
  QToolButton *m_close;     // tbHBClose
  QStackedWidget *m_stack;  // pcHalvexBar
};
