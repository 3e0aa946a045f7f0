#include "chrome/toolbar/toolbar_panel.h"

#include <algorithm>
#include <QEvent>
#include <QMenu>
#include <QStyle>
#include <QToolButton>

#include "actions/actions.h"
#include "chrome/toolbar/zv_tool_bar.h"
#include "config/language.h"

namespace {

// Pixels.
constexpr int LeastWidth = 40;
constexpr int LeastHeight = 27;
constexpr int ChevronWidth = 14;

QWidget *MakePanel(const char *name, QWidget *parent) {
  auto *panel = new QWidget(parent);
  panel->setObjectName(QString::fromLatin1(name));
  return panel;
}

}  // namespace

TToolbarPanel::TToolbarPanel(const TActions &actions, const TLanguage &language, bool hasSearchMenu, QWidget *busy,
                             QWidget *parent)
    : QWidget(parent),
      m_actions(actions),
      m_language(language),
      m_main(MakePanel("pnlToolbarMain", this)),
      m_bar(new TZVToolBar(actions, language, hasSearchMenu, m_main)),
      m_extender(MakePanel("tbarToolbarExtender", this)),
      m_chevron(new QToolButton(m_extender)),
      m_menu(new QMenu(m_chevron)),
      m_busy(busy) {
  setObjectName(QStringLiteral("pnlToolbar"));
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  m_bar->setAccessibleName(QStringLiteral("__ToolbarName"));
  m_busy->setParent(this);
  m_chevron->setObjectName(QStringLiteral("tbxBar"));
  m_chevron->setAutoRaise(true);
  m_chevron->setFocusPolicy(Qt::NoFocus);
  m_chevron->setIcon(style()->standardIcon(QStyle::SP_ToolBarHorizontalExtensionButton, nullptr, this));
  m_chevron->setAccessibleName(QStringLiteral("__ToolbarMore"));
  m_chevron->setToolTip(QStringLiteral("__ToolbarMore"));
  m_chevron->setStyleSheet(QStringLiteral("QToolButton::menu-indicator { image: none; }"));
  m_menu->setObjectName(QStringLiteral("pmToolBarExtender"));
  m_chevron->setMenu(m_menu);
  m_chevron->setPopupMode(QToolButton::InstantPopup);
  connect(m_menu, &QMenu::aboutToShow, this, &TToolbarPanel::FillMenu);
  connect(m_bar, &TZVToolBar::EntriesChanged, this, [this] {
    Arrange();
    updateGeometry();
  });
}

int TToolbarPanel::BusyWidth() const {
  return std::max(0, m_busy->sizeHint().width());
}

void TToolbarPanel::Arrange() {
  const int busy = std::min(BusyWidth(), width());
  const int room = width() - busy;
  // Nothing at all while everything fits.
  const int chevron = m_bar->Length() > room ? std::min(ChevronWidth, room) : 0;
  const auto place = [this](QWidget *widget, int left, int wide) {
    widget->setGeometry(QStyle::visualRect(layoutDirection(), rect(), QRect(left, 0, wide, height())));
  };
  place(m_main, 0, room - chevron);
  place(m_extender, room - chevron, chevron);
  place(m_busy, room, busy);
  m_bar->setGeometry(m_main->rect());
  m_chevron->setGeometry(m_extender->rect());
  m_extender->setVisible(chevron > 0);
}

void TToolbarPanel::FillMenu() {
  qDeleteAll(m_menu->findChildren<QMenu *>(Qt::FindDirectChildrenOnly));
  m_menu->clear();
  m_bar->AddRestTo(*m_menu);
  if (!m_menu->isEmpty()) m_menu->addSeparator();
  QAction *customize = m_menu->addAction(m_language.Global("Customize"));
  connect(customize, &QAction::triggered, m_actions[TCommand::CustomizeToolbar], &QAction::trigger);
}

QSize TToolbarPanel::sizeHint() const {
  return {m_bar->Length() + BusyWidth(), minimumSizeHint().height()};
}

QSize TToolbarPanel::minimumSizeHint() const {
  return {LeastWidth, std::max({LeastHeight, m_bar->sizeHint().height(), m_busy->sizeHint().height()})};
}

void TToolbarPanel::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  Arrange();
}

void TToolbarPanel::changeEvent(QEvent *event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LayoutDirectionChange || event->type() == QEvent::StyleChange) Arrange();
}
