#include "browser/strip/page_control.h"

#include <algorithm>
#include <QPointer>
#include "browser/strip/page_host.h"
#include "browser/strip/tab_bar_accessible.h"
#include "browser/strip/tab_bar_view.h"
#include "browser/strip/tab_list.h"
#include "ui/frame_updates.h"

namespace {
constexpr QSize kWantedSize{640, 480};
constexpr QSize kLeastSize{120, 80};

QWidget *PageOf(const TTab *tab) {
  return tab ? tab->page : nullptr;
}
}  // namespace

struct TZVPageControl::TPrivate {
  TTabList tabs;
  TPageHost *host = nullptr;
  TTabBarView *view = nullptr;
  QPointer<QWidget> corner;
  bool stripVisible = true;
  int updates = 0;                  // BeginUpdate calls without their EndUpdate
  QWidget *activeBefore = nullptr;  // the first of them; only a key
};

TZVPageControl::TZVPageControl(QWidget *parent, TFrameUpdates *updates)
    : QWidget(parent), d(std::make_unique<TPrivate>()) {
  d->host = new TPageHost(this);
  d->view = new TTabBarView(d->tabs, updates ? *updates : *new TFrameUpdates(this), this);
  d->view->setObjectName(QStringLiteral("tabBar"));
  connect(d->host, &TPageHost::PageGone, this, [this](QObject *page) { Forget(page, nullptr); });
  connect(d->view, &TTabBarView::ArrangeWanted, this, &TZVPageControl::Arrange);
  connect(d->view, &TTabBarView::Activated, this, &TZVPageControl::SetActivePage);
  connect(d->view, &TTabBarView::MoveWanted, this, &TZVPageControl::MovePage);
  connect(d->view, &TTabBarView::CloseWanted, this, &TZVPageControl::CloseRequested);
  connect(d->view, &TTabBarView::MenuWanted, this, &TZVPageControl::TabMenuRequested);
  connect(d->view, &TTabBarView::EmptyDoubleClicked, this, &TZVPageControl::EmptyStripDoubleClicked);
  connect(d->view, &TTabBarView::LinkDropped, this, &TZVPageControl::LinkDropped);
  connect(d->view, &TTabBarView::DragOutWanted, this, &TZVPageControl::DragOutWanted);
  connect(d->view, &TTabBarView::PageFocusWanted, this, [this] { d->host->FocusPage(Qt::OtherFocusReason); });
}

TZVPageControl::~TZVPageControl() {
  // While the pages are being deleted they may still ask for themselves: they find nothing any more.
  d->tabs.Clear();
  delete d->host;
  delete d->view;
}

void TZVPageControl::InsertPage(int position, QWidget *page, bool visible) {
  if (!page) return;
  if (const TTab *here = d->tabs.Find(page)) {
    const int last = PageCount() - 1;
    MovePage(d->tabs.Position(here), position < 0 ? last : position);
    SetPageVisible(page, visible);
    return;
  }
  d->host->Take(page);
  TTab *tab = d->tabs.Insert(position < 0 ? PageCount() : position, page, visible);
  d->view->TabShown(tab);
  if (visible && !d->tabs.Active()) Activate(page);
}

void TZVPageControl::RemovePage(QWidget *page) {
  Forget(page, page);
}

void TZVPageControl::DeletePage(QWidget *page) {
  Forget(page, nullptr);
  page->hide();
  page->deleteLater();
}

void TZVPageControl::MovePage(int from, int to) {
  to = std::clamp(to, 0, std::max(0, PageCount() - 1));
  if (!d->tabs.At(from) || from == to) return;
  d->tabs.Move(from, to);
  d->view->TabMoved(d->tabs.At(to));
  Q_EMIT PageMoved(from, to);
}

int TZVPageControl::PageCount() const {
  return d->tabs.Count();
}

int TZVPageControl::VisiblePageCount() const {
  return d->tabs.VisibleCount();
}

QWidget *TZVPageControl::Page(int position) const {
  return PageOf(d->tabs.At(position));
}

int TZVPageControl::IndexOf(const QWidget *page) const {
  const TTab *tab = d->tabs.Find(page);
  return tab ? d->tabs.Position(tab) : -1;
}

QWidget *TZVPageControl::ActivePage() const {
  return PageOf(d->tabs.Active());
}

int TZVPageControl::ActivePageIndex() const {
  return IndexOf(ActivePage());
}

void TZVPageControl::SetActivePage(QWidget *page) {
  const TTab *tab = d->tabs.Find(page);
  if (tab && tab->visible) Activate(page);
}

void TZVPageControl::SelectNextPage(bool forward) {
  const int count = d->tabs.VisibleCount();
  const TTab *active = d->tabs.Active();
  if (!active) return;
  const int ordinal = d->tabs.Ordinal(active) + (forward ? 1 : count - 1);
  Activate(d->tabs.VisibleAt(ordinal % count)->page);
}

void TZVPageControl::SetPageVisible(QWidget *page, bool visible) {
  TTab *tab = d->tabs.Find(page);
  if (!tab || tab->visible == visible) return;
  if (visible) {
    tab->visible = true;
    d->view->TabShown(tab);
    if (!d->tabs.Active()) Activate(page);
    return;
  }
  d->view->TabAboutToGo(tab);
  tab->visible = false;
  d->view->TabHidden(tab);
  if (tab == d->tabs.Active()) Activate(PageOf(d->tabs.Neighbour(tab)));
}

bool TZVPageControl::IsPageVisible(const QWidget *page) const {
  const TTab *tab = d->tabs.Find(page);
  return tab && tab->visible;
}

void TZVPageControl::SetPageCaption(QWidget *page, const QString &caption) {
  if (TTab *tab = d->tabs.Find(page)) d->view->TabCaptionChanged(tab, caption);
}

QString TZVPageControl::PageCaption(const QWidget *page) const {
  const TTab *tab = d->tabs.Find(page);
  return tab ? tab->caption : QString();
}

void TZVPageControl::SetPageHint(QWidget *page, const QString &hint) {
  TTab *tab = d->tabs.Find(page);
  if (!tab || tab->hint == hint) return;
  tab->hint = hint;
  TellDescription(page);
}

void TZVPageControl::SetDescriber(const std::function<QString(const QWidget *page)> &describer) {
  d->view->SetDescriber(describer);
}

void TZVPageControl::TellDescription(const QWidget *page) {
  const TTab *tab = d->tabs.Find(page);
  if (tab) TTabBarAccessible::Announce(*d->view, QAccessible::DescriptionChanged, tab);
}

void TZVPageControl::SetPageImage(QWidget *page, int image) {
  TTab *tab = d->tabs.Find(page);
  if (!tab || tab->image == image) return;
  tab->image = image;
  d->view->TabImageChanged(tab);
}

int TZVPageControl::PageImage(const QWidget *page) const {
  const TTab *tab = d->tabs.Find(page);
  return tab ? tab->image : -1;
}

void TZVPageControl::SetImages(const QList<QIcon> &images) {
  d->view->SetImages(images);
}

void TZVPageControl::SetPageIcon(QWidget *page, const QIcon &icon) {
  TTab *tab = d->tabs.Find(page);
  if (!tab || tab->icon.cacheKey() == icon.cacheKey()) return;
  tab->icon = icon;
  d->view->TabImageChanged(tab);
}

QColor TZVPageControl::InactiveTabColor() const {
  return d->view->InactiveTabColor();
}

void TZVPageControl::SetInactiveTabColor(const QColor &color) {
  d->view->SetInactiveColors(color, InactiveFontColor());
}

QColor TZVPageControl::InactiveFontColor() const {
  return d->view->InactiveFontColor();
}

void TZVPageControl::SetInactiveFontColor(const QColor &color) {
  d->view->SetInactiveColors(InactiveTabColor(), color);
}

bool TZVPageControl::MultipleLines() const {
  return d->view->MultipleLines();
}

void TZVPageControl::SetMultipleLines(bool multiple) {
  d->view->SetMultipleLines(multiple);
}

bool TZVPageControl::TabsDown() const {
  return d->view->TabsDown();
}

void TZVPageControl::SetTabsDown(bool down) {
  d->view->SetTabsDown(down);
}

void TZVPageControl::SetButtonTexts(const QString &closeTab, const QString &scrollLeft, const QString &scrollRight) {
  d->view->SetButtonTexts(closeTab, scrollLeft, scrollRight);
}

void TZVPageControl::SetCorner(QWidget *corner) {
  d->corner = corner;
  corner->setParent(this);
  corner->setVisible(d->stripVisible);
  Arrange();
}

QRect TZVPageControl::TabRect(const QWidget *page) const {
  const TTab *tab = d->tabs.Find(page);
  if (!tab) return {};
  if (d->view->IsStale()) const_cast<TZVPageControl *>(this)->Arrange();
  const QRect own = d->view->TabRect(tab);
  return own.isEmpty() ? QRect() : own.translated(d->view->pos());
}

void TZVPageControl::FocusStrip() {
  d->view->setFocus(Qt::ShortcutFocusReason);
}

bool TZVPageControl::StripHasFocus() const {
  return d->view->hasFocus();
}

QSize TZVPageControl::sizeHint() const {
  return kWantedSize;
}

QSize TZVPageControl::minimumSizeHint() const {
  return kLeastSize;
}

bool TZVPageControl::event(QEvent *event) {
  // The corner wants another width.
  if (event->type() == QEvent::LayoutRequest) Arrange();
  return QWidget::event(event);
}

void TZVPageControl::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  Arrange();
}

void TZVPageControl::Arrange() {
  d->view->SetEndReserve(d->corner ? d->corner->sizeHint().width() : 0);
  const int strip = d->stripVisible ? std::min(d->view->HeightFor(size()), height()) : 0;
  const int pages = height() - strip;
  const bool down = TabsDown();
  d->view->setGeometry(0, down ? pages : 0, width(), strip);
  d->host->setGeometry(0, down ? 0 : strip, width(), pages);
  if (d->corner) d->corner->setGeometry(d->view->EndPlace().translated(d->view->pos()));
}

void TZVPageControl::SetStripVisible(bool visible) {
  d->stripVisible = visible;
  d->view->setVisible(visible);
  if (d->corner) d->corner->setVisible(visible);
  Arrange();
}

void TZVPageControl::SwitchTo(QWidget *page) {
  TTab *before = d->tabs.Active();
  d->tabs.SetActive(d->tabs.Find(page));
  d->view->ActiveChanged(before);
  if (d->updates > 0) return;
  TTabBarAccessible::AnnounceActive(*d->view, before);
  d->host->Present(page);
}

void TZVPageControl::BeginUpdate() {
  if (d->updates++ == 0) d->activeBefore = ActivePage();
}

void TZVPageControl::EndUpdate() {
  if (--d->updates > 0) return;
  // Nobody is told of a tab that was active on the way.
  if (ActivePage() != d->activeBefore) {
    TTabBarAccessible::AnnounceActive(*d->view, d->tabs.Find(d->activeBefore));
  }
  d->host->Present(ActivePage());
}

// What happens on the way, by show and focus events, may activate yet another page: that one is then reported, not
// this one.
void TZVPageControl::Activate(QWidget *page) {
  if (ActivePage() == page) return;
  SwitchTo(page);
  if (ActivePage() == page) Q_EMIT ActivePageChanged(page);
}

// `leaving` is the page when it still lives here; nullptr when it is gone already and its address is no more than a
// key.
void TZVPageControl::Forget(QObject *page, QWidget *leaving) {
  TTab *tab = d->tabs.Find(page);
  if (!tab) return;
  const bool wasActive = tab == d->tabs.Active();
  QWidget *next = wasActive ? PageOf(d->tabs.Neighbour(tab)) : nullptr;
  d->view->TabAboutToGo(tab);
  if (wasActive) d->tabs.SetActive(nullptr);
  (void)d->tabs.Take(tab);
  d->view->TabRemoved();
  const QPointer<QWidget> alive = leaving;
  if (wasActive) SwitchTo(next);
  // Its leaving the parent finds nothing more to do here, since the tab is forgotten.
  if (alive && alive->parent() == d->host && !d->tabs.Find(alive)) {
    alive->hide();
    alive->setParent(nullptr);
  }
  if (wasActive && ActivePage() == next) Q_EMIT ActivePageChanged(next);
}
