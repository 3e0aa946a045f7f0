#pragma once

#include <QObject>

class QShortcut;
class QWebEngineFullScreenRequest;
class QWebEngineView;
class TPagePrompts;

// The whole screen for one page, when it asks for it. Only what is seen may have it, the user is told how to leave, and
// Escape leaves.
class TPageFullScreen final : public QObject {
  Q_OBJECT

 public:
  // `prompts` tells the user; the key works within `browser`.
  TPageFullScreen(QWebEngineView *view, TPagePrompts *prompts, QWidget *browser);

  [[nodiscard]] bool IsOn() const { return m_on; }
  void Leave();

 Q_SIGNALS:
  void Changed(bool on);

 private:
  void OnRequested(QWebEngineFullScreenRequest request);

  QWebEngineView *m_view;
  TPagePrompts *m_prompts;
  QShortcut *m_escape;
  bool m_on = false;
};
