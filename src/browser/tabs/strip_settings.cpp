#include "browser/tabs/strip_settings.h"

#include <algorithm>
#include <QApplication>
#include <QEvent>
#include <QMenu>
#include <QPalette>

#include "actions/actions.h"
#include "browser/strip/page_control.h"
#include "browser/strip/tab_painter.h"
#include "config/settings.h"

TStripSettings::TStripSettings(TActions &actions, TZVPageControl &pages, TSettings &settings)
    : m_actions(actions), m_pages(pages), m_settings(settings) {
  struct TItem {
    TCommand command;
    const TFlagSetting &setting;
    bool value;
  };
  const TItem items[] = {
      {TCommand::TabsBelow, Setting::TabsDown, true},
      {TCommand::TabsAbove, Setting::TabsDown, false},
      {TCommand::TabsOneRow, Setting::MultipleLines, false},
      {TCommand::TabsSeveralRows, Setting::MultipleLines, true},
  };
  for (const TItem &item : items) {
    connect(actions[item.command], &QAction::triggered, this,
            [this, &setting = item.setting, value = item.value] { m_settings.Set(setting, value); });
  }
  settings.Follow(Setting::TabsDown, this, [this] { Place(); });
  settings.Follow(Setting::MultipleLines, this, [this] { Place(); });
  Place();
  settings.Follow(Setting::TabColorScheme, this, [this] { Colour(); });
  settings.Follow(Setting::InactiveTabColor, this, [this] { Colour(); });
  settings.Follow(Setting::InactiveFontColor, this, [this] { Colour(); });
  pages.installEventFilter(this);
  Colour();
}

bool TStripSettings::eventFilter(QObject *watched, QEvent *event) {
  if (event->type() == QEvent::PaletteChange) Colour();
  return QObject::eventFilter(watched, event);
}

void TStripSettings::Place() {
  m_pages.SetMultipleLines(m_settings.Get(Setting::MultipleLines));
  m_pages.SetTabsDown(m_settings.Get(Setting::TabsDown));
  ArrangeItems();
}

TInactiveTabColors TInactiveTabColors::Of(const QString &scheme, const TInactiveTabColors &own) {
  const QPalette palette = QApplication::palette();
  if (scheme == QLatin1String("std")) return {palette.color(QPalette::Button), palette.color(QPalette::WindowText)};
  // The palette has no colour for inactive title bars; the highlight of an inactive window is what stands for it.
  if (scheme == QLatin1String("rev")) {
    return {palette.color(QPalette::Inactive, QPalette::Highlight), palette.color(QPalette::HighlightedText)};
  }
  return own;
}

TInactiveTabColors TInactiveTabColors::OfStrip(const QPalette &palette) {
  return {TTabPainter::GroundOf(palette), palette.color(QPalette::WindowText)};
}

void TStripSettings::Colour() {
  TInactiveTabColors own;
  if (m_settings.IsChosen(Setting::InactiveTabColor) || m_settings.IsChosen(Setting::InactiveFontColor)) {
    own = {QColor::fromRgb(static_cast<QRgb>(m_settings.Get(Setting::InactiveTabColor))),
           QColor::fromRgb(static_cast<QRgb>(m_settings.Get(Setting::InactiveFontColor)))};
  }
  const TInactiveTabColors colors = TInactiveTabColors::Of(m_settings.Get(Setting::TabColorScheme), own);
  m_pages.SetInactiveTabColor(colors.tab);
  m_pages.SetInactiveFontColor(colors.font);
}

void TStripSettings::ArrangeItems() {
  const bool down = m_pages.TabsDown();
  m_actions[down ? TCommand::TabsBelow : TCommand::TabsAbove]->setChecked(true);
  m_actions[m_pages.MultipleLines() ? TCommand::TabsSeveralRows : TCommand::TabsOneRow]->setChecked(true);

  // The items stand in the order of the window: what the tabs are nearest to comes first.
  QList<QAction *> places = {m_actions[TCommand::TabsBelow], m_actions[TCommand::TabsAbove]};
  QList<QAction *> rows = {m_actions[TCommand::TabsSeveralRows], m_actions[TCommand::TabsOneRow]};
  if (!down) {
    std::reverse(places.begin(), places.end());
    std::reverse(rows.begin(), rows.end());
  }
  QMenu *menu = m_actions.Menu(TMenu::TabPosition);
  menu->clear();
  menu->addActions(places);
  menu->addSeparator();
  menu->addActions(rows);
}
