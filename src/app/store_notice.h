#pragma once

#include <QObject>

class QWidget;
class TLanguage;
class TRegistryStore;

// Tells the user when the settings' file was set aside, or when nothing can be kept in it.
class TStoreNotice final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object; `window` owns the message.
  TStoreNotice(QWidget *window, TRegistryStore &store, const TLanguage &language);
  ~TStoreNotice() override;

  // Tells what the start has found, and from now on what happens later.
  void Begin();

 private:
  void Tell();

  QWidget *m_window;
  TRegistryStore &m_store;
  const TLanguage &m_language;
};
