#include "chrome/encryption_panel.h"

#include <QPainter>
#include <QStyleOptionFocusRect>

#include "chrome/status_panel_face.h"
#include "config/language.h"
#include "security/zone_images.h"

TEncryptionPanel::TEncryptionPanel(const TLanguage &language, QWidget *parent)
    : QToolButton(parent), m_language(language) {
  setObjectName(QStringLiteral("tbEncryption"));
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Preferred);
  setIcon(ZoneImages::Of(ZoneImages::Padlock));
  hide();
}

void TEncryptionPanel::Show(bool secure, TEncryptionLevel level) {
  setVisible(secure);
  const QString text = level == TEncryptionLevel::None ? QString() : m_language.Text(EncryptionText(level));
  if (this->text() == text) return;
  setText(text);
  setToolTip(text);
  setAccessibleName(text);
}

QSize TEncryptionPanel::sizeHint() const {
  return StatusPanelFace::Size(*this, text());
}

QSize TEncryptionPanel::minimumSizeHint() const {
  return StatusPanelFace::Size(*this, QString());
}

void TEncryptionPanel::paintEvent(QPaintEvent * /*event*/) {
  StatusPanelFace::Paint(*this, icon(), text());
  if (!hasFocus()) return;
  QPainter painter(this);
  QStyleOptionFocusRect focus;
  focus.initFrom(this);
  style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
}
