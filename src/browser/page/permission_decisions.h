#pragma once

#include <optional>
#include <QHash>
#include <QObject>
#include <QPair>
#include <QUrl>

#include "browser/page/permission_requests.h"

class QWebEngineProfile;

// What the user allowed and denied to sites in this run. All pages of a profile share it; nothing is written to disk.
class TPermissionDecisions final : public QObject {
  Q_OBJECT

 public:
  // The decisions of `profile`; they live as long as it does.
  [[nodiscard]] static TPermissionDecisions &Of(QWebEngineProfile &profile);

  // Nothing when the user has not decided yet.
  [[nodiscard]] std::optional<bool> Find(const QUrl &origin, TPermission permission) const;
  void Remember(const QUrl &origin, TPermission permission, bool allow);

 private:
  using QObject::QObject;

  QHash<QPair<QString, int>, bool> m_decisions;
};
