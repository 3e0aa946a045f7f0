#pragma once

#include <QPointer>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <QWebEngineView>

#include "browser/engine/engine_page.h"
#include "browser/engine/halvex_browser.h"
#include "browser/engine/page_printing.h"
#include "browser/engine/zoom_table.h"
#include "browser/page/find_bar.h"
#include "browser/page/page_notice.h"
#include "browser/page/page_prompts.h"

class QWebEngineFullScreenRequest;

// The parts of a browser. One of three stands in the stack: the blank sheet, the engine's view, or a notice.
struct THalvexBrowser::TPrivate {
  // What the notice is about. An address that the engine was never given fails locally: the page behind it lives on.
  enum class TNotice { None, LoadError, Certificate, Crash, LocalError };

  TPrivate(THalvexBrowser *browser, QWidget *ownerWindow, TEngine &sharedEngine)
      : q(browser), owner(ownerWindow), engine(sharedEngine) {}

  void BuildFrame();
  void EnsureView();
  void ConnectPage();
  void Show(QWidget *widget);
  void GivePageTheFocus();

  void ShowNotice(TNotice kind, const TPageNoticeText &text);
  void HideNotice();
  void ShowLoadFailure(const TLoadFailure &failure);
  void ShowLocalFailure(const TAddress &address, const QString &text);
  [[nodiscard]] QString LocalText() const { return localAddress.Text().trimmed(); }
  void ShowCrash();
  void OnNoticePrimary();
  void OnNoticeSecondary();

  void OnCommitted(const QString &address);
  void OnFinished(const QString &address);
  void OnFullScreenRequested(QWebEngineFullScreenRequest request);
  void ShowPageMenu(const QPoint &position);
  void EnsureFindBar();
  void Find(const QString &text, bool forward, bool matchCase);
  void UpdateEncryptionLevel();
  void UpdateCommandStates();
  // Runs a command of the engine when there is a page to run it on.
  void Trigger(QWebEnginePage::WebAction action);
  [[nodiscard]] bool HasLivePage() const { return page && notice == TNotice::None; }
  // A tab's caption shows what was asked for until the page is known; this brings the page's own title back.
  void RepeatTitle();

  THalvexBrowser *q;
  QPointer<QWidget> owner;
  TEngine &engine;
  TDownloadControlOptionSet options;
  QVBoxLayout *layout = nullptr;
  QStackedWidget *stack = nullptr;
  QWidget *sheet = nullptr;
  QWebEngineView *view = nullptr;
  TEnginePage *page = nullptr;
  TPageNotice *noticeWidget = nullptr;
  TFindBar *findBar = nullptr;
  TPagePrompts *prompts = nullptr;
  TPagePrinting *printing = nullptr;
  QShortcut *escape = nullptr;
  TNotice notice = TNotice::None;
  TAddress localAddress;  // what a local failure was about
  QString blockedHost;    // whose certificate the notice is about
  bool blank = false;     // shown blank without ever having had a page
  bool fullScreen = false;
  bool canGoBack = false;
  bool canGoForward = false;
  TEncryptionLevel encryptionLevel = TEncryptionLevel::None;
  qreal zoom = ZoomFactors[MediumZoom];
};
