#include "browser/strip/tab_bar_accessible.h"

#include "browser/strip/tab_bar_view.h"

void TTabBarAccessible::Install() {
  static const bool installed = [] {
    QAccessible::installFactory([](const QString &, QObject *object) -> QAccessibleInterface * {
      auto *view = qobject_cast<TTabBarView *>(object);
      return view ? new TTabBarAccessible(view) : nullptr;
    });
    return true;
  }();
  Q_UNUSED(installed)
}

void TTabBarAccessible::Announce(TTabBarView &view, QAccessible::Event type, const TTab *tab) {
  if (!QAccessible::isActive() || !tab->visible) return;
  QAccessibleEvent event(&view, type);
  event.setChild(view.Tabs().Ordinal(tab));
  QAccessible::updateAccessibility(&event);
}

void TTabBarAccessible::AnnounceActive(TTabBarView &view, const TTab *before) {
  if (before) Announce(view, QAccessible::SelectionRemove, before);
  const TTab *active = view.Tabs().Active();
  if (!active) return;
  Announce(view, QAccessible::Selection, active);
  if (view.hasFocus()) Announce(view, QAccessible::Focus, active);
}

void TTabBarAccessible::AnnounceFocus(TTabBarView &view) {
  if (!QAccessible::isActive()) return;
  // The toolkit is about to say that the strip as a whole has it; the last word counts.
  QMetaObject::invokeMethod(
      &view,
      [&view] {
        const TTab *active = view.Tabs().Active();
        if (active && view.hasFocus()) Announce(view, QAccessible::Focus, active);
      },
      Qt::QueuedConnection);
}

void TTabBarAccessible::AnnounceMove(TTabBarView &view, const TTab *tab) {
  if (!QAccessible::isActive() || !tab->visible) return;
  QAccessibleEvent reordered(&view, QAccessible::ObjectReorder);
  QAccessible::updateAccessibility(&reordered);
  if (tab == view.Tabs().Active() && view.hasFocus()) Announce(view, QAccessible::Focus, tab);
}

TTabBarAccessible::TTabBarAccessible(TTabBarView *view) : QAccessibleWidget(view, QAccessible::PageTabList) {}

int TTabBarAccessible::childCount() const {
  return View() ? View()->Tabs().VisibleCount() + QAccessibleWidget::childCount() : 0;
}

QAccessibleInterface *TTabBarAccessible::child(int index) const {
  if (!View() || index < 0) return nullptr;
  const int tabs = View()->Tabs().VisibleCount();
  return index < tabs ? InterfaceOf(View()->Tabs().VisibleAt(index)) : QAccessibleWidget::child(index - tabs);
}

int TTabBarAccessible::indexOfChild(const QAccessibleInterface *child) const {
  if (!View() || !child) return -1;
  if (const auto *accessible = dynamic_cast<const TTabAccessible *>(child)) {
    const TTab *tab = accessible->Tab();
    return tab ? View()->Tabs().Ordinal(tab) : -1;
  }
  const int index = QAccessibleWidget::indexOfChild(child);
  return index < 0 ? -1 : index + View()->Tabs().VisibleCount();
}

QAccessibleInterface *TTabBarAccessible::childAt(int x, int y) const {
  if (!View()) return nullptr;
  TTab *tab = View()->TabAt(View()->mapFromGlobal(QPoint(x, y)));
  return tab ? InterfaceOf(tab) : QAccessibleWidget::childAt(x, y);
}

QAccessibleInterface *TTabBarAccessible::focusChild() const {
  if (View() && View()->hasFocus() && View()->Tabs().Active()) return InterfaceOf(View()->Tabs().Active());
  return QAccessibleWidget::focusChild();
}

QString TTabBarAccessible::text(QAccessible::Text kind) const {
  const QString own = QAccessibleWidget::text(kind);
  // The strip is an inner part: its name is the one that was given to the page control.
  if (kind != QAccessible::Name || !own.isEmpty() || !View() || !View()->parentWidget()) return own;
  return View()->parentWidget()->accessibleName();
}

TTabBarView *TTabBarAccessible::View() const {
  return qobject_cast<TTabBarView *>(object());
}

QAccessibleInterface *TTabBarAccessible::InterfaceOf(TTab *tab) const {
  if (tab->accessibleId == 0) {
    tab->accessibleId = QAccessible::registerAccessibleInterface(new TTabAccessible(View(), tab->page));
  }
  return QAccessible::accessibleInterface(tab->accessibleId);
}

TTabAccessible::TTabAccessible(TTabBarView *view, QWidget *page) : m_view(view), m_page(page) {}

TTab *TTabAccessible::Tab() const {
  return m_view ? m_view->Tabs().Find(m_page) : nullptr;
}

bool TTabAccessible::isValid() const {
  return Tab() != nullptr;
}

QAccessibleInterface *TTabAccessible::parent() const {
  return m_view ? QAccessible::queryAccessibleInterface(m_view) : nullptr;
}

QString TTabAccessible::text(QAccessible::Text kind) const {
  const TTab *tab = Tab();
  if (!tab) return {};
  switch (kind) {
    case QAccessible::Name:
      return tab->text;
    case QAccessible::Description:
      return m_view->DescriptionOf(tab);
    default:
      return {};
  }
}

QRect TTabAccessible::rect() const {
  const TTab *tab = Tab();
  if (!tab) return {};
  const QRect own = m_view->TabRect(tab);
  return own.isEmpty() ? QRect() : QRect(m_view->mapToGlobal(own.topLeft()), own.size());
}

QAccessible::State TTabAccessible::state() const {
  QAccessible::State state;
  const TTab *tab = Tab();
  if (!tab) {
    state.invalid = true;
    return state;
  }
  const bool active = tab == m_view->Tabs().Active();
  state.focusable = true;
  state.selectable = true;
  state.selected = active;
  state.focused = active && m_view->hasFocus();
  state.disabled = !m_view->isEnabled();
  state.invisible = !m_view->isVisible() || !tab->visible;
  state.offscreen = !state.invisible && m_view->TabRect(tab).isEmpty();
  return state;
}

void *TTabAccessible::interface_cast(QAccessible::InterfaceType type) {
  return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface *>(this) : nullptr;
}

QStringList TTabAccessible::actionNames() const {
  return {pressAction()};
}

void TTabAccessible::doAction(const QString &name) {
  TTab *tab = Tab();
  if (tab && name == pressAction()) m_view->Press(tab);
}
