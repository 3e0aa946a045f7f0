#pragma once

#include <QObject>
#include <QString>

class QWebEngineNewWindowRequest;
class TEnginePage;
struct TNavigation;

// Knows the names of the frames and windows that a page's links and forms are to open in, which the engine tells
// nobody. Scripts in the page write them to its console, each with a word in front that the page does not know.
class TLinkTargets final : public QObject {
  Q_OBJECT

 public:
  // For the documents that `page` loads from now on; belongs to it.
  explicit TLinkTargets(TEnginePage *page);

  // Adds what is known to a navigation of the page.
  void Fill(TNavigation &navigation) const;
  // What another window is asked for as, before there is one.
  [[nodiscard]] TNavigation NavigationOf(const QWebEngineNewWindowRequest &request);

 private:
  void Hear(const QString &message);

  QString m_token;
  QString m_base;  // the target of the document's base element
  QString m_open;  // the name in what is being followed, while it is
};
