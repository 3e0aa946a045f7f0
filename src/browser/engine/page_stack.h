#pragma once

#include <QStackedWidget>

#include "browser/engine/address.h"

class TLanguage;
struct TWordSearch;
class TPageNotice;
struct TCertificateProblem;
struct TLoadFailure;
struct TPageNoticeText;

// What stands in the place of a page: a blank sheet until there is a view, the engine's view, or a notice that says why
// the page is not there, and remembers what it is about.
class TPageStack final : public QStackedWidget {
  Q_OBJECT

 public:
  // An address that the engine was never given fails locally: the page behind the notice lives on. So it does in a
  // window that another page has written into.
  enum class TNotice { None, LoadError, Certificate, Crash, LocalError, WrittenWindow };

  // Who gives `browser` the keyboard gives it to what stands here.
  TPageStack(const TLanguage &language, QWidget *browser);

  void SetView(QWidget *view);
  // The view takes the sheet's place for good.
  void ShowView();
  [[nodiscard]] TNotice Notice() const { return m_notice; }
  // What a local failure, or a window that was written into, is about.
  [[nodiscard]] const TAddress &FailedAddress() const { return m_failedAddress; }
  [[nodiscard]] QString FailedText() const { return m_failedAddress.Text().trimmed(); }

  void ShowLoadFailure(const TLoadFailure &failure);
  void ShowCertificateProblem(const TCertificateProblem &problem, const QUrl &page);
  void ShowCrash(const QUrl &page);
  // Where there is a search for what is no address, that is offered first.
  void ShowLocalFailure(const TAddress &address, const QString &text, const TWordSearch &search);
  // Another page wrote into the window before it had a page of its own; `address` is what can be opened instead.
  void ShowWrittenWindow(const TAddress &address);
  void HideNotice();

 Q_SIGNALS:
  // A notice is about to come or to go; Notice() tells already.
  void NoticeChanged();
  // The user has chosen one of the ways out that the notice offers.
  void RetryWanted();
  void OpenWanted(const TAddress &address);
  void BackWanted();                     // away from a site whose certificate is bad
  void GoOnWanted(const QString &host);  // to that site all the same
  // The keyboard came to what stands here from elsewhere.
  void FocusReceived();

 private:
  void OnPrimary();
  void OnSecondary();
  void ShowNotice(TNotice kind, const TPageNoticeText &text);
  void Show(QWidget *widget);

  const TLanguage &m_language;
  QWidget *m_browser;
  QWidget *m_sheet;
  QWidget *m_view = nullptr;
  bool m_isViewShown = false;
  TPageNotice *m_noticeWidget = nullptr;  // made with the first one
  TNotice m_notice = TNotice::None;
  TAddress m_failedAddress;
  QString m_blockedHost;    // whose certificate the last notice of that kind was about
  QString m_searchAddress;  // what the notice offers; empty where it offers none
};
