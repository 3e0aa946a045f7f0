#include "chrome/options/user_scripts_page.h"

#include <QFileDialog>
#include <QPointer>

#include "config/language.h"
#include "ui/message_box.h"
#include "ui_user_scripts_page.h"
#include "user_scripts/user_scripts.h"

namespace {

enum TColumn { Name, State, File };
// What a row has beside its texts: the path of a file that was added, and whether the script was on.
enum TRole { PathRole = Qt::UserRole, WasOnRole };

constexpr int NameWidth = 180;  // pixels
constexpr int StateWidth = 180;

struct TTroubleText {
  TScriptTrouble trouble;
  TTextKey text;
};
constexpr TTroubleText TroubleTexts[] = {
    {TScriptTrouble::BadName, {"OPTIONS", "ScriptBadName"}},   {TScriptTrouble::Missing, {"OPTIONS", "ScriptMissing"}},
    {TScriptTrouble::TooLarge, {"OPTIONS", "ScriptTooLarge"}}, {TScriptTrouble::NotText, {"OPTIONS", "ScriptNotText"}},
    {TScriptTrouble::NoBlock, {"OPTIONS", "ScriptNoBlock"}},   {TScriptTrouble::NoRule, {"OPTIONS", "ScriptNoRule"}},
    {TScriptTrouble::BadRule, {"OPTIONS", "ScriptBadRule"}},
};

bool IsOn(const QTreeWidgetItem &row) {
  return row.checkState(Name) == Qt::Checked;
}

}  // namespace

TUserScriptsPage::TUserScriptsPage(const TLanguage &language, TUserScripts &scripts, QWidget *parent)
    : QWidget(parent), m_language(language), m_scripts(scripts), m_ui(std::make_unique<Ui::TUserScriptsPage>()) {
  m_ui->setupUi(this);
  setObjectName(QStringLiteral("tsScripts"));
  // Before there is anything in it that is not the program's.
  language.TranslateForm(this, "OPTIONS");
  m_ui->lvScripts->setColumnWidth(Name, NameWidth);
  m_ui->lvScripts->setColumnWidth(State, StateWidth);
  for (const TUserScripts::TEntry &entry : scripts.Entries()) {
    const TUserScriptFile contents = TUserScripts::Look(entry.file);
    const TUserScripts::TFailure failure = scripts.LastFailure(entry.file);
    QString state = TroubleText(contents);
    if (state.isEmpty() && !failure.reason.isEmpty()) {
      state = language.Text("OPTIONS", "ScriptFailed").arg(failure.line).arg(failure.reason);
    }
    AddRow(entry.file, entry.isOn, contents, state);
  }
  connect(m_ui->btnAddScript, &QPushButton::clicked, this, &TUserScriptsPage::btnAddScriptClick);
  connect(m_ui->btnRemoveScript, &QPushButton::clicked, this, &TUserScriptsPage::btnRemoveScriptClick);
  connect(m_ui->lvScripts, &QTreeWidget::itemSelectionChanged, this, &TUserScriptsPage::ShowState);
  ShowState();
}

TUserScriptsPage::~TUserScriptsPage() = default;

QTreeWidgetItem *TUserScriptsPage::AddRow(const QString &file, bool isOn, const TUserScriptFile &contents,
                                          const QString &state) {
  auto *row = new QTreeWidgetItem(m_ui->lvScripts, {contents.name.isEmpty() ? file : contents.name, state, file});
  row->setCheckState(Name, isOn ? Qt::Checked : Qt::Unchecked);
  row->setData(Name, WasOnRole, isOn);
  return row;
}

QString TUserScriptsPage::TroubleText(const TUserScriptFile &file) const {
  for (const TTroubleText &one : TroubleTexts) {
    if (one.trouble != file.trouble) continue;
    const QString text = m_language.Text(one.text);
    return one.trouble == TScriptTrouble::BadRule ? text.arg(file.badRule) : text;
  }
  return {};
}

void TUserScriptsPage::ShowState() {
  const QList<QTreeWidgetItem *> selected = m_ui->lvScripts->selectedItems();
  m_ui->btnRemoveScript->setEnabled(!selected.isEmpty());
  // All of it: the column seldom has room.
  m_ui->lblScriptState->setText(selected.isEmpty() ? QString() : selected.first()->text(State));
}

void TUserScriptsPage::btnAddScriptClick() {
  const QPointer<TUserScriptsPage> self(this);
  const QString path = QFileDialog::getOpenFileName(this, m_language.Text("OPTIONS", "AddScriptCaption"), {},
                                                    m_language.Text("OPTIONS", "ScriptFilter"));
  if (self && !path.isEmpty()) Add(path);
}

void TUserScriptsPage::Add(const QString &path) {
  const TUserScriptFile contents = TUserScriptFile::Read(path);
  const QString trouble = TroubleText(contents);
  // What it says of itself may be put right in the file later.
  const bool isScript = contents.trouble != TScriptTrouble::Missing && contents.trouble != TScriptTrouble::TooLarge &&
                        contents.trouble != TScriptTrouble::NotText;
  if (!isScript) return ShowWarning(this, m_language, trouble);
  QTreeWidgetItem *row = AddRow(QFileInfo(path).fileName(), true, contents, trouble);
  row->setData(Name, PathRole, path);
  m_ui->lvScripts->setCurrentItem(row);
}

void TUserScriptsPage::btnRemoveScriptClick() {
  for (const QTreeWidgetItem *row : m_ui->lvScripts->selectedItems()) {
    if (row->data(Name, PathRole).isNull()) m_removed.append(row->text(File));
    delete row;
  }
}

void TUserScriptsPage::Write() {
  bool isKept = true;
  for (const QString &file : std::as_const(m_removed)) isKept = m_scripts.Remove(file) && isKept;
  m_removed.clear();
  for (int i = 0; i < m_ui->lvScripts->topLevelItemCount(); ++i) {
    const QTreeWidgetItem &row = *m_ui->lvScripts->topLevelItem(i);
    const QString path = row.data(Name, PathRole).toString();
    const std::optional<QString> file = path.isEmpty() ? row.text(File) : m_scripts.Add(path);
    if (!file) {
      ShowWarning(window()->parentWidget(), m_language, m_language.Text("OPTIONS", "ScriptNotCopied").arg(path));
    } else if (!path.isEmpty() || IsOn(row) != row.data(Name, WasOnRole).toBool()) {
      isKept = m_scripts.SetOn(*file, IsOn(row)) && isKept;
    }
  }
  if (!isKept) ShowWarning(window()->parentWidget(), m_language, m_language.Text("OPTIONS", "ScriptNotKept"));
}
