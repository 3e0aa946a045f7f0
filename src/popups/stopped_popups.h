#pragma once

#include <memory>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

#include "browser/engine/address.h"

class QMenu;
class TBrowserTab;
class TLanguage;
class TPopupPatterns;

// A window that a page asked for and that was stopped.
struct TStoppedPopup {
  QString address;
  QString pattern;  // the one of the pop-up list that stopped it; empty when there were too many
};

// What was stopped on the page that each tab shows now. A tab's list begins anew when it goes to another page.
class TStoppedPopups final : public QObject {
  Q_OBJECT

 public:
  // A page may ask for windows without end; beyond so many the oldest are forgotten, though still counted.
  static constexpr int MostKept = 50;

  // `patterns` is the pop-up list: only what still stands in it can be removed.
  TStoppedPopups(const TLanguage &language, const TPopupPatterns &patterns, QObject *parent = nullptr);
  ~TStoppedPopups() override;

  void Add(TBrowserTab *opener, const TStoppedPopup &popup);
  [[nodiscard]] int Count(const TBrowserTab *tab) const;
  [[nodiscard]] QList<TStoppedPopup> Stopped(const TBrowserTab *tab) const;
  // The text of the counter: empty where nothing was stopped.
  [[nodiscard]] QString CounterText(const TBrowserTab *tab) const;
  // Replaces the menu's items: for each stopped address a sub-menu that opens it after all or removes its pattern.
  void FillMenu(QMenu *menu, const TBrowserTab *tab);

 Q_SIGNALS:
  void Changed(TBrowserTab *tab, int count);
  // From the menu.
  void OpenRequested(const TAddress &address);
  void RemovalRequested(const QString &pattern);

 private:
  struct TPage;
  void Forget(TBrowserTab *tab);

  const TLanguage &m_language;
  const TPopupPatterns &m_patterns;
  QHash<const TBrowserTab *, std::shared_ptr<TPage>> m_pages;
};
