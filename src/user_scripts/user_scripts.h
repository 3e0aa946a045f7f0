#pragma once

#include <optional>
#include <QHash>
#include <QObject>
#include <QStringList>

#include "browser/engine/policy.h"
#include "user_scripts/user_script_file.h"

class TSettings;

// The user's own scripts for pages.
//
// Each is a file in Folder(), and a key below RegistryKey::BrowserHelperObjects that has the file's name for its own;
// the value "Enabled" in it is "0" for one that is switched off. While the setting LoadBHOs is on, and each time that
// it is set again, the files are read as they are then; pages that come later get what is loaded.
class TUserScripts final : public QObject {
  Q_OBJECT

 public:
  struct TEntry {
    QString file;
    bool isOn = true;
  };

  // Why a script could not go on in a page, in the engine's words, and in which line of it.
  struct TFailure {
    QString reason;
    int line = 0;
  };

  // `settings` must live longer.
  explicit TUserScripts(TSettings &settings);

  [[nodiscard]] static QString Folder();

  // In the order of the store.
  [[nodiscard]] QList<TEntry> Entries() const;
  // Takes a copy of the file into the folder, unless it lies there, and puts it into the list. Its name in the list;
  // std::nullopt where it could not be copied.
  std::optional<QString> Add(const QString &path);
  // Takes it out of the list; the file stays. False when the store refuses it.
  bool Remove(const QString &file);
  // The same of the switch.
  bool SetOn(const QString &file, bool on);
  // The file as it is now.
  [[nodiscard]] static TUserScriptFile Look(const QString &file);
  // The last one of this run; without a reason where there was none.
  [[nodiscard]] TFailure LastFailure(const QString &file) const { return m_failures.value(file); }

  [[nodiscard]] QList<TPageScript> Loaded() const;
  // Never on this computer and in the restricted zone.
  [[nodiscard]] static bool MayRunIn(TSecurityZone zone);
  // Whether a script that is loaded is for the page, or the frame, at that address in that zone.
  [[nodiscard]] bool MayRun(const QString &id, const QUrl &document, TSecurityZone zone) const;
  // Of a page's script, by its id.
  void NoteFailure(const QString &id, const QString &reason, int line);

 Q_SIGNALS:
  // Others are loaded.
  void Changed();

 private:
  struct TLoaded {
    TUserScriptFile file;
    TPageScript script;
  };

  void Load();

  TSettings &m_settings;
  QList<TLoaded> m_loaded;
  QStringList m_known;            // all files of this run: the place of each is the world of its script
  QHash<QString, QString> m_ids;  // by file
  QHash<QString, TFailure> m_failures;
};
