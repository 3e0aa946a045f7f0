#pragma once

#include <QObject>
#include <QTimer>

class TTabStrip;

// For what may wait until a first page of the web is there: told once, when one of them is there and painted, when
// there is none to come, or when it does not come for three seconds.
class TFirstPageWait final : public QObject {
  Q_OBJECT

 public:
  // `tabs` must outlive this object.
  explicit TFirstPageWait(TTabStrip &tabs);

  // The first pages are under way.
  void Begin();

 Q_SIGNALS:
  void Over();

 private:
  TTabStrip &m_tabs;
  QTimer m_timer;
};
