#pragma once

#include <QString>

class TRegistryStore;

// The default-browser association: five shell classes whose default verb is the program's own ("Zarvela") when it is
// the default browser. A missing key reads as empty; a refused write is not reported.
class TShellAssociation final {
 public:
  static constexpr const char *Classes[] = {"htmlfile", "http", "https", "file", "InternetShortcut"};

  struct TRecord {
    QString className;
    QString defaultVerb;
    QString description;
  };

  explicit TShellAssociation(TRegistryStore &store) : m_store(store) {}

  [[nodiscard]] TRecord Read(const QString &className) const;
  [[nodiscard]] bool IsDefaultBrowser() const;
  // Switching a class off puts the verb "open" back, but only where the verb is still the program's own; the program's
  // verb key is left in place.
  void Set(const QString &className, bool on);
  void SetAll(bool on);

 private:
  TRegistryStore &m_store;
};
