#include "chrome/options/downloads_page.h"

#include <QFileDialog>
#include <QPointer>
#include <QStandardPaths>

#include "config/language.h"
#include "config/settings.h"
#include "ui_downloads_page.h"

TDownloadsPage::TDownloadsPage(const TLanguage &language, TSettings &settings, QWidget *parent)
    : QWidget(parent), m_language(language), m_settings(settings), m_ui(std::make_unique<Ui::TDownloadsPage>()) {
  m_ui->setupUi(this);
  setObjectName(QStringLiteral("tsDownloads"));
  language.TranslateForm(this, "OPTIONS");
  m_ui->edtDownloadFolder->setPlaceholderText(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
  m_ui->edtDownloadFolder->setText(settings.Get(Setting::DownloadFolder));
  m_ui->chkDownloadAsk->setChecked(settings.Get(Setting::DownloadAsk));
  connect(m_ui->btnDownloadFolder, &QPushButton::clicked, this, &TDownloadsPage::btnDownloadFolderClick);
}

TDownloadsPage::~TDownloadsPage() = default;

void TDownloadsPage::btnDownloadFolderClick() {
  const QPointer<TDownloadsPage> self(this);
  const QString folder = QFileDialog::getExistingDirectory(this, m_language.Text("OPTIONS", "DownloadFolderCaption"),
                                                           m_ui->edtDownloadFolder->text());
  if (self && !folder.isEmpty()) m_ui->edtDownloadFolder->setText(folder);
}

bool TDownloadsPage::IsGood() {
  const QString folder = m_ui->edtDownloadFolder->text();
  const QFileInfo place(folder);
  const bool isPlace = place.isAbsolute() && place.isDir() && place.isWritable();
  if (isPlace || folder.isEmpty() || folder == m_settings.Get(Setting::DownloadFolder)) return true;
  m_ui->edtDownloadFolder->setFocus();
  return false;
}

void TDownloadsPage::Write() {
  if (const QString folder = m_ui->edtDownloadFolder->text(); folder != m_settings.Get(Setting::DownloadFolder)) {
    m_settings.Set(Setting::DownloadFolder, folder);
    // The next question begins there.
    if (m_settings.IsChosen(Setting::LastDownloadFolder)) m_settings.Set(Setting::LastDownloadFolder, QString());
  }
  m_settings.Set(Setting::DownloadAsk, m_ui->chkDownloadAsk->isChecked());
}
