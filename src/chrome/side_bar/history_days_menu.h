#pragma once

#include <QMenu>

class QActionGroup;
class THistoryStore;
class TLanguage;
class TSettings;

// How long visited pages are kept, as a menu of choices; it is made each time when it opens. What was stored elsewhere
// and is none of them stands there as a choice of its own.
class THistoryDaysMenu final : public QMenu {
  Q_OBJECT

 public:
  // All must outlive this object. `window` owns it, and the question before pages go that are there now.
  THistoryDaysMenu(const TLanguage &language, TSettings &settings, const THistoryStore &history, QWidget *window);

 private:
  void Fill();
  void Add(const QString &text, int days);
  void Choose(int days);

  const TLanguage &m_language;
  TSettings &m_settings;
  const THistoryStore &m_history;
  QWidget *m_window;
  QActionGroup *m_group;
};
