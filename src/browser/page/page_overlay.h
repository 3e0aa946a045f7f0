#pragma once

#include <QList>
#include <QObject>

class QWidget;
class TFloatingPanel;

// Lays panels over the top edge of a page, one below the other, so that the page keeps its size and nothing in it jumps
// when one comes or goes. Each is as wide as it wants to be, where there is room, and else higher.
class TPageOverlay final : public QObject {
  Q_OBJECT

 public:
  // Panels lie over `page`, a child of `browser` that fills it, and under what else lies there.
  TPageOverlay(QWidget *browser, QWidget *page);

  enum class TSide { Leading, Trailing };
  // Becomes a child of the browser, below those that were added before.
  void Add(TFloatingPanel *panel, TSide side);

  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  struct TPlaced {
    TFloatingPanel *panel;
    TSide side;
  };

  void Arrange();

  QWidget *m_browser;
  QWidget *m_page;
  QList<TPlaced> m_panels;
};
