#pragma once

#include <QString>

// Texts from outside (addresses, titles) as the window shows them: of any length and never read as markup.

// At most about `longest` characters of the text, its beginning and its end with an ellipsis between them.
[[nodiscard]] inline QString Shortened(const QString &text, qsizetype longest) {
  if (text.size() <= longest) return text;
  return text.left(longest - longest / 3) + QChar(0x2026) + text.right(longest / 3);
}

// As a tool tip, which the toolkit would otherwise take for markup when it looks like it.
[[nodiscard]] inline QString PlainTip(const QString &text) {
  constexpr qsizetype LongestTip = 1000;  // characters
  return QStringLiteral("<qt>") + Shortened(text, LongestTip).toHtmlEscaped() + QStringLiteral("</qt>");
}
