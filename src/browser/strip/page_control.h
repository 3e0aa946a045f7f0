#pragma once

#include <QColor>
#include <QIcon>
#include <QList>
#include <QWidget>
#include <memory>

// The tab strip with its pages: several rows or one row that scrolls, above or below the pages. Positions count every
// page, hidden ones too. A hidden page has no tab in the strip. The control does not own what a page means: captions,
// tool tips and images are given to it, and it reports what the user wants.
class TZVPageControl final : public QWidget {
  Q_OBJECT
  Q_PROPERTY(QColor InactiveTabColor READ InactiveTabColor WRITE SetInactiveTabColor)
  Q_PROPERTY(QColor InactiveFontColor READ InactiveFontColor WRITE SetInactiveFontColor)

 public:
  explicit TZVPageControl(QWidget *parent = nullptr);
  ~TZVPageControl() override;

  // Takes the page as a child. The active page does not change, except that the first visible page becomes active.
  void InsertPage(int position, QWidget *page, bool visible = true);
  // Gives the page up without deleting it. Removing the active page activates the next visible one, else the previous.
  void RemovePage(QWidget *page);
  void MovePage(int from, int to);

  [[nodiscard]] int PageCount() const;
  [[nodiscard]] int VisiblePageCount() const;
  [[nodiscard]] QWidget *Page(int position) const;    // nullptr when out of range
  [[nodiscard]] int IndexOf(const QWidget *page) const;  // -1 when not a page of this control; constant time
  [[nodiscard]] QWidget *ActivePage() const;
  [[nodiscard]] int ActivePageIndex() const;          // -1 when there is none
  void SetActivePage(QWidget *page);
  // The next or previous visible page, going round at the ends.
  void SelectNextPage(bool forward);

  void SetPageVisible(QWidget *page, bool visible);
  [[nodiscard]] bool IsPageVisible(const QWidget *page) const;
  // `caption` follows the menu convention: "&&" stands for one ampersand.
  void SetPageCaption(QWidget *page, const QString &caption);
  [[nodiscard]] QString PageCaption(const QWidget *page) const;
  void SetPageHint(QWidget *page, const QString &hint);
  // Index into Images(), -1 for none.
  void SetPageImage(QWidget *page, int image);
  [[nodiscard]] int PageImage(const QWidget *page) const;
  void SetImages(const QList<QIcon> &images);

  [[nodiscard]] QColor InactiveTabColor() const;
  void SetInactiveTabColor(const QColor &color);
  [[nodiscard]] QColor InactiveFontColor() const;
  void SetInactiveFontColor(const QColor &color);
  // Several rows, or one row that scrolls.
  [[nodiscard]] bool MultipleLines() const;
  void SetMultipleLines(bool multiple);
  [[nodiscard]] bool TabsDown() const;
  void SetTabsDown(bool down);
  // Texts for the close buttons and the scroll buttons (tool tips and accessible names).
  void SetButtonTexts(const QString &closeTab, const QString &scrollLeft, const QString &scrollRight);

  // Where the page's tab is, in this widget's coordinates; empty when it has none or is scrolled out of sight.
  [[nodiscard]] QRect TabRect(const QWidget *page) const;
  [[nodiscard]] QWidget *PageAt(const QPoint &position) const;  // by tab; nullptr beside the tabs
  // Gives the strip itself the keyboard: arrow keys walk, Delete closes, the menu key opens the tab menu.
  void FocusStrip();

 Q_SIGNALS:
  void ActivePageChanged(QWidget *page);            // pcPageChange; after the page is on screen
  void CloseRequested(QWidget *page);               // close button, middle click, Delete
  void TabMenuRequested(QWidget *page, const QPoint &globalPosition);
  void EmptyStripDoubleClicked();
  void PageMoved(int from, int to);

 private:
  struct TPrivate;
  std::unique_ptr<TPrivate> d;
};
