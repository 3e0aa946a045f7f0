#include "chrome/main_toolbars.h"

#include <QMainWindow>
#include <QMenu>
#include <QToolBar>
#include <QToolButton>

#include "chrome/busy_indicator.h"
#include "actions/commands.h"
#include "search/address_bar.h"
#include "search/address_label.h"

namespace {

constexpr int LabelMargin = 4;  // pixels

QToolBar *MakeBar(QMainWindow *window, const char *name, const char *title) {
  auto *bar = new QToolBar(QString::fromLatin1(title), window);
  bar->setObjectName(QString::fromLatin1(name));
  bar->setMovable(false);
  bar->setFloatable(false);
  bar->setContextMenuPolicy(Qt::PreventContextMenu);
  return bar;
}

QToolButton *AddMenuButton(QToolBar *bar, const char *name, const char *text, const char *icon, QMenu *menu) {
  auto *button = new QToolButton(bar);
  button->setObjectName(QString::fromLatin1(name));
  button->setIcon(QIcon(QString::fromLatin1(icon)));
  button->setText(QString::fromLatin1(text));
  button->setToolTip(QString::fromLatin1(text));
  button->setPopupMode(QToolButton::InstantPopup);
  button->setMenu(menu);
  button->setAutoRaise(true);
  bar->addWidget(button);
  return button;
}

}  // namespace

TMainToolbars::TMainToolbars(QMainWindow *window, TCommands &commands, TAddressBar *address)
    : QObject(window),
      m_toolbar(MakeBar(window, "ToolBar", "__ToolbarName")),
      m_addressBand(MakeBar(window, "pnlAddress", "__AddressBarName")),
      m_address(address),
      m_busy(new TBusyIndicator(m_toolbar)) {
  window->addToolBar(m_toolbar);
  window->addToolBarBreak();
  window->addToolBar(m_addressBand);
  FillToolbar(commands);
  FillAddressBand();
}

void TMainToolbars::FillToolbar(TCommands &commands) {
  static constexpr TCommand Left[] = {TCommand::Back, TCommand::Forward, TCommand::Stop, TCommand::Refresh,
                                      TCommand::Home};
  for (const TCommand command : Left) m_toolbar->addAction(commands[command]);
  m_toolbar->addSeparator();
  m_toolbar->addAction(commands[TCommand::NewBlank]);
  AddMenuButton(m_toolbar, "tbTabs", "__TabListName", ":/icons/tab_list.svg", commands.Menu(TMenu::TabList));
  m_toolbar->addAction(commands[TCommand::CloseTab]);
  AddMenuButton(m_toolbar, "tbHalvexGroups", "__GroupsButton", ":/icons/groups.svg", commands.Menu(TMenu::Groups));
  m_toolbar->addSeparator();
  static constexpr TCommand Right[] = {TCommand::Find, TCommand::Print, TCommand::Downloads, TCommand::FullScreen};
  for (const TCommand command : Right) m_toolbar->addAction(commands[command]);
  AddMenuButton(m_toolbar, "tbFont", "__FontName", ":/icons/zoom_in.svg", commands.Menu(TMenu::FontSize));
  auto *space = new QWidget(m_toolbar);
  space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  m_toolbar->addWidget(space);
  m_toolbar->addWidget(m_busy);
}

void TMainToolbars::FillAddressBand() {
  auto *label = new TAddressLabel(QStringLiteral("__AddressLabel"), m_addressBand);
  label->setContentsMargins(LabelMargin, 0, LabelMargin, 0);
  label->setBuddy(m_address);
  m_addressBand->addWidget(label);
  m_addressBand->addWidget(m_address);
  m_go = m_addressBand->addAction(QIcon(QStringLiteral(":/icons/go.svg")), QStringLiteral("__Go"));
  m_go->setObjectName(QStringLiteral("tbGo"));
  connect(m_go, &QAction::triggered, m_address, &TAddressBar::Go);
}

void TMainToolbars::ShowGo(bool show) {
  m_go->setVisible(show);
}
