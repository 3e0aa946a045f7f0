#pragma once

#include <functional>
#include <QWebEngineUrlSchemeHandler>

class TLanguage;
struct TWordSearch;

// Serves the program's own pages: the start page, and that of the search panel (see search_page.h). Other addresses of
// the scheme are not found.
class TStartPage final : public QWebEngineUrlSchemeHandler {
  Q_OBJECT

 public:
  static constexpr const char *Scheme = "zarvela";
  static constexpr const char *Address = "zarvela:start";

  // `searchFor` gives the search that words go to, see TPolicy::SearchFor.
  TStartPage(const TLanguage &language, std::function<TWordSearch(const QString &words)> searchFor,
             QObject *parent = nullptr);

  void requestStarted(QWebEngineUrlRequestJob *job) override;

 private:
  [[nodiscard]] QByteArray SearchPage() const;

  const TLanguage &m_language;
  std::function<TWordSearch(const QString &words)> m_searchFor;
};
