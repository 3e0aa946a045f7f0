#pragma once

#include <functional>
#include <QColor>
#include <QList>
#include <QPoint>
#include <QWidget>
#include <utility>
#include "browser/strip/tab_geometry.h"
#include "browser/strip/tab_list.h"
#include "browser/strip/tab_painter.h"

class TFrameUpdates;
class TTabDrag;
class TTabScrollers;

// The strip itself: shows the tabs of a list and turns what the mouse and the keyboard do there into wishes. It changes
// nothing in the list; the page control does, and tells the strip right after. Changes only mark the layout as stale;
// it is worked out once per turn of the event loop, or when somebody asks where a tab is. What pages change (captions
// and images) waits for the frame's next turn.
class TTabBarView final : public QWidget {
  Q_OBJECT

 public:
  using TDescriber = std::function<QString(const QWidget *page)>;

  TTabBarView(const TTabList &tabs, TFrameUpdates &updates, QWidget *parent);
  ~TTabBarView() override;

  void TabShown(TTab *tab);      // new in the list, or no longer hidden
  void TabAboutToGo(TTab *tab);  // removed or hidden: the list still has it as it was
  void TabRemoved();
  void TabHidden(TTab *tab);
  void TabMoved(const TTab *tab);
  void TabCaptionChanged(TTab *tab, const QString &caption);
  void TabImageChanged(TTab *tab);
  void ActiveChanged(TTab *before);

  void SetImages(const QList<QIcon> &images);
  [[nodiscard]] QColor InactiveTabColor() const { return m_inactiveTab; }
  [[nodiscard]] QColor InactiveFontColor() const { return m_inactiveFont; }
  void SetInactiveColors(const QColor &tab, const QColor &font);
  [[nodiscard]] bool MultipleLines() const { return m_geometry.multiple; }
  void SetMultipleLines(bool multiple);
  [[nodiscard]] bool TabsDown() const { return m_geometry.tabsDown; }
  void SetTabsDown(bool down);
  void SetDescriber(const TDescriber &describer) { m_describer = describer; }
  // What screen readers are told of a tab beside its name.
  [[nodiscard]] QString DescriptionOf(const TTab *tab) const {
    return m_describer ? m_describer(tab->page) : tab->hint;
  }
  // Room at the end of each row that tabs leave free, in pixels, for what stands in the last row.
  void SetEndReserve(int width) { m_stale = std::exchange(m_geometry.endReserve, width) != width || m_stale; }
  [[nodiscard]] QRect EndPlace() const { return m_geometry.EndPlace(); }
  void SetButtonTexts(const QString &closeTab, const QString &scrollLeft, const QString &scrollRight);

  // Lays the tabs out for a page control of this size; returns how much of its height the strip takes.
  int HeightFor(const QSize &control);
  [[nodiscard]] QRect TabRect(const TTab *tab);  // the part that can be seen, in own coordinates
  [[nodiscard]] TTab *TabAt(const QPoint &position);
  [[nodiscard]] const TTabList &Tabs() const { return m_tabs; }
  [[nodiscard]] bool IsStale() const { return m_stale || m_tabsChanged; }
  void Press(TTab *tab) { Q_EMIT Activated(tab->page); }

 Q_SIGNALS:
  void ArrangeWanted();
  void Activated(QWidget *page);
  void CloseWanted(QWidget *page);
  void MoveWanted(int from, int to);
  void MenuWanted(QWidget *page, const QPoint &globalPosition);
  void EmptyDoubleClicked();
  void LinkDropped(const QString &address, QWidget *page);
  // The page's tab is held over something outside that takes what is dropped there.
  void DragOutWanted(QWidget *page);
  void PageFocusWanted();

 protected:
  bool event(QEvent *event) override;
  void changeEvent(QEvent *event) override;
  void paintEvent(QPaintEvent *event) override;
  void focusInEvent(QFocusEvent *event) override;
  void focusOutEvent(QFocusEvent *event) override;
  void mousePressEvent(QMouseEvent *event) override;
  void mouseMoveEvent(QMouseEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void mouseDoubleClickEvent(QMouseEvent *event) override;
  void leaveEvent(QEvent *event) override;
  void wheelEvent(QWheelEvent *event) override;
  void contextMenuEvent(QContextMenuEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void dragEnterEvent(QDragEnterEvent *event) override;
  void dragMoveEvent(QDragMoveEvent *event) override;
  void dragLeaveEvent(QDragLeaveEvent *event) override;
  void dropEvent(QDropEvent *event) override;

 private:
  void Invalidate();
  void LayOut();
  void PlaceTabs();
  void Gather(TTab *tab);
  void MeasureChanged();
  void Measure(TTab *tab);
  void MeasureAll();
  [[nodiscard]] bool KeepsImagePlace(const TTab *tab) const;
  [[nodiscard]] bool ShowsMark(const TTab *tab) const;
  [[nodiscard]] QRect CloseRect(const TTab *tab) const;
  void DrawTab(TTabPainter &painter, TTab *tab);
  void UpdateTab(const TTab *tab);

  void ScrollTo(int offset);
  void ScrollByHand(int offset);
  void Reveal(const TTab *tab);

  void UpdateHover();
  void SetHover(QWidget *page, bool overClose);
  void SetDropTarget(QWidget *page);
  void ShowTip(const QPoint &position, const QPoint &globalPosition);
  void WalkByWheel(int steps);
  [[nodiscard]] TTab *TabTowards(int key) const;

  const TTabList &m_tabs;
  TTabGeometry m_geometry;  // out of date while m_stale
  TTabScrollers *m_scrollers;
  TTabDrag *m_drag;
  QList<QIcon> m_images;
  QColor m_inactiveTab;
  QColor m_inactiveFont;
  QString m_closeText;
  TDescriber m_describer;

  TFrameUpdates &m_updates;
  bool m_stale = true;
  bool m_tabsChanged = false;  // some of them, since they were measured last
  bool m_arrangePosted = false;
  bool m_scrolledByHand = false;  // then the active tab is not brought back until it changes

  // Pages are kept as keys into the list: what a signal sets off may have removed them.
  QWidget *m_hover = nullptr;
  bool m_overClose = false;
  QWidget *m_pressedClose = nullptr;  // left button went down on its close button
  QWidget *m_pressedMiddle = nullptr;
  QWidget *m_dropTarget = nullptr;
  QPoint m_mouse;
  bool m_mouseInside = false;
  int m_wheelRest = 0;
};
