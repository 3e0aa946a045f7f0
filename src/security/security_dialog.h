#pragma once

#include <array>
#include <memory>
#include <QDialog>
#include <QTimer>

#include "security/ie_zone_mgr.h"

class QComboBox;
namespace Ui {
class TfrmSecurity;
}

// The sites and the rules of each security zone. What is changed holds at once, and what somebody else changes
// meanwhile shows; the machine's own zone has no sites.
class TfrmSecurity final : public QDialog {
  Q_OBJECT

 public:
  // All must outlive the dialog; `manager` is of `zones`.
  TfrmSecurity(TZoneStore &zones, const TIEZoneMgr &manager, const TLanguage &language, QWidget *parent = nullptr);
  ~TfrmSecurity() override;

  // Turns to this zone; one that there is none of does nothing.
  void ShowZone(int zone);

 Q_SIGNALS:
  void SitesChanged();
  void RulesChanged();

 private:
  [[nodiscard]] int Zone() const;
  // Also forgets what was told of the last change.
  void Fill();
  // Fills only where somebody else has changed something.
  void Look();
  void AddSite();
  void RemoveSites();
  void SetRule(size_t rule);
  void ResetRules();
  // What the rules are now, and that they could not be changed where that is so.
  void ShowRules(bool isKept);

  TZoneStore &m_zones;
  const TIEZoneMgr &m_manager;
  const TLanguage &m_language;
  std::unique_ptr<Ui::TfrmSecurity> m_ui;
  std::array<QComboBox *, UrlActions.size()> m_rules;  // in the order of the actions
  QString m_revision;                                  // that is shown
  QTimer m_look{this};                                 // tmrZones
};
