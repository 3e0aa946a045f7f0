#include "popups/popup_blocker.h"

#include <algorithm>
#include <QPointer>
#include <utility>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_menu.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/settings.h"
#include "ui/confirm_dialog.h"
#include "ui/input_box.h"
#include "ui/message_box.h"
#include "ui/shown_text.h"

namespace {

constexpr int PatternWidth = 70;        // characters of the input box
constexpr int MostToldAtOnce = 10;      // addresses in one notice; the others are counted
constexpr qsizetype LongestTold = 300;  // characters of an address in it

bool ComesBefore(const QString &a, const QString &b) {
  return a.compare(b, Qt::CaseInsensitive) < 0;
}

// Into the list's own order; one that is there in whatever case is not added.
void AddSorted(QStringList &patterns, const QString &pattern) {
  const auto place = std::lower_bound(patterns.begin(), patterns.end(), pattern, ComesBefore);
  if (place == patterns.end() || ComesBefore(pattern, *place)) patterns.insert(place, pattern);
}

}  // namespace

std::optional<QStringList> LoadPopupList(TRegistryStore &store) {
  return TZVOptions(store).PopupList();
}

bool SavePopupList(TRegistryStore &store, const QStringList &patterns) {
  return TZVOptions(store).SetPopupList(patterns);
}

TPopupBlocker::TPopupBlocker(QWidget *window, TTabStrip &tabs, TTabMenu &tabMenu)
    : m_window(window), m_tabs(tabs), m_settings(tabs.Environment().settings) {
  m_stopped = new TStoppedPopups(tabs.Environment().language, m_patterns, this);
  connect(m_stopped, &TStoppedPopups::OpenRequested, this,
          [this](const TAddress &address) { m_tabs.NewTab()->Navigate(address); });
  connect(m_stopped, &TStoppedPopups::RemovalRequested, this, &TPopupBlocker::RemovePattern);
  connect(&tabs, &TTabStrip::PopupRejected, this, &TPopupBlocker::OnPopupRejected);
  connect(&tabs, &TTabStrip::WindowStopped, this, &TPopupBlocker::OnWindowStopped);
  tabMenu.On(TCommand::TabBlockPopups, this, [this](TBrowserTab *tab) { AddToPopupList(tab); });
  Reload();
}

TPopupBlocker::~TPopupBlocker() = default;

void TPopupBlocker::Reload() {
  const auto patterns = LoadPopupList(m_settings.Store());
  m_loaded = patterns.has_value();
  if (patterns) m_patterns.Set(*patterns);
}

void TPopupBlocker::Save() {
  m_settings.Lists().EditPopupList([](QStringList &) {});
}

bool TPopupBlocker::IsPopupBlocked(const QString &address) {
  if (!m_settings.Get(Setting::UsePopupHalvex)) return false;
  if (!m_loaded) Reload();
  if (m_patterns.FirstMatch(address) < 0) return false;
  if (m_settings.Get(Setting::PopupHalvexNotify)) {
    // The engine is asking and waits inside its own event: a dialog here would run the event loop, and with it the
    // closing of tabs, under its feet. The answer does not depend on the notice, so it is shown once the engine is
    // done.
    if (m_untold.size() < MostToldAtOnce) {
      m_untold.append(Shortened(address, LongestTold));
    } else {
      ++m_untoldMore;
    }
    QMetaObject::invokeMethod(this, &TPopupBlocker::ShowNotice, Qt::QueuedConnection);
  }
  return true;
}

void TPopupBlocker::ShowNotice() {
  if (m_noticeShows) return;
  m_noticeShows = true;
  const QPointer<TPopupBlocker> self(this);
  const TLanguage &language = m_tabs.Environment().language;
  // What was stopped while one notice shows is told together in the next.
  while (m_settings.Get(Setting::PopupHalvexNotify) && !m_untold.isEmpty()) {
    QStringList addresses = std::exchange(m_untold, {});
    if (const int more = std::exchange(m_untoldMore, 0)) {
      addresses.append(language.Text("POPUPS", "NoticeMore").arg(more));
    }
    const TAnswer answer = ShowConfirm(m_window, {.caption = language.Global("PopupNotifyCaption"),
                                                  .firstLine = language.Global("PopupNotifyMessage"),
                                                  .secondText = addresses.join(u'\n'),
                                                  .ok = language.Global("OK"),
                                                  .checkBox = language.Global("PopupNotifyDontAsk")});
    if (!self) return;
    if (answer.checked) m_settings.Set(Setting::PopupHalvexNotify, false);
  }
  m_untold.clear();
  m_untoldMore = 0;
  m_noticeShows = false;
}

void TPopupBlocker::OnPopupRejected(TBrowserTab *tab) {
  TBrowserTab *opener = tab->Opener() != nullptr ? tab->Opener() : m_tabs.GetActivePage();
  if (opener != nullptr) OnWindowStopped(opener, tab->PopupUrl());
}

void TPopupBlocker::OnWindowStopped(TBrowserTab *opener, const QString &address) {
  m_stopped->Add(opener, {address, m_patterns.Patterns().value(m_patterns.FirstMatch(address))});
}

void TPopupBlocker::AddToPopupList(TBrowserTab *tab) {
  if (tab == nullptr || tab->Browser() == nullptr) return;
  const TLanguage &language = m_tabs.Environment().language;
  QString address = tab->PopupUrl().isEmpty() ? tab->AddressToSave() : tab->PopupUrl();
  address.truncate(address.indexOf(u'?') < 0 ? address.size() : address.indexOf(u'?'));
  const QPointer<TBrowserTab> target(tab);
  const QPointer<TPopupBlocker> self(this);
  const auto pattern = AskText(m_window, language,
                               {.caption = language.Global("PopupHalvex"),
                                .prompt = language.Global("PopupHalvexUrl"),
                                .text = address,
                                .width = PatternWidth});
  if (!self) return;
  if (pattern) {
    // An empty pattern is stored like any other and left out when the list is read; that is meant.
    const auto add = [pattern](QStringList &patterns) { AddSorted(patterns, *pattern); };
    if (!m_settings.Lists().EditPopupList(add)) {
      ShowWarning(m_window, language, language.Text("MAIN", "StoreNotKept"));
    } else if (target) {
      m_tabs.CloseByUser(target);
    }
  }
  Reload();
}

void TPopupBlocker::RemovePattern(const QString &pattern) {
  m_settings.Lists().EditPopupList([pattern](QStringList &patterns) { patterns.removeAll(pattern); });
  Reload();
}
