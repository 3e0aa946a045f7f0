#include "chrome/side_bar/history_days_question.h"

#include <QApplication>

#include "config/language.h"
#include "history/history_store.h"
#include "ui/confirm_dialog.h"

namespace {

constexpr int ForEver = 0;

// Some pages were not visited for so many days.
bool HasOlder(int days, const THistoryStore &history) {
  const auto oldest = days == ForEver ? std::nullopt : history.OldestLastVisit();
  return oldest && *oldest < QDateTime::currentDateTime().addDays(-days);
}

}  // namespace

bool MayKeepOnly(int days, QWidget *window, const TLanguage &language, const THistoryStore &history) {
  if (!HasOlder(days, history)) return true;
  return ShowConfirm(window, {.caption = QApplication::applicationDisplayName(),
                              .firstLine = language.Text("HISTORY", "ShortenPrompt"),
                              .ok = language.Text("FAVORITES", "Delete"),
                              .cancel = language.Global("Cancel"),
                              .isRisky = true})
      .accepted;
}
