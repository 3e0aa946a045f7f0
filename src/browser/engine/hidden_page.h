#pragma once

#include <memory>
#include <optional>
#include <QObject>
#include <QTimer>
#include <QUrl>

class QWebEnginePage;
class QWebEngineProfile;

// A page that nobody sees: it loads one address and tells the text that came. It leaves nothing behind and can do
// nothing: no cookies, no cache, no scripts, no pictures, no downloads, and not one request beside its own. It may be
// sent on to the same host, or anywhere by https.
class THiddenPage final : public QObject {
  Q_OBJECT

 public:
  static constexpr qsizetype Longest = 64 * 1024;  // characters that are read; then the load is stopped
  static constexpr int LongestWait = 30000;        // milliseconds

  // `longestWait` in milliseconds.
  explicit THiddenPage(QObject *parent = nullptr, int longestWait = LongestWait);
  ~THiddenPage() override;

  // Once in its life; exactly one of the signals follows, later.
  void Load(const QUrl &address);

 Q_SIGNALS:
  // The text of the document, one character longer than Longest at most; what is longer was cut off there.
  void Loaded(const QString &text);
  // There is no such document: no answer in time, an error, or nothing that a page would show.
  void Failed();

 private:
  class TPage;

  void Take(bool isThere);
  void End(const std::optional<QString> &text);

  QTimer m_deadline{this};
  QTimer m_look{this};  // at how large it is
  bool m_isTaking = false;
  bool m_hasEnded = false;
  std::unique_ptr<QWebEngineProfile> m_profile;
  std::unique_ptr<TPage> m_page;  // goes first, and may still answer then
};
