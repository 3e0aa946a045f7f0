#include "chrome/options/site_permissions_page.h"

#include "browser/page/origin_text.h"
#include "browser/page/site_permissions.h"

TSitePermissionsPage::TSitePermissionsPage(const TLanguage &language, TPermissionDecisions &decisions, QWidget *parent)
    : TRemovalList("tsPermissions", language, {"OPTIONS", "PermissionList"},
                   {language.Text("OPTIONS", "PermissionSite"), language.Text("OPTIONS", "PermissionName"),
                    language.Text("OPTIONS", "PermissionDecision")},
                   parent),
      m_decisions(decisions),
      m_all(decisions.All()) {
  for (qsizetype i = 0; i < m_all.size(); ++i) {
    const TPermissionDecisions::TDecided &one = m_all.at(i);
    AddRow({OriginText(one.site, language), TSitePermissions::NameOf(one.permission, language),
            TSitePermissions::NameOf(one.decision, language)},
           i);
  }
}

void TSitePermissionsPage::Write() {
  for (const QVariant &row : Removed()) {
    const TPermissionDecisions::TDecided &one = m_all.at(row.value<qsizetype>());
    m_decisions.Remember(one.site, one.permission, TPermissionDecision::Ask);
  }
}
