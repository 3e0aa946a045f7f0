#include "app/default_browser_question.h"

#include <QApplication>
#include <QPointer>
#include <QTimer>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/settings.h"
#include "config/shell_association.h"
#include "ui/confirm_dialog.h"

TDefaultBrowserQuestion::TDefaultBrowserQuestion(QWidget *window, TTabStrip &tabs, const TLanguage &language,
                                                 TSettings &settings, TDesktopDefaults &desktop)
    : m_window(window), m_tabs(tabs), m_language(language), m_settings(settings), m_desktop(desktop) {}

void TDefaultBrowserQuestion::Begin() {
  if (!m_settings.Get(Setting::AskDefaultBrowser)) return;
  // What could not be read may say that it is.
  if (TShellAssociation(m_settings.Store()).IsDefaultBrowser() || m_settings.Store().HasMissedReads()) return;
  connect(&m_tabs, &TTabStrip::TabLoaded, this, &TDefaultBrowserQuestion::AskSoon);
  const TBrowserTab *tab = m_tabs.GetActivePage();
  if (tab == nullptr || tab->Load() == TLoad::Blank) AskSoon();
}

// Never from within what the engine is telling.
void TDefaultBrowserQuestion::AskSoon() {
  // Another question comes first; there are further pages to ask after.
  if (QApplication::activeModalWidget() != nullptr) return;
  m_tabs.disconnect(this);
  QTimer::singleShot(0, this, &TDefaultBrowserQuestion::Ask);
}

void TDefaultBrowserQuestion::Ask() {
  const QPointer<TDefaultBrowserQuestion> self(this);
  const TAnswer answer = ShowConfirm(m_window, {.caption = QApplication::applicationDisplayName(),
                                                .firstLine = m_language.Text("Default", "NotCurrent"),
                                                .secondText = m_language.Text("Default", "AskDefault"),
                                                .ok = m_language.Global("Yes"),
                                                .cancel = m_language.Global("No"),
                                                .checkBox = m_language.Text("Default", "AlwaysAsk"),
                                                .checkBoxState = true});
  if (!self) return;
  if (answer.accepted) MakeDefault();
  if (!answer.checked) m_settings.Set(Setting::AskDefaultBrowser, false);
}

void TDefaultBrowserQuestion::MakeDefault() {
  TShellAssociation(m_settings.Store(), &m_desktop).SetAll(true);
}
