#include "ui/ink_icon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>

namespace {

constexpr double Ink = 0.8;    // how much of it there is: lines weigh more than letters
constexpr double Faint = 0.3;  // of what cannot be used now

class TInkEngine final : public QIconEngine {
 public:
  explicit TInkEngine(const QIcon &coloured) : m_coloured(coloured) {}

  QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override {
    if (mode == QIcon::Active) return m_coloured.pixmap(size, 1, QIcon::Normal, state);
    const bool isSelected = mode == QIcon::Selected;
    QColor ink = QGuiApplication::palette().color(QPalette::Active,
                                                  isSelected ? QPalette::HighlightedText : QPalette::ButtonText);
    ink.setAlphaF(float(mode == QIcon::Disabled ? Faint : isSelected ? 1 : Ink));
    // The desktop may change its colours at any time.
    const QString key = QStringLiteral("zv_ink_%1_%2_%3_%4x%5")
                            .arg(m_coloured.cacheKey())
                            .arg(int(state))
                            .arg(ink.rgba(), 0, 16)
                            .arg(size.width())
                            .arg(size.height());
    QPixmap inked;
    if (QPixmapCache::find(key, &inked)) return inked;
    inked = m_coloured.pixmap(size, 1, QIcon::Normal, state);
    if (inked.isNull()) return inked;
    // Its lines carry the ink evenly, whatever colours they have.
    QPainter painter(&inked);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(inked.rect(), ink);
    painter.end();
    QPixmapCache::insert(key, inked);
    return inked;
  }
  QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state, qreal) override {
    return pixmap(size, mode, state);
  }
  void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override {
    const qreal ratio = painter->device() != nullptr ? painter->device()->devicePixelRatio() : 1;
    painter->drawPixmap(rect, pixmap((QSizeF(rect.size()) * ratio).toSize(), mode, state));
  }
  QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State state) override {
    return m_coloured.actualSize(size, QIcon::Normal, state);
  }
  bool isNull() override { return m_coloured.isNull(); }
  QIconEngine *clone() const override { return new TInkEngine(m_coloured); }

 private:
  QIcon m_coloured;
};

}  // namespace

QIcon InkIcon(const QIcon &coloured) {
  return QIcon(new TInkEngine(coloured));
}
