#include "browser/engine/view_supply.h"

#include <QWebEngineView>

#include "browser/engine/engine_page.h"

namespace {

constexpr int MemoryInterval = 30'000;  // milliseconds between two looks at how much memory is left

}  // namespace

TViewSupply::TViewSupply(TEngine &engine, bool (*memoryIsShort)()) : m_engine(engine), m_memoryIsShort(memoryIsShort) {
  m_look.setSingleShot(true);
  connect(&m_look, &QTimer::timeout, this, &TViewSupply::Look);
}

TViewSupply::~TViewSupply() {
  delete m_ready;
}

void TViewSupply::KeepReady(QWidget *window) {
  m_window = window;
  MakeReady();
  m_look.start(MemoryInterval);
}

QWebEngineView *TViewSupply::Take() {
  if (m_window) m_look.start(IdleTime);
  if (!m_ready) return Make();
  QWebEngineView *view = m_ready;
  m_ready = nullptr;
  view->page()->disconnect(this);
  return view;
}

QWebEngineView *TViewSupply::Make() const {
  auto *page = new TEnginePage(m_engine, nullptr);
  auto *view = new QWebEngineView(page, nullptr);
  page->setParent(view);
  return view;
}

void TViewSupply::GiveUp() {
  if (!m_ready) return;
  m_ready->deleteLater();
  m_ready = nullptr;
}

void TViewSupply::PutOff() {
  if (m_window && !m_ready) m_look.start(IdleTime);
}

void TViewSupply::Look() {
  if (m_memoryIsShort()) {
    GiveUp();
  } else if (!m_ready) {
    MakeReady();
  }
  m_look.start(MemoryInterval);
}

void TViewSupply::MakeReady() {
  if (!m_window) return;
  m_ready = Make();
  m_ready->hide();  // said explicitly, or it would appear together with the window
  m_ready->setParent(m_window);
  // Any script will do: the engine makes nothing of a page before it is asked for something, and loading the blank page
  // would leave an entry in the history.
  m_ready->page()->runJavaScript(QStringLiteral("0"));
  connect(m_ready->page(), &QWebEnginePage::renderProcessTerminated, this, &TViewSupply::GiveUp);
}
