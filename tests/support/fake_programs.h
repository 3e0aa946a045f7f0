#pragma once

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

// Programs that only write down how they were called, in a folder of their own that is looked in first, or alone.
class TFakePrograms final {
 public:
  enum class TReach { BeforeOthers, Alone };

  explicit TFakePrograms(TReach reach = TReach::BeforeOthers) : m_path(qgetenv("PATH")) {
    // What the programs themselves use stands in these.
    const QByteArray others = reach == TReach::Alone ? QByteArray() : ':' + m_path;
    qputenv("PATH", m_folder.path().toLocal8Bit() + others);
  }
  ~TFakePrograms() { qputenv("PATH", m_path); }

  // `then` is shell text that runs when the call has been written down.
  void Add(const QString &name, const QByteArray &then = "exit 0") {
    QFile file(Path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    // One call is one line, and written at once; its arguments stand between bars.
    file.write("#!/bin/sh\nline=" + name.toUtf8() +
               "\nfor a in \"$@\"; do line=\"$line|$a\"; done\nprintf '%s\\n' \"$line\" >> '" + LogFile().toUtf8() +
               "'\n" + then + "\n");
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }
  [[nodiscard]] QString Path(const QString &name) const { return m_folder.filePath(name); }
  // The calls so far, in their order: "name|argument|argument".
  [[nodiscard]] QStringList Calls() const {
    QFile file(LogFile());
    if (!file.open(QIODevice::ReadOnly)) return {};
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
  }
  void Forget() { QFile::remove(LogFile()); }

 private:
  [[nodiscard]] QString LogFile() const { return m_folder.filePath(QStringLiteral("calls")); }

  QTemporaryDir m_folder;
  QByteArray m_path;
};
