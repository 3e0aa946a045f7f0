#include "chrome/main_status_bar.h"

#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QToolButton>
#include <utility>

#include "chrome/encryption_panel.h"
#include "chrome/status_offer.h"
#include "chrome/zone_panel.h"
#include "config/language.h"
#include "ui/frame_updates.h"
#include "ui/shown_text.h"

namespace {

constexpr int ProgressWidth = 120;
constexpr qsizetype LongestStatusText = 400;  // characters; a link may be of any length

// A label that gives way: a long text is cut at the right instead of widening the window.
class TElidedLabel final : public QLabel {
 public:
  using QLabel::QLabel;
  QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }
};

QLabel *MakePanel(QWidget *parent, const char *name) {
  auto *label = new TElidedLabel(parent);
  label->setObjectName(QString::fromLatin1(name));
  label->setTextFormat(Qt::PlainText);
  label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  return label;
}

QToolButton *MakeButton(QWidget *parent, const char *name) {
  auto *button = new QToolButton(parent);
  button->setObjectName(QString::fromLatin1(name));
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  button->hide();
  return button;
}

}  // namespace

TMainStatusBar::TMainStatusBar(const TLanguage &language, TFrameUpdates &updates, QWidget *parent)
    : QStatusBar(parent),
      m_language(language),
      m_updates(updates),
      m_text(MakePanel(this, "pnlStatusText")),
      m_note(MakePanel(this, "pnlStatusNote")),
      m_progress(new QProgressBar(this)),
      m_offer(new TStatusOffer(this)),
      m_pagesToCome(MakeButton(this, "tbPagesToCome")),
      m_stopped(MakeButton(this, "tbPopupsStopped")),
      m_annotations(MakeButton(this, "tbFlyswat")),
      m_zoom(MakeButton(this, "tbZoom")),
      m_downloads(MakeButton(this, "tbDownloadsActive")),
      m_security(new TEncryptionPanel(language, this)),
      m_zone(new TZonePanel(this)),
      m_stoppedMenu(new QMenu(this)) {
  setObjectName(QStringLiteral("StatusBar"));
  m_progress->setObjectName(QStringLiteral("ProgressBar"));
  m_progress->setFixedWidth(ProgressWidth);
  m_progress->setTextVisible(false);
  m_progress->setAccessibleName(language.Text("MAIN", "ProgressName"));
  m_progress->setMaximumHeight(fontMetrics().height());
  m_progress->hide();
  addWidget(m_text, 3);
  addWidget(m_note, 1);
  addPermanentWidget(m_progress);
  addPermanentWidget(m_offer);
  m_offer->hide();  // the bar shows what is added to it
  addPermanentWidget(m_pagesToCome);
  addPermanentWidget(m_stopped);
  m_stopped->setIcon(QIcon(QStringLiteral(":/icons/popup_blocked.svg")));
  m_stopped->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  m_stopped->setPopupMode(QToolButton::InstantPopup);
  m_stopped->setMenu(m_stoppedMenu);
  addPermanentWidget(m_annotations);
  addPermanentWidget(m_zoom);
  addPermanentWidget(m_downloads);
  addPermanentWidget(m_security);
  addPermanentWidget(m_zone);
  connect(m_zone, &TZonePanel::DoubleClicked, this, &TMainStatusBar::ZoneDoubleClicked);
  m_downloads->setIcon(QIcon(QStringLiteral(":/icons/downloads.svg")));
  m_downloads->show();
  ShowDownloads(0);
  m_downloads->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  connect(m_downloads, &QToolButton::clicked, this, &TMainStatusBar::DownloadsClicked);
  m_pagesToCome->setIcon(QIcon(QStringLiteral(":/icons/stop_all.svg")));
  m_pagesToCome->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  m_pagesToCome->setToolTip(language.Text("MAIN", "PagesToComeHint"));
  connect(m_pagesToCome, &QToolButton::clicked, this, &TMainStatusBar::StopPagesClicked);
  m_zoom->setToolTip(language.Text("MAIN", "ZoomHint"));
  connect(m_zoom, &QToolButton::clicked, this, &TMainStatusBar::ZoomClicked);
  connect(m_security, &TEncryptionPanel::clicked, this, &TMainStatusBar::SecurityClicked);
  connect(&updates, &TFrameUpdates::Show, this, &TMainStatusBar::ShowGathered);
}

void TMainStatusBar::ShowStatusText(const QString &text) {
  Gather(m_wantedText, Shortened(text, LongestStatusText));
}

void TMainStatusBar::ShowNote(const QString &text) {
  m_note->setText(text);
}

void TMainStatusBar::ShowNote(const QString &text, const QString &actionText, std::function<void()> action) {
  m_offer->Show(text, actionText, std::move(action));
}

void TMainStatusBar::ShowProgress(int percent) {
  Gather(m_wantedProgress, percent);
}

void TMainStatusBar::ShowSecurity(bool secure, TEncryptionLevel level) {
  m_security->Show(secure, level);
}

void TMainStatusBar::ShowZone(const QIcon &icon, const QString &name) {
  m_zone->Show(icon, name);
}

void TMainStatusBar::ShowZoom(int percent) {
  m_zoom->setVisible(percent != 100);
  m_zoom->setText(m_language.Text("MAIN", "ZoomLevel").arg(percent));
  m_zoom->setAccessibleName(m_language.Text("MAIN", "ZoomName").arg(m_zoom->text()));
}

void TMainStatusBar::ShowDownloads(int active) {
  m_downloads->setText(active > 0 ? QString::number(active) : QString());
  const QString text = active > 0 ? m_language.Text("MAIN", "DownloadsRunning").arg(active)
                                  : TLanguage::ShortHint(m_language.Text("MAIN", "DownloadsHint"));
  m_downloads->setToolTip(text);
  m_downloads->setAccessibleName(text);
}

void TMainStatusBar::ShowPagesToCome(int pages) {
  const bool isMore = pages > m_wantedPages;
  Gather(m_wantedPages, pages);
  // The user has just opened them.
  if (isMore) ShowGathered();
}

template <typename T>
void TMainStatusBar::Gather(T &wanted, const T &value) {
  if (wanted == value) return;
  wanted = value;
  m_isStale = true;
  m_updates.Ask();
}

void TMainStatusBar::ShowGathered() {
  if (!std::exchange(m_isStale, false)) return;
  m_text->setText(m_wantedText);
  m_pagesToCome->setVisible(m_wantedPages > 0);
  m_pagesToCome->setText(m_language.Text("MAIN", "PagesToCome").arg(m_wantedPages));
  if (m_progress->value() != m_wantedProgress) {
    // The toolkit's bar would paint at once, and the window be composed for it alone.
    m_progress->setUpdatesEnabled(false);
    m_progress->setValue(m_wantedProgress);
    m_progress->setUpdatesEnabled(true);
  }
  m_progress->setVisible(m_wantedProgress < 100);
}

void TMainStatusBar::ShowStopped(const QString &text) {
  m_stopped->setVisible(!text.isEmpty());
  m_stopped->setText(text);
}
