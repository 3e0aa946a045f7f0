#include "app/store_notice.h"

#include <QFileInfo>
#include <QWidget>

#include "config/language.h"
#include "store/registry_store.h"
#include "ui/message_box.h"

TStoreNotice::TStoreNotice(QWidget *window, TRegistryStore &store, const TLanguage &language)
    : m_window(window), m_store(store), m_language(language) {}

TStoreNotice::~TStoreNotice() {
  m_store.SetTroubleHandler(nullptr);
}

void TStoreNotice::Begin() {
  Tell();
  // The store is in the middle of a call then.
  m_store.SetTroubleHandler([this] { QMetaObject::invokeMethod(this, &TStoreNotice::Tell, Qt::QueuedConnection); });
}

void TStoreNotice::Tell() {
  if (!m_store.SetAsideFile().isEmpty()) {
    const QString name = QFileInfo(m_store.SetAsideFile()).fileName();
    ShowWarning(m_window, m_language, m_language.Text("MAIN", "StoreSetAside").arg(name));
  } else if (!m_store.IsWritable() || m_store.IsInMemory()) {
    ShowWarning(m_window, m_language, m_language.Text("MAIN", "StoreNotKept"));
  }
}
