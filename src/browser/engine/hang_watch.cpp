#include "browser/engine/hang_watch.h"

#include <QPointer>
#include <QWebEnginePage>
#include <utility>

#include "browser/engine/own_scripts.h"

namespace {

constexpr int Patience = 10000;         // ms
constexpr int BetweenQuestions = 1000;  // ms; each costs the renderer a moment

}  // namespace

THangWatch::THangWatch(QWebEnginePage *page, std::function<bool()> waitsForUser)
    : QObject(page), m_page(page), m_waitsForUser(std::move(waitsForUser)) {
  m_patience.setInterval(Patience);
  connect(&m_patience, &QTimer::timeout, this, &THangWatch::Judge);
  connect(page, &QWebEnginePage::renderProcessPidChanged, this, &THangWatch::BeginPage);
}

void THangWatch::NoteAct() {
  if (m_patience.isActive() || (m_since.isValid() && !m_since.hasExpired(BetweenQuestions))) return;
  if (m_page->renderProcessPid() == 0 || m_page->lifecycleState() != QWebEnginePage::LifecycleState::Active) return;
  m_since.start();
  m_patience.start();
  // In a world of its own the page's scripts cannot have changed what is asked.
  m_page->runJavaScript(QStringLiteral("0"), ScriptWorld::Own,
                        [self = QPointer(this), question = m_question](const QVariant &) {
                          if (self && question == self->m_question) self->Settle();
                        });
}

void THangWatch::BeginPage() {
  ++m_question;
  Settle();
}

void THangWatch::Judge() {
  if (m_hangs || m_waitsForUser()) return;
  m_hangs = true;
  Q_EMIT Hangs();
}

void THangWatch::Settle() {
  m_patience.stop();
  if (std::exchange(m_hangs, false)) Q_EMIT Recovered();
}
