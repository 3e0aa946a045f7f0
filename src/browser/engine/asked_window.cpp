#include "browser/engine/asked_window.h"

#include <QPointer>
#include <QTimer>
#include <QWebEngineNewWindowRequest>

#include "browser/engine/address.h"
#include "browser/engine/engine_page.h"
#include "browser/engine/halvex_browser.h"
#include "browser/engine/page_stack.h"

namespace {

// Up to 6.4 the engine crashes when the view of a window is shown whose empty page another page has written into, now
// or ever after, until the window gets a page of its own.
constexpr bool WrittenWindowsCanBeShown = QT_VERSION >= QT_VERSION_CHECK(6, 8, 0);

constexpr int DownloadComes = 500;  // milliseconds, many times what it takes

}  // namespace

TAskedWindow::TAskedWindow(TEnginePage *page, TPageStack *stack, QObject *parent)
    : QObject(parent), m_page(page), m_stack(stack) {
  connect(m_page, &TEnginePage::BeforeNavigate, this, &TAskedWindow::OnNavigate);
  connect(m_page, &TEnginePage::Finished, this, &TAskedWindow::OnFinished);
}

void TAskedWindow::Take(QWebEngineNewWindowRequest *request, const QUrl &maker) {
  m_page->BecomeWindow(maker);
  if constexpr (WrittenWindowsCanBeShown) m_stack->ShowView();
  request->openIn(m_page);
}

void TAskedWindow::OnNavigate(TNavigation *navigation) {
  if (navigation->mainFrame || navigation->cancel || !m_page->IsUnsettled()) return;
  // A frame in a window without a page: another page has made it there.
  QMetaObject::invokeMethod(
      this,
      [this, address = navigation->address] {
        if (m_page->IsUnsettled()) ShowWritten(address);
      },
      Qt::QueuedConnection);
}

void TAskedWindow::OnFinished() {
  if (!m_page->IsUnsettled() || m_page->HasCommitted()) return;
  // Who writes into an empty page gives it the address of his own.
  m_page->runJavaScript(QStringLiteral("location.href"),
                        [self = QPointer(this), wanted = m_page->PendingAddress()](const QVariant &place) {
                          if (!self || !self->m_page->IsUnsettled() || self->m_page->IsUnderWay()) return;
                          if (self->m_stack->Notice() != TPageStack::TNotice::None) return;
                          if (place.toString().isEmpty() || place.toString() == BlankPageAddress) {
                            self->TellNothing();
                          } else {
                            self->ShowWritten(wanted);
                          }
                        });
}

// The engine tells of a download after it has ended the load. Of a window that is gone by then nobody knows what it was
// about.
void TAskedWindow::TellNothing() {
  QTimer::singleShot(DownloadComes, this, [this] {
    if (m_page->IsUnsettled() && !m_page->IsUnderWay()) Q_EMIT CameToNothing();
  });
}

void TAskedWindow::ShowWritten(const QString &address) {
  if constexpr (!WrittenWindowsCanBeShown) {
    m_stack->ShowWrittenWindow(TAddress::OfEngine(address));
    Q_EMIT NoticeShown();
  }
}
