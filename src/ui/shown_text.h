#pragma once

#include <QString>

// Texts from outside (addresses, titles) as the window shows them: of any length and never read as markup.

// At most about `longest` characters of the text, its beginning and its end with an ellipsis between them.
[[nodiscard]] inline QString Shortened(const QString &text, qsizetype longest) {
  if (text.size() <= longest) return text;
  return text.left(longest - longest / 3) + QChar(0x2026) + text.right(longest / 3);
}

// In one line, without what would stand for nothing or turn the text round: control characters, and the marks that
// switch the direction of writing.
[[nodiscard]] inline QString OneLine(const QString &text) {
  const auto isHidden = [](QChar c) {
    return c.category() == QChar::Other_Control || (c >= QChar(0x202A) && c <= QChar(0x202E)) ||
           (c >= QChar(0x2066) && c <= QChar(0x2069)) || c == QChar(0x2028) || c == QChar(0x2029);
  };
  QString shown = text;
  for (QChar &c : shown) {
    if (isHidden(c)) c = u' ';
  }
  return shown;
}

// A text that runs from left to right as it stands, an address say, where what is around it may run the other way; also
// when it is shortened to fit.
[[nodiscard]] inline QString LeftToRight(const QString &text) {
  constexpr QChar Begin(0x202A);
  constexpr QChar End(0x202C);
  return text.isEmpty() ? text : Begin + text + End;
}

// As the text of a menu item, which takes "&" for a mnemonic and a tab for the place of a short-cut.
[[nodiscard]] inline QString MenuText(const QString &text, qsizetype longest = 250) {
  return OneLine(Shortened(text, longest)).replace(u'&', QLatin1String("&&"));
}

// The text of a menu item or a control as it is read; also without the letter that some languages put behind it only
// for the sake of the key: "File(&F)", "File (&F)".
[[nodiscard]] inline QString WithoutMnemonic(const QString &text) {
  QString plain;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i] == u'&') {
      if (++i == text.size()) break;
      const bool isAside = text[i] != u'&' && plain.endsWith(u'(') && i + 1 < text.size() && text[i + 1] == u')';
      if (isAside) {
        plain.chop(plain.endsWith(QLatin1String(" (")) ? 2 : 1);
        ++i;
        continue;
      }
    }
    plain += text[i];
  }
  return plain;
}

// As a tool tip, which the toolkit would otherwise take for markup when it looks like it.
[[nodiscard]] inline QString PlainTip(const QString &text) {
  constexpr qsizetype LongestTip = 1000;  // characters
  if (text.isEmpty()) return {};
  return QStringLiteral("<qt>") + Shortened(text, LongestTip).toHtmlEscaped() + QStringLiteral("</qt>");
}
