#pragma once

#include <QObject>

#include "platform/desktop_services.h"

class TBrowserTab;
class TCommands;
class THalvexBrowser;
class TTabStrip;
class TMainStatusBar;

// The commands that work on the page in front: save, print, edit, zoom, find, source, mail. Each does nothing when the
// active tab has no browser.
class TPageCommands final : public QObject {
  Q_OBJECT

 public:
  TPageCommands(QWidget *window, TCommands &commands, TTabStrip &tabs, TMainStatusBar &status);

  // The address of a new message with a link to a page. No character of title or address is escaped; that is meant.
  [[nodiscard]] static QString MailLinkAddress(const QString &title, const QString &address);

  // Back, forward, stop and the like follow the active tab.
  void UpdateFor(TBrowserTab *tab);

 private:
  using TOperation = void (THalvexBrowser::*)();
  struct TSimple;
  struct TFont;
  static const TSimple SimpleCommands[];
  static const TFont Fonts[];

  void ConnectSimple();
  void ConnectNavigation();
  void ConnectClipboard();
  void ConnectFonts();
  void ConnectMail();
  void ConnectEditing();
  void FillEditMenu();
  void EditPage(const DesktopServices::TEditor &editor);
  void MailLink();
  void MailPage();
  [[nodiscard]] THalvexBrowser *Browser() const;

  QWidget *m_window;
  TCommands &m_commands;
  TTabStrip &m_tabs;
  TMainStatusBar &m_status;
};
