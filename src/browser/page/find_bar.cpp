#include "browser/page/find_bar.h"

#include <QCheckBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QToolButton>

#include "config/language.h"
#include "ui/close_button.h"
#include "ui/flow_layout.h"

namespace {

constexpr int TypingPause = 200;  // ms without a key before the page is searched
constexpr int LongestText = 1000;
constexpr int TextWidthInCharacters = 24;
constexpr int Margin = 8;
constexpr int Distance = 6;
constexpr qreal WarningShare = 0.35;  // how much red the box takes when nothing matches

QToolButton *MakeButton(QWidget *parent, Qt::ArrowType arrow, const QString &text) {
  auto *button = new QToolButton(parent);
  button->setArrowType(arrow);
  button->setToolTip(text);
  button->setAccessibleName(text);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

QColor Mix(const QColor &ground, const QColor &tint) {
  const auto part = [](int a, int b) { return qRound(a * (1 - WarningShare) + b * WarningShare); };
  return QColor(part(ground.red(), tint.red()), part(ground.green(), tint.green()), part(ground.blue(), tint.blue()));
}

}  // namespace

TFindBar::TFindBar(const TLanguage &language, QWidget *parent) : TFloatingPanel(parent), m_language(language) {
  setObjectName("FindBar");
  m_text = new QLineEdit(this);
  m_text->setObjectName("txtFind");
  m_text->setMaxLength(LongestText);
  m_text->setClearButtonEnabled(true);
  m_text->setPlaceholderText(language.Text("FIND_BAR", "Prompt"));
  m_text->setAccessibleName(language.Text("FIND_BAR", "Prompt"));
  m_text->setFixedWidth(fontMetrics().averageCharWidth() * TextWidthInCharacters);
  m_previous = MakeButton(this, Qt::UpArrow, language.Text("FIND_BAR", "Previous"));
  m_previous->setObjectName("cmdPrevious");
  m_next = MakeButton(this, Qt::DownArrow, language.Text("FIND_BAR", "Next"));
  m_next->setObjectName("cmdNext");
  m_matchCase = new QCheckBox(language.Text("FIND_BAR", "MatchCase"), this);
  m_matchCase->setObjectName("chkMatchCase");
  m_wrap = new QCheckBox(language.Text("FIND_BAR", "Wrap"), this);
  m_wrap->setObjectName("chkWrap");
  m_wrap->setChecked(true);
  m_result = new QLabel(this);
  m_result->setObjectName("lblResult");
  m_result->setTextFormat(Qt::PlainText);
  auto *close = new TCloseButton(language.Text("FIND_BAR", "Close"), this);

  // So that the panel keeps its size while something is typed.
  m_result->setFixedWidth(LongestResult());

  auto *layout = new QHBoxLayout(this);
  layout->setContentsMargins(Margin, Margin, Margin, Margin);
  auto *rows = new TFlowLayout(Distance);
  for (QWidget *widget :
       {static_cast<QWidget *>(m_text), static_cast<QWidget *>(m_previous), static_cast<QWidget *>(m_next),
        static_cast<QWidget *>(m_result), static_cast<QWidget *>(m_matchCase), static_cast<QWidget *>(m_wrap)}) {
    rows->addWidget(widget);
  }
  layout->addLayout(rows, 1);
  layout->addWidget(close, 0, Qt::AlignTop);

  m_typing.setSingleShot(true);
  m_typing.setInterval(TypingPause);
  connect(&m_typing, &QTimer::timeout, this, &TFindBar::FindFromTyping);
  connect(m_text, &QLineEdit::textChanged, &m_typing, qOverload<>(&QTimer::start));
  connect(m_matchCase, &QCheckBox::toggled, this, &TFindBar::FindFromTyping);
  connect(m_previous, &QToolButton::clicked, this, [this] { FindNext(false); });
  connect(m_next, &QToolButton::clicked, this, [this] { FindNext(true); });
  connect(close, &QToolButton::clicked, this, &TFindBar::Close);
  hide();
}

int TFindBar::LongestResult() const {
  constexpr int Many = 9999;
  int longest = 0;
  for (const QString &text :
       {m_language.Text("FIND_BAR", "NoMatches"), m_language.Text("FIND_BAR", "LastMatch"),
        m_language.Text("FIND_BAR", "FirstMatch"), m_language.Text("FIND_BAR", "Count").arg(Many).arg(Many)}) {
    longest = qMax(longest, fontMetrics().horizontalAdvance(text));
  }
  return longest;
}

QString TFindBar::SearchText() const {
  return m_text->text();
}

void TFindBar::Open(const QString &initialText) {
  show();
  const QString line = initialText.trimmed().section(QRegularExpression("[\\r\\n\\x{2028}\\x{2029}]"), 0, 0);
  if (!line.isEmpty()) m_text->setText(line.left(LongestText));
  m_text->setFocus(Qt::ShortcutFocusReason);
  m_text->selectAll();
  FindFromTyping();
}

void TFindBar::Close() {
  m_typing.stop();
  hide();
  Q_EMIT Closed();
}

void TFindBar::ShowResult(int active, int total) {
  m_active = active;
  m_total = total;
  const bool searching = !m_text->text().isEmpty();
  ShowNoMatches(searching && total == 0);
  if (!searching) {
    m_result->clear();
  } else if (total == 0) {
    m_result->setText(m_language.Text("FIND_BAR", "NoMatches"));
  } else {
    m_result->setText(m_language.Text("FIND_BAR", "Count").arg(qMax(active, 1)).arg(total));
  }
}

void TFindBar::FindNext(bool forward) {
  if (m_text->text().isEmpty()) return Open({});
  show();
  // What was typed a moment ago is searched for first; it finds the first match by itself.
  if (m_typing.isActive()) return FindFromTyping();
  const bool atEnd = m_total > 0 && (forward ? m_active >= m_total : m_active <= 1);
  if (atEnd && !m_wrap->isChecked()) {
    m_result->setText(forward ? m_language.Text("FIND_BAR", "LastMatch") : m_language.Text("FIND_BAR", "FirstMatch"));
    return;
  }
  Q_EMIT FindRequested(m_text->text(), forward, m_matchCase->isChecked(), m_wrap->isChecked());
}

void TFindBar::FindFromTyping() {
  m_typing.stop();
  m_active = 0;
  m_total = 0;
  if (m_text->text().isEmpty()) ShowResult(0, 0);
  Q_EMIT FindRequested(m_text->text(), true, m_matchCase->isChecked(), m_wrap->isChecked());
}

// The box turns reddish on top of whatever the palette has; the text beside it says the same in words.
void TFindBar::ShowNoMatches(bool none) {
  m_noMatches = none;
  QPalette colours = palette();
  if (none) colours.setColor(QPalette::Base, Mix(colours.color(QPalette::Base), Qt::red));
  m_text->setPalette(colours);
}

bool TFindBar::event(QEvent *event) {
  return ClaimEscape(*event) || TFloatingPanel::event(event);
}

void TFindBar::keyPressEvent(QKeyEvent *event) {
  switch (event->key()) {
    case Qt::Key_Escape:
      return Close();
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return FindNext(!event->modifiers().testFlag(Qt::ShiftModifier));
    default:
      TFloatingPanel::keyPressEvent(event);
  }
}

void TFindBar::changeEvent(QEvent *event) {
  TFloatingPanel::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) ShowNoMatches(m_noMatches);
}
