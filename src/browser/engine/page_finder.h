#pragma once

#include <QObject>

class QVBoxLayout;
class QWebEnginePage;
class QWidget;
class TFindBar;
class TLanguage;

// Searches one page for what its find bar asks. The bar is made when it is first opened.
class TPageFinder final : public QObject {
  Q_OBJECT

 public:
  // The bar is put at the end of `layout` and belongs to `browser`.
  TPageFinder(QWebEnginePage *page, QVBoxLayout *layout, const TLanguage &language, QWidget *browser);

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
  QVBoxLayout *m_layout;
  const TLanguage &m_language;
  QWidget *m_browser;
  TFindBar *m_bar = nullptr;
};
