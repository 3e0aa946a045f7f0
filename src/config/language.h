#pragma once

#include <QObject>
#include <QString>

#include "store/ini_file.h"

class TZVOptions;

// A text of the language file, for tables that name texts; TLanguage::Text takes it as it takes section and key.
struct TTextKey {
  const char *section = nullptr;
  const char *key = nullptr;
};

// A language that can be chosen.
struct TLanguageFile {
  QString path;
  QString name;     // of the file, without folder
  QString caption;  // the language's own name for itself
};

// The texts of the interface, from one language file that is read once at start. Language files are INI files (see
// TIniFile) in the folder "Languages" of the program's folders.
class TLanguage final {
 public:
  static constexpr const char *DefaultFile = "zveng.ini";
  static constexpr const char *Folder = "Languages";

  // Loads the file that the setting LanguageFile names. A file that is not there is replaced by the default one, and
  // the setting is corrected in the store. One that is there and cannot be read is replaced for this run only: it stays
  // the user's choice. When the default file is missing too, every look-up falls back.
  void Load(TZVOptions &options);
  // Loads exactly this file; false when it cannot be read (every look-up then falls back).
  bool LoadFile(const QString &path);

  // All language files in the program's folders; of two of one name, the one that is looked in first.
  [[nodiscard]] static QList<TLanguageFile> Available();

  // The file that Load could not read, without folder; empty when there was none.
  [[nodiscard]] const QString &UnreadFile() const { return m_unreadFile; }

  // The name, without folder, of the current language file.
  [[nodiscard]] const QString &FileName() const { return m_fileName; }
  // Makes `name` the current file for the language menu; the texts stay those that were loaded at start.
  void SetFileName(const QString &name) { m_fileName = name; }
  // The language's locale ("de", "pt_BR") from "INFO", "Locale"; empty when the file has none.
  [[nodiscard]] QString LocaleName() const;
  // Which way the language is read: "INFO", "Direction" is "rtl" where it runs from right to left; absent or anything
  // else, it runs from left to right.
  [[nodiscard]] Qt::LayoutDirection Direction() const;
  // Installs, as children of `owner`, the toolkit's own translations for that locale, as far as the system has them,
  // and over them the names of keys from the section "KEYS", so that the texts which the toolkit brings along follow
  // the language. Needs the application object.
  void InstallToolkitTranslations(QObject *owner) const;

  // The text of `key` in `section`; "UNDEFINED: section > key" when the file has none.
  [[nodiscard]] QString Text(const char *section, const char *key) const;
  [[nodiscard]] QString Text(const TTextKey &key) const { return Text(key.section, key.key); }
  // The text of `key` in the section "GLOBAL".
  [[nodiscard]] QString Global(const char *key) const { return Text("GLOBAL", key); }

  // A hint may have two parts, "Short|Long": the short one is the tool tip and the caption in menus, the long one is
  // for the status bar. A hint without "|" is both.
  [[nodiscard]] static QString ShortHint(const QString &hint);
  [[nodiscard]] static QString LongHint(const QString &hint);

  // Replaces the marker texts ("__Key" from `section`, "~~Key" from "GLOBAL") of `form` and of all it owns, depth first
  // in the order of ownership. Which properties are looked at stands in language_properties.cpp. A marker without a
  // text, or with an empty one, stays visible.
  void TranslateForm(QObject *form, const char *section) const;

 private:
  TIniFile m_texts;
  QString m_unreadFile;
  QString m_fileName = QString::fromLatin1(DefaultFile);
};
