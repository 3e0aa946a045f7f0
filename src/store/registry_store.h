#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <QList>
#include <QString>
#include <QStringList>

// The settings store: a tree of keys that hold named string or integer values.
//
// Key paths are written with backslashes ("Software\Velmora\Zarvela"); a leading or trailing backslash means nothing.
// Key and value names compare without regard to case and keep the spelling in which they were first written. Values are
// listed in the order in which they were first written; writing a value again keeps its place. Several processes may
// have the same file open: each call is a transaction of its own and sees what others have committed before it. What a
// writer has reported as written survives the death of the process at any moment; after a power cut the last few writes
// may be missing, but never half of one. One object serves one thread.

enum class TRegistryHive { CurrentUser, LocalMachine, ClassesRoot };

struct TRegistryValue {
  QString name;
  QString data;  // An integer value is given as its decimal text.
  bool isInteger = false;
};

class TRegistryStore final {
 public:
  // Opens the store in `filePath`, making it and its folder when missing. A file that is not a readable store is moved
  // aside to a new name beside it (see SetAsideFile) and a fresh one is begun. Where nothing can be written the store
  // opens read-only, or, when nothing can be read either, empty and in memory only: no call ever fails hard.
  explicit TRegistryStore(const QString &filePath);
  // Opens the store only to look at it: nothing is made, mended or moved aside, and what cannot be read is not there.
  struct TReadOnly {};
  TRegistryStore(const QString &filePath, TReadOnly);
  ~TRegistryStore();
  TRegistryStore(const TRegistryStore &) = delete;
  TRegistryStore &operator=(const TRegistryStore &) = delete;

  [[nodiscard]] QString FilePath() const;
  // The name that a damaged file was given last; empty when nothing was wrong.
  [[nodiscard]] QString SetAsideFile() const;
  // False when writes are refused (a read-only folder, say). Reads still work; writers return false.
  [[nodiscard]] bool IsWritable() const;
  // True when no file could be used: writes succeed, but only for as long as this object lives.
  [[nodiscard]] bool IsInMemory() const;
  // Is called, from within the call that finds it out, when the store was set aside or fell back to memory after it was
  // opened. It must not use the store.
  void SetTroubleHandler(std::function<void()> handler);

  [[nodiscard]] bool KeyExists(TRegistryHive hive, const QString &key) const;
  bool CreateKey(TRegistryHive hive, const QString &key);
  // Deletes the key with its subkeys and values. Deleting what is not there succeeds.
  bool DeleteKey(TRegistryHive hive, const QString &key);
  [[nodiscard]] QStringList Subkeys(TRegistryHive hive, const QString &key) const;
  [[nodiscard]] QList<TRegistryValue> Values(TRegistryHive hive, const QString &key) const;

  // An absent value is std::nullopt; an empty value name names the key's unnamed value.
  [[nodiscard]] std::optional<QString> Read(TRegistryHive hive, const QString &key, const QString &name) const;
  bool Write(TRegistryHive hive, const QString &key, const QString &name, const QString &data);
  bool WriteInteger(TRegistryHive hive, const QString &key, const QString &name, qint64 data);
  bool DeleteValue(TRegistryHive hive, const QString &key, const QString &name);

  // Replaces the whole key (subkeys too) by `values`, in order, in one transaction. An empty list deletes the key.
  bool ReplaceKey(TRegistryHive hive, const QString &key, const QList<TRegistryValue> &values);

  // Runs `work` inside one transaction, so that its writes reach the disk together or not at all: they are undone when
  // it returns false or throws. May be nested; an inner failure undoes the inner part only. `work` is not run, and the
  // answer is false, where no transaction can be begun.
  bool InTransaction(const std::function<bool()> &work);

 private:
  struct TPrivate;
  std::unique_ptr<TPrivate> d;
};
