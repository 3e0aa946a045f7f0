#pragma once

#include "browser/page/permission_decisions.h"
#include "chrome/options/removal_list.h"

// What the user has allowed and refused to sites. What is taken out is asked about again.
class TSitePermissionsPage final : public TRemovalList {
  Q_OBJECT

 public:
  // `decisions` must outlive the page.
  TSitePermissionsPage(const TLanguage &language, TPermissionDecisions &decisions, QWidget *parent = nullptr);

  void Write();

 private:
  TPermissionDecisions &m_decisions;
  QList<TPermissionDecisions::TDecided> m_all;
};
