#include "page_server.h"

#include <QStringList>
#include <QTcpSocket>

TPageServer::TPageServer() {
  connect(this, &QTcpServer::newConnection, this, &TPageServer::Serve);
  listen(QHostAddress::LocalHost);
}

void TPageServer::BeginRun() {
  ++m_run;
  m_reports = {};
}

QString TPageServer::Address(int number) const {
  return QStringLiteral("http://127.0.0.1:%1/%2/%3/page").arg(serverPort()).arg(m_run).arg(number);
}

void TPageServer::Serve() {
  while (QTcpSocket *socket = nextPendingConnection()) {
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
      // Only the request line counts; what follows it is read when all of it is there, and dropped.
      if (!socket->peek(socket->bytesAvailable()).contains("\r\n\r\n")) return;
      const QList<QByteArray> words = socket->readAll().split('\n').first().trimmed().split(' ');
      Answer(socket, words.size() == 3 && words[0] == "GET" ? QString::fromLatin1(words[1]) : QString());
    });
  }
}

void TPageServer::Answer(QTcpSocket *socket, const QString &path) {
  // "/run/number/what"
  const QStringList parts = path.split(u'/');
  const bool ofThisRun = parts.size() == 4 && parts[1].toInt() == m_run;
  const int number = ofThisRun ? parts[2].toInt() : 0;
  QByteArray status = "200 OK";
  QByteArray body;
  if (ofThisRun && parts[3] == u"page") {
    body = Page(path.chopped(4), number);
    Note(TReport::Requested, number);
  } else if (ofThisRun && parts[3] == u"loaded") {
    Note(TReport::Loaded, number);
  } else if (ofThisRun && parts[3].startsWith(u"painted-")) {
    m_viewport = QSize(parts[3].section(u'-', 1, 1).toInt(), parts[3].section(u'-', 2, 2).toInt());
    Note(TReport::Painted, number);
  } else {
    status = "404 Not Found";
  }
  socket->write("HTTP/1.1 " + status + "\r\nContent-Type: text/html; charset=utf-8\r\nCache-Control: no-store\r\n" +
                "Content-Length: " + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
  socket->disconnectFromHost();
}

void TPageServer::Note(TReport report, int number) {
  m_reports[size_t(report)].insert(number);
  Q_EMIT Reported();
}

QByteArray TPageServer::Page(const QString &place, int number) {
  QString page = QStringLiteral(
                     "<!doctype html><html lang=en><title>Page %1</title><link rel=icon href='data:,'>"
                     "<style>body{font:16px sans-serif;background:hsl(%2 60% 92%)}</style>"
                     "<script>onload=()=>fetch('%3loaded');"
                     "requestAnimationFrame(()=>requestAnimationFrame(()=>fetch(`%3painted-${innerWidth}-${innerHeight}"
                     "`)))</script>"
                     "<h1>Page %1</h1>")
                     .arg(number)
                     .arg(number * 47 % 360)
                     .arg(place);
  for (int line = 1; line <= 40; ++line) {
    page +=
        QStringLiteral("<p>Line %1 of page %2, with a few words to lay out and to paint.</p>").arg(line).arg(number);
  }
  return page.toUtf8();
}
