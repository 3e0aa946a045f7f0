#include "browser/engine/print_preview.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QPdfView>
#include <QPushButton>
#include <QSaveFile>
#include <QStandardPaths>
#include <QVBoxLayout>

#include "browser/engine/page_saving.h"
#include "config/language.h"
#include "ui/dialog_placing.h"
#include "ui/message_box.h"

namespace {

constexpr qreal ZoomStep = 1.25;
constexpr qreal MinZoom = 0.25;
constexpr qreal MaxZoom = 4;
constexpr QSize PreferredSize(820, 900);

}  // namespace

TPrintPreview::TPrintPreview(const TLanguage &language, const QByteArray &pdf, const QString &title, QWidget *parent)
    : QDialog(parent), m_language(language), m_title(title) {
  setObjectName(QStringLiteral("TPrintPreview"));
  setWindowTitle(language.Text("PRINT", "Preview"));
  m_pdf.setData(pdf);
  m_pdf.open(QIODevice::ReadOnly);
  m_document.load(&m_pdf);

  m_view = new QPdfView(this);
  m_view->setObjectName(QStringLiteral("pdfView"));
  m_view->setAccessibleName(language.Text("PRINT", "Preview"));
  m_view->setPageMode(QPdfView::PageMode::MultiPage);
  m_view->setZoomMode(QPdfView::ZoomMode::FitToWidth);
  m_view->setDocument(&m_document);

  auto *buttons = new QDialogButtonBox(this);
  const auto add = [&](const char *name, const QString &text, QDialogButtonBox::ButtonRole role) {
    QPushButton *button = buttons->addButton(text, role);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    return button;
  };
  QPushButton *zoomIn = add("cmdZoomIn", language.Text("PRINT", "ZoomIn"), QDialogButtonBox::ResetRole);
  QPushButton *zoomOut = add("cmdZoomOut", language.Text("PRINT", "ZoomOut"), QDialogButtonBox::ResetRole);
  QPushButton *fit = add("cmdFitWidth", language.Text("PRINT", "FitWidth"), QDialogButtonBox::ResetRole);
  QPushButton *print = add("cmdPrint", language.Text("PRINT", "Print"), QDialogButtonBox::ActionRole);
  QPushButton *save = add("cmdSavePdf", language.Text("PRINT", "SavePdf"), QDialogButtonBox::ActionRole);
  add("cmdClose", language.Global("Close"), QDialogButtonBox::RejectRole);
  connect(zoomIn, &QPushButton::clicked, this, [this] { Zoom(ZoomStep); });
  connect(zoomOut, &QPushButton::clicked, this, [this] { Zoom(1 / ZoomStep); });
  connect(fit, &QPushButton::clicked, this, [this] { m_view->setZoomMode(QPdfView::ZoomMode::FitToWidth); });
  connect(print, &QPushButton::clicked, this, &TPrintPreview::PrintRequested);
  connect(save, &QPushButton::clicked, this, &TPrintPreview::ChooseFile);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto *layout = new QVBoxLayout(this);
  layout->addWidget(m_view, 1);
  layout->addWidget(buttons);
  ResizeOnScreen(*this, PreferredSize);
}

TPrintPreview::~TPrintPreview() {
  // The view outlives the document otherwise and would draw it once more.
  m_view->setDocument(nullptr);
  m_document.close();
}

void TPrintPreview::Zoom(qreal factor) {
  // The view does not tell the factor it uses to fit the width; from there the steps start at the full size.
  const qreal now = m_view->zoomMode() == QPdfView::ZoomMode::Custom ? m_view->zoomFactor() : 1;
  m_view->setZoomMode(QPdfView::ZoomMode::Custom);
  m_view->setZoomFactor(std::clamp(now * factor, MinZoom, MaxZoom));
}

bool TPrintPreview::SaveTo(const QString &path) const {
  QSaveFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write(m_pdf.data()) == m_pdf.data().size() && file.commit();
}

void TPrintPreview::ChooseFile() {
  auto *dialog = new QFileDialog(this, m_language.Text("PRINT", "SavePdfTitle"),
                                 QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation),
                                 m_language.Text("PRINT", "PdfFilter"));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setDefaultSuffix(QStringLiteral("pdf"));
  dialog->selectFile(PageSaving::FileNameOf(m_title, m_language) + QStringLiteral(".pdf"));
  connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) {
    if (!SaveTo(path)) ShowWarning(this, m_language, m_language.Text("SAVE_AS", "Failed").arg(path), windowTitle());
  });
  dialog->open();
}
