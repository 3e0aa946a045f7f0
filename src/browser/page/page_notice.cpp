#include "browser/page/page_notice.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/click_guard.h"

namespace {

constexpr int ColumnWidth = 640;
constexpr int Margin = 32;
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
  auto *lines = new QVBoxLayout(column);
  lines->setContentsMargins(Margin, Margin, Margin, Margin);
  lines->setSpacing(Spacing);
  m_title = AddLabel("lblNoticeTitle", false, lines);
  m_text = AddLabel("lblNoticeText", false, lines);
  m_address = AddLabel("lblNoticeAddress", true, lines);
  m_details = AddLabel("lblNoticeDetails", true, lines);
  auto *buttons = new QHBoxLayout;
  m_primary = new QPushButton;
  m_primary->setObjectName(QStringLiteral("cmdNoticePrimary"));
  m_primary->setDefault(true);
  m_primary->setAutoDefault(true);
  m_secondary = new QPushButton;
  m_secondary->setObjectName(QStringLiteral("cmdNoticeSecondary"));
  m_secondary->setAutoDefault(true);
  buttons->addWidget(m_primary);
  buttons->addWidget(m_secondary);
  buttons->addStretch();
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
  SetText(m_details, text.details);
  m_primary->setText(text.primary);
  m_primary->setVisible(!text.primary.isEmpty());
  m_secondary->setText(text.secondary);
  m_secondary->setVisible(!text.secondary.isEmpty());
  setAccessibleName(text.title);
  setAccessibleDescription(text.text);
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
