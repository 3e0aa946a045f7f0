#include "chrome/side_bar/side_bar_frame.h"

#include <algorithm>
#include <QEvent>
#include <QStyle>
#include <utility>

#include "chrome/side_bar/side_bar_edge.h"
#include "config/language.h"

namespace {

constexpr int KeyStep = 16;  // pixels

}  // namespace

TSideBarFrame::TSideBarFrame(QWidget *bar, QWidget *pages, const TLanguage &language, QWidget *parent)
    : QWidget(parent), m_language(language), m_bar(bar), m_edge(new TSideBarEdge(this)), m_pages(pages) {
  m_bar->setParent(this);
  m_pages->setParent(this);
  m_bar->hide();
  m_pages->show();
  m_edge->setAccessibleName(language.Text("SIDE_BAR", "EdgeName"));
  m_edge->setToolTip(language.Text("SIDE_BAR", "EdgeClosedHint"));
  // The bar before the pages, for the Tab key.
  m_edge->stackUnder(m_pages);
  m_bar->stackUnder(m_edge);
  connect(m_edge, &TSideBarEdge::OpenWanted, this, &TSideBarFrame::OpenWanted);
  connect(m_edge, &TSideBarEdge::CloseWanted, this, &TSideBarFrame::CloseWanted);
  connect(m_edge, &TSideBarEdge::StepWanted, this,
          [this](bool wider) { Q_EMIT WidthChosen(Fitting(m_bar->width() + (wider ? KeyStep : -KeyStep))); });
  connect(m_edge, &TSideBarEdge::Dragged, this, [this](int distance) {
    m_dragged = Fitting(Fitting(m_width) + distance);
    Arrange();
  });
  connect(m_edge, &TSideBarEdge::DragEnded, this, [this](bool kept) {
    const int width = std::exchange(m_dragged, 0);
    if (kept && width != 0) Q_EMIT WidthChosen(width);
    Arrange();
  });
}

void TSideBarFrame::SetOpen(bool open) {
  if (open == m_isOpen) return;
  m_isOpen = open;
  m_edge->SetOpen(open);
  m_edge->setToolTip(open ? m_language.Text("SIDE_BAR", "EdgeHint") : m_language.Text("SIDE_BAR", "EdgeClosedHint"));
  Arrange();
  m_bar->setVisible(open && !m_isPagesOnly);
}

void TSideBarFrame::SetPagesOnly(bool pagesOnly) {
  if (pagesOnly == m_isPagesOnly) return;
  m_isPagesOnly = pagesOnly;
  m_edge->setVisible(!pagesOnly);
  m_bar->setVisible(m_isOpen && !pagesOnly);
  Arrange();
}

void TSideBarFrame::SetBarWidth(int width) {
  m_width = width;
  Arrange();
}

int TSideBarFrame::Fitting(int width) const {
  return std::clamp(width, SmallestBar, std::max(SmallestBar, this->width() - SmallestPages - m_edge->Extent()));
}

void TSideBarFrame::Arrange() {
  const int edge = m_isPagesOnly ? 0 : m_edge->Extent();
  const int bar = m_isOpen && !m_isPagesOnly ? Fitting(m_dragged != 0 ? m_dragged : m_width) : 0;
  const auto place = [this](int left, int width) {
    return QStyle::visualRect(layoutDirection(), rect(), QRect(left, 0, width, height()));
  };
  if (bar > 0) m_bar->setGeometry(place(0, bar));
  if (edge > 0) m_edge->setGeometry(place(bar, edge));
  m_pages->setGeometry(place(bar + edge, std::max(0, width() - bar - edge)));
}

QSize TSideBarFrame::sizeHint() const {
  return m_pages->sizeHint();
}

QSize TSideBarFrame::minimumSizeHint() const {
  return m_pages->minimumSizeHint();
}

void TSideBarFrame::changeEvent(QEvent *event) {
  if (event->type() == QEvent::LayoutDirectionChange) Arrange();
  QWidget::changeEvent(event);
}

void TSideBarFrame::resizeEvent(QResizeEvent *) {
  Arrange();
}
