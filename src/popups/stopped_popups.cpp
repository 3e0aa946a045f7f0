#include "popups/stopped_popups.h"

#include <QMenu>

#include "browser/tabs/browser_tab.h"
#include "config/language.h"
#include "popups/popup_patterns.h"
#include "ui/shown_text.h"

namespace {

constexpr int LongestItem = 70;  // characters of an address or a pattern in a menu

}  // namespace

struct TStoppedPopups::TPage {
  QList<TStoppedPopup> popups;
  int count = 0;
  bool isLeft = false;  // The tab has set out for another page, of which nothing has been told yet.
};

TStoppedPopups::TStoppedPopups(const TLanguage &language, const TPopupPatterns &patterns, QObject *parent)
    : QObject(parent), m_language(language), m_patterns(patterns) {}

TStoppedPopups::~TStoppedPopups() = default;

void TStoppedPopups::Add(TBrowserTab *opener, const TStoppedPopup &popup) {
  auto &page = m_pages[opener];
  if (!page) {
    page = std::make_shared<TPage>();
    connect(opener, &QObject::destroyed, this, [this, opener] { m_pages.remove(opener); });
    if (opener->Browser() != nullptr) {
      connect(opener->Browser(), &THalvexBrowser::BeforeNavigate, this, [page](const TNavigation *navigation) {
        if (navigation->mainFrame && !navigation->cancel) page->isLeft = true;
      });
      connect(opener->Browser(), &THalvexBrowser::NavigateComplete, this, [this, opener] { Forget(opener); });
    }
  }
  // A page may ask for windows before the engine tells that it has arrived.
  if (page->isLeft) *page = {};
  page->popups.append(popup);
  if (page->popups.size() > MostKept) page->popups.removeFirst();
  ++page->count;
  Q_EMIT Changed(opener, page->count);
}

void TStoppedPopups::Forget(TBrowserTab *tab) {
  const auto page = m_pages.value(tab);
  if (!page || !page->isLeft) return;
  const bool hadAny = page->count > 0;
  *page = {};
  if (hadAny) Q_EMIT Changed(tab, 0);
}

int TStoppedPopups::Count(const TBrowserTab *tab) const {
  const auto page = m_pages.value(tab);
  return page ? page->count : 0;
}

QList<TStoppedPopup> TStoppedPopups::Stopped(const TBrowserTab *tab) const {
  const auto page = m_pages.value(tab);
  return page ? page->popups : QList<TStoppedPopup>();
}

QString TStoppedPopups::CounterText(const TBrowserTab *tab) const {
  const int count = Count(tab);
  return count == 0 ? QString() : m_language.Text("POPUPS", "Stopped").arg(count);
}

void TStoppedPopups::FillMenu(QMenu *menu, const TBrowserTab *tab) {
  // Sub-menus are children that clear() does not delete.
  qDeleteAll(menu->findChildren<QMenu *>(QString(), Qt::FindDirectChildrenOnly));
  menu->clear();
  menu->setToolTipsVisible(true);
  for (const TStoppedPopup &popup : Stopped(tab)) {
    QMenu *choices = menu->addMenu(MenuText(popup.address, LongestItem));
    choices->menuAction()->setToolTip(PlainTip(popup.address));
    connect(choices->addAction(m_language.Text("POPUPS", "Open")), &QAction::triggered, this,
            [this, address = popup.address] { Q_EMIT OpenRequested(TAddress::OfEngine(address)); });
    if (popup.pattern.isEmpty()) continue;
    QAction *remove =
        choices->addAction(m_language.Text("POPUPS", "RemovePattern").arg(MenuText(popup.pattern, LongestItem)));
    remove->setEnabled(m_patterns.Patterns().contains(popup.pattern));
    connect(remove, &QAction::triggered, this, [this, pattern = popup.pattern] { Q_EMIT RemovalRequested(pattern); });
  }
}
