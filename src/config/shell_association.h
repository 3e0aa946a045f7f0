#pragma once

#include <QString>
#include <QStringList>

class TDesktopDefaults;
class TRegistryStore;

// The default-browser association: five shell classes whose default verb is the program's own ("Zarvela") when it is
// the default browser. A missing key reads as empty; a refused write is not reported. What the desktop itself opens web
// pages and addresses with follows the keys, where it can be told; the keys alone decide what the program is.
class TShellAssociation final {
 public:
  static constexpr const char *Classes[] = {"htmlfile", "http", "https", "file", "InternetShortcut"};

  struct TRecord {
    QString className;
    QString defaultVerb;
    QString description;
  };

  // Both must live longer; without `desktop` only the keys are written.
  explicit TShellAssociation(TRegistryStore &store, TDesktopDefaults *desktop = nullptr)
      : m_store(store), m_desktop(desktop) {}

  [[nodiscard]] TRecord Read(const QString &className) const;
  // The class's default verb is the program's own.
  [[nodiscard]] bool IsOurs(const QString &className) const;
  // All classes are.
  [[nodiscard]] bool IsDefaultBrowser() const;
  // Switching a class off puts the verb "open" back, but only where the verb is still the program's own; the program's
  // verb key is left in place.
  void Set(const QString &className, bool on);
  // Switches these on and the others off, class by class in their order; the desktop is told once, of what has changed.
  void SetOnly(const QStringList &classes);
  void SetAll(bool on);
  // Takes everything back that the program has registered itself with.
  void Unregister();

 private:
  // False when nothing was to be done.
  bool SetKeys(const QString &className, bool on);
  // Classes that are named in neither stay as they are.
  void Change(const QStringList &on, const QStringList &off);
  void MakeDesktopDefault(const QStringList &classes);
  void TakeBackDesktopDefault(const QStringList &classes, bool forget);

  TRegistryStore &m_store;
  TDesktopDefaults *m_desktop;
};
