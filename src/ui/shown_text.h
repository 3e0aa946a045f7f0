#pragma once

#include <QString>

// Texts from outside (addresses, titles) as the window shows them: of any length and never read as markup.

// At most about `longest` characters of the text, its beginning and its end with an ellipsis between them.
[[nodiscard]] inline QString Shortened(const QString &text, qsizetype longest) {
  if (text.size() <= longest) return text;
  return text.left(longest - longest / 3) + QChar(0x2026) + text.right(longest / 3);
}

// As the text of a menu item, which takes "&" for a mnemonic and a tab for the place of a short-cut.
[[nodiscard]] inline QString MenuText(const QString &text, qsizetype longest = 250) {
  QString shown = Shortened(text, longest);
  for (QChar &c : shown) {
    if (c.category() == QChar::Other_Control) c = u' ';
  }
  return shown.replace(u'&', QLatin1String("&&"));
}

// As a tool tip, which the toolkit would otherwise take for markup when it looks like it.
[[nodiscard]] inline QString PlainTip(const QString &text) {
  constexpr qsizetype LongestTip = 1000;  // characters
  if (text.isEmpty()) return {};
  return QStringLiteral("<qt>") + Shortened(text, LongestTip).toHtmlEscaped() + QStringLiteral("</qt>");
}
