#pragma once

#include <functional>
#include <memory>
#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPair>
#include <QString>

class QTcpServer;
class QTcpSocket;

// One request as the server got it. Header names are in lower case.
struct TTestRequest {
  QByteArray method;
  QByteArray path;   // without the query
  QByteArray query;  // without the "?"
  QHash<QByteArray, QByteArray> headers;
  QByteArray body;
  bool saysWho = false;  // by a certificate

  [[nodiscard]] QByteArray Header(const char *name) const { return headers.value(QByteArray(name).toLower()); }
};

// What the server answers. Content-Length is added from the body; Content-Type defaults to HTML in UTF-8.
struct TTestResponse {
  int status = 200;
  QByteArray body{};
  QList<QPair<QByteArray, QByteArray>> headers{};
  int delayMs = 0;              // wait this long before the first byte
  bool neverAnswer = false;     // take the request and stay silent until the server is closed
  bool dropConnection = false;  // close without a byte
  int trickleBytes = 0;         // send the body in pieces of this size, one after the other
  int stopAfterBytes = -1;      // send only so much of the body, then stay silent

  [[nodiscard]] static TTestResponse Page(const QByteArray &html) { return {.body = html}; }
  [[nodiscard]] static TTestResponse Status(int status, const QByteArray &html = {}) {
    return {.status = status, .body = html};
  }
  [[nodiscard]] static TTestResponse Text(const QByteArray &text) {
    return {.body = text, .headers = {{"Content-Type", "text/plain; charset=utf-8"}}};
  }
  [[nodiscard]] static TTestResponse Redirect(const QByteArray &address, int status = 302);
  // A file to be saved, sent as an attachment.
  [[nodiscard]] static TTestResponse Attachment(const QByteArray &fileName, const QByteArray &body);
};

// A small HTTP server on 127.0.0.1 that runs on the test's own event loop and on a free port. Every answer closes its
// connection. What no route answers is a 404 page.
class TTestServer final : public QObject {
  Q_OBJECT

 public:
  using THandler = std::function<TTestResponse(const TTestRequest &)>;

  explicit TTestServer(QObject *parent = nullptr);
  ~TTestServer() override;

  // Begins to listen; `port` 0 takes a free one. False when the port is taken.
  [[nodiscard]] bool Listen(quint16 port = 0);
  // The same with TLS and a self-signed certificate for "localhost" and 127.0.0.1.
  // Visitors may say who they are: `asksWho`.
  [[nodiscard]] bool ListenWithTls(bool asksWho = false);
  // Closes the port and every connection. Listen may be called again.
  void Close();

  [[nodiscard]] quint16 Port() const { return m_port; }
  // "http://127.0.0.1:port" + path, for any host name that leads here.
  [[nodiscard]] QString Url(const QString &path = QStringLiteral("/"),
                            const QString &host = QStringLiteral("127.0.0.1")) const;

  void Route(const QByteArray &path, THandler handler) { m_routes.insert(path, std::move(handler)); }
  void Route(const QByteArray &path, const TTestResponse &response) {
    Route(path, [response](const TTestRequest &) { return response; });
  }
  // A page with a title and a body.
  void RoutePage(const QByteArray &path, const QByteArray &title, const QByteArray &body = {});
  // Answers only requests that sign in with these.
  void RouteSignIn(const QByteArray &path, const QByteArray &user, const QByteArray &password,
                   const TTestResponse &response);

  // All requests so far, or those for one path, in order.
  [[nodiscard]] QList<TTestRequest> Requests() const { return m_requests; }
  [[nodiscard]] QList<TTestRequest> Requests(const QByteArray &path) const;
  [[nodiscard]] int RequestCount(const QByteArray &path) const { return int(Requests(path).size()); }
  void ForgetRequests() { m_requests.clear(); }

 private:
  [[nodiscard]] bool ListenWith(std::unique_ptr<QTcpServer> server, bool tls, quint16 port);
  void TakeConnections();
  void ReadFrom(QTcpSocket *socket);
  void Answer(QTcpSocket *socket, const TTestResponse &response);
  void SendBody(QTcpSocket *socket, const TTestResponse &response);

  std::unique_ptr<QTcpServer> m_server;
  bool m_tls = false;
  quint16 m_port = 0;
  QHash<QByteArray, THandler> m_routes;
  QHash<QTcpSocket *, QByteArray> m_buffers;
  QList<TTestRequest> m_requests;
};
