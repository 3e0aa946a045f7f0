#pragma once

#include <QObject>

class QWebEnginePage;
class QWidget;
class TFindBar;
class TLanguage;
class TPageOverlay;

// Searches one page for what its find bar asks. The bar is made when it is first opened.
class TPageFinder final : public QObject {
  Q_OBJECT

 public:
  // The bar is laid over the page by `overlay`, at the trailing edge, and belongs to `browser`.
  TPageFinder(QWebEnginePage *page, TPageOverlay *overlay, const TLanguage &language, QWidget *browser);

  // Opens the bar with what is selected on the page.
  void Open();
  [[nodiscard]] bool WasOpened() const { return m_bar != nullptr; }
  // Nothing happens before the bar was opened.
  void FindNext(bool forward);
  void CloseBar();

 Q_SIGNALS:
  // The bar has gone; the keyboard goes back to the page.
  void Closed();

 private:
  void Find(const QString &text, bool forward, bool matchCase);

  QWebEnginePage *m_page;
  TPageOverlay *m_overlay;
  const TLanguage &m_language;
  QWidget *m_browser;
  TFindBar *m_bar = nullptr;
};
