#pragma once

#include <QObject>

class QLineEdit;

// Shows the host of the address in a line of text in full ink and the rest more quietly, so that it is seen at a glance
// whose page this is. While the line is being edited all of it is alike.
class THostEmphasis final : public QObject {
  Q_OBJECT

 public:
  // Of the line edit `edit`, which owns this object.
  explicit THostEmphasis(QLineEdit *edit);

  struct TRange {
    qsizetype start = 0;
    qsizetype length = 0;
    bool operator==(const TRange &) const = default;
  };
  // Where the host stands in an address with one ("scheme://user@host:port/…"), as shown or not; empty elsewhere.
  [[nodiscard]] static TRange HostIn(const QString &address);

  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  void Show();

  QLineEdit *m_edit;
  bool m_isShowing = false;
  bool m_hasFormats = false;
};
