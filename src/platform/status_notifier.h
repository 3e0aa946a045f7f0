#pragma once

#include <QDBusServiceWatcher>
#include <QObject>

// Notification areas that draw the icons by themselves, as they are told over the session bus (StatusNotifierItem).
namespace StatusNotifier {

// Whether somebody takes icons there.
[[nodiscard]] bool IsThere();
// Whether somebody shows them at this moment: a panel that has ended has left its icons to nobody. Waits a second for
// the answer at most.
[[nodiscard]] bool HasHost();

}  // namespace StatusNotifier

// Tells when somebody begins to show icons: panels may start long after the program. Looks at nothing by itself before
// something changes, and never where the session has no bus.
class TStatusNotifierWatch final : public QObject {
  Q_OBJECT

 public:
  explicit TStatusNotifierWatch(QObject *parent = nullptr);

 Q_SIGNALS:
  // Once for each that comes, at least.
  void HostCame();

 private Q_SLOTS:
  void Look();

 private:
  QDBusServiceWatcher m_watcher;
};
