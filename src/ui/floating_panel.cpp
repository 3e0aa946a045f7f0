#include "ui/floating_panel.h"

#include <QEvent>
#include <QPainter>

namespace {

constexpr int Reach = 10;  // of the shadow, in pixels
constexpr int Drop = 3;    // how much lower it lies
constexpr int Darkest = 50;
constexpr qreal Radius = 8;
constexpr float HairlineInk = 0.25F;

class TShadow final : public QWidget {
 public:
  explicit TShadow(QWidget *parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
  }

 protected:
  void paintEvent(QPaintEvent *) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    // Rings that lie over each other: the inner ones are covered by all.
    painter.setBrush(QColor(0, 0, 0, Darkest / Reach));
    for (int ring = 0; ring < Reach; ++ring) {
      const QRectF place = QRectF(rect()).adjusted(ring, ring, -ring, -ring);
      painter.drawRoundedRect(place, Radius + Reach - ring, Radius + Reach - ring);
    }
  }
};

}  // namespace

TFloatingPanel::TFloatingPanel(QWidget *parent) : QWidget(parent) {
  FollowWithShadow();
}

TFloatingPanel::~TFloatingPanel() {
  delete m_shadow;
}

void TFloatingPanel::FollowWithShadow() {
  if (m_shadow != nullptr && m_shadow->parentWidget() != parentWidget()) delete m_shadow;
  if (parentWidget() == nullptr) return;
  if (m_shadow == nullptr) m_shadow = new TShadow(parentWidget());
  m_shadow->setGeometry(geometry().adjusted(-Reach, -Reach + Drop, Reach, Reach + Drop));
  m_shadow->stackUnder(this);
  m_shadow->setVisible(!isHidden());
}

bool TFloatingPanel::event(QEvent *event) {
  switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::ParentChange:
    case QEvent::ZOrderChange:
    case QEvent::ShowToParent:
    case QEvent::HideToParent:
      FollowWithShadow();
      break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
      // Nothing of it is for what lies around.
      QWidget::event(event);
      event->accept();
      return true;
    default:
      break;
  }
  return QWidget::event(event);
}

void TFloatingPanel::paintEvent(QPaintEvent *) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor hairline = palette().color(QPalette::WindowText);
  hairline.setAlphaF(HairlineInk);
  painter.setPen(QPen(hairline, 1));
  painter.setBrush(palette().color(QPalette::Window));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Radius, Radius);
}
