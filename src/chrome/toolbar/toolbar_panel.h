#pragma once

#include <QWidget>

class QMenu;
class QToolButton;
class TActions;
class TLanguage;
class TZVToolBar;

// What stands in the place of the tool bar (pnlToolbar), in any width: the bar in a panel of its own (pnlToolbarMain),
// beside it, where not everything fits, the button (tbxBar) that drops the rest as a menu, and at the end what turns
// while the page loads. Its texts are markers.
class TToolbarPanel final : public QWidget {
  Q_OBJECT

 public:
  // Takes `busy` as its own. `actions` and `language` must outlive this object; about `hasSearchMenu` see TZVToolBar.
  TToolbarPanel(const TActions &actions, const TLanguage &language, bool hasSearchMenu, QWidget *busy, QWidget *parent);

  [[nodiscard]] TZVToolBar &Bar() const { return *m_bar; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent *event) override;
  void changeEvent(QEvent *event) override;

 private:
  void Arrange();
  void FillMenu();
  [[nodiscard]] int BusyWidth() const;

  const TActions &m_actions;
  const TLanguage &m_language;
  QWidget *m_main;
  TZVToolBar *m_bar;
  QWidget *m_extender;
  QToolButton *m_chevron;
  QMenu *m_menu;
  QWidget *m_busy;
};
