#pragma once

#include <QObject>
#include <QPointer>

#include "actions/command_table.h"
#include "security/ie_zone_mgr.h"

class TActions;
class TTabStrip;
class TfrmSecurity;

// The menu of security zones (pmSecurity): in which zone the page in front is, its site put into another one or taken
// out again, and what the pages of the Internet may do.
class TSecurityMenu final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  TSecurityMenu(QWidget *window, TActions &actions, TTabStrip &tabs, TZoneStore &store, TIEZoneMgr &zones,
                const TLanguage &language);

  // The dialog with the sites and the rules of all zones; one at a time.
  void ShowSettings();
  // The zones of all pages are told anew, after mappings have changed.
  void RefreshZones();

 private:
  void Prepare();
  void ShowZone(int zone);
  void ShowAddItems(bool isOffered);
  void ShowPolicies(bool isOffered);
  void ChangePolicy(TCommand clicked);
  void AddSite(int zone);
  void RemoveSite();
  // As the text of a menu item.
  [[nodiscard]] QString Caption(const TTextKey &key, const QString &part) const;
  [[nodiscard]] QString Hint(const TTextKey &key, const QString &part) const;

  QWidget *m_window;
  TActions &m_actions;
  TTabStrip &m_tabs;
  TZoneStore &m_store;
  TIEZoneMgr &m_zones;
  const TLanguage &m_language;
  QPointer<TfrmSecurity> m_settings;
};
