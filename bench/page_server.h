#pragma once

#include <array>
#include <QSet>
#include <QSize>
#include <QString>
#include <QTcpServer>

// Serves small pages on 127.0.0.1 and hears from them: that one was requested, and then from the page itself when it
// has loaded and when it has seen its second animation frame, that is, when its first one is on the screen.
class TPageServer final : public QTcpServer {
  Q_OBJECT

 public:
  enum class TReport { Requested, Loaded, Painted };

  // Listens on a free port; isListening() tells whether that worked.
  TPageServer();

  // Forgets all reports. Pages of addresses given before are not heard any more.
  void BeginRun();
  // The address of page `number` of this run.
  [[nodiscard]] QString Address(int number) const;
  // How many different pages of this run have reported so.
  [[nodiscard]] int Count(TReport report) const { return int(m_reports[size_t(report)].size()); }
  // Whether page `number` of this run has.
  [[nodiscard]] bool Has(TReport report, int number) const { return m_reports[size_t(report)].contains(number); }
  // The room that the last page that was painted had.
  [[nodiscard]] QSize Viewport() const { return m_viewport; }

 Q_SIGNALS:
  void Reported();

 private:
  void Serve();
  void Answer(QTcpSocket *socket, const QString &path);
  void Note(TReport report, int number);
  [[nodiscard]] static QByteArray Page(const QString &place, int number);

  int m_run = 0;
  std::array<QSet<int>, 3> m_reports;  // by TReport
  QSize m_viewport;
};
