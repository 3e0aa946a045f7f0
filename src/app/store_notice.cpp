#include "app/store_notice.h"

#include <cstdio>
#include <QApplication>
#include <QFileInfo>
#include <QWidget>
#include <utility>

#include "config/language.h"
#include "history/history_store.h"
#include "store/registry_store.h"
#include "ui/confirm_dialog.h"
#include "ui/dialog_gate.h"
#include "ui/message_box.h"

TStoreNotice::TStoreNotice(QWidget *window, TRegistryStore &store, THistoryStore &history, const TLanguage &language)
    : m_window(window), m_store(store), m_history(history), m_language(language) {}

TStoreNotice::~TStoreNotice() {
  m_store.SetTroubleHandler(nullptr);
}

void TStoreNotice::Begin() {
  Tell();
  if (const QString &file = m_language.UnreadFile(); !file.isEmpty()) {
    Show(m_language.Text("MAIN", "LanguageNotRead").arg(file));
  }
  if (m_store.HasMissedReads()) Show(m_language.Text("MAIN", "StoreNotRead"));
  // The store is in the middle of a call then.
  m_store.SetTroubleHandler([this] { QMetaObject::invokeMethod(this, &TStoreNotice::Tell, Qt::QueuedConnection); });
  // From the writer's thread.
  connect(&m_history, &THistoryStore::Troubled, this, [this](THistoryTrouble trouble) {
    if (trouble == THistoryTrouble::SetAside) TellHistorySetAside();
    if (trouble == THistoryTrouble::RemovalFails) Show(m_language.Text("HISTORY", "NotRemoved"));
  });
  TellHistorySetAside();
}

void TStoreNotice::Tell() {
  if (m_store.IsRefused()) {
    // Once: a disk that is full by turns must not keep the user busy.
    if (!std::exchange(m_refusalTold, true)) Show(m_language.Text("MAIN", "StoreRefused"));
  } else if (!m_store.SetAsideFile().isEmpty()) {
    Show(m_language.Text("MAIN", "StoreSetAside").arg(QFileInfo(m_store.SetAsideFile()).fileName()));
  } else if (!m_store.IsWritable() || m_store.IsInMemory()) {
    Show(m_language.Text("MAIN", "StoreNotKept"));
  }
}

void TStoreNotice::TellHistorySetAside() {
  const QString file = m_history.SetAsideFile();
  if (std::exchange(m_historyTold, file) == file) return;
  Show(m_language.Text("HISTORY", "SetAside").arg(QFileInfo(file).fileName()));
}

void TStoreNotice::Show(const QString &text) {
  ShowWarning(m_window, m_language, text);
}

void TellUnwritten(const TLanguage &language, const QStringList &unwritten) {
  const QString text = language.Text("MAIN", "Unwritten");
  if (DialogGate::IsClosed()) {
    std::fprintf(stderr, "%s\n%s\n", qUtf8Printable(text), qUtf8Printable(unwritten.join(u'\n')));
    return;
  }
  (void)ShowConfirm(nullptr, {.caption = QApplication::applicationDisplayName(),
                              .firstLine = text,
                              .secondText = unwritten.join(u'\n'),
                              .ok = language.Global("OK")});
}
