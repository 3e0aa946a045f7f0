#pragma once

#include <QStatusBar>

#include "browser/page/encryption_level.h"

class QLabel;
class QMenu;
class QProgressBar;
class QToolButton;
class TLanguage;

// The status bar: what the page says, a panel for notes about the active page, progress, the security of the connection
// and running downloads.
class TMainStatusBar final : public QStatusBar {
  Q_OBJECT

 public:
  TMainStatusBar(const TLanguage &language, QWidget *parent);

  void ShowStatusText(const QString &text);
  // Panel 2: a note about the page in front; an empty text clears it.
  void ShowNote(const QString &text);
  // Percent; 100 hides the bar.
  void ShowProgress(int percent);
  // The padlock with its words, nothing at the lowest level.
  void ShowSecurity(bool secure, TEncryptionLevel level);
  void ShowDownloads(int active);
  // What was stopped on the page in front; an empty text hides it. A click opens the menu, which others fill.
  void ShowStopped(const QString &text);
  [[nodiscard]] QMenu *StoppedMenu() const { return m_stoppedMenu; }
  // Pages that are still to be loaded; a click stops them.
  void ShowPagesToCome(int pages);

 Q_SIGNALS:
  void DownloadsClicked();
  void SecurityClicked();
  void StopPagesClicked();

 private:
  const TLanguage &m_language;
  QLabel *m_text;
  QLabel *m_note;
  QProgressBar *m_progress;
  QToolButton *m_security;
  QToolButton *m_downloads;
  QToolButton *m_pagesToCome;
  QToolButton *m_stopped;
  QMenu *m_stoppedMenu;
};
