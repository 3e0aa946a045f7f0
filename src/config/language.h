#pragma once

#include <QObject>
#include <QString>

#include "platform/ini_file.h"

class TZVOptions;

// A text of the language file, for tables that name texts; TLanguage::Text takes it as it takes section and key.
struct TTextKey {
  const char *section = nullptr;
  const char *key = nullptr;
};

// The texts of the interface, from one language file that is read once at start.
class TLanguage final {
 public:
  static constexpr const char *DefaultFile = "zveng.ini";

  // Loads the file that the setting LanguageFile names. A file that is not there is replaced by the default one, and
  // the setting is corrected in the store. When that is missing too, every look-up falls back.
  void Load(TZVOptions &options);
  // Loads exactly this file; false when it cannot be read (every look-up then falls back).
  bool LoadFile(const QString &path);

  [[nodiscard]] const QString &FileName() const { return m_fileName; }

  // The text of `key` in `section`; "UNDEFINED: section > key" when the file has none.
  [[nodiscard]] QString Text(const char *section, const char *key) const;
  [[nodiscard]] QString Text(const TTextKey &key) const { return Text(key.section, key.key); }
  // The text of `key` in the section "GLOBAL".
  [[nodiscard]] QString Global(const char *key) const { return Text("GLOBAL", key); }

  // Replaces the marker texts ("__Key" from `section`, "~~Key" from "GLOBAL") of `form` and of all it owns, depth first.
  void TranslateForm(QObject *form, const char *section) const;

 private:
  TIniFile m_texts;
  QString m_fileName = QString::fromLatin1(DefaultFile);
};
