#pragma once

#include <QTimer>

#include "ui/floating_panel.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QToolButton;
class TLanguage;

// The panel over the page that searches it: text box, previous and next, match case, wrap, the count of matches, close.
// It searches nothing itself: the owner runs FindRequested on the page and answers with ShowResult.
class TFindBar final : public TFloatingPanel {
  Q_OBJECT

 public:
  explicit TFindBar(const TLanguage &language, QWidget *parent = nullptr);

  [[nodiscard]] QString SearchText() const;

 public Q_SLOTS:
  // Shows the bar, gives its text box the keyboard and selects the text. A text that is not empty is taken over and
  // searched for at once; of several lines the first counts.
  void Open(const QString &initialText);
  // Hides the bar and emits Closed().
  void Close();
  // The answer to FindRequested: match `active` (from 1) of `total`.
  void ShowResult(int active, int total);
  // The next or previous match, for keys that the owner handles (F3). Opens the bar when there is nothing to look for.
  void FindNext(bool forward);

 Q_SIGNALS:
  // An empty text means: show no matches any more. With `wrap` off the bar itself stops at the last and first match.
  void FindRequested(const QString &text, bool forward, bool matchCase, bool wrap);
  void Closed();

 protected:
  bool event(QEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void changeEvent(QEvent *event) override;

 private:
  [[nodiscard]] int LongestResult() const;
  void FindFromTyping();
  void ShowNoMatches(bool none);

  const TLanguage &m_language;
  QLineEdit *m_text = nullptr;
  QToolButton *m_previous = nullptr;
  QToolButton *m_next = nullptr;
  QCheckBox *m_matchCase = nullptr;
  QCheckBox *m_wrap = nullptr;
  QLabel *m_result = nullptr;
  QTimer m_typing;
  int m_active = 0;
  int m_total = 0;
  bool m_noMatches = false;
};
