#pragma once

#include <QObject>
#include <QStringList>

class QWidget;
class TLanguage;
class THistoryStore;
class TRegistryStore;

// Tells the user when the settings' file was set aside, could not be read at the start, or takes nothing for good or
// for now; when the history was set aside, or does not let go of what he wants to be gone; and when the start could not
// read his language file.
class TStoreNotice final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object; `window` owns the message.
  TStoreNotice(QWidget *window, TRegistryStore &store, THistoryStore &history, const TLanguage &language);
  ~TStoreNotice() override;

  // Tells what the start has found, and from now on what happens later.
  void Begin();

 private:
  void Tell();
  void TellHistorySetAside();
  void Show(const QString &text);

  QWidget *m_window;
  TRegistryStore &m_store;
  THistoryStore &m_history;
  const TLanguage &m_language;
  QString m_historyTold;  // the last name that was told
  bool m_refusalTold = false;
};

// At the very end, when the windows are gone: says what could not be written, and waits until the user has seen it.
// Where nobody is there to see it (see DialogGate) it is left on the standard error output.
void TellUnwritten(const TLanguage &language, const QStringList &unwritten);
