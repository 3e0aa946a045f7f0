#include "platform/desktop_services.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QFileInfo>

#include "platform/mail_address.h"
#include "platform/session_bus.h"

namespace {

const QString Opener = QStringLiteral("xdg-open");
const QString Mailer = QStringLiteral("xdg-email");
const QString Mail = QStringLiteral("mailto");
const QString OtherSchemes[] = {QStringLiteral("news"), QStringLiteral("nntp"), QStringLiteral("file")};

// A file manager of its own desktop may have to be started first.
constexpr int FileManagerPatience = 10000;  // milliseconds

}  // namespace

TDesktopServices::TDesktopServices(QObject *parent) : QObject(parent) {
  connect(&m_programs, &TStartedPrograms::Failed, this, &TDesktopServices::Failed);
  QDesktopServices::setUrlHandler(Mail, this, "OpenMailUrl");
  for (const QString &scheme : OtherSchemes) QDesktopServices::setUrlHandler(scheme, this, "OpenUrl");
}

TDesktopServices::~TDesktopServices() {
  QDesktopServices::unsetUrlHandler(Mail);
  for (const QString &scheme : OtherSchemes) QDesktopServices::unsetUrlHandler(scheme);
}

bool TDesktopServices::OpenFolder(const QString &folder) {
  if (!QFileInfo(folder).isDir()) return false;
  if (!HasSessionBus()) return StartCommand({Opener, folder});
  return OpenFolderOn(QDBusConnection::sessionBus(), folder);
}

bool TDesktopServices::OpenFolderOn(const QDBusConnection &bus, const QString &folder) {
  if (!bus.isConnected()) return StartCommand({Opener, folder});
  const QString manager = QStringLiteral("org.freedesktop.FileManager1");
  QDBusMessage call = QDBusMessage::createMethodCall(manager, QStringLiteral("/org/freedesktop/FileManager1"), manager,
                                                     QStringLiteral("ShowFolders"));
  call << QStringList(QUrl::fromLocalFile(folder).toString(QUrl::FullyEncoded)) << QString();
  auto *answer = new QDBusPendingCallWatcher(bus.asyncCall(call, FileManagerPatience), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, folder] {
    if (answer->isError() && !StartCommand({Opener, folder})) Q_EMIT Failed(Opener);
    answer->deleteLater();
  });
  return true;
}

bool TDesktopServices::Open(const QUrl &address) {
  if (!address.isLocalFile()) return StartCommand({Opener, address.toString(QUrl::FullyEncoded)});
  const QString path = address.toLocalFile();
  // No text says which bytes a name has that is no UTF-8; the opener takes them as they stand in the address.
  if (path.contains(QChar::ReplacementCharacter)) return StartCommand({Opener, address.toString(QUrl::FullyEncoded)});
  return QFileInfo(path).isDir() ? OpenFolder(path) : StartCommand({Opener, path});
}

bool TDesktopServices::SendDocuments(const QStringList &files) {
  QStringList command{Mailer};
  for (const QString &file : files) command << QStringLiteral("--attach") << file;
  return !files.isEmpty() && StartCommand(command);
}

bool TDesktopServices::OpenMailAddress(const QString &address) {
  const QString safe = MailAddress::Safe(address);
  return !safe.isEmpty() && (StartCommand({Mailer, safe}) || StartCommand({Opener, safe}));
}

void TDesktopServices::OpenMailUrl(const QUrl &address) {
  if (!OpenMailAddress(address.toString(QUrl::FullyEncoded))) Q_EMIT Failed(Mailer);
}

void TDesktopServices::OpenUrl(const QUrl &address) {
  if (!Open(address)) Q_EMIT Failed(Opener);
}
