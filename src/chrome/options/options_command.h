#pragma once

#include <QObject>

#include "chrome/options/options_dialog.h"
#include "config/shell_association.h"

class TActions;
class TAutoRefresh;
class TContentSwitches;
class TEngine;

// The command "Options". While the store cannot be read it opens no dialog, but tells the user so.
class TOptionsCommand final : public QObject {
  Q_OBJECT

 public:
  // `window` owns the dialog. All must outlive this object.
  TOptionsCommand(QWidget *window, TActions &actions, TSettings &settings, TDesktopDefaults &desktop, TEngine &engine,
                  const THistoryStore &history, const TAutoRefresh &autoRefresh, TContentSwitches &content,
                  TUserScripts &scripts, TLanguage &language, const TfrmOptions::TOffers &offers);

 Q_SIGNALS:
  // As the dialog tells them.
  void PopupListWritten();
  void SearchesWritten();
  void LinksBarWanted();

 private:
  void Open();

  QWidget *m_window;
  TShellAssociation m_association;
  const TfrmOptions::TParts m_parts;
  const TfrmOptions::TOffers m_offers;
};
