#include "browser/engine/script_calls.h"

#include <algorithm>
#include <array>
#include <QBuffer>
#include <QUrl>
#include <QUuid>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>
#include <utility>

#include "browser/engine/own_scripts.h"
#include "browser/page/script_dialogs.h"

namespace {

const QByteArray WebScheme = QByteArrayLiteral("zarvela-ask");
// Pages from the disk may reach nothing but what counts as local, which pages of the web may not reach.
const QByteArray LocalScheme = QByteArrayLiteral("zarvela-ask-local");

constexpr int LongestText = 32767;  // characters that travel; a dialog shows fewer

using TKind = TScriptDialog::TKind;
constexpr std::array<std::pair<const char *, TKind>, 3> Kinds{
    {{"alert", TKind::Alert}, {"confirm", TKind::Confirm}, {"prompt", TKind::Prompt}}};

// Empty for Cancel.
void Reply(QWebEngineUrlRequestJob *job, const TScriptAnswer &answer) {
  auto *buffer = new QBuffer(job);
  buffer->setData(answer.accepted ? '+' + answer.value.toUtf8() : QByteArray());
  buffer->open(QIODevice::ReadOnly);
  job->reply(QByteArrayLiteral("text/plain;charset=utf-8"), buffer);
}

}  // namespace

void TScriptCalls::RegisterSchemes() {
  using TScheme = QWebEngineUrlScheme;
  for (const QByteArray &name : {WebScheme, LocalScheme}) {
    TScheme scheme(name);
    scheme.setSyntax(TScheme::Syntax::Path);
    // What a page may load says nothing about what it may ask.
    TScheme::Flags flags = TScheme::SecureScheme | TScheme::CorsEnabled | TScheme::ContentSecurityPolicyIgnored;
    if (name == LocalScheme) flags |= TScheme::LocalScheme | TScheme::LocalAccessAllowed;
    scheme.setFlags(flags);
    TScheme::registerScheme(scheme);
  }
}

TScriptCalls::TScriptCalls(QWebEngineProfile *profile) : QWebEngineUrlSchemeHandler(profile) {
  for (const QByteArray &name : {WebScheme, LocalScheme}) profile->installUrlSchemeHandler(name, this);
}

void TScriptCalls::Connect(QWebEnginePage &page, TScriptDialogs &dialogs) {
  const QString token = QUuid::createUuid().toString(QUuid::WithoutBraces);
  OwnScript::Insert(page, "script_dialogs.js", QWebEngineScript::MainWorld,
                    {{"Token", token},
                     {"Scheme", QString::fromLatin1(WebScheme)},
                     {"LocalScheme", QString::fromLatin1(LocalScheme)},
                     {"Longest", QString::number(LongestText)}});
  m_dialogs.insert(token, &dialogs);
  connect(&dialogs, &QObject::destroyed, this, [this, token] { m_dialogs.remove(token); });
}

bool TScriptCalls::Waits(qint64 renderer) const {
  return std::ranges::any_of(m_dialogs, [renderer](const QPointer<TScriptDialogs> &dialogs) {
    const auto *page = dialogs != nullptr ? qobject_cast<QWebEnginePage *>(dialogs->parent()) : nullptr;
    return page != nullptr && dialogs->IsOpen() && page->renderProcessPid() == renderer;
  });
}

void TScriptCalls::requestStarted(QWebEngineUrlRequestJob *job) {
  const QUrl url = job->requestUrl();
  const QPointer<TScriptDialogs> dialogs = m_dialogs.value(QString::fromLatin1(job->requestHeaders().value("Accept")));
  const auto *kind =
      std::ranges::find_if(Kinds, [&url](const auto &one) { return url.path() == QLatin1String(one.first); });
  if (dialogs == nullptr || kind == Kinds.end()) return job->fail(QWebEngineUrlRequestJob::UrlNotFound);
  const QStringList texts = url.query(QUrl::FullyEncoded).split(u'&');
  const auto text = [&texts](int at) { return QUrl::fromPercentEncoding(texts.value(at).toUtf8()); };
  // The job goes with its page.
  const QPointer<QWebEngineUrlRequestJob> waiting(job);
  const auto dialog =
      dialogs->Ask({.kind = kind->second, .origin = job->initiator(), .message = text(0), .value = text(1)},
                   [waiting](const TScriptAnswer &answer) {
                     if (waiting) Reply(waiting, answer);
                   });
  if (dialog) connect(job, &QObject::destroyed, dialog, &QDialog::reject);
}
