#pragma once

#include <QGroupBox>
#include <QUrl>

#include "browser/page/permission_decisions.h"

class TLanguage;

// What the user has decided about one site, a line for each permission, in which he can decide anew. A change holds at
// once; what the page is using already it keeps until it is loaded again.
class TSitePermissions final : public QGroupBox {
  Q_OBJECT

 public:
  TSitePermissions(const QUrl &site, TPermissionDecisions &decisions, const TLanguage &language,
                   QWidget *parent = nullptr);

  // What the user calls them: a permission by what a site does with it.
  [[nodiscard]] static QString NameOf(TPermission permission, const TLanguage &language);
  [[nodiscard]] static QString NameOf(TPermissionDecision decision, const TLanguage &language);
};
