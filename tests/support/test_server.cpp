#include "support/test_server.h"
#include "support/shipped_files.h"

#include <QFile>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

namespace {

constexpr int TrickleInterval = 20;  // milliseconds

QByteArray ReadSupportFile(const char *name) {
  QFile file(SourceFile(QStringLiteral("tests/support/") + QString::fromLatin1(name)));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Splits off one whole request; false while bytes are missing.
bool TakeRequest(const QByteArray &buffer, TTestRequest &request) {
  const qsizetype headEnd = buffer.indexOf("\r\n\r\n");
  if (headEnd < 0) return false;
  const QList<QByteArray> lines = buffer.left(headEnd).split('\n');
  const QList<QByteArray> words = lines.value(0).trimmed().split(' ');
  request.method = words.value(0);
  const QByteArray target = words.value(1);
  const qsizetype mark = target.indexOf('?');
  request.path = mark < 0 ? target : target.left(mark);
  request.query = mark < 0 ? QByteArray() : target.mid(mark + 1);
  for (const QByteArray &line : lines.mid(1)) {
    const qsizetype colon = line.indexOf(':');
    if (colon > 0) request.headers.insert(line.left(colon).trimmed().toLower(), line.mid(colon + 1).trimmed());
  }
  const qsizetype length = request.Header("content-length").toLongLong();
  if (buffer.size() < headEnd + 4 + length) return false;
  request.body = buffer.mid(headEnd + 4, length);
  return true;
}

}  // namespace

TTestResponse TTestResponse::Redirect(const QByteArray &address, int status) {
  return {.status = status, .headers = {{"Location", address}}};
}

TTestResponse TTestResponse::Attachment(const QByteArray &fileName, const QByteArray &body) {
  return {.body = body,
          .headers = {{"Content-Type", "application/octet-stream"},
                      {"Content-Disposition", "attachment; filename=\"" + fileName + "\""}}};
}

TTestServer::TTestServer(QObject *parent) : QObject(parent) {}

TTestServer::~TTestServer() {
  Close();
}

bool TTestServer::Listen(quint16 port) {
  return ListenWith(std::make_unique<QTcpServer>(), false, port);
}

bool TTestServer::ListenWithTls(bool asksWho) {
  auto server = std::make_unique<QSslServer>();
  QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
  configuration.setLocalCertificate(QSslCertificate(ReadSupportFile("test_certificate.pem")));
  configuration.setPrivateKey(QSslKey(ReadSupportFile("test_key.pem"), QSsl::Rsa));
  if (asksWho) configuration.setPeerVerifyMode(QSslSocket::QueryPeer);
  server->setSslConfiguration(configuration);
  return ListenWith(std::move(server), true, 0);
}

bool TTestServer::ListenWith(std::unique_ptr<QTcpServer> server, bool tls, quint16 port) {
  Close();
  m_tls = tls;
  m_server = std::move(server);
  connect(m_server.get(), &QTcpServer::pendingConnectionAvailable, this, &TTestServer::TakeConnections);
  if (!m_server->listen(QHostAddress::LocalHost, port)) return false;
  m_port = m_server->serverPort();
  return true;
}

void TTestServer::Close() {
  const QList<QTcpSocket *> sockets = m_buffers.keys();
  m_buffers.clear();
  for (QTcpSocket *socket : sockets) {
    socket->disconnect(this);
    socket->abort();
  }
  m_server.reset();
}

QString TTestServer::Url(const QString &path, const QString &host) const {
  const QString scheme = m_tls ? QStringLiteral("https") : QStringLiteral("http");
  return QStringLiteral("%1://%2:%3%4").arg(scheme, host, QString::number(m_port), path);
}

void TTestServer::RoutePage(const QByteArray &path, const QByteArray &title, const QByteArray &body) {
  Route(path, TTestResponse::Page("<!doctype html><html><head><meta charset=\"utf-8\"><title>" + title +
                                  "</title></head><body>" + body + "</body></html>"));
}

void TTestServer::RouteSignIn(const QByteArray &path, const QByteArray &user, const QByteArray &password,
                              const TTestResponse &response) {
  const QByteArray wanted = "Basic " + (user + ":" + password).toBase64();
  Route(path, [wanted, response](const TTestRequest &request) {
    if (request.Header("authorization") == wanted) return response;
    return TTestResponse{.status = 401, .headers = {{"WWW-Authenticate", "Basic realm=\"Test realm\""}}};
  });
}

QList<TTestRequest> TTestServer::Requests(const QByteArray &path) const {
  QList<TTestRequest> found;
  for (const TTestRequest &request : m_requests) {
    if (request.path == path) found.append(request);
  }
  return found;
}

void TTestServer::TakeConnections() {
  while (m_server && m_server->hasPendingConnections()) {
    QTcpSocket *socket = m_server->nextPendingConnection();
    m_buffers.insert(socket, {});
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] { ReadFrom(socket); });
    connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
      m_buffers.remove(socket);
      socket->deleteLater();
    });
    if (socket->bytesAvailable() > 0) ReadFrom(socket);
  }
}

void TTestServer::ReadFrom(QTcpSocket *socket) {
  const auto buffer = m_buffers.find(socket);
  if (buffer == m_buffers.end()) return;
  buffer->append(socket->readAll());
  TTestRequest request;
  if (!TakeRequest(*buffer, request)) return;
  buffer->clear();
  const auto *secure = qobject_cast<QSslSocket *>(socket);
  request.saysWho = secure != nullptr && !secure->peerCertificate().isNull();
  m_requests.append(request);
  const THandler handler = m_routes.value(request.path);
  const TTestResponse response =
      handler ? handler(request) : TTestResponse::Status(404, "<title>Nothing here</title><p>Nothing here</p>");
  if (response.neverAnswer) return;
  if (response.delayMs <= 0) {
    Answer(socket, response);
  } else {
    QTimer::singleShot(response.delayMs, socket, [this, socket, response] { Answer(socket, response); });
  }
}

void TTestServer::Answer(QTcpSocket *socket, const TTestResponse &response) {
  if (response.dropConnection) {
    socket->disconnectFromHost();
    return;
  }
  QByteArray head = "HTTP/1.1 " + QByteArray::number(response.status) + " Status\r\n";
  bool hasType = false;
  for (const auto &[name, value] : response.headers) {
    head += name + ": " + value + "\r\n";
    hasType = hasType || name.compare("content-type", Qt::CaseInsensitive) == 0;
  }
  if (!hasType) head += "Content-Type: text/html; charset=utf-8\r\n";
  head += "Content-Length: " + QByteArray::number(response.body.size()) + "\r\nConnection: close\r\n\r\n";
  socket->write(head);
  SendBody(socket, response);
}

void TTestServer::SendBody(QTcpSocket *socket, const TTestResponse &response) {
  if (response.stopAfterBytes >= 0) {
    socket->write(response.body.left(response.stopAfterBytes));
    return;
  }
  if (response.trickleBytes <= 0) {
    socket->write(response.body);
    socket->disconnectFromHost();
    return;
  }
  auto *timer = new QTimer(socket);
  timer->setInterval(TrickleInterval);
  connect(timer, &QTimer::timeout, socket, [socket, timer, response, sent = qsizetype(0)]() mutable {
    socket->write(response.body.mid(sent, response.trickleBytes));
    sent += response.trickleBytes;
    if (sent < response.body.size()) return;
    timer->stop();
    socket->disconnectFromHost();
  });
  timer->start();
}
