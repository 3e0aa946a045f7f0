#pragma once

#include <QWidget>

class TLanguage;
class TSideBarEdge;

// The side bar and the pages side by side, with the edge between them. Where reading runs from right to left the bar
// stands at the right.
class TSideBarFrame final : public QWidget {
  Q_OBJECT

 public:
  // Pixels: no bar is narrower, and the pages are left that much where the window has it.
  static constexpr int SmallestBar = 160;
  static constexpr int SmallestPages = 150;

  // Both become children of it.
  TSideBarFrame(QWidget *bar, QWidget *pages, const TLanguage &language, QWidget *parent);

  void SetOpen(bool open);
  [[nodiscard]] bool IsOpen() const { return m_isOpen; }
  // Neither bar nor edge, whatever else is wanted: a page has the screen to itself.
  void SetPagesOnly(bool pagesOnly);
  // What the window has no room for is not shown, and comes back with the room.
  void SetBarWidth(int width);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 Q_SIGNALS:
  // The user has dragged the edge there.
  void WidthChosen(int width);
  void OpenWanted();
  void CloseWanted();

 protected:
  void changeEvent(QEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;

 private:
  void Arrange();
  [[nodiscard]] int Fitting(int width) const;

  const TLanguage &m_language;
  QWidget *m_bar;
  TSideBarEdge *m_edge;
  QWidget *m_pages;
  int m_width = SmallestBar;
  int m_dragged = 0;  // the width while it is being dragged; 0: it is not
  bool m_isOpen = false;
  bool m_isPagesOnly = false;
};
