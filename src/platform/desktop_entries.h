#pragma once

#include <optional>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

// A program as the desktop knows it (freedesktop.org, the desktop entry format).
struct TDesktopEntry {
  QString id{};    // "org.example.editor.desktop"
  QString path{};  // of the entry's file
  QString name{};  // in the user's language
  QString icon{};  // a name in the icon theme, or a path; may be empty
  QString exec{};  // its Exec line, with the escapes of strings undone
  QStringList mimeTypes{};
  QStringList categories{};
  bool isShown = true;      // in menus: what is not may still be what opens a type
  bool inTerminal = false;  // it needs one to run in

  // The program and its arguments with the codes of the Exec line filled in; empty for a line that is not valid. Where
  // the line takes one file or address only the first target is given, and where it takes none they stand at its end.
  [[nodiscard]] QStringList CommandLine(const QStringList &targets) const;
};

// The installed programs, and which of them opens what (freedesktop.org, MIME Application Associations). It is read
// from the disk once, when it is made; what is broken there is left out.
class TDesktopEntries final {
 public:
  static constexpr const char *OwnId = "zarvela.desktop";

  [[nodiscard]] static TDesktopEntries Installed();

  // Also an entry that no menu shows; none when it is not installed.
  [[nodiscard]] std::optional<TDesktopEntry> Find(const QString &id) const;
  // What opens the type, by the user's choice or else by the system's; none when nothing does.
  [[nodiscard]] std::optional<TDesktopEntry> DefaultOf(const QString &type) const;
  // The same, but only by what the user or the system has chosen.
  [[nodiscard]] QString ChosenFor(const QString &type) const;
  // All that open the type, the default first, then by name; only those that menus show.
  [[nodiscard]] QList<TDesktopEntry> HandlersOf(const QString &type) const;

  // For the menus; none of them is this program, nor one that needs a terminal.
  [[nodiscard]] QList<TDesktopEntry> Editors() const;  // of web pages
  [[nodiscard]] QList<TDesktopEntry> MailClients() const;
  [[nodiscard]] QList<TDesktopEntry> Browsers() const;

  // An argument as an Exec line has it, quoted and escaped.
  [[nodiscard]] static QString Quoted(const QString &argument);
  // The lists of chosen programs that belong to the user, the one that counts first.
  [[nodiscard]] static QStringList UserChoiceFiles();
  // The section of those lists with the chosen programs.
  static constexpr const char *Choices = "Default Applications";

 private:
  void ReadEntries();
  void ReadAssociations();
  [[nodiscard]] bool Handles(const TDesktopEntry &entry, const QString &type) const;

  QList<TDesktopEntry> m_entries;              // by name
  QHash<QString, QStringList> m_chosen;        // ids by type, the one that counts first; not all are installed
  QHash<QString, QStringList> m_associations;  // what was said to open a type besides the entries' own words
  QHash<QString, QStringList> m_removed;       // what was said not to
};
