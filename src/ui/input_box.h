#pragma once

#include <optional>
#include <QString>
#include <QStringList>

class QWidget;
class TLanguage;

// Questions whose answer is a text or one line of a list. They block until they are answered; the window that owns the
// box may go meanwhile, which counts as Cancel.

struct TTextQuestion {
  QString caption{};
  QString prompt{};
  QString text{};  // proposed
  int width = 0;   // of the box, in characters; 0 leaves it to the toolkit
};
// The text as the user left it, which may be empty; nothing when he gave up.
[[nodiscard]] std::optional<QString> AskText(QWidget *owner, const TLanguage &language, const TTextQuestion &question);

struct TLineQuestion {
  QString caption{};
  QString prompt{};
  QStringList lines{};  // no two of them alike
};
// The position of the chosen line; -1 when the user gave up.
[[nodiscard]] qsizetype AskLine(QWidget *owner, const TLanguage &language, const TLineQuestion &question);
