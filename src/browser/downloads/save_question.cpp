#include "browser/downloads/save_question.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>
#include <QStandardPaths>
#include <utility>

#include "config/language.h"
#include "config/options.h"

namespace {

bool IsPlace(const QString &folder) {
  return !folder.isEmpty() && QFileInfo(folder).isDir() && QFileInfo(folder).isWritable();
}

}  // namespace

TSaveQuestion::TSaveQuestion(const TLanguage &language, TRegistryStore &store, QObject *parent)
    : QObject(parent), m_language(language), m_store(store) {}

void TSaveQuestion::SetChooseFile(TChooseFile chooseFile) {
  m_asksWithDialog = false;
  m_chooseFile = std::move(chooseFile);
}

bool TSaveQuestion::IsAsked() const {
  return (m_asksWithDialog || m_chooseFile) && TZVOptions(m_store).Get(Setting::DownloadAsk);
}

bool TSaveQuestion::Disturbs() const {
  return m_isOpen || (m_closed.isValid() && m_closed.elapsed() < m_pause);
}

void TSaveQuestion::Ask(const QString &suggested, QWidget *window, const TDone &done) {
  if (!IsAsked()) return done(suggested);
  m_isOpen = true;
  const int number = ++m_number;
  m_finish = [self = QPointer(this), number, done](const QString &path) {
    if (!self || !self->m_isOpen || self->m_number != number) return;
    self->m_isOpen = false;
    self->m_closed.start();
    if (path.isEmpty()) return done({});
    const QFileInfo chosen(path);
    TZVOptions(self->m_store).Set(Setting::LastDownloadFolder, chosen.absolutePath());
    done(chosen.absoluteFilePath());
  };
  const TDone finish = m_finish;
  m_chooseFile ? m_chooseFile(suggested, finish) : ShowDialog(suggested, window, finish);
}

void TSaveQuestion::Close() {
  if (!m_isOpen) return;
  const TDone finish = m_finish;
  finish({});
  if (m_dialog != nullptr) m_dialog->close();
}

void TSaveQuestion::ShowDialog(const QString &suggested, QWidget *window, const TDone &done) {
  auto *dialog = new QFileDialog(window, m_language.Text("DOWNLOADS", "SaveCaption"), QFileInfo(suggested).path());
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->selectFile(QFileInfo(suggested).fileName());
  connect(dialog, &QDialog::finished, this, [dialog, done](int result) {
    done(result == QDialog::Accepted ? dialog->selectedFiles().value(0) : QString());
  });
  m_dialog = dialog;
  dialog->setModal(false);
  dialog->show();
}

QString TSaveQuestion::Folder() const {
  const QString chosen = TZVOptions(m_store).Get(Setting::DownloadFolder);
  if (IsPlace(chosen)) return chosen;
  const QString downloads = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
  return QDir().mkpath(downloads) ? downloads : QDir::homePath();
}

QString TSaveQuestion::FirstFolder() const {
  const QString last = IsAsked() ? TZVOptions(m_store).Get(Setting::LastDownloadFolder) : QString();
  return IsPlace(last) ? last : Folder();
}
