#pragma once

#include <optional>
#include <QObject>
#include <QStringList>

#include "popups/popup_patterns.h"
#include "popups/stopped_popups.h"

class QWidget;
class TBrowserTab;
class TRegistryStore;
class TSettings;
class TTabMenu;
class TTabStrip;

// The pop-up list of the store. Loading gives the patterns sorted and without duplicates, both regardless of case, and
// without empty ones, or std::nullopt when they could not be read; saving replaces the stored list; false when the
// store refused it.
[[nodiscard]] std::optional<QStringList> LoadPopupList(TRegistryStore &store);
bool SavePopupList(TRegistryStore &store, const QStringList &patterns);

// Keeps unwanted windows away: tests the first address of each window that a page asks for against the pop-up list,
// tells the user about it, and lets him add to the list and take back.
class TPopupBlocker final : public QObject {
  Q_OBJECT

 public:
  // Reads the list. All must outlive this object, whose dialogs belong to `window`.
  TPopupBlocker(QWidget *window, TTabStrip &tabs, TTabMenu &tabMenu);
  ~TPopupBlocker() override;

  // True to stop the window that a page has asked for. Never waits for the user: the notice comes right after.
  [[nodiscard]] bool IsPopupBlocked(const QString &address);
  // Asks for a pattern, proposing the tab's address; on OK the pattern joins the list and the tab closes.
  void AddToPopupList(TBrowserTab *tab);

  // Reads the list again, after something else may have changed it. Where it cannot be read now it stays as it is, and
  // the next address to be tested tries again.
  void Reload();
  // Leaves the stored list in its order, when the window goes. What was changed here was written then; what other
  // windows have changed stays.
  void Save();

  [[nodiscard]] const TPopupPatterns &Patterns() const { return m_patterns; }
  [[nodiscard]] TStoppedPopups &Stopped() const { return *m_stopped; }

 private:
  void OnPopupRejected(TBrowserTab *tab);
  void OnWindowStopped(TBrowserTab *opener, const QString &address);
  void RemovePattern(const QString &pattern);
  void ShowNotice();

  QWidget *m_window;
  TTabStrip &m_tabs;
  TSettings &m_settings;
  TPopupPatterns m_patterns;
  bool m_loaded = false;
  TStoppedPopups *m_stopped;
  QStringList m_untold;  // blocked addresses whose notice has not been shown yet, the first of them
  int m_untoldMore = 0;  // and how many there were after these
  bool m_noticeShows = false;
};
