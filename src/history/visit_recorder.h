#pragma once

#include <QHash>
#include <QObject>

class THistoryStore;

// Writes down in the history which pages were loaded, and their titles as they come. A page is known by the object that
// shows it.
class TVisitRecorder final : public QObject {
  Q_OBJECT

 public:
  // `history` must outlive the recorder.
  explicit TVisitRecorder(THistoryStore &history, QObject *parent = nullptr);

  // `page` has loaded this address. The same address again counts no second time: a page may reload itself.
  void Loaded(const QObject *page, const QString &address, const QString &title);
  // `page`, showing this address, has another title. Only the address that was loaded last takes it.
  void Titled(const QObject *page, const QString &address, const QString &title);

 private:
  // What was written last for a page.
  struct TLast {
    QString address;
    QString title;
  };

  THistoryStore &m_history;
  QHash<const QObject *, TLast> m_last;
};
