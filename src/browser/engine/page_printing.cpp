#include "browser/engine/page_printing.h"

#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QWebEngineView>

#include "browser/engine/engine.h"
#include "browser/engine/page_layout_store.h"
#include "browser/engine/print_preview.h"
#include "config/language.h"

TPagePrinting::TPagePrinting(TEngine &engine, QWebEngineView *view, QObject *parent)
    : QObject(parent), m_engine(engine), m_view(view) {
  connect(view, &QWebEngineView::printFinished, this, [this](bool) {
    m_running = false;
    m_printer.reset();
  });
  // A dead renderer makes no preview any more.
  connect(view, &QWebEngineView::renderProcessTerminated, this, [this] { m_preparing = false; });
}

TPagePrinting::~TPagePrinting() {
  delete m_dialog;  // an open print dialog still holds the printer
  // The engine writes to the printer until it reports the end; a leaked one is better than a dead one.
  if (m_running) [[maybe_unused]]
    QPrinter *stillInUse = m_printer.release();
}

bool TPagePrinting::IsBusy() const {
  return m_running || m_preparing || m_dialog;
}

std::unique_ptr<QPrinter> TPagePrinting::NewPrinter() const {
  auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
  printer->setPageLayout(PageLayoutStore::Load(m_engine.Store()));
  printer->setDocName(m_view->title());
  return printer;
}

void TPagePrinting::Print() {
  if (IsBusy()) return;
  m_printer = NewPrinter();
  auto *dialog = new QPrintDialog(m_printer.get(), m_view->window());
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setOption(QAbstractPrintDialog::PrintToFile, true);
  m_dialog = dialog;
  connect(dialog, &QDialog::finished, this, [this](int result) {
    m_dialog = nullptr;
    if (result == QDialog::Accepted) {
      Run();
    } else {
      m_refusedByUser = true;
      m_printer.reset();
    }
  });
  dialog->open();
}

void TPagePrinting::PrintForPage() {
  if (!m_refusedByUser && m_view->isVisible()) Print();
}

void TPagePrinting::PrintWithoutAsking() {
  if (IsBusy() || QPrinterInfo::defaultPrinter().isNull()) return;
  m_printer = NewPrinter();
  m_printer->setPrinterName(QPrinterInfo::defaultPrinterName());
  Run();
}

void TPagePrinting::Run() {
  m_running = true;
  m_view->print(m_printer.get());
}

void TPagePrinting::Preview() {
  if (IsBusy()) return;
  m_preparing = true;
  const QPointer<TPagePrinting> self(this);
  m_view->printToPdf(
      [self](const QByteArray &pdf) {
        if (self) self->ShowPreview(pdf);
      },
      PageLayoutStore::Load(m_engine.Store()));
}

void TPagePrinting::ShowPreview(const QByteArray &pdf) {
  m_preparing = false;
  if (pdf.isEmpty() || !m_view->isVisible()) return;
  auto *preview = new TPrintPreview(m_engine.Language(), pdf, m_view->title(), m_view->window());
  preview->setAttribute(Qt::WA_DeleteOnClose);
  m_dialog = preview;
  connect(preview, &TPrintPreview::PrintRequested, this, [this, preview] {
    m_dialog = nullptr;
    preview->close();
    Print();
  });
  preview->open();
}

void TPagePrinting::SetUpPage(TEngine &engine, QWidget *owner) {
  auto *dialog = new QPageSetupDialog(owner);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  // Laid out as for a file, so that every paper size is there without a printer too.
  dialog->printer()->setOutputFormat(QPrinter::PdfFormat);
  dialog->printer()->setPageLayout(PageLayoutStore::Load(engine.Store()));
  connect(dialog, &QDialog::accepted, dialog,
          [dialog, &engine] { PageLayoutStore::Save(engine.Store(), dialog->printer()->pageLayout()); });
  dialog->open();
}
