#pragma once

#include <QMenu>
#include <QPointer>
#include <QUrl>
#include <QWebEngineContextMenuRequest>

class QWebEnginePage;
class TLanguage;

// What the page menu cannot do through the page alone.
enum class TPageMenuCommand { SaveAs, Print, Find, ViewSource, Properties };

// What lies under the place where the menu was asked for.
struct TPageMenuPlace {
  QUrl link{};
  QUrl media{};
  QWebEngineContextMenuRequest::MediaType mediaType = QWebEngineContextMenuRequest::MediaTypeNone;
  QWebEngineContextMenuRequest::MediaFlags mediaFlags{};
  QWebEngineContextMenuRequest::EditFlags editFlags{};
  bool hasSelection = false;
  bool editable = false;
  bool canGoBack = false;
  bool canGoForward = false;

  [[nodiscard]] static TPageMenuPlace Of(const QWebEngineContextMenuRequest &request, const QWebEnginePage &page);
};

// The context menu of a page. It holds only what works at the place; commands that the engine has are run on the page
// directly, the others are signalled. Open it with popup() or exec() like any menu.
class TPageMenu final : public QMenu {
  Q_OBJECT

 public:
  // The page must be shown by a view: the engine's link and image commands work on the view's last request.
  TPageMenu(const TLanguage &language, const TPageMenuPlace &place, QWebEnginePage *page, QWidget *parent = nullptr);

 Q_SIGNALS:
  // Open an address in a new tab, in front or in the background.
  void OpenRequested(const QString &address, bool background);
  void CommandRequested(TPageMenuCommand command);

 private:
  QPointer<QWebEnginePage> m_page;
};
