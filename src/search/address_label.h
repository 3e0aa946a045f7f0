#pragma once

#include <QLabel>

// The label of the address bar (lblAddress). A double click makes the band that it stands in as narrow as the label,
// or, when the band is narrower than 100 pixels, as wide as there is room.
class TAddressLabel final : public QLabel {
  Q_OBJECT

 public:
  // `band` holds the label and the bar.
  TAddressLabel(const QString &text, QWidget *band);

 protected:
  void mouseDoubleClickEvent(QMouseEvent *event) override;

 private:
  QWidget *m_band;
};
