#pragma once

#include <optional>
#include <QString>
#include <QStringList>

class QInputDialog;
class QWidget;
class TLanguage;

// Questions whose answer is a text or one line of a list.

struct TTextQuestion {
  QString caption{};
  QString prompt{};
  QString text{};  // proposed
  int width = 0;   // of the box, in characters; 0 leaves it to the toolkit
};
// The text as the user left it, which may be empty; nothing when he gave up. Blocks until it is answered; the window
// that owns the box may go meanwhile, which counts as giving up.
[[nodiscard]] std::optional<QString> AskText(QWidget *owner, const TLanguage &language, const TTextQuestion &question);

struct TLineQuestion {
  QString caption{};
  QString prompt{};
  QStringList lines{};  // no two of them alike
};
// For whoever shows it in a place of his own; once it is accepted its textValue() is the chosen line. No line is
// proposed, and OK does nothing before the user has chosen one.
[[nodiscard]] QInputDialog *MakeLineDialog(const TLanguage &language, const TLineQuestion &question);
