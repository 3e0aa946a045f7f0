#include "chrome/toolbar/toolbar_customizing.h"

#include <QFileInfo>
#include <QPointer>

#include "actions/actions.h"
#include "chrome/toolbar/customize_toolbar_dialog.h"
#include "chrome/toolbar/zv_tool_bar.h"
#include "config/language.h"
#include "config/settings.h"
#include "platform/program_folders.h"
#include "store/ini_file.h"
#include "store/private_folder.h"
#include "ui/dialog_gate.h"
#include "ui/message_box.h"

TToolbarCustomizing::TToolbarCustomizing(QWidget *window, const TActions &actions, const TLanguage &language,
                                         TSettings &settings, TZVToolBar &bar)
    : m_window(window), m_language(language), m_bar(bar) {
  settings.Apply(Setting::ToolbarShowColor, this,
                 [this, &settings] { m_bar.SetShowsColor(settings.Get(Setting::ToolbarShowColor)); });
  connect(actions[TCommand::CustomizeToolbar], &QAction::triggered, this, &TToolbarCustomizing::Customize);
  Load();
}

void TToolbarCustomizing::Load() {
  const QString name = QString::fromLatin1(ToolbarDefinition::FileName);
  const QString path = ProgramFolders::Find({}, name);
  TIniFile file;
  m_isUnread = !path.isEmpty() && !file.Load(path);
  const bool isThere = !path.isEmpty() && !m_isUnread;
  m_bar.SetEntries(isThere ? ToolbarDefinition::FromFile(file) : ToolbarDefinition::Default());
}

void TToolbarCustomizing::Customize() {
  if (DialogGate::IsClosed()) return;
  const QPointer<TToolbarCustomizing> self(this);
  const QPointer<TfrmCustomizeToolbar> dialog(
      new TfrmCustomizeToolbar(m_language, m_bar.Entries(), m_bar.ShowsColor(), m_window));
  const int answer = dialog->exec();
  if (!self) return;  // The window has gone and has taken the dialog along.
  const bool isAccepted = dialog && answer == QDialog::Accepted;
  if (isAccepted) m_bar.SetEntries(dialog->Entries());
  delete dialog;
  // The file is written however the dialog was closed, which is meant: a key that ended its reading goes. Only one that
  // could not be read at all stays as it is until there is something to put in its place.
  if (isAccepted || !m_isUnread) Save();
}

void TToolbarCustomizing::Save() {
  const QString folder = ProgramFolders::UserData();
  MakePrivateFolder(folder);
  QString error;
  const TIniFile file = TIniFile::FromBytes(ToolbarDefinition::ToBytes(m_bar.Entries()));
  if (file.Save(folder + u'/' + QString::fromLatin1(ToolbarDefinition::FileName), &error)) {
    m_isUnread = false;
  } else {
    ShowWarning(m_window, m_language, m_language.Text("CUSTOMIZE_TOOLBAR", "CannotWrite").arg(error));
  }
}
