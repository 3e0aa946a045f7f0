#include "chrome/tab_drag_out.h"

#include <QDrag>
#include <QStyle>

#include "browser/strip/page_control.h"
#include "browser/strip/tab_bar_view.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "chrome/favorites/page_shortcut.h"
#include "groups/group_drag.h"

TTabDragOut::TTabDragOut(TTabStrip &tabs) : QObject(&tabs.Pages()), m_tabs(tabs) {
  connect(&tabs.Pages(), &TZVPageControl::DragOutWanted, this, &TTabDragOut::Drag);
}

void TTabDragOut::Drag(QWidget *page) {
  const auto *tab = qobject_cast<TBrowserTab *>(page);
  if (tab == nullptr || tab->AddressToSave().isEmpty()) return;
  // The one that knows its own drag when it comes back.
  auto *strip = m_tabs.Pages().findChild<TTabBarView *>();
  auto *drag = new QDrag(strip);
  QMimeData *data = PageShortcut::DataOf(tab->Title(), tab->AddressToSave());
  const bool isLocked = tab->Locked() || tab->LockPending();
  GroupDrag::AddTo(*data, {{{}, {-1, GroupDrag::LineOf(tab->StickyName(), tab->AddressToSave(), isLocked)}}});
  drag->setMimeData(data);
  const int size = strip->style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, strip);
  drag->setPixmap(m_tabs.PageIconOf(tab).pixmap(size));
  drag->exec(Qt::CopyAction | Qt::LinkAction);
}
