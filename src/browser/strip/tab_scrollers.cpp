#include "browser/strip/tab_scrollers.h"

#include <QScrollBar>
#include <QSignalBlocker>
#include <QToolButton>
#include "browser/strip/tab_geometry.h"

TTabScrollers::TTabScrollers(QWidget *strip)
    : QObject(strip),
      m_left(new QToolButton(strip)),
      m_right(new QToolButton(strip)),
      m_bar(new QScrollBar(Qt::Vertical, strip)) {
  for (QToolButton *button : {m_left, m_right}) {
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->hide();
  }
  m_left->setArrowType(Qt::LeftArrow);
  m_right->setArrowType(Qt::RightArrow);
  m_left->setObjectName(QStringLiteral("tbScrollLeft"));
  m_right->setObjectName(QStringLiteral("tbScrollRight"));
  m_bar->setObjectName(QStringLiteral("sbRows"));
  m_bar->setFocusPolicy(Qt::NoFocus);
  m_bar->hide();
  connect(m_left, &QToolButton::clicked, this, [this] { Q_EMIT Stepped(-1); });
  connect(m_right, &QToolButton::clicked, this, [this] { Q_EMIT Stepped(1); });
  connect(m_bar, &QScrollBar::valueChanged, this, &TTabScrollers::Scrolled);
}

void TTabScrollers::SetTexts(const QString &left, const QString &right) {
  m_left->setToolTip(left);
  m_left->setAccessibleName(left);
  m_right->setToolTip(right);
  m_right->setAccessibleName(right);
}

int TTabScrollers::BarWidth() const {
  return m_bar->sizeHint().width();
}

void TTabScrollers::Place(const TTabGeometry &geometry) {
  const bool line = geometry.Overflows() && !geometry.multiple;
  const bool rows = geometry.Overflows() && geometry.multiple;
  if (line) {
    const QSize size(geometry.metrics.rowHeight, geometry.metrics.rowHeight);
    // The left one stays on the left in every reading direction: it scrolls to where it points.
    const bool mirrored = geometry.direction == Qt::RightToLeft;
    m_left->setGeometry(geometry.BesideArea(mirrored ? size.width() : 0, size));
    m_right->setGeometry(geometry.BesideArea(mirrored ? 0 : size.width(), size));
  }
  m_left->setVisible(line);
  m_right->setVisible(line);
  if (rows) {
    m_bar->setGeometry(geometry.BesideArea(0, QSize(BarWidth(), geometry.Area().height())));
    const QSignalBlocker quiet(m_bar);
    m_bar->setRange(0, geometry.GreatestOffset());
    m_bar->setPageStep(geometry.RowsShown());
  }
  m_bar->setVisible(rows);
}

void TTabScrollers::Show(const TTabGeometry &geometry) {
  const bool mirrored = geometry.direction == Qt::RightToLeft;
  const bool back = geometry.Offset() > 0;
  const bool on = geometry.Offset() < geometry.GreatestOffset();
  m_left->setEnabled(mirrored ? on : back);
  m_right->setEnabled(mirrored ? back : on);
  if (!geometry.multiple) return;
  const QSignalBlocker quiet(m_bar);
  m_bar->setValue(geometry.Offset());
}
