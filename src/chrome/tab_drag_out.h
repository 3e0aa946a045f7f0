#pragma once

#include <QObject>

class QIcon;
class TTabStrip;

// A tab that is dragged out of the strip, onto what takes it: a tree of favorites or of page groups, the links bar. It
// goes along as its page's address, with what a page group keeps of a tab; the tab itself stays.
class TTabDragOut final : public QObject {
  Q_OBJECT

 public:
  // Belongs to the pages of `tabs` from then on.
  explicit TTabDragOut(TTabStrip &tabs);

 private:
  void Drag(QWidget *page);

  TTabStrip &m_tabs;
};
