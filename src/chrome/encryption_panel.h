#pragma once

#include <QToolButton>

#include "browser/page/encryption_level.h"

class TLanguage;

// A panel of the status bar: the padlock and the words for how well the connection to a secure page is protected. It
// gives way to its picture alone where the window is narrow.
class TEncryptionPanel final : public QToolButton {
  Q_OBJECT

 public:
  // `language` must outlive this object.
  TEncryptionPanel(const TLanguage &language, QWidget *parent);

  // Nothing for a page that is not secure. One that is has the padlock at each level: the words say what it is worth.
  void Show(bool secure, TEncryptionLevel level);
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent *event) override;

 private:
  const TLanguage &m_language;
};
