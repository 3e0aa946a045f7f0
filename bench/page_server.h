#pragma once

#include <QSet>
#include <QSize>
#include <QString>
#include <QTcpServer>

// Serves small pages on 127.0.0.1 and hears from them. Every page tells the server when it has loaded and when it has
// seen its second animation frame, that is, when its first one is on the screen.
class TPageServer final : public QTcpServer {
  Q_OBJECT

 public:
  enum class TReport { Loaded, Painted };

  // Listens on a free port; isListening() tells whether that worked.
  TPageServer();

  // Forgets all reports. Pages of addresses given before are not heard any more.
  void BeginRun();
  // The address of page `number` of this run.
  [[nodiscard]] QString Address(int number) const;
  // How many different pages of this run have reported so.
  [[nodiscard]] int Count(TReport report) const;
  // The room that the last page that was painted had.
  [[nodiscard]] QSize Viewport() const { return m_viewport; }

 Q_SIGNALS:
  void Reported();

 private:
  void Serve();
  void Answer(QTcpSocket *socket, const QString &path);
  [[nodiscard]] static QByteArray Page(const QString &place, int number);

  int m_run = 0;
  QSet<int> m_loaded;
  QSet<int> m_painted;
  QSize m_viewport;
};
