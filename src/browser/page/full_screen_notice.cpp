#include "browser/page/full_screen_notice.h"

#include <QAccessible>
#include <QEvent>
#include <QGraphicsOpacityEffect>

#include "ui/motion.h"

namespace {

constexpr int ShownFor = 4000;  // ms until it begins to fade
constexpr int FadeTime = 600;   // ms
constexpr int Padding = 12;
constexpr int TopGap = 24;

}  // namespace

TFullScreenNotice::TFullScreenNotice(const QString &text, QWidget *over) : QLabel(text, over) {
  setObjectName("FullScreenNotice");
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignCenter);
  setWordWrap(true);
  setMargin(Padding);
  setAutoFillBackground(true);
  setFrameShape(QFrame::Box);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  auto *opacity = new QGraphicsOpacityEffect(this);
  opacity->setOpacity(1);
  setGraphicsEffect(opacity);
  m_fade.setTargetObject(opacity);
  m_fade.setPropertyName("opacity");
  m_fade.setDuration(FadeTime);
  m_fade.setEndValue(0.0);
  connect(&m_fade, &QPropertyAnimation::finished, this, &QObject::deleteLater);
  m_wait.setSingleShot(true);
  m_wait.setInterval(ShownFor);
  connect(&m_wait, &QTimer::timeout, this, [this] { Motion::IsReduced() ? deleteLater() : m_fade.start(); });
  over->installEventFilter(this);
  Place();
  show();
  raise();
  m_wait.start();
  QAccessibleEvent event(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

bool TFullScreenNotice::eventFilter(QObject *watched, QEvent *event) {
  if (watched == parent() && event->type() == QEvent::Resize) Place();
  return QLabel::eventFilter(watched, event);
}

void TFullScreenNotice::Place() {
  const QWidget &over = *parentWidget();
  const QSize oneLine = fontMetrics().size(Qt::TextSingleLine, text());
  const int width = qMin(oneLine.width() + 2 * Padding + 2 * frameWidth() + 4, over.width());
  const int height = heightForWidth(width);
  setGeometry((over.width() - width) / 2, qMin(TopGap, qMax(0, over.height() - height)), width, height);
}
