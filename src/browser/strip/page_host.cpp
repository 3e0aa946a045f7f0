#include "browser/strip/page_host.h"

#include <QChildEvent>

namespace {

// Where the keyboard was in this page, else the first place in it that takes it.
QWidget *FocusPlaceIn(QWidget *page) {
  if (QWidget *last = page->focusWidget()) return last;
  if (page->focusPolicy() != Qt::NoFocus || page->focusProxy()) return page;
  for (QWidget *next = page->nextInFocusChain(); next && next != page; next = next->nextInFocusChain()) {
    if (page->isAncestorOf(next) && next->focusPolicy() != Qt::NoFocus && next->isEnabled() && !next->isHidden()) {
      return next;
    }
  }
  return page;
}

}  // namespace

TPageHost::TPageHost(QWidget *parent) : QWidget(parent) {}

void TPageHost::Take(QWidget *page) {
  page->setParent(this);
  page->hide();  // said explicitly, or it would appear together with its parent
  page->setGeometry(rect());
}

void TPageHost::Present(QWidget *page) {
  if (page == m_page) return;
  const QPointer<QWidget> before = m_page;
  m_page = page;
  const QWidget *focus = window()->focusWidget();
  const bool hadFocus = before && focus && (before == focus || before->isAncestorOf(focus));
  // The new one first, so that the window's background never flashes up between the two. What these calls set off may
  // come back here with yet another page: then that one stays.
  if (page) {
    page->setGeometry(rect());
    page->show();
    if (hadFocus && page == m_page) FocusPage(Qt::OtherFocusReason);
  }
  if (before && before != m_page) before->hide();
}

void TPageHost::FocusPage(Qt::FocusReason reason) {
  if (m_page) FocusPlaceIn(m_page)->setFocus(reason);
}

void TPageHost::childEvent(QChildEvent *event) {
  if (event->removed()) {
    if (event->child() == m_page.data()) m_page.clear();
    Q_EMIT PageGone(event->child());
  }
  QWidget::childEvent(event);
}

void TPageHost::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  if (m_page) m_page->setGeometry(rect());
}
