#pragma once

#include <QWebEngineUrlSchemeHandler>

class TLanguage;

// Serves the program's own pages. There is one, the start page; other addresses of the scheme are not found.
class TStartPage final : public QWebEngineUrlSchemeHandler {
  Q_OBJECT

 public:
  static constexpr const char *Scheme = "zarvela";
  static constexpr const char *Address = "zarvela:start";

  explicit TStartPage(const TLanguage &language, QObject *parent = nullptr);

  void requestStarted(QWebEngineUrlRequestJob *job) override;

 private:
  const TLanguage &m_language;
};
