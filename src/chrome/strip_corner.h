#pragma once

#include <QWidget>

class TActions;
class TZVPageControl;

// What stands at the end of the tab strip: a new tab, and the list of the tabs.
class TStripCorner final : public QWidget {
  Q_OBJECT

 public:
  // Belongs to `pages` from then on. `actions` must outlive this object.
  TStripCorner(const TActions &actions, TZVPageControl &pages);
};
