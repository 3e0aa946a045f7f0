#pragma once

#include <functional>
#include <QObject>
#include <QStringList>

class QMenu;
class TActions;
class TDesktopServices;
class TTabStrip;
class THalvexBrowser;

// What other programs of the desktop do with the page in front, or by themselves: mail, news, editing, another browser.
// The menus that name programs are filled when they open: first those that the registry's keys name, then those that
// the desktop has.
class TDesktopCommands final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  TDesktopCommands(TActions &actions, TTabStrip &tabs, TDesktopServices &desktop);

  // The address of a new message with a link to a page. No character of title or address is escaped; that is meant, and
  // the affair of whoever hands the address over.
  [[nodiscard]] static QString MailLinkAddress(const QString &title, const QString &address);

 Q_SIGNALS:
  // What could not be done, to be told beside the page.
  void Note(const QString &text);

 private:
  // The command that works on a file.
  using TFileCommand = std::function<QStringList(const QString &file)>;

  void ConnectMail();
  void FillMailMenu();
  void FillFileMenus();
  void AddProgram(QMenu *menu, const QString &name, const QString &icon, const std::function<void()> &start);
  void NewMessage();
  void MailLink();
  void MailPage();
  void ReadMail();
  void ReadNews();
  void EditPage(const TFileCommand &command);
  void OpenIn(const std::function<QStringList(const QString &address)> &command);
  void TellMailFailed();
  [[nodiscard]] THalvexBrowser *Browser() const;

  TActions &m_actions;
  TTabStrip &m_tabs;
  TDesktopServices &m_desktop;
};
