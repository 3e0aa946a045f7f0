#pragma once

#include <functional>
#include <QStatusBar>

#include "browser/page/encryption_level.h"

class QLabel;
class QMenu;
class QProgressBar;
class QToolButton;
class TEncryptionPanel;
class TFrameUpdates;
class TLanguage;
class TStatusOffer;
class TZonePanel;

// The status bar: what the page says, a panel for notes about the active page, progress, the security of the
// connection, its zoom and running downloads. What pages change in it all the time is shown with the frame's other
// updates.
class TMainStatusBar final : public QStatusBar {
  Q_OBJECT

 public:
  // Both must outlive this object.
  TMainStatusBar(const TLanguage &language, TFrameUpdates &updates, QWidget *parent);

  void ShowStatusText(const QString &text);
  // Panel 2: a note about the page in front; an empty text clears it.
  void ShowNote(const QString &text);
  // What was just done, with a button that does something about it; goes by itself, see TStatusOffer.
  void ShowNote(const QString &text, const QString &actionText, std::function<void()> action);
  // Percent; 100 hides the bar.
  void ShowProgress(int percent);
  // Panel 1: the padlock with the words of the level; nothing for a page that is not secure.
  void ShowSecurity(bool secure, TEncryptionLevel level);
  // Panel 3: the security zone of the page in front; nothing for an empty name.
  void ShowZone(const QIcon &icon, const QString &name);
  // Nothing at the plain size; a click goes back to it.
  void ShowZoom(int percent);
  // How many are running; the button stays where none is.
  void ShowDownloads(int active);
  // What was stopped on the page in front; an empty text hides it. A click opens the menu, which others fill.
  void ShowStopped(const QString &text);
  [[nodiscard]] QMenu *StoppedMenu() const { return m_stoppedMenu; }
  // For the words of the page in front; whoever explains them fills it, and until then it is hidden.
  [[nodiscard]] QToolButton *AnnotationButton() const { return m_annotations; }
  // Pages that are still to be loaded; a click stops them.
  void ShowPagesToCome(int pages);

 Q_SIGNALS:
  void DownloadsClicked();
  void SecurityClicked();
  void ZoneDoubleClicked();
  void ZoomClicked();
  void StopPagesClicked();

 private:
  // Begins to gather `value` into `wanted`.
  template <typename T>
  void Gather(T &wanted, const T &value);
  void ShowGathered();

  const TLanguage &m_language;
  TFrameUpdates &m_updates;
  QString m_wantedText;
  int m_wantedProgress = 100;
  int m_wantedPages = 0;
  bool m_isStale = false;  // something wanted is not shown yet
  QLabel *m_text;
  QLabel *m_note;
  QProgressBar *m_progress;
  // In the order in which they stand there and the Tab key reaches them.
  TStatusOffer *m_offer;
  QToolButton *m_pagesToCome;
  QToolButton *m_stopped;
  QToolButton *m_annotations;
  QToolButton *m_zoom;
  QToolButton *m_downloads;
  TEncryptionPanel *m_security;
  TZonePanel *m_zone;
  QMenu *m_stoppedMenu;
};
