#include "app/page_commands.h"

#include <QActionGroup>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QShortcut>
#include <QUrl>

#include "actions/commands.h"
#include "chrome/main_status_bar.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"

namespace {

// The text box that has the keyboard, when there is one outside the page.
QLineEdit *FocusedEdit() {
  QWidget *focus = QApplication::focusWidget();
  // An editable combo box has the keyboard in its line edit's stead.
  if (const auto *box = qobject_cast<QComboBox *>(focus)) return box->lineEdit();
  return qobject_cast<QLineEdit *>(focus);
}

}  // namespace

struct TPageCommands::TSimple {
  TCommand command;
  TOperation operation;
};

const TPageCommands::TSimple TPageCommands::SimpleCommands[] = {
    {TCommand::SaveAs, &THalvexBrowser::SaveAs},
    {TCommand::PageSetup, &THalvexBrowser::PageSetup},
    {TCommand::Print, &THalvexBrowser::Print},
    {TCommand::PrintNow, &THalvexBrowser::PrintWithoutAsking},
    {TCommand::PrintPreview, &THalvexBrowser::PrintPreview},
    {TCommand::Properties, &THalvexBrowser::Properties},
    {TCommand::Find, &THalvexBrowser::FindOnPage},
    {TCommand::ViewSource, &THalvexBrowser::ViewSource},
    {TCommand::RefreshCompletely, &THalvexBrowser::RefreshCompletely},
    {TCommand::ZoomIn, &THalvexBrowser::ZoomIn},
    {TCommand::ZoomOut, &THalvexBrowser::ZoomOut},
    {TCommand::ZoomReset, &THalvexBrowser::ResetZoom},
};

struct TPageCommands::TFont {
  TCommand command;
  int zoom;
};

// In menu order: the item at position 4 - zoom.
const TPageCommands::TFont TPageCommands::Fonts[] = {
    {TCommand::FontLargest, 4}, {TCommand::FontLarge, 3},    {TCommand::FontMedium, 2},
    {TCommand::FontSmaller, 1}, {TCommand::FontSmallest, 0},
};

TPageCommands::TPageCommands(QWidget *window, TCommands &commands, TTabStrip &tabs, TMainStatusBar &status)
    : QObject(window), m_window(window), m_commands(commands), m_tabs(tabs), m_status(status) {
  ConnectSimple();
  ConnectNavigation();
  ConnectClipboard();
  ConnectFonts();
  ConnectMail();
  ConnectEditing();
}

THalvexBrowser *TPageCommands::Browser() const {
  TBrowserTab *tab = m_tabs.GetActivePage();
  return tab != nullptr ? tab->Browser() : nullptr;
}

void TPageCommands::ConnectSimple() {
  for (const TSimple &row : SimpleCommands) {
    connect(m_commands[row.command], &QAction::triggered, this, [this, operation = row.operation] {
      if (THalvexBrowser *browser = Browser()) (browser->*operation)();
    });
  }
  for (const bool forward : {true, false}) {
    connect(m_commands[forward ? TCommand::FindNext : TCommand::FindPrevious], &QAction::triggered, this,
            [this, forward] {
              if (THalvexBrowser *browser = Browser()) browser->FindNext(forward);
            });
  }
}

void TPageCommands::ConnectNavigation() {
  using TTabOperation = void (TBrowserTab::*)();
  const std::pair<TCommand, TTabOperation> rows[] = {
      {TCommand::Back, &TBrowserTab::GoBack},     {TCommand::Forward, &TBrowserTab::GoForward},
      {TCommand::Home, &TBrowserTab::GoHome},     {TCommand::Stop, &TBrowserTab::Stop},
      {TCommand::Refresh, &TBrowserTab::Refresh},
  };
  for (const auto &[command, operation] : rows) {
    connect(m_commands[command], &QAction::triggered, this, [this, operation = operation] {
      if (TBrowserTab *tab = m_tabs.GetActivePage()) (tab->*operation)();
    });
  }
  // The command passes the cache by while Ctrl is held, which is not meant by this key.
  connect(new QShortcut(Qt::CTRL | Qt::Key_R, m_window), &QShortcut::activated, this, [this] {
    if (TBrowserTab *tab = m_tabs.GetActivePage()) tab->Reload(false);
  });
  connect(m_commands[TCommand::StopAll], &QAction::triggered, &m_tabs, &TTabStrip::StopAll);
  connect(m_commands[TCommand::RefreshAll], &QAction::triggered, &m_tabs, &TTabStrip::RefreshAll);
  connect(m_commands[TCommand::OpenFile], &QAction::triggered, this, [this] {
    const TLanguage &language = m_tabs.Environment().language;
    const QString file = QFileDialog::getOpenFileName(m_window, language.Text("MAIN", "OpenTitle"), QString(),
                                                      language.Text("MAIN", "OpenFilter"));
    if (TBrowserTab *tab = m_tabs.GetActivePage(); tab != nullptr && !file.isEmpty()) tab->Navigate(file);
  });
}

void TPageCommands::ConnectClipboard() {
  struct TRoute {
    TCommand command;
    TOperation page;
    void (*edit)(QLineEdit *);
  };
  // The text box that has the keyboard comes first, then the page.
  static constexpr TRoute Routes[] = {
      {TCommand::Undo, &THalvexBrowser::Undo, [](QLineEdit *edit) { edit->undo(); }},
      {TCommand::Redo, &THalvexBrowser::Redo, [](QLineEdit *edit) { edit->redo(); }},
      {TCommand::Cut, &THalvexBrowser::Cut, [](QLineEdit *edit) { edit->cut(); }},
      {TCommand::Copy, &THalvexBrowser::Copy, [](QLineEdit *edit) { edit->copy(); }},
      {TCommand::Paste, &THalvexBrowser::Paste, [](QLineEdit *edit) { edit->paste(); }},
      {TCommand::SelectAll, &THalvexBrowser::SelectAll, [](QLineEdit *edit) { edit->selectAll(); }},
  };
  for (const TRoute &route : Routes) {
    connect(m_commands[route.command], &QAction::triggered, this, [this, &route] {
      if (QLineEdit *edit = FocusedEdit()) {
        route.edit(edit);
      } else if (THalvexBrowser *browser = Browser()) {
        (browser->*route.page)();
      }
    });
  }
}

void TPageCommands::ConnectFonts() {
  auto *group = new QActionGroup(this);
  for (const TFont &font : Fonts) {
    group->addAction(m_commands[font.command]);
    connect(m_commands[font.command], &QAction::triggered, this, [this, zoom = font.zoom] {
      if (THalvexBrowser *browser = Browser()) browser->SetZoom(zoom);
    });
  }
  connect(m_commands.Menu(TMenu::FontSize), &QMenu::aboutToShow, this, [this] {
    const THalvexBrowser *browser = Browser();
    if (browser == nullptr) return;
    for (const TFont &font : Fonts) m_commands[font.command]->setChecked(font.zoom == browser->Zoom());
  });
}

void TPageCommands::ConnectMail() {
  connect(m_commands[TCommand::MailNewMessage], &QAction::triggered, this, [this] {
    if (!DesktopServices::OpenMailAddress(QStringLiteral("mailto:"))) {
      m_status.ShowNote(m_tabs.Environment().language.Text("MAIN", "MailFailed"));
    }
  });
  connect(m_commands[TCommand::MailLink], &QAction::triggered, this, &TPageCommands::MailLink);
  connect(m_commands[TCommand::MailPage], &QAction::triggered, this, &TPageCommands::MailPage);
}

QString TPageCommands::MailLinkAddress(const QString &title, const QString &address) {
  return QStringLiteral("mailto:?subject=") + title + QStringLiteral(" (") + address + QStringLiteral(")&body=") +
         address;
}

void TPageCommands::MailLink() {
  const THalvexBrowser *browser = Browser();
  if (browser == nullptr) return;
  if (!DesktopServices::OpenMailAddress(MailLinkAddress(browser->LocationName(), browser->LocationUrl()))) {
    m_status.ShowNote(m_tabs.Environment().language.Text("MAIN", "MailFailed"));
  }
}

void TPageCommands::MailPage() {
  THalvexBrowser *browser = Browser();
  if (browser == nullptr) return;
  const QPointer<TPageCommands> self(this);
  browser->SaveToTemporaryFile(true, [self](const QString &file) {
    if (self && (file.isEmpty() || !DesktopServices::SendDocument(file))) {
      self->m_status.ShowNote(self->m_tabs.Environment().language.Text("MAIN", "MailFailed"));
    }
  });
}

void TPageCommands::ConnectEditing() {
  QMenu *menu = m_commands.Menu(TMenu::EditWith);
  connect(m_commands.Menu(TMenu::File), &QMenu::aboutToShow, this, &TPageCommands::FillEditMenu);
  menu->menuAction()->setVisible(false);
}

void TPageCommands::FillEditMenu() {
  QMenu *menu = m_commands.Menu(TMenu::EditWith);
  menu->clear();
  const QList<DesktopServices::TEditor> editors = DesktopServices::Editors();
  for (const DesktopServices::TEditor &editor : editors) {
    QString name = editor.name;
    QAction *item = menu->addAction(QIcon::fromTheme(editor.icon), name.replace(QLatin1Char('&'), QLatin1String("&&")));
    connect(item, &QAction::triggered, this, [this, editor] { EditPage(editor); });
  }
  menu->menuAction()->setVisible(!editors.isEmpty());
}

void TPageCommands::EditPage(const DesktopServices::TEditor &editor) {
  THalvexBrowser *browser = Browser();
  if (browser == nullptr) return;
  const QUrl address(browser->LocationUrl());
  if (address.isLocalFile() && QFileInfo(address.toLocalFile()).isFile()) {
    DesktopServices::EditWith(editor, address.toLocalFile());
    return;
  }
  const QPointer<TPageCommands> self(this);
  browser->SaveToTemporaryFile(false, [self, editor](const QString &file) {
    if (self && (file.isEmpty() || !DesktopServices::EditWith(editor, file))) {
      self->m_status.ShowNote(self->m_tabs.Environment().language.Text("MAIN", "EditFailed"));
    }
  });
}

void TPageCommands::UpdateFor(TBrowserTab *tab) {
  m_commands[TCommand::Back]->setEnabled(tab != nullptr && tab->BackEnabled());
  m_commands[TCommand::Forward]->setEnabled(tab != nullptr && tab->ForwardEnabled());
  // Disabled when nothing loads, and while a page has the whole screen, so that Esc then belongs to the page.
  const bool pageOnly = tab != nullptr && tab->Browser() != nullptr && tab->Browser()->HasPageFullScreen();
  m_commands[TCommand::Stop]->setEnabled(tab != nullptr && tab->Busy() && !pageOnly);
}
