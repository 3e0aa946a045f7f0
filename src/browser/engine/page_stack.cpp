#include "browser/engine/page_stack.h"

#include <QApplication>
#include <utility>

#include "browser/engine/load_failure.h"
#include "browser/engine/policy.h"
#include "browser/page/page_notice.h"
#include "config/language.h"
#include "ui/shown_address.h"

TPageStack::TPageStack(const TLanguage &language, QWidget *browser)
    : QStackedWidget(browser), m_language(language), m_browser(browser), m_sheet(new QWidget) {
  // The colour of an empty page, so that nothing changes when the engine takes over.
  m_sheet->setObjectName(QStringLiteral("blankSheet"));
  QPalette white = m_sheet->palette();
  white.setColor(QPalette::Window, Qt::white);
  m_sheet->setPalette(white);
  m_sheet->setAutoFillBackground(true);
  m_sheet->setFocusPolicy(Qt::StrongFocus);
  addWidget(m_sheet);
  m_browser->setFocusProxy(m_sheet);

  // The engine's inner widgets come and go; the application knows where the keyboard went.
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget *old, QWidget *now) {
    if (now && isAncestorOf(now) && !(old && isAncestorOf(old))) Q_EMIT FocusReceived();
  });
}

void TPageStack::SetView(QWidget *view) {
  m_view = view;
  addWidget(view);
}

void TPageStack::ShowView() {
  if (std::exchange(m_isViewShown, true)) return;
  if (m_notice == TNotice::None) Show(m_view);
}

void TPageStack::Show(QWidget *widget) {
  const QWidget *focused = QApplication::focusWidget();
  const bool hadFocus = focused && (focused == this || isAncestorOf(focused));
  setCurrentWidget(widget);
  m_browser->setFocusProxy(widget);
  if (hadFocus) widget->setFocus();
}

void TPageStack::ShowNotice(TNotice kind, const TPageNoticeText &text) {
  if (!m_noticeWidget) {
    m_noticeWidget = new TPageNotice;
    addWidget(m_noticeWidget);
    connect(m_noticeWidget, &TPageNotice::PrimaryPressed, this, &TPageStack::OnPrimary);
    connect(m_noticeWidget, &TPageNotice::SecondaryPressed, this, &TPageStack::OnSecondary);
  }
  m_notice = kind;
  Q_EMIT NoticeChanged();
  m_noticeWidget->Show(text);
  Show(m_noticeWidget);
}

void TPageStack::HideNotice() {
  if (m_notice == TNotice::None) return;
  m_notice = TNotice::None;
  m_failedAddress = {};
  Show(m_isViewShown ? m_view : m_sheet);
  Q_EMIT NoticeChanged();
}

void TPageStack::OnPrimary() {
  if (m_notice == TNotice::LocalError && !m_searchAddress.isEmpty()) {
    Q_EMIT OpenWanted(TAddress(m_searchAddress));
  } else if (m_notice == TNotice::Certificate) {
    Q_EMIT BackWanted();
  } else {
    Q_EMIT RetryWanted();
  }
}

void TPageStack::OnSecondary() {
  if (m_notice == TNotice::Certificate) {
    Q_EMIT GoOnWanted(m_blockedHost);
  } else {
    Q_EMIT RetryWanted();
  }
}

void TPageStack::ShowLoadFailure(const TLoadFailure &failure) {
  ShowNotice(TNotice::LoadError, {.title = m_language.Text("PAGES", "ErrorTitle"),
                                  .text = FailureText(failure, m_language),
                                  .address = ShownAddress(AddressOf(failure.url)),
                                  .details = failure.name,
                                  .primary = m_language.Text("PAGES", "TryAgain")});
}

void TPageStack::ShowCertificateProblem(const TCertificateProblem &problem, const QUrl &page) {
  m_blockedHost = problem.url.host();
  TPageNoticeText text{.title = m_language.Text("PAGES", "CertificateTitle"),
                       .text = CertificateProblemText(problem, m_language),
                       .address = ShownAddress(AddressOf(page)),
                       .details = DescribeCertificate(problem.chain.value(0), m_language),
                       .primary = m_language.Text("PAGES", "GoBack")};
  if (problem.overridable) text.secondary = m_language.Text("PAGES", "GoOnAnyway");
  ShowNotice(TNotice::Certificate, text);
}

void TPageStack::ShowLocalFailure(const TAddress &address, const QString &text, const TWordSearch &search) {
  m_failedAddress = address;
  m_searchAddress = search.address;
  TPageNoticeText notice{.title = m_language.Text("PAGES", "ErrorTitle"),
                         .text = text,
                         .address = FailedText(),
                         .primary = m_language.Text("PAGES", "TryAgain")};
  if (!m_searchAddress.isEmpty()) {
    notice.secondary = std::exchange(notice.primary, m_language.Text("PAGES", "SearchInstead").arg(search.name));
  }
  ShowNotice(TNotice::LocalError, notice);
}

void TPageStack::ShowWrittenWindow(const TAddress &address) {
  m_failedAddress = address;
  ShowNotice(TNotice::WrittenWindow,
             {.title = m_language.Text("PAGES", "WrittenWindowTitle"),
              .text = m_language.Text("PAGES", "WrittenWindowText"),
              .address = ShownAddress(FailedText()),
              .primary = FailedText().isEmpty() ? QString() : m_language.Text("PAGES", "OpenItsAddress")});
}

void TPageStack::ShowCrash(const QUrl &page) {
  ShowNotice(TNotice::Crash, {.title = m_language.Text("PAGES", "CrashTitle"),
                              .text = m_language.Text("PAGES", "CrashText"),
                              .address = ShownAddress(AddressOf(page)),
                              .primary = m_language.Text("PAGES", "Reload")});
}
