#pragma once

#include <functional>
#include <memory>
#include <QColor>
#include <QIcon>
#include <QList>
#include <QWidget>

class TFrameUpdates;

// The tab strip with its pages: several rows or one row that scrolls, above or below the pages. Positions count every
// page, hidden ones too. A hidden page has no tab in the strip. The control does not own what a page means: captions,
// tool tips and images are given to it, and it reports what the user wants.
class TZVPageControl final : public QWidget {
  Q_OBJECT
  Q_PROPERTY(QColor InactiveTabColor READ InactiveTabColor WRITE SetInactiveTabColor)
  Q_PROPERTY(QColor InactiveFontColor READ InactiveFontColor WRITE SetInactiveFontColor)

 public:
  // What pages change in the strip is shown with the rest that `updates` gathers, which must outlive this object; with
  // null it gathers on its own.
  explicit TZVPageControl(QWidget *parent = nullptr, TFrameUpdates *updates = nullptr);
  ~TZVPageControl() override;

  // Takes the page as a child. The active page does not change, except that the first visible page becomes active.
  // A position out of range means the end. A page that is here already is moved.
  // A page that is deleted or given to another parent later leaves as if it had been removed.
  void InsertPage(int position, QWidget *page, bool visible = true);
  // Gives the page up without deleting it. Removing the active page activates the next visible one, else the previous.
  void RemovePage(QWidget *page);
  // The same for one that is wanted no more: it is deleted when the event loop comes to it. Until then it stays a
  // hidden child, since to leave the window takes the longer the more pages there are.
  void DeletePage(QWidget *page);
  // Nothing happens when `from` is out of range; `to` is brought into it.
  void MovePage(int from, int to);

  [[nodiscard]] int PageCount() const;
  [[nodiscard]] int VisiblePageCount() const;
  [[nodiscard]] QWidget *Page(int position) const;       // nullptr when out of range
  [[nodiscard]] int IndexOf(const QWidget *page) const;  // -1 when not a page of this control
  [[nodiscard]] QWidget *ActivePage() const;
  [[nodiscard]] int ActivePageIndex() const;  // -1 when there is none
  // A hidden page is refused: what is on screen stays.
  void SetActivePage(QWidget *page);
  // Between the two the active page may change many times without any page being shown or hidden; at the end the one
  // that is active then is shown. Calls may be nested; TPresentationPause keeps them in pairs.
  void BeginUpdate();
  void EndUpdate();
  // The next or previous visible page, going round at the ends.
  void SelectNextPage(bool forward);

  void SetPageVisible(QWidget *page, bool visible);
  [[nodiscard]] bool IsPageVisible(const QWidget *page) const;
  // `caption` follows the menu convention: "&&" stands for one ampersand.
  void SetPageCaption(QWidget *page, const QString &caption);
  [[nodiscard]] QString PageCaption(const QWidget *page) const;
  void SetPageHint(QWidget *page, const QString &hint);
  // What screen readers are told of a page's tab beside its caption, asked for when they want to know it; the hint
  // where nobody describes. Changes of hint and image are told by themselves, all others by TellDescription.
  void SetDescriber(const std::function<QString(const QWidget *page)> &describer);
  void TellDescription(const QWidget *page);
  // What is to be seen of the page's state, beside its icon: an index into the images that were set, -1 for none.
  void SetPageImage(QWidget *page, int image);
  [[nodiscard]] int PageImage(const QWidget *page) const;
  void SetImages(const QList<QIcon> &images);
  // The site's own icon; a null icon for none.
  void SetPageIcon(QWidget *page, const QIcon &icon);

  // Colours of the tabs that are not active. Where they are not valid, as at first, these tabs have the desktop's own.
  [[nodiscard]] QColor InactiveTabColor() const;
  void SetInactiveTabColor(const QColor &color);
  [[nodiscard]] QColor InactiveFontColor() const;
  void SetInactiveFontColor(const QColor &color);
  // Several rows, or one row that scrolls.
  [[nodiscard]] bool MultipleLines() const;
  void SetMultipleLines(bool multiple);
  [[nodiscard]] bool TabsDown() const;
  void SetTabsDown(bool down);
  // Without the strip the active page has all the room: for a page that has the whole screen to itself.
  void SetStripVisible(bool visible);
  // Texts for the close buttons and the scroll buttons (tool tips and accessible names).
  void SetButtonTexts(const QString &closeTab, const QString &scrollLeft, const QString &scrollRight);

  // Takes a widget to stand at the end of the strip: behind the tabs, in the last row where there are several.
  void SetCorner(QWidget *corner);

  // Where the page's tab is, in this widget's coordinates; empty when it has none or is scrolled out of sight.
  [[nodiscard]] QRect TabRect(const QWidget *page) const;
  // Gives the strip itself the keyboard: arrow keys, Home and End walk (with Ctrl they move the tab), Delete closes,
  // the menu key opens the tab menu, Enter, Space and Escape go back into the page.
  void FocusStrip();
  // True while somebody walks through the tabs by keyboard: then the focus should not be taken into the page.
  [[nodiscard]] bool StripHasFocus() const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  void ActivePageChanged(QWidget *page);  // pcPageChange; after the page is on screen
  void CloseRequested(QWidget *page);     // close button, middle click, Delete
  void TabMenuRequested(QWidget *page, const QPoint &globalPosition);
  void EmptyStripDoubleClicked();
  void PageMoved(int from, int to);
  // An address of a page or a file was dropped on the page's tab, or beside the tabs (nullptr).
  void LinkDropped(const QString &address, QWidget *page);
  // See TTabBarView::DragOutWanted.
  void DragOutWanted(QWidget *page);

 protected:
  bool event(QEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;

 private:
  void Arrange();
  void SwitchTo(QWidget *page);
  void Activate(QWidget *page);
  void Forget(QObject *page, QWidget *leaving);
  struct TPrivate;
  std::unique_ptr<TPrivate> d;
};

// For as long as it lives the page area of `pages` stays as it is.
class TPresentationPause final {
 public:
  explicit TPresentationPause(TZVPageControl &pages) : m_pages(pages) { m_pages.BeginUpdate(); }
  ~TPresentationPause() { m_pages.EndUpdate(); }
  TPresentationPause(const TPresentationPause &) = delete;
  TPresentationPause &operator=(const TPresentationPause &) = delete;

 private:
  TZVPageControl &m_pages;
};
