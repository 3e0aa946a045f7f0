#include "chrome/favorites/favorites_transfer_view.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QProgressDialog>
#include <QPushButton>

#include "config/language.h"
#include "ui/dialog_gate.h"
#include "ui/input_box.h"
#include "ui/message_box.h"
#include "ui/shown_text.h"

namespace {

constexpr qsizetype MostTold = 10;     // of what was left out, by name
constexpr qsizetype LongestTold = 80;  // characters of a name
constexpr int ShownAfter = 300;        // milliseconds; what takes less needs no progress

}  // namespace

TFavoritesTransferView::TFavoritesTransferView(QWidget *window, const TLanguage &language,
                                               std::function<QString()> folder)
    : m_window(window), m_language(language), m_folder(std::move(folder)) {}

QString TFavoritesTransferView::LineOf(const TBookmarkSource &source) const {
  const auto name = [&] {
    switch (source.kind) {
      case TBookmarkSource::TKind::Firefox:
        return m_language.Text("FAVORITES", "SourceFirefox");
      case TBookmarkSource::TKind::Chromium:
        return m_language.Text("FAVORITES", "SourceChromium");
      case TBookmarkSource::TKind::Falkon:
        return m_language.Text("FAVORITES", "SourceFalkon");
      case TBookmarkSource::TKind::File:
        break;
    }
    return m_language.Text("FAVORITES", "SourceFile");
  }();
  return source.profile.isEmpty() ? name : name.arg(OneLine(source.profile));
}

void TFavoritesTransferView::Import() {
  if (m_job || DialogGate::IsClosed()) return;
  const QList<TBookmarkSource> sources = BookmarkSources::Find();
  const QPointer<TFavoritesTransferView> self(this);
  const QString caption = m_language.Text("FAVORITES", "ImportCaption");
  TBookmarkSource source;
  if (!sources.isEmpty()) {
    QStringList lines;
    for (const TBookmarkSource &one : sources) {
      // Two profiles may have one name.
      const QString line = LineOf(one);
      lines.append(lines.contains(line) ? line + QLatin1String(" (") + one.path + u')' : line);
    }
    lines.append(m_language.Text("FAVORITES", "SourceFile"));
    const QPointer<QInputDialog> dialog(
        MakeLineDialog(m_language, {caption, m_language.Text("FAVORITES", "ImportPrompt"), lines}));
    dialog->setParent(m_window, dialog->windowFlags());
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (!dialog || !self) return;
    const qsizetype chosen = lines.indexOf(dialog->textValue());
    delete dialog;
    if (!accepted || chosen < 0) return;
    if (chosen < sources.size()) source = sources.at(chosen);
  }
  if (source.path.isEmpty()) {
    source.path = AskFile(false);
    if (!self || source.path.isEmpty()) return;
  }
  const TRootNames names{.bar = m_language.Global("Links"),
                         .menu = m_language.Text("FAVORITES", "RootMenu"),
                         .other = m_language.Text("FAVORITES", "RootOther"),
                         .mobile = m_language.Text("FAVORITES", "RootMobile")};
  const QString name =
      source.kind == TBookmarkSource::TKind::File ? QFileInfo(source.path).completeBaseName() : LineOf(source);
  Run([source, names, name, folder = m_folder()](
          TTransferControl &control) { return FavoritesTransfer::Import(source, folder, name, names, control); },
      caption, m_language.Text("FAVORITES", "Imported"));
}

void TFavoritesTransferView::Export() {
  if (m_job || DialogGate::IsClosed()) return;
  const QPointer<TFavoritesTransferView> self(this);
  const QString file = AskFile(true);
  if (!self || file.isEmpty()) return;
  const QString title = TLanguage::ShortHint(m_language.Text("FAVORITES_POPUP", "ShowFavoritesHint"));
  Run([file, title, folder = m_folder()](
          TTransferControl &control) { return FavoritesTransfer::Export(folder, file, title, control); },
      m_language.Text("FAVORITES", "ExportCaption"), m_language.Text("FAVORITES", "Exported"));
}

QString TFavoritesTransferView::AskFile(bool isSaved) {
  const QPointer<QFileDialog> dialog(new QFileDialog(m_window, {}, QDir::homePath()));
  dialog->setWindowTitle(isSaved ? m_language.Text("FAVORITES", "ExportCaption")
                                 : m_language.Text("FAVORITES", "ImportCaption"));
  dialog->setAcceptMode(isSaved ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog->setFileMode(isSaved ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  const QString filter =
      isSaved ? m_language.Text("FAVORITES", "ExportFilter") : m_language.Text("FAVORITES", "BookmarkFilter");
  dialog->setNameFilters({filter, m_language.Text("FAVORITES", "AllFilter")});
  if (isSaved) {
    dialog->setDefaultSuffix(QStringLiteral("html"));
    dialog->selectFile(QStringLiteral("bookmarks.html"));
  }
  const bool accepted = dialog->exec() == QDialog::Accepted;
  if (!dialog) return {};  // The window has gone and has taken the dialog along.
  const QString file = accepted ? dialog->selectedFiles().value(0) : QString();
  delete dialog;
  return file;
}

void TFavoritesTransferView::Run(TFavoritesJob::TWork work, const QString &caption, const QString &doneText) {
  m_job = new TFavoritesJob(std::move(work), this);
  m_progress =
      new QProgressDialog(m_language.Text("FAVORITES", "TransferRuns"), m_language.Global("Cancel"), 0, 0, m_window);
  m_progress->setObjectName(QStringLiteral("frmTransfer"));
  m_progress->setWindowTitle(caption);
  m_progress->setWindowModality(Qt::WindowModal);
  m_progress->setAutoClose(false);
  m_progress->setAutoReset(false);
  m_progress->setMinimumDuration(ShownAfter);
  connect(m_progress, &QProgressDialog::canceled, m_job, &TFavoritesJob::Cancel);
  connect(m_job, &TFavoritesJob::Progress, m_progress, [dialog = m_progress.data()](qint64 done, qint64 total) {
    constexpr int Steps = 1000;
    dialog->setMaximum(total > 0 ? Steps : 0);
    dialog->setValue(total > 0 ? int(done * Steps / total) : 0);
  });
  connect(m_job, &TFavoritesJob::Finished, this, [this, caption, doneText](const TTransferReport &report) {
    m_job->deleteLater();
    m_job.clear();
    // It may be in the middle of showing the progress, which lets other events in.
    m_progress->disconnect();
    m_progress->hide();
    m_progress->deleteLater();
    m_progress.clear();
    Tell(report, caption, doneText);
    Q_EMIT Changed();
  });
  m_job->Start();
}

void TFavoritesTransferView::Tell(const TTransferReport &report, const QString &caption, const QString &doneText) {
  if (report.end == TTransferReport::TEnd::Cancelled) return;  // nothing has changed, as the user wants it
  if (report.end == TTransferReport::TEnd::Failed) {
    ShowWarning(m_window, m_language,
                report.error.isEmpty() ? m_language.Text("FAVORITES", "NoBookmarks")
                                       : m_language.Text("FAVORITES", "TransferFailed").arg(report.error),
                caption);
    return;
  }
  QString text =
      doneText.arg(QString::number(report.pages), QString::number(report.folders), QFileInfo(report.path).fileName());
  if (report.skipped.count > 0) {
    text += QLatin1String("\n\n") + m_language.Text("FAVORITES", "LeftOut").arg(report.skipped.count);
    for (const TSkippedBookmark &one : report.skipped.first.mid(0, MostTold)) {
      const QString name = one.name.isEmpty() ? one.address : one.name;
      if (!name.isEmpty()) text += u'\n' + OneLine(Shortened(name, LongestTold));
    }
  }
  ShowNotice(m_window, m_language, text, caption);
}
