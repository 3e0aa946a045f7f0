#include "chrome/side_bar/history_days_menu.h"

#include <algorithm>
#include <QActionGroup>
#include <QLocale>
#include <QPointer>

#include "chrome/side_bar/history_days_question.h"
#include "config/language.h"
#include "config/settings.h"

namespace {

constexpr int ForEver = 0;

struct TChoice {
  int days;
  TTextKey text;
};

constexpr TChoice Choices[] = {
    {7, {"HISTORY", "KeepWeek"}},   {30, {"HISTORY", "KeepMonth"}},        {90, {"HISTORY", "KeepThreeMonths"}},
    {365, {"HISTORY", "KeepYear"}}, {ForEver, {"HISTORY", "KeepForEver"}},
};

}  // namespace

THistoryDaysMenu::THistoryDaysMenu(const TLanguage &language, TSettings &settings, const THistoryStore &history,
                                   QWidget *window)
    : QMenu(language.Text("HISTORY", "KeepPages"), window),
      m_language(language),
      m_settings(settings),
      m_history(history),
      m_window(window),
      m_group(new QActionGroup(this)) {
  setObjectName(QStringLiteral("pmHistoryDays"));
  connect(this, &QMenu::aboutToShow, this, &THistoryDaysMenu::Fill);
}

void THistoryDaysMenu::Fill() {
  clear();
  const int stored = m_settings.Get(Setting::HistoryDays);
  const bool isListed = std::ranges::find(Choices, stored, &TChoice::days) != std::end(Choices);
  for (const TChoice &choice : Choices) {
    // In its place among the others, of which the last is the longest.
    const bool isBefore = choice.days == ForEver || stored < choice.days;
    if (!isListed && isBefore && m_group->checkedAction() == nullptr) {
      const QString number = QLocale(m_language.LocaleName()).toString(stored);
      Add(stored == 1 ? m_language.Text("HISTORY", "KeepDay") : m_language.Text("HISTORY", "KeepDays").arg(number),
          stored);
    }
    Add(m_language.Text(choice.text), choice.days);
  }
}

void THistoryDaysMenu::Add(const QString &text, int days) {
  QAction *action = addAction(text);
  action->setCheckable(true);
  action->setData(days);
  m_group->addAction(action);
  action->setChecked(days == m_settings.Get(Setting::HistoryDays));
  connect(action, &QAction::triggered, this, [this, days] { Choose(days); });
}

void THistoryDaysMenu::Choose(int days) {
  if (days == m_settings.Get(Setting::HistoryDays)) return;
  const QPointer<THistoryDaysMenu> self(this);
  if (MayKeepOnly(days, m_window, m_language, m_history) && self) m_settings.Set(Setting::HistoryDays, days);
}
