#pragma once

#include <QObject>

#include "platform/desktop_services.h"

class TBrowserTab;
class TActions;
class THalvexBrowser;
class TTabStrip;

// The commands that work on the page in front: save, print, edit, zoom, find, source, mail. Each does nothing when the
// active tab has no browser.
class TPageCommands final : public QObject {
  Q_OBJECT

 public:
  // `window` owns the dialogs. All must outlive this object.
  TPageCommands(QWidget *window, TActions &actions, TTabStrip &tabs);

  // The address of a new message with a link to a page. No character of title or address is escaped; that is meant.
  [[nodiscard]] static QString MailLinkAddress(const QString &title, const QString &address);

  // Back, forward, stop and the like follow the active tab. Tells whether that has changed any.
  bool UpdateFor(TBrowserTab *tab);

 Q_SIGNALS:
  // What could not be done, to be told beside the page.
  void Note(const QString &text);

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
  TActions &m_actions;
  TTabStrip &m_tabs;
};
