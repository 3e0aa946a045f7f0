#include "chrome/options/options_command.h"

#include "actions/actions.h"
#include "browser/engine/engine.h"
#include "browser/page/permission_decisions.h"
#include "browser/tabs/auto_refresh.h"
#include "config/language.h"
#include "config/registry_paths.h"
#include "config/settings.h"
#include "content/content_switches.h"
#include "ui/dialog_gate.h"
#include "ui/message_box.h"

TOptionsCommand::TOptionsCommand(QWidget *window, TActions &actions, TSettings &settings, TDesktopDefaults &desktop,
                                 TEngine &engine, const THistoryStore &history, const TAutoRefresh &autoRefresh,
                                 TContentSwitches &content, TUserScripts &scripts, TLanguage &language,
                                 const TfrmOptions::TOffers &offers)
    : m_window(window),
      m_association(settings.Store(), &desktop),
      m_parts{language,
              settings,
              m_association,
              history,
              TPermissionDecisions::Of(engine.Profile()),
              engine.Certificates(),
              scripts,
              [&autoRefresh] { return autoRefresh.Interval(); },
              {[&content] { return content.States(); }, [&content](const TContentStates &on) { content.Set(on); }},
              [&actions] { return actions[TCommand::ViewLinksBar]->isChecked(); }},
      m_offers(offers) {
  connect(actions[TCommand::Options], &QAction::triggered, this, &TOptionsCommand::Open);
}

void TOptionsCommand::Open() {
  if (DialogGate::IsClosed()) return;
  // Its controls would show the defaults, and OK would write those over what is there. Associations, lists and settings
  // lie in one file.
  const TRegistryStore &store = m_parts.settings.Store();
  if (!store.KnownValues(TRegistryHive::CurrentUser, RegistryKey::CurrentVersion)) {
    ShowWarning(m_window, m_parts.language, m_parts.language.Text("MAIN", "StoreNotRead"));
    return;
  }
  auto *dialog = new TfrmOptions(m_parts, m_offers, m_window);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &TfrmOptions::PopupListWritten, this, &TOptionsCommand::PopupListWritten);
  connect(dialog, &TfrmOptions::SearchesWritten, this, &TOptionsCommand::SearchesWritten);
  connect(dialog, &TfrmOptions::LinksBarWanted, this, &TOptionsCommand::LinksBarWanted);
  dialog->open();
}
