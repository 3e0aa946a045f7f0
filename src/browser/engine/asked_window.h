#pragma once

#include <QObject>

class QWebEngineNewWindowRequest;
class TEnginePage;
class TPageStack;
struct TNavigation;

// A window that another page asked for, until it has a page of its own: that may never come, and the empty document
// that it begins with may be written into by the page that asked.
class TAskedWindow final : public QObject {
  Q_OBJECT

 public:
  // `page` has not been navigated yet; both belong to the browser that becomes the window.
  TAskedWindow(TEnginePage *page, TPageStack *stack, QObject *parent);
  // The page's first navigation follows; a page of the site `maker` has asked for it.
  void Take(QWebEngineNewWindowRequest *request, const QUrl &maker);

 Q_SIGNALS:
  // What it was opened for became a download, belongs to another program, or has no content.
  void CameToNothing();
  // A notice stands in the place of what another page has written, and of where the window was to lead.
  void NoticeShown();

 private:
  void OnNavigate(TNavigation *navigation);
  void OnFinished();
  void TellNothing();
  void ShowWritten(const QString &address);

  TEnginePage *m_page;
  TPageStack *m_stack;
};
