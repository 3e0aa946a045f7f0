#include "browser/tabs/desktop_commands.h"

#include <QFileInfo>
#include <QMenu>
#include <QPointer>
#include <QProcess>
#include <QUrl>

#include "actions/actions.h"
#include "browser/engine/halvex_browser.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/registered_programs.h"
#include "platform/desktop_entries.h"
#include "platform/desktop_services.h"
#include "platform/mail_address.h"
#include "ui/shown_text.h"

namespace {

const QString MailType = QStringLiteral("x-scheme-handler/mailto");
const QString NewsTypes[] = {QStringLiteral("x-scheme-handler/news"), QStringLiteral("x-scheme-handler/nntp")};

// What opens the type by itself, with nothing to open.
QStringList DefaultProgram(const TDesktopEntries &entries, const QString &type) {
  const std::optional<TDesktopEntry> entry = entries.DefaultOf(type);
  return entry && !entry->inTerminal ? entry->CommandLine({}) : QStringList();
}

}  // namespace

TDesktopCommands::TDesktopCommands(TActions &actions, TTabStrip &tabs, TDesktopServices &desktop)
    : m_actions(actions), m_tabs(tabs), m_desktop(desktop) {
  ConnectMail();
  connect(actions.Menu(TMenu::File), &QMenu::aboutToShow, this, &TDesktopCommands::FillFileMenus);
  // The button that shows a page's source drops this one by itself.
  connect(actions.Menu(TMenu::EditWith), &QMenu::aboutToShow, this, &TDesktopCommands::FillFileMenus);
  for (const TMenu menu : {TMenu::EditWith, TMenu::OpenWith}) actions.Menu(menu)->menuAction()->setVisible(false);
  connect(&desktop, &TDesktopServices::Failed, this, [this](const QString &program) {
    Q_EMIT Note(m_tabs.Environment().language.Text("MAIN", "ProgramFailed").arg(program));
  });
}

THalvexBrowser *TDesktopCommands::Browser() const {
  TBrowserTab *tab = m_tabs.GetActivePage();
  return tab != nullptr ? tab->Browser() : nullptr;
}

void TDesktopCommands::ConnectMail() {
  using TOperation = void (TDesktopCommands::*)();
  const std::pair<TCommand, TOperation> rows[] = {
      {TCommand::MailNewMessage, &TDesktopCommands::NewMessage}, {TCommand::MailLink, &TDesktopCommands::MailLink},
      {TCommand::MailPage, &TDesktopCommands::MailPage},         {TCommand::ReadMail, &TDesktopCommands::ReadMail},
      {TCommand::ReadNews, &TDesktopCommands::ReadNews},
  };
  for (const auto &[command, operation] : rows) {
    connect(m_actions[command], &QAction::triggered, this, operation);
  }
  connect(m_actions.Menu(TMenu::Mail), &QMenu::aboutToShow, this, &TDesktopCommands::FillMailMenu);
}

void TDesktopCommands::AddProgram(QMenu *menu, const QString &name, const QString &icon,
                                  const std::function<void()> &start) {
  const QIcon picture = QFileInfo(icon).isAbsolute() ? QIcon(icon) : QIcon::fromTheme(icon);
  QAction *item = menu->addAction(picture, MenuText(name));
  // Told apart from the table's own items, which stay when the menu is filled anew.
  item->setData(true);
  connect(item, &QAction::triggered, this, start);
}

void TDesktopCommands::FillMailMenu() {
  QMenu *menu = m_actions.Menu(TMenu::Mail);
  for (QAction *item : menu->actions()) {
    if (item->data().toBool()) delete item;
  }
  for (const RegisteredPrograms::TMailClient &client : RegisteredPrograms::MailClients(m_tabs.Environment().store)) {
    AddProgram(menu, client.name, {},
               [this, client] { m_desktop.StartCommand(QProcess::splitCommand(client.command)); });
  }
  for (const TDesktopEntry &client : TDesktopEntries::Installed().MailClients()) {
    AddProgram(menu, client.name, client.icon, [this, client] { m_desktop.StartCommand(client.CommandLine({})); });
  }
}

void TDesktopCommands::FillFileMenus() {
  const TDesktopEntries entries = TDesktopEntries::Installed();
  TRegistryStore &store = m_tabs.Environment().store;

  QMenu *editors = m_actions.Menu(TMenu::EditWith);
  editors->clear();
  for (const RegisteredPrograms::TEditor &editor : RegisteredPrograms::Editors(store)) {
    AddProgram(editors, editor.name, {}, [this, &store, editor] {
      EditPage([&store, editor](const QString &file) {
        return RegisteredPrograms::EditCommand(store, editor.program, file);
      });
    });
  }
  for (const TDesktopEntry &editor : entries.Editors()) {
    AddProgram(editors, editor.name, editor.icon,
               [this, editor] { EditPage([editor](const QString &file) { return editor.CommandLine({file}); }); });
  }
  editors->menuAction()->setVisible(!editors->isEmpty());
  // Nobody sees that an empty menu has opened.
  if (editors->isEmpty()) editors->addAction(m_tabs.Environment().language.Global("NoItems"))->setEnabled(false);

  QMenu *browsers = m_actions.Menu(TMenu::OpenWith);
  browsers->clear();
  if (const QStringList own = RegisteredPrograms::SystemBrowser(store, {}); !own.isEmpty()) {
    AddProgram(browsers, QFileInfo(own.first()).fileName(), {}, [this, &store] {
      OpenIn([&store](const QString &address) { return RegisteredPrograms::SystemBrowser(store, address); });
    });
  }
  for (const TDesktopEntry &browser : entries.Browsers()) {
    AddProgram(browsers, browser.name, browser.icon, [this, browser] {
      OpenIn([browser](const QString &address) {
        return browser.CommandLine(address.isEmpty() ? QStringList() : QStringList(address));
      });
    });
  }
  browsers->menuAction()->setVisible(!browsers->isEmpty());
}

void TDesktopCommands::TellMailFailed() {
  Q_EMIT Note(m_tabs.Environment().language.Text("MAIN", "MailFailed"));
}

void TDesktopCommands::NewMessage() {
  if (!m_desktop.OpenMailAddress(QStringLiteral("mailto:"))) TellMailFailed();
}

QString TDesktopCommands::MailLinkAddress(const QString &title, const QString &address) {
  return QStringLiteral("mailto:?subject=") + title + QStringLiteral(" (") + address + QStringLiteral(")&body=") +
         address;
}

void TDesktopCommands::MailLink() {
  const THalvexBrowser *browser = Browser();
  if (browser == nullptr) return;
  // A title that looks like more of the address would otherwise put a file into the message, or somebody in copy.
  const QString title = MailAddress::Encoded(browser->LocationName());
  const QString address = MailAddress::Encoded(browser->LocationUrl());
  if (!m_desktop.OpenMailAddress(MailLinkAddress(title, address))) TellMailFailed();
}

void TDesktopCommands::MailPage() {
  THalvexBrowser *browser = Browser();
  if (browser == nullptr) return;
  const QPointer<TDesktopCommands> self(this);
  browser->SaveToTemporaryFile(true, [self](const QString &file) {
    if (self && (file.isEmpty() || !self->m_desktop.SendDocuments({file}))) self->TellMailFailed();
  });
}

// Where no client is known nothing happens.
void TDesktopCommands::ReadMail() {
  const QStringList registered = RegisteredPrograms::MailReader(m_tabs.Environment().store);
  m_desktop.StartCommand(registered.isEmpty() ? DefaultProgram(TDesktopEntries::Installed(), MailType) : registered);
}

void TDesktopCommands::ReadNews() {
  QStringList command = RegisteredPrograms::NewsReader(m_tabs.Environment().store);
  const TDesktopEntries entries = command.isEmpty() ? TDesktopEntries::Installed() : TDesktopEntries();
  for (const QString &type : NewsTypes) {
    if (command.isEmpty()) command = DefaultProgram(entries, type);
  }
  m_desktop.StartCommand(command);
}

// A page from the disk is edited itself, any other one as a copy.
void TDesktopCommands::EditPage(const TFileCommand &command) {
  THalvexBrowser *browser = Browser();
  if (browser == nullptr) return;
  const QPointer<TDesktopCommands> self(this);
  const auto edit = [self, command](const QString &file) {
    if (!self) return;
    const QStringList line = file.isEmpty() ? QStringList() : command(file);
    // A program that does not say how it edits is left alone.
    if (!file.isEmpty() && (line.isEmpty() || self->m_desktop.StartCommand(line))) return;
    Q_EMIT self->Note(self->m_tabs.Environment().language.Text("MAIN", "EditFailed"));
  };
  const QUrl address(browser->LocationUrl());
  if (address.isLocalFile() && QFileInfo(address.toLocalFile()).isFile()) {
    edit(address.toLocalFile());
  } else {
    browser->SaveToTemporaryFile(false, edit);
  }
}

void TDesktopCommands::OpenIn(const std::function<QStringList(const QString &address)> &command) {
  const TBrowserTab *tab = m_tabs.GetActivePage();
  if (tab == nullptr || m_desktop.StartCommand(command(tab->GetLocationUrl()))) return;
  Q_EMIT Note(m_tabs.Environment().language.Text("MAIN", "EditFailed"));
}
