#include "chrome/side_bar/halvex_bar.h"

#include <algorithm>
#include <QAction>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QStackedWidget>
#include <QToolButton>

#include "actions/actions.h"
#include "chrome/side_bar/drag_rest.h"
#include "config/language.h"
#include "ui/close_button.h"

namespace {

constexpr int Margin = 4;  // pixels
constexpr int IconSize = 16;

}  // namespace

THalvexBar::THalvexBar(const TLanguage &language, QWidget *parent)
    : QWidget(parent),
      m_buttons(new QButtonGroup(this)),
      m_head(new QWidget(this)),
      m_options(new QToolButton(m_head)),
      m_optionsMenu(new QMenu(this)),
      m_close(new TCloseButton(language.Text("SIDE_BAR", "Close"), m_head)),
      m_stack(new QStackedWidget(this)) {
  setObjectName(QStringLiteral("HalvexBar"));
  setAccessibleName(language.Text("SIDE_BAR", "Name"));
  m_stack->setObjectName(QStringLiteral("pcHalvexBar"));
  m_options->setObjectName(QStringLiteral("tbHBOptions"));
  m_options->setIcon(CommandIcon("more"));
  m_options->setIconSize(QSize(IconSize, IconSize));
  m_options->setAutoRaise(true);
  m_options->setFocusPolicy(Qt::TabFocus);
  m_options->setToolTip(language.Text("SIDE_BAR", "Options"));
  m_options->setAccessibleName(m_options->toolTip());
  m_optionsMenu->setObjectName(QStringLiteral("pmHBOptions"));
  m_close->setObjectName(QStringLiteral("tbHBClose"));
  m_close->setFocusPolicy(Qt::TabFocus);

  auto *head = new QHBoxLayout(m_head);
  head->setContentsMargins(0, 0, 0, 0);
  head->setSpacing(1);
  head->addStretch();
  head->addWidget(m_options);
  head->addWidget(m_close);
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(Margin, Margin, Margin, Margin);
  layout->setSpacing(Margin);
  layout->addWidget(m_head);
  layout->addWidget(m_stack, 1);
  // The keyboard goes through the head in the order in which it is seen.
  setTabOrder(m_options, m_close);

  m_buttons->setExclusive(true);
  connect(m_buttons, &QButtonGroup::idClicked, this, &THalvexBar::PageChosen);
  connect(m_close, &QToolButton::clicked, this, &THalvexBar::CloseWanted);
  connect(m_options, &QToolButton::clicked, this, &THalvexBar::ShowOptions);
}

void THalvexBar::AddPage(const TSideBarPage &page) {
  auto *button = new QToolButton(m_head);
  button->setObjectName(page.command->objectName() + QStringLiteral("Button"));
  button->setText(page.name);
  button->setAccessibleName(page.name);
  button->setIcon(page.command->icon());
  button->setIconSize(QSize(IconSize, IconSize));
  button->setToolTip(TActions::WithKeys(page.name, page.command));
  button->setCheckable(true);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  button->setAcceptDrops(true);
  WhenDragRests(button, [this, number = page.number] { Q_EMIT PageChosen(number); });
  m_buttons->addButton(button, page.number);
  static_cast<QHBoxLayout *>(m_head->layout())->insertWidget(int(m_pages.size()), button);
  setTabOrder(m_pages.empty() ? this : static_cast<QWidget *>(m_pages.back().button), button);
  setTabOrder(button, m_options);
  m_pages.push_back({page, button, nullptr});
}

int THalvexBar::PlaceOf(int number) const {
  const auto page = std::ranges::find(m_pages, number, [](const TPage &one) { return one.traits.number; });
  return page != m_pages.end() ? int(page - m_pages.begin()) : 0;
}

void THalvexBar::SetCurrent(int page) {
  if (m_pages.empty()) return;
  const int wanted = PlaceOf(page);
  if (wanted == m_current) return;
  m_current = wanted;
  const TPage &current = m_pages[size_t(wanted)];
  current.button->setChecked(true);
  m_options->setVisible(bool(current.traits.fillOptions));
  FitButtons();
  if (isVisible()) MakeCurrent();
}

void THalvexBar::Hold(bool held) {
  m_isHeld = held;
  m_head->setVisible(!held);
  m_stack->setVisible(!held);
  if (!held && isVisible()) MakeCurrent();
}

void THalvexBar::MakeCurrent() {
  if (m_isHeld || m_current < 0) return;
  TPage &page = m_pages[size_t(m_current)];
  if (page.widget == nullptr) {
    page.widget = page.traits.make();
    m_stack->addWidget(page.widget);
  }
  m_stack->setCurrentWidget(page.widget);
}

void THalvexBar::FocusPage() {
  Hold(false);
  if (QWidget *page = m_stack->currentWidget()) page->setFocus(Qt::ShortcutFocusReason);
}

void THalvexBar::ShowOptions() {
  m_optionsMenu->clear();
  m_pages[size_t(m_current)].traits.fillOptions(*m_optionsMenu);
  const QPoint below = m_options->mapToGlobal(m_options->rect().bottomLeft());
  const int width = m_optionsMenu->sizeHint().width();
  m_optionsMenu->popup(isRightToLeft() ? below + QPoint(m_options->width() - width, 1) : below + QPoint(0, 1));
}

// The page in front is named where the row has room for it.
void THalvexBar::FitButtons() {
  for (const TPage &page : m_pages) {
    const bool isCurrent = page.button->isChecked();
    page.button->setToolButtonStyle(isCurrent ? Qt::ToolButtonTextBesideIcon : Qt::ToolButtonIconOnly);
  }
  if (m_current >= 0 && m_head->sizeHint().width() > width() - 2 * Margin) {
    m_pages[size_t(m_current)].button->setToolButtonStyle(Qt::ToolButtonIconOnly);
  }
}

bool THalvexBar::event(QEvent *event) {
  return ClaimEscape(*event) || QWidget::event(event);
}

void THalvexBar::keyPressEvent(QKeyEvent *event) {
  if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
    Q_EMIT LeaveWanted();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void THalvexBar::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  FitButtons();
}

void THalvexBar::showEvent(QShowEvent *event) {
  QWidget::showEvent(event);
  MakeCurrent();
}
