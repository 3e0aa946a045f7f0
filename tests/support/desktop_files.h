#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

// Desktop entries and lists of chosen programs in the folders of the test.
namespace DesktopFiles {

inline void Write(const QString &path, const QByteArray &text) {
  QVERIFY(QDir().mkpath(QFileInfo(path).path()));
  QFile file(path);
  QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
}
[[nodiscard]] inline QByteArray Read(const QString &path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
[[nodiscard]] inline QString Applications() {
  return qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/applications/");
}
[[nodiscard]] inline QString Choices() {
  return qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/mimeapps.list");
}
// A program's entry, with what belongs to every one.
inline void WriteEntry(const QString &name, const QByteArray &lines) {
  Write(Applications() + name + QStringLiteral(".desktop"),
        "[Desktop Entry]\nType=Application\nName=" + name.toUtf8() + '\n' + lines);
}
inline void Clear() {
  QDir(Applications()).removeRecursively();
  QFile::remove(Choices());
}

}  // namespace DesktopFiles
