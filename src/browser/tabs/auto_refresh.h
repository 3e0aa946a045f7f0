#pragma once

#include <QObject>
#include <QTimer>

class QActionGroup;
class QMenu;
class TLanguage;
class TRegistryStore;

// The auto-refresh menu and its timer: none, or every 15, 30, 60, 120 or 300 seconds.
class TAutoRefresh final : public QObject {
  Q_OBJECT

 public:
  TAutoRefresh(const TLanguage &language, TRegistryStore &store, QObject *parent);

  // Appends the six radio items to `menu`.
  void FillMenu(QMenu *menu);
  // Milliseconds, 0 for off: stored at once, kept, and the timer follows.
  void ChangeAutoRefresh(int interval);
  [[nodiscard]] int Interval() const { return m_interval; }

 Q_SIGNALS:
  void Tick();

 private:
  TRegistryStore &m_store;
  const TLanguage &m_language;
  QActionGroup *m_group;
  QTimer m_timer{this};  // tmrRefresh
  int m_interval = 0;
};
