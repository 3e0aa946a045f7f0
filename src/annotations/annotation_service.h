#pragma once

#include <memory>
#include <QCache>
#include <QDeadlineTimer>
#include <QHash>
#include <QObject>
#include <QString>
#include <QUrl>

#include "annotations/annotation_answer.h"

class QNetworkAccessManager;
class QNetworkReply;

// The outside service that explains the words of pages. It is asked for a page's address, as GET SERVICE?u=ADDRESS, and
// is told nothing else: no cookies, no sign-in, no page that the user comes from.
class TAnnotationService final : public QObject {
  Q_OBJECT

 public:
  static constexpr int LongestWait = 5000;           // milliseconds for a whole answer
  static constexpr int MostKept = 50;                // answers, those that were needed last, for this run
  static constexpr int MostAtOnce = 6;               // questions that are under way
  static constexpr int MostRedirects = 3;            // to the same host
  static constexpr qsizetype LongestAddress = 4096;  // characters of a page that is asked for

  // `address` as product.ini has it: https, or http where it leads to no host of the Internet, since all that is asked
  // could be read on the way there. Any other is no service.
  // `longestWait` in milliseconds.
  explicit TAnnotationService(const QString &address, int longestWait = LongestWait);
  ~TAnnotationService() override;

  [[nodiscard]] bool IsThere() const { return m_address.isValid(); }
  // What the user agrees to send addresses to, in its ASCII form.
  [[nodiscard]] QString Host() const { return m_address.host(QUrl::FullyEncoded); }

  // Asks for the page; Answered comes later, and always, unless nothing can be asked: there is no service, the address
  // is no http or https one or too long, or, where it is not the user himself who wants it, too much is under way. An
  // answer that is kept is not asked for again, and one that failed not for the same page twice in a row, unless the
  // user himself wants it.
  void Ask(const QString &page, bool byUser = false);
  // Gives up what is under way. What is kept stays.
  void Stop();

  // What is asked for: the page's whole address but for user's name, password and fragment. Invalid where it may not be
  // asked for.
  [[nodiscard]] static QUrl RequestFor(const QUrl &service, const QString &page);

 Q_SIGNALS:
  // `page` as it was asked for. Where the service fails in any way there are no words.
  void Answered(const QString &page, const TAnnotatedWords &words);
  // It has just done so; before Answered.
  void Failed(const QString &page);

 private:
  struct TQuestion {
    QUrl request;   // as it was put first
    int redirects;  // that it may still be sent on
    QDeadlineTimer until;
  };
  void Send(const TQuestion &question, const QUrl &address);
  void Take(QNetworkReply *reply, const TQuestion &question);

  QUrl m_address;
  int m_longestWait;
  std::unique_ptr<QNetworkAccessManager> m_network;  // from the first question on
  QHash<QUrl, QStringList> m_underWay;               // the pages that were asked for by the same request
  QCache<QUrl, TAnnotatedWords> m_kept{MostKept};
  QUrl m_failed;  // the last request, where it did
};
