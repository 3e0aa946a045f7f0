#include "search/search_routing.h"

#include <utility>

namespace {

// Exactly so: a name in other letters is that of some other window.
constexpr QLatin1String MainArea("_main");
constexpr QLatin1String PanelMark("DEF:");

}  // namespace

QString TSearchRouting::MarkedAddress(const QString &url) {
  return url.left(PanelMark.size()).toUpper() == PanelMark ? url.mid(PanelMark.size()) : QString();
}

TSearchRoute TSearchRouting::BeforeWindow(const QString &url, const QString &target) {
  if (const QString address = MarkedAddress(url); !address.isNull())
    return {TSearchRoute::TKind::OpensInPanel, address};
  return {target == MainArea ? TSearchRoute::TKind::OpensInMain : TSearchRoute::TKind::Stays, url};
}

TSearchRoute TSearchRouting::BeforeNavigate(const QString &url, const QString &target, const QString &baseTarget) {
  if (std::exchange(m_passNext, false)) return {TSearchRoute::TKind::Stays, url};
  return BeforeWindow(url, baseTarget == MainArea ? baseTarget : target);
}
