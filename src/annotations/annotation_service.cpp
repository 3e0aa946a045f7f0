#include "annotations/annotation_service.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

#include "annotations/internet_page.h"
#include "platform/web_address.h"

namespace {

QUrl ServiceAt(const QString &address) {
  const QUrl url(address.trimmed(), QUrl::StrictMode);
  if (!WebAddress::IsPlain(url)) return {};
  if (url.scheme() == QLatin1String("http") && IsInternetHost(url.host(QUrl::FullyEncoded))) return {};
  return url.adjusted(QUrl::RemoveFragment);
}

// The user has agreed to one host, and a connection that nobody reads stays one.
bool MayLeadTo(const QUrl &from, const QUrl &to) {
  return WebAddress::IsPlain(to) && to.host() == from.host() &&
         (to.scheme() == from.scheme() || to.scheme() == QLatin1String("https"));
}

}  // namespace

TAnnotationService::TAnnotationService(const QString &address, int longestWait)
    : m_address(ServiceAt(address)), m_longestWait(longestWait) {}

TAnnotationService::~TAnnotationService() = default;

QUrl TAnnotationService::RequestFor(const QUrl &service, const QString &page) {
  const QUrl asked = QUrl(page).adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
  const QString address = asked.toString(QUrl::FullyEncoded);
  if (!WebAddress::Is(asked) || asked.host().isEmpty() || address.size() > LongestAddress || !service.isValid())
    return {};
  QString query = service.query(QUrl::FullyEncoded);
  if (!query.isEmpty()) query += u'&';
  QUrl request(service);
  request.setQuery(query + QLatin1String("u=") + QString::fromLatin1(QUrl::toPercentEncoding(address)),
                   QUrl::StrictMode);
  return request;
}

void TAnnotationService::Ask(const QString &page, bool byUser) {
  const QUrl request = RequestFor(m_address, page);
  if (!request.isValid()) return;
  if (const auto waiting = m_underWay.find(request); waiting != m_underWay.end()) {
    if (!waiting->contains(page)) waiting->append(page);
    return;
  }
  const TAnnotatedWords *kept = m_kept.object(request);
  if (kept != nullptr || (request == m_failed && !byUser)) {
    QMetaObject::invokeMethod(
        this, [this, page, words = kept != nullptr ? *kept : TAnnotatedWords()] { Q_EMIT Answered(page, words); },
        Qt::QueuedConnection);
  } else if (byUser || m_underWay.size() < MostAtOnce) {
    m_underWay.insert(request, {page});
    Send({request, MostRedirects, QDeadlineTimer(m_longestWait)}, request);
  }
}

void TAnnotationService::Send(const TQuestion &question, const QUrl &address) {
  if (!m_network) m_network = std::make_unique<QNetworkAccessManager>();
  QNetworkRequest request(address);
  request.setRawHeader("Accept", "application/json");
  // What comes packed could unpack to any size.
  request.setRawHeader("Accept-Encoding", "identity");
  for (const auto attribute : {QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::CookieSaveControlAttribute,
                               QNetworkRequest::AuthenticationReuseAttribute}) {
    request.setAttribute(attribute, QNetworkRequest::Manual);
  }
  // The toolkit's way of asking before it follows one sends some of them more than once (6.4).
  request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
  QNetworkReply *reply = m_network->get(request);
  reply->setReadBufferSize(AnnotationAnswer::Longest + 1);
  QTimer::singleShot(int(question.until.remainingTime()), reply, &QNetworkReply::abort);
  connect(reply, &QNetworkReply::readyRead, reply, [reply] {
    if (reply->bytesAvailable() > AnnotationAnswer::Longest) reply->abort();
  });
  connect(reply, &QNetworkReply::finished, this, [this, reply, question] { Take(reply, question); });
}

void TAnnotationService::Take(QNetworkReply *reply, const TQuestion &question) {
  reply->deleteLater();
  if (!m_underWay.contains(question.request)) return;
  const bool isAnswered = reply->error() == QNetworkReply::NoError;
  const QUrl elsewhere = reply->url().resolved(reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl());
  if (isAnswered && elsewhere != reply->url() && question.redirects > 0 && MayLeadTo(reply->url(), elsewhere)) {
    Send({question.request, question.redirects - 1, question.until}, elsewhere);
    return;
  }
  const bool isWhole = isAnswered && reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() == 200;
  const auto words = isWhole ? AnnotationAnswer::Read(reply->readAll()) : std::nullopt;
  m_failed = words ? QUrl() : question.request;
  if (words) m_kept.insert(question.request, new TAnnotatedWords(*words));
  const QStringList pages = m_underWay.take(question.request);
  for (const QString &page : pages) {
    if (!words) Q_EMIT Failed(page);
    Q_EMIT Answered(page, words.value_or(TAnnotatedWords()));
  }
}

void TAnnotationService::Stop() {
  m_underWay.clear();
  // The replies go with it, but not from under one that is just being told.
  if (m_network) m_network.release()->deleteLater();
}
