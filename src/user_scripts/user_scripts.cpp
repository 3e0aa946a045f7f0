#include "user_scripts/user_scripts.h"

#include <algorithm>
#include <QDir>
#include <QUrl>
#include <QUuid>
#include <utility>

#include "browser/downloads/file_names.h"
#include "config/registry_paths.h"
#include "config/settings.h"
#include "platform/program_folders.h"
#include "platform/web_address.h"

namespace {

constexpr TRegistryHive Hive = TRegistryHive::CurrentUser;
constexpr qsizetype LongestReason = 400;  // characters; a script throws what it likes
const QString Enabled = QStringLiteral("Enabled");
const QString FallbackName = QStringLiteral("script.user.js");

QString KeyOf(const QString &file) {
  return QLatin1String(RegistryKey::BrowserHelperObjects) + u'\\' + file;
}

bool IsPlainName(const QString &file) {
  return !file.isEmpty() && file != u'.' && file != QLatin1String("..") && !file.contains(u'/') &&
         !file.contains(u'\\') && !file.contains(QChar::Null);
}

// A link in the folder may lead to another file of it, and nowhere else. What is not there leads nowhere.
bool StaysInFolder(const QString &file) {
  const QString folder = QFileInfo(TUserScripts::Folder()).canonicalFilePath();
  const QFileInfo real(QFileInfo(QDir(folder), file).canonicalFilePath());
  return real.filePath().isEmpty() || real.path() == folder;
}

QByteArray BytesOf(const QString &path) {
  QFile file(path);
  return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) ? file.read(TUserScriptFile::MostBytes + 1)
                                                                    : QByteArray();
}

}  // namespace

TUserScripts::TUserScripts(TSettings &settings) : m_settings(settings) {
  settings.Apply(Setting::LoadBHOs, this, [this] {
    const QList<TLoaded> before = std::exchange(m_loaded, {});
    if (m_settings.Get(Setting::LoadBHOs)) Load();
    // What a script could not do is true until it is another one.
    m_failures.removeIf([&](const auto &failure) {
      const auto sourceIn = [id = m_ids.value(failure.key())](const QList<TLoaded> &list) {
        const auto found = std::ranges::find(list, id, [](const TLoaded &loaded) { return loaded.script.id; });
        return found != list.end() ? found->file.source : QString();
      };
      return sourceIn(before) != sourceIn(m_loaded);
    });
    Q_EMIT Changed();
  });
}

QString TUserScripts::Folder() {
  return ProgramFolders::UserData() + QStringLiteral("/scripts");
}

QList<TUserScripts::TEntry> TUserScripts::Entries() const {
  QList<TEntry> entries;
  for (const QString &file : m_settings.Lists().BrowserHelperObjects()) {
    entries.append({file, m_settings.Store().Read(Hive, KeyOf(file), Enabled) != QStringLiteral("0")});
  }
  return entries;
}

std::optional<QString> TUserScripts::Add(const QString &path) {
  const QDir folder(Folder());
  if (!folder.mkpath(QStringLiteral("."))) return std::nullopt;
  QString file = FileNames::Safe(QFileInfo(path).fileName(), FallbackName);
  // One that was taken out of the list before comes back to its file.
  const bool isThere = StaysInFolder(file) && QFileInfo::exists(folder.filePath(file)) &&
                       BytesOf(folder.filePath(file)) == BytesOf(path);
  if (!isThere) {
    // The list knows no upper and lower case, other than the folder.
    QStringList listed;
    for (const TEntry &entry : Entries()) listed.append(entry.file);
    const auto isListed = [&listed](const QString &wanted) {
      return listed.contains(QFileInfo(wanted).fileName(), Qt::CaseInsensitive);
    };
    file = QFileInfo(FileNames::FreePath(folder.path(), file, isListed)).fileName();
    if (!QFile::copy(path, folder.filePath(file))) return std::nullopt;
  }
  m_settings.Store().CreateKey(Hive, KeyOf(file));
  return file;
}

bool TUserScripts::Remove(const QString &file) {
  return m_settings.Store().DeleteKey(Hive, KeyOf(file));
}

bool TUserScripts::SetOn(const QString &file, bool on) {
  return m_settings.Store().Write(Hive, KeyOf(file), Enabled, on ? QStringLiteral("1") : QStringLiteral("0"));
}

TUserScriptFile TUserScripts::Look(const QString &file) {
  if (IsPlainName(file) && StaysInFolder(file)) return TUserScriptFile::Read(QDir(Folder()).filePath(file));
  TUserScriptFile refused;
  refused.trouble = TScriptTrouble::BadName;
  return refused;
}

void TUserScripts::Load() {
  for (const TEntry &entry : Entries()) {
    if (!entry.isOn) continue;
    TUserScriptFile file = Look(entry.file);
    if (file.trouble != TScriptTrouble::None) continue;
    if (!m_known.contains(entry.file)) m_known.append(entry.file);
    QString &id = m_ids[entry.file];
    if (id.isEmpty()) id = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const TPageScript script{id, file.source, file.moment, int(m_known.indexOf(entry.file)), file.inFrames};
    m_loaded.append({std::move(file), script});
  }
}

QList<TPageScript> TUserScripts::Loaded() const {
  QList<TPageScript> scripts;
  for (const TLoaded &loaded : m_loaded) scripts.append(loaded.script);
  return scripts;
}

bool TUserScripts::MayRunIn(TSecurityZone zone) {
  return zone == TSecurityZone::LocalIntranet || zone == TSecurityZone::Trusted || zone == TSecurityZone::Internet;
}

bool TUserScripts::MayRun(const QString &id, const QUrl &document, TSecurityZone zone) const {
  const auto found = std::ranges::find(m_loaded, id, [](const TLoaded &loaded) { return loaded.script.id; });
  return WebAddress::Is(document) && MayRunIn(zone) && found != m_loaded.end() && found->file.IsFor(document);
}

void TUserScripts::NoteFailure(const QString &id, const QString &reason, int line) {
  const QString file = m_ids.key(id);
  if (!file.isEmpty()) m_failures.insert(file, {reason.left(LongestReason), line});
}
