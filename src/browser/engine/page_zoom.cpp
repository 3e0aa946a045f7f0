#include "browser/engine/page_zoom.h"

#include <QWebEnginePage>
#include <utility>

#include "browser/engine/site_zoom.h"

TPageZoom::TPageZoom(TSiteZoom &sites, QObject *parent) : QObject(parent), m_sites(sites) {
  connect(&sites, &TSiteZoom::Changed, this, [this](const QString &site) {
    if (site == Site()) Apply();
  });
}

QString TPageZoom::Site() const {
  return m_page != nullptr ? TSiteZoom::SiteOf(m_page->url()) : QString();
}

void TPageZoom::SetPage(QWebEnginePage *page) {
  m_page = page;
  Apply();
}

void TPageZoom::SetTextSize(int size) {
  if (size < 0 || size >= int(ZoomFactors.size())) return;
  m_ofTab = qRound(ZoomFactors[size_t(size)] * PlainZoom);
  m_sites.Set(Site(), std::nullopt);
  Apply();
}

void TPageZoom::Step(bool in) {
  const int percent = NextZoomStep(m_percent, in);
  const QString site = Site();
  // Pages without a site, and all at their plain size, have nothing to be remembered.
  if (site.isEmpty() || percent == PlainZoom) m_ofTab = percent;
  m_sites.Set(site, percent == PlainZoom ? std::nullopt : std::optional(percent));
  Apply();
}

void TPageZoom::Reset() {
  SetTextSize(MediumZoom);
}

void TPageZoom::Apply() {
  const int percent = m_sites.PercentOf(Site()).value_or(m_ofTab);
  const qreal factor = qreal(percent) / PlainZoom;
  if (m_page != nullptr && !qFuzzyCompare(m_page->zoomFactor(), factor)) m_page->setZoomFactor(factor);
  if (std::exchange(m_percent, percent) != percent) Q_EMIT Changed();
}
