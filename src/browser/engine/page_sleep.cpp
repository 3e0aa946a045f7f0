#include "browser/engine/page_sleep.h"

#include <QPointer>
#include <QUuid>
#include <utility>

#include "browser/downloads/page_downloads.h"
#include "browser/engine/engine_page.h"
#include "browser/engine/own_scripts.h"
#include "platform/web_address.h"

namespace {

// By which the pages' scripts are told from those of the program.
const QString &Token() {
  static const QString token = QUuid::createUuid().toString(QUuid::WithoutBraces);
  return token;
}

// What comes again when it is asked for again. Others live only as long as the page that made them.
bool CanComeAgain(const QUrl &url) {
  return WebAddress::Is(url) || url.isLocalFile();
}

}  // namespace

TPageSleep::TPageSleep(TEnginePage *page, std::function<bool()> mayRest)
    : QObject(page), m_page(page), m_downloads(TPageDownloads::Of(page)), m_mayRest(std::move(mayRest)) {
  OwnScript::Insert(*page, "page_sleep.js", ScriptWorld::Own, {{"Token", Token()}});
  connect(page, &TEnginePage::ConsoleWritten, this, &TPageSleep::Hear);
  connect(page, &QWebEnginePage::loadStarted, this, [this] { m_leaving = m_restless; });
  connect(page, &TEnginePage::Committed, this, [this] {
    m_restless -= std::exchange(m_leaving, {});
    m_captures = false;
  });
  connect(page, &QWebEnginePage::renderProcessTerminated, this, [this] { m_restless.clear(); });
  connect(page, &QWebEnginePage::lifecycleStateChanged, this, [this] {
    m_hasSlept = m_hasSlept || IsAsleep();
    Q_EMIT AsleepChanged(IsAsleep());
  });
}

bool TPageSleep::IsAsleep() const {
  return m_page->lifecycleState() == QWebEnginePage::LifecycleState::Discarded;
}

void TPageSleep::FallAsleep() {
  if (!MayRest()) return;
  const QPointer<TPageSleep> self(this);
  const auto sleep = [self](bool isSaved) {
    if (self && isSaved && self->MayRest()) {
      self->m_page->setLifecycleState(QWebEnginePage::LifecycleState::Discarded);
    }
  };
  m_page->runJavaScript(QStringLiteral("zarvelaLoss()"), ScriptWorld::Own, [self, sleep](const QVariant &loss) {
    // A text, or there is no page that could say anything.
    if (self && loss.typeId() == QMetaType::QString && loss.toString().isEmpty() && self->MayRest()) {
      self->m_page->AskIfSaved(sleep);
    }
  });
}

bool TPageSleep::MayRest() const {
  // The engine calls a page active that is shown, loads, is heard, or can be reached by the scripts of another one.
  return !IsAsleep() && !m_page->isVisible() && !m_page->IsUnderWay() && !m_page->IsUnsettled() &&
         !m_page->CameFromForm() && CanComeAgain(m_page->url()) && m_page->renderProcessPid() != 0 &&
         m_page->recommendedState() != QWebEnginePage::LifecycleState::Active && !m_page->recentlyAudible() &&
         m_restless.isEmpty() && !m_downloads->AreUnderWay() && !m_captures && m_mayRest();
}

void TPageSleep::Hear(const QString &message) {
  if (!message.startsWith(Token())) return;
  const QString told = message.mid(Token().size());
  const QString frame = told.section(u':', 0, 0);
  if (told.endsWith(u':')) {
    m_restless.remove(frame);
  } else {
    m_restless.insert(frame);
  }
}
