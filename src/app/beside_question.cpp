#include "app/beside_question.h"

#include <QApplication>

#include "config/language.h"
#include "ui/confirm_dialog.h"

bool AskRunBeside(const TLanguage &language) {
  const TAnswer answer = ShowConfirm(nullptr, {.caption = QApplication::applicationDisplayName(),
                                               .firstLine = language.Text("MAIN", "NotAnswering"),
                                               .secondText = language.Text("MAIN", "NotAnsweringNote"),
                                               .ok = language.Text("MAIN", "NotAnsweringOpen"),
                                               .cancel = language.Text("MAIN", "NotAnsweringLeave")});
  return answer.accepted;
}
