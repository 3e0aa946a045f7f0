#pragma once

#include <QObject>

#include "browser/engine/zoom_table.h"

class QWebEnginePage;
class TSiteZoom;

// How large the page of one tab is shown: as its site is wanted (TSiteZoom), which other tabs follow, and where the
// user has not zoomed the site, in the text size that he has chosen for the tab.
class TPageZoom final : public QObject {
  Q_OBJECT

 public:
  TPageZoom(TSiteZoom &sites, QObject *parent);

  // From now on it is this page, which must live as long.
  void SetPage(QWebEnginePage *page);
  // One of the five sizes, for the tab. The page has it then, whatever its site had; others do nothing.
  void SetTextSize(int size);
  [[nodiscard]] int TextSize() const { return NearestZoom(qreal(m_percent) / PlainZoom); }
  void Step(bool in);
  void Reset();
  [[nodiscard]] int Percent() const { return m_percent; }
  // Another page has come: a page of another site may get a renderer of its own, which starts at the plain size.
  void Apply();

 Q_SIGNALS:
  void Changed();

 private:
  [[nodiscard]] QString Site() const;

  TSiteZoom &m_sites;
  QWebEnginePage *m_page = nullptr;
  int m_ofTab = PlainZoom;
  int m_percent = PlainZoom;
};
