#include "app/shutdown_question.h"

#include <QWidget>

#include "browser/downloads/download_list.h"
#include "config/language.h"
#include "config/settings.h"
#include "ui/confirm_dialog.h"

bool AskShutdown(QWidget *window, const TLanguage &language, TSettings &settings, const TDownloadList &downloads) {
  const int running = downloads.ActiveCount();
  const bool ask = settings.Get(Setting::ConfirmShutdown);
  if (!ask && running == 0) return true;
  const QString prompt =
      running > 0 ? language.Text("MAIN", "DownloadsRunning").arg(running) : language.Text("CONFIRM", "ShutDownPrompt");
  // Running downloads are asked about even where the question is switched off, so then there is nothing to switch off.
  const TAnswer answer = ShowConfirm(window, {.caption = language.Text("CONFIRM", "ShutDown"),
                                              .firstLine = prompt,
                                              .secondText = language.Text("CONFIRM", "Proceed"),
                                              .ok = language.Global("Yes"),
                                              .cancel = language.Global("No"),
                                              .checkBox = ask ? language.Text("CONFIRM", "DontAsk") : QString(),
                                              .isRisky = running > 0});
  if (answer.checked) settings.Set(Setting::ConfirmShutdown, false);
  return answer.accepted;
}
