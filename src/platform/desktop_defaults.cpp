#include "platform/desktop_defaults.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>

#include "platform/desktop_entries.h"
#include "platform/program_folders.h"
#include "store/ini_file.h"

namespace {

// What is shipped for installations, compiled in for a program that runs from elsewhere.
constexpr const char *ShippedEntry = ":/desktop/zarvela.desktop";
constexpr const char *ShippedIcon = ":/icons/zarvela.svg";

constexpr int EndPatience = 3000;  // milliseconds

const QString OwnId = QString::fromLatin1(TDesktopEntries::OwnId);
const QString SettingsTool = QStringLiteral("xdg-settings");
const QString TypesTool = QStringLiteral("xdg-mime");
const QString Section = QStringLiteral("Desktop Entry");
// Marks the entry that is ours to take away again.
const QString WrittenMark = QStringLiteral("X-Zarvela-Written");
const QString WebTypes[] = {QStringLiteral("x-scheme-handler/http"), QStringLiteral("x-scheme-handler/https")};
const QString PageType = QStringLiteral("text/html");

QString OwnEntryFile() {
  return QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation) + u'/' + OwnId;
}
QString OwnIconFile() {
  return ProgramFolders::UserData() + QStringLiteral("/zarvela.svg");
}

bool IsWritten(const QString &path) {
  TIniFile file;
  return file.Load(path) && file.Value(Section, WrittenMark) == QLatin1String("true");
}

QByteArray ReadFile(const char *path) {
  QFile file(QString::fromLatin1(path));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool WriteFile(const QString &path, const QByteArray &bytes) {
  if (!QDir().mkpath(QFileInfo(path).path())) return false;
  QSaveFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

bool HasTools() {
  return !QStandardPaths::findExecutable(SettingsTool).isEmpty() ||
         !QStandardPaths::findExecutable(TypesTool).isEmpty();
}

// What makes an entry the browser, and what makes it open types.
QStringList BrowserCommand(const QString &id) {
  return {SettingsTool, QStringLiteral("set"), QStringLiteral("default-web-browser"), id};
}
QStringList TypesCommand(const QString &id, const QStringList &types) {
  return QStringList{TypesTool, QStringLiteral("default"), id} + types;
}

bool IsWebBrowser(const QStringList &types) {
  return std::all_of(std::begin(WebTypes), std::end(WebTypes),
                     [&](const QString &type) { return types.contains(type); });
}

// Nothing is left of the program among the choices that the user's own lists hold for these types.
void RemoveChoices(const QStringList &types) {
  const QString section = QString::fromLatin1(TDesktopEntries::Choices);
  for (const QString &path : TDesktopEntries::UserChoiceFiles()) {
    TIniFile file;
    if (!file.Load(path)) continue;
    bool isChanged = false;
    for (const QString &type : types) {
      QStringList ids = file.Value(section, type).split(u';', Qt::SkipEmptyParts);
      if (ids.removeAll(OwnId) == 0) continue;
      isChanged = true;
      if (ids.isEmpty()) {
        file.RemoveKey(section, type);
      } else {
        file.SetValue(section, type, ids.join(u';') + u';');
      }
    }
    if (isChanged) file.Save(path);
  }
}

}  // namespace

TDesktopDefaults::~TDesktopDefaults() {
  (void)WaitForDone(EndPatience);
}

TDesktopDefaults::TBefore TDesktopDefaults::Make(const QStringList &types) {
  if (types.isEmpty() || !HasTools()) return {};
  TBefore before;
  const TDesktopEntries entries = TDesktopEntries::Installed();
  for (const QString &type : types) {
    const QString chosen = entries.ChosenFor(type);
    if (!chosen.isEmpty() && chosen != OwnId) before.insert(type, chosen);
  }
  MakeKnown();
  // It takes the type of pages along, which may be meant to stay with another program.
  if (IsWebBrowser(types) && types.contains(PageType)) Run(BrowserCommand(OwnId));
  Run(TypesCommand(OwnId, types));
  return before;
}

void TDesktopDefaults::TakeBack(const QStringList &types, const TBefore &before, bool forget) {
  const TDesktopEntries entries = TDesktopEntries::Installed();
  QStringList ours;
  for (const QString &type : types) {
    if (entries.ChosenFor(type) == OwnId) ours.append(type);
  }
  QStringList nobodys;
  QHash<QString, QStringList> theirs;  // types by entry
  for (const QString &type : std::as_const(ours)) {
    const QString entry = before.value(type);
    if (!entry.isEmpty() && entry != OwnId && entries.Find(entry)) {
      theirs[entry].append(type);
    } else {
      nobodys.append(type);
    }
  }
  RemoveChoices(nobodys);
  for (auto each = theirs.cbegin(); each != theirs.cend(); ++each) {
    if (IsWebBrowser(each.value())) Run(BrowserCommand(each.key()));
    Run(TypesCommand(each.key(), each.value()));
  }
  if (forget) Forget();
}

// An entry that the user has made himself is left to him, even one that only hides the program.
void TDesktopDefaults::MakeKnown() {
  const QString path = OwnEntryFile();
  if (QFileInfo::exists(path) ? !IsWritten(path) : TDesktopEntries::Installed().Find(OwnId).has_value()) return;
  TIniFile file = TIniFile::FromBytes(ReadFile(ShippedEntry));
  if (!file.HasSection(Section)) return;
  const QString program = TDesktopEntries::Quoted(QCoreApplication::applicationFilePath());
  for (const QString &section : file.Sections()) {
    const QString exec = file.Value(section, QStringLiteral("Exec"));
    const qsizetype end = exec.indexOf(u' ');
    if (exec.isEmpty()) continue;
    file.SetValue(section, QStringLiteral("Exec"), program + (end < 0 ? QString() : exec.mid(end)));
  }
  if (WriteFile(OwnIconFile(), ReadFile(ShippedIcon))) file.SetValue(Section, QStringLiteral("Icon"), OwnIconFile());
  file.SetValue(Section, WrittenMark, QStringLiteral("true"));
  WriteFile(path, file.ToBytes());
}

void TDesktopDefaults::Forget() {
  if (!IsWritten(OwnEntryFile())) return;
  QFile::remove(OwnEntryFile());
  QFile::remove(OwnIconFile());
}

void TDesktopDefaults::Run(const QStringList &command) {
  m_waiting.append(command);
  if (m_running == nullptr) RunNext();
}

void TDesktopDefaults::RunNext() {
  m_running = nullptr;
  while (m_running == nullptr && !m_waiting.isEmpty()) {
    const QStringList command = m_waiting.takeFirst();
    const QString program = QStandardPaths::findExecutable(command.first());
    if (program.isEmpty()) continue;
    auto *process = new QProcess(this);
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    const auto end = [this, process] {
      process->deleteLater();
      RunNext();
    };
    connect(process, &QProcess::finished, this, end);
    m_running = process;
    process->start(program, command.mid(1));
    if (process->waitForStarted()) continue;
    process->disconnect(this);
    process->deleteLater();
    m_running = nullptr;
  }
}

bool TDesktopDefaults::WaitForDone(int milliseconds) {
  const QDeadlineTimer deadline(milliseconds);
  // Each that ends starts the next.
  while (m_running != nullptr && m_running->waitForFinished(int(deadline.remainingTime()))) {
  }
  return m_running == nullptr;
}
