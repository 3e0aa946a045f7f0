#include "browser/page/page_notice.h"

#include <algorithm>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/click_guard.h"
#include "ui/flow_layout.h"

namespace {

constexpr int ColumnWidth = 640;
constexpr int Margin = 32;
constexpr int NarrowShare = 16;  // of the width, for the margin where that is less
constexpr int Spacing = 12;
constexpr qreal TitleScale = 1.6;

// Long addresses have no blanks to break at.
constexpr QChar ZeroWidthSpace(0x200B);
constexpr int BreakEvery = 40;

QLabel *AddLabel(const char *name, bool selectable, QBoxLayout *layout) {
  auto *label = new QLabel;
  label->setObjectName(QLatin1String(name));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  if (selectable) {
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  }
  layout->addWidget(label);
  return label;
}

void SetText(QLabel *label, const QString &text) {
  label->setText(text);
  label->setVisible(!text.isEmpty());
}

QString Breakable(const QString &address) {
  QString text = address;
  for (qsizetype at = BreakEvery; at < text.size(); at += BreakEvery + 1) text.insert(at, ZeroWidthSpace);
  return text;
}

}  // namespace

TPageNotice::TPageNotice(QWidget *parent) : QScrollArea(parent) {
  setObjectName(QStringLiteral("pageNotice"));
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::StrongFocus);

  auto *column = new QWidget;
  column->setMaximumWidth(ColumnWidth);
  m_lines = new QVBoxLayout(column);
  QVBoxLayout *lines = m_lines;
  lines->setContentsMargins(Margin, Margin, Margin, Margin);
  lines->setSpacing(Spacing);
  m_title = AddLabel("lblNoticeTitle", false, lines);
  m_text = AddLabel("lblNoticeText", false, lines);
  m_address = AddLabel("lblNoticeAddress", true, lines);
  m_details = AddLabel("lblNoticeDetails", true, lines);
  // A narrow place, the side bar's, has them one below the other.
  auto *buttons = new TFlowLayout(Spacing);
  m_primary = new QPushButton;
  m_primary->setObjectName(QStringLiteral("cmdNoticePrimary"));
  m_primary->setDefault(true);
  m_primary->setAutoDefault(true);
  m_secondary = new QPushButton;
  m_secondary->setObjectName(QStringLiteral("cmdNoticeSecondary"));
  m_secondary->setAutoDefault(true);
  buttons->addWidget(m_primary);
  buttons->addWidget(m_secondary);
  lines->addSpacing(Spacing);
  lines->addLayout(buttons);
  lines->addStretch();

  auto *page = new QWidget;
  auto *centred = new QHBoxLayout(page);
  centred->setContentsMargins(0, 0, 0, 0);
  centred->addStretch(1);
  centred->addWidget(column, 100);
  centred->addStretch(1);
  page->setBackgroundRole(QPalette::Base);
  page->setAutoFillBackground(true);
  setWidget(page);
  setFocusProxy(m_primary);
  UpdateTitleFont();

  // What it offers may be to let somebody in.
  m_guard = new TClickGuard(this, {m_secondary});
  connect(m_primary, &QPushButton::clicked, this, &TPageNotice::PrimaryPressed);
  connect(m_secondary, &QPushButton::clicked, this, &TPageNotice::SecondaryPressed);
}

void TPageNotice::Show(const TPageNoticeText &text) {
  m_guard->Sleep();
  SetText(m_title, text.title);
  SetText(m_text, text.text);
  SetText(m_address, Breakable(text.address));
  // The engine's names of errors are one word of many parts.
  SetText(m_details, QString(text.details).replace(u'_', QStringLiteral("_") + ZeroWidthSpace));
  m_primary->setText(text.primary);
  m_primary->setVisible(!text.primary.isEmpty());
  m_secondary->setText(text.secondary);
  m_secondary->setVisible(!text.secondary.isEmpty());
  setAccessibleName(text.title);
  setAccessibleDescription(text.text);
}

void TPageNotice::resizeEvent(QResizeEvent *event) {
  const int margin = std::min(Margin, width() / NarrowShare);
  m_lines->setContentsMargins(margin, margin, margin, margin);
  QScrollArea::resizeEvent(event);
}

void TPageNotice::changeEvent(QEvent *event) {
  QScrollArea::changeEvent(event);
  if (event->type() == QEvent::FontChange) UpdateTitleFont();
}

void TPageNotice::UpdateTitleFont() {
  QFont big = font();
  if (big.pointSizeF() > 0) big.setPointSizeF(big.pointSizeF() * TitleScale);
  m_title->setFont(big);
}
