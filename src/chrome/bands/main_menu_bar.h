#pragma once

#include <QWidget>

class QAction;
class QMenuBar;
class QToolButton;
class TActions;
class TLanguage;
class TMenuExtender;

// The band of the menu bar (pnlMenuBar): the menu bar, of which what fits is to be seen, and the chevron (tbxMenu) with
// the menus that do not. The keyboard walks through all of them; what it comes to moves into view.
class TMainMenuBar final : public QWidget {
  Q_OBJECT

 public:
  // With the menus of the command table. Both must outlive the bar.
  TMainMenuBar(TActions &actions, const TLanguage &language, QWidget *parent = nullptr);

  [[nodiscard]] QMenuBar *Bar() const { return m_bar; }
  // The desktop shows the menus in a place of its own, and the band would be empty.
  [[nodiscard]] bool IsElsewhere() const;
  [[nodiscard]] TMenuExtender &Extender() const { return *m_extender; }

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;
  bool eventFilter(QObject *watched, QEvent *event) override;

 protected:
  bool event(QEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;

 private:
  // Of a menu's item in the menu bar, from the edge where reading begins.
  struct TSpan {
    int begin;
    int end;
  };

  [[nodiscard]] TSpan SpanOf(const QAction *action) const;
  void LayOut();
  // The keyboard or the mouse has come to an item.
  void BringIntoView(QAction *action);
  // Shows the bar from its beginning again, once it is left.
  void Settle();

  QWidget *m_view;  // what of the menu bar is to be seen
  QMenuBar *m_bar;
  QWidget *m_panel;  // holds the chevron, and has no width while all fits
  QToolButton *m_chevron;
  TMenuExtender *m_extender;
  int m_scrolled =
      -1;  // pixels by which the bar has been moved for an item; -1 while nobody has walked beyond the view
};
