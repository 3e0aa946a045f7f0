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
// have the same file open: each call is a transaction of its own and sees what others have committed before it. What
// was written survives the death of the process at any moment; after a power cut the last few writes may be missing,
// but never half of one. One object serves one thread.
//
// No call waits long (but for the first, see below). What cannot be written at once, because another process keeps the
// file locked or the disk is full, is kept in its order and tried again: by a timer while an event loop runs, at each
// further write, in Flush and at the end. This object's own reads see it all the while.

enum class TRegistryHive { CurrentUser, LocalMachine, ClassesRoot };

struct TRegistryValue {
  QString name;
  QString data;  // An integer value is given as its decimal text.
  bool isInteger = false;

  bool operator==(const TRegistryValue &) const = default;
};

// Makes of the values that a key has the ones that it is to have. It may be called more than once.
using TRegistryEdit = std::function<QList<TRegistryValue>(const QList<TRegistryValue> &)>;

class TRegistryStore final {
 public:
  // Opens the store in `filePath`, making it and its folder when missing. A file that is not a readable store is moved
  // aside to a new name beside it (see SetAsideFile) and a fresh one is begun. Where nothing can be written the store
  // opens read-only, or, when nothing can be read either, empty and in memory only: no call ever fails hard. A file
  // that another process keeps locked is waited for, three seconds at the most; it may become readable later.
  explicit TRegistryStore(const QString &filePath);
  // Opens the store only to look at it: nothing is made, mended or moved aside, and what cannot be read is not there.
  struct TReadOnly {};
  TRegistryStore(const QString &filePath, TReadOnly);
  // Writes what waits, unless a Flush has given it up already; waits five seconds for that at the most.
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
  // True once a read of this object could not look into the file, since another process kept it locked. What such a
  // read gives is not known, which is not the same as absent; who has taken it for an answer must not write what he
  // made of it.
  [[nodiscard]] bool HasMissedReads() const;
  // True while changes wait to be written.
  [[nodiscard]] bool IsWaiting() const;
  // True while they wait because the disk refuses them.
  [[nodiscard]] bool IsRefused() const;
  // Is called, from within the call that finds it out, when the store was set aside or fell back to memory after it was
  // opened, and when the disk begins to refuse what is to be written. It must not use the store.
  void SetTroubleHandler(std::function<void()> handler);

  // Another number each time that something has been written, by this object or by whom else: for those who keep what
  // they have read. What others write shows within 200 milliseconds, and costs next to nothing to ask for.
  [[nodiscard]] quint64 Revision() const;

  // Tries for so many milliseconds to write all changes that wait; true when none does any more. Nothing is given up by
  // that.
  bool Flush(int milliseconds);

  // Writers return false only where the store cannot be written at all (see IsWritable), or for a text that is beyond
  // any use; readers give nothing for what is absent.
  [[nodiscard]] bool KeyExists(TRegistryHive hive, const QString &key) const;
  bool CreateKey(TRegistryHive hive, const QString &key);
  // Deletes the key with its subkeys and values. Deleting what is not there succeeds.
  bool DeleteKey(TRegistryHive hive, const QString &key);
  [[nodiscard]] QStringList Subkeys(TRegistryHive hive, const QString &key) const;
  [[nodiscard]] QList<TRegistryValue> Values(TRegistryHive hive, const QString &key) const;
  // The same for whoever must know: std::nullopt when the file could not be looked into.
  [[nodiscard]] std::optional<QList<TRegistryValue>> KnownValues(TRegistryHive hive, const QString &key) const;
  [[nodiscard]] std::optional<bool> KnownKeyExists(TRegistryHive hive, const QString &key) const;

  // An absent value is std::nullopt; an empty value name names the key's unnamed value.
  [[nodiscard]] std::optional<QString> Read(TRegistryHive hive, const QString &key, const QString &name) const;
  bool Write(TRegistryHive hive, const QString &key, const QString &name, const QString &data);
  bool WriteInteger(TRegistryHive hive, const QString &key, const QString &name, qint64 data);
  // Leaves a value that is there when this is written, whoever has written it.
  bool WriteIfAbsent(TRegistryHive hive, const QString &key, const QString &name, const QString &data);
  bool DeleteValue(TRegistryHive hive, const QString &key, const QString &name);

  // Replaces the whole key (subkeys too) by `values`, in order, in one transaction. An empty list deletes the key.
  bool ReplaceKey(TRegistryHive hive, const QString &key, const QList<TRegistryValue> &values);

  // Replaces the key's values by what `edit` makes of those that are there when this is written: what another process
  // has put there meanwhile is not lost. The key is made where it is missing, and stays when it becomes empty.
  bool EditKey(TRegistryHive hive, const QString &key, const TRegistryEdit &edit);

  // The writes within `work` reach the disk together or not at all: none is made when it returns false or throws. May
  // be nested; an inner failure undoes the inner part only. `work` is not run, and the answer is false, where nothing
  // can be written. Nothing is locked meanwhile: what depends on what others write is a matter of EditKey.
  bool InTransaction(const std::function<bool()> &work);

 private:
  struct TPrivate;
  std::unique_ptr<TPrivate> d;
};
