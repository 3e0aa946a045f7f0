#pragma once

#include <QComboBox>

// The address box (cboAddress): shows the active page's address and opens what is typed, with Enter in the current tab
// and with Alt+Enter in a new one.
class TAddressBox final : public QComboBox {
  Q_OBJECT

 public:
  explicit TAddressBox(QWidget *parent = nullptr);

  // The page's address. What the user is typing right now is not overwritten; Esc brings the address back.
  void ShowAddress(const QString &address);
  void FocusAll();
  // Opens what the box holds, in the current tab.
  void Go() { Open(false); }

 Q_SIGNALS:
  void OpenRequested(const QString &text, bool newTab);
  void Left();   // Esc with nothing to put back: the page wants the keyboard again.

 protected:
  bool event(QEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;
  void focusOutEvent(QFocusEvent *event) override;

 private:
  void PutBack();
  void Open(bool newTab);

  QString m_pageAddress;
  bool m_typed = false;
};
