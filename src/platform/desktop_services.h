#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUrl>

#include "platform/started_programs.h"

// What the desktop does for the program: starts other programs, opens files and folders, sends mail. Together with the
// registry store it is what the program knows of the system it runs on. Every call fails silently with false where the
// desktop offers nothing; nothing ever passes through a shell.
class TDesktopServices final : public QObject {
  Q_OBJECT

 public:
  // For as long as it lives, the mail addresses, news addresses and files that are opened in other programs pass
  // through here, whoever opens them.
  explicit TDesktopServices(QObject *parent = nullptr);
  ~TDesktopServices() override;

  // A program and its arguments.
  bool StartCommand(const QStringList &command) { return m_programs.Start(command); }
  // Shows the folder in the desktop's file manager.
  bool OpenFolder(const QString &folder);
  // The same by the file manager on this bus, with an opener of files in reserve.
  bool OpenFolderOn(const QDBusConnection &bus, const QString &folder);
  // With whatever the desktop opens it with. A local folder is opened as such.
  bool Open(const QUrl &address);
  // A new message with the files attached.
  bool SendDocuments(const QStringList &files);
  // Hands a "mailto:" address to the mail program, without what it must not carry (see MailAddress).
  bool OpenMailAddress(const QString &address);

 Q_SIGNALS:
  // What had been started has ended with an error after all; `program` is its name.
  void Failed(const QString &program);

 private Q_SLOTS:
  void OpenMailUrl(const QUrl &address);
  void OpenUrl(const QUrl &address);

 private:
  TStartedPrograms m_programs;
};
