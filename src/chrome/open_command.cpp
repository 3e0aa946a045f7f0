#include "chrome/open_command.h"

#include "actions/actions.h"
#include "browser/engine/address.h"
#include "chrome/open_dialog.h"
#include "groups/page_groups.h"
#include "search/address_bar.h"
#include "search/address_search.h"
#include "ui/dialog_gate.h"

TOpenCommand::TOpenCommand(QWidget *window, TActions &actions, const TAddressBar &bar, TAddressSearch &search,
                           TPageGroups &groups, const TLanguage &language)
    : m_window(window), m_bar(bar), m_search(search), m_groups(groups), m_language(language) {
  connect(actions[TCommand::OpenFile], &QAction::triggered, this, &TOpenCommand::Ask);
}

void TOpenCommand::Ask() {
  if (DialogGate::IsClosed()) return;
  auto *dialog = new TfrmOpen(m_language, m_bar.TypedAddresses(), m_window);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &TfrmOpen::Chosen, this, &TOpenCommand::Open);
  dialog->open();
}

void TOpenCommand::Open(const QString &text, bool newTab) {
  if (TPageGroups::IsHandedOverGroup(text)) {
    m_groups.HalvexGroupClick(text);
  } else {
    m_search.OpenAddress(text, newTab);
  }
}
