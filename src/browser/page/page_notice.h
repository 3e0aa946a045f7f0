#pragma once

#include <QScrollArea>

class QLabel;
class QPushButton;
class QVBoxLayout;
class TClickGuard;

// What a notice says. Empty texts show nothing, and an empty button text no button.
struct TPageNoticeText {
  QString title{};
  QString text{};
  QString address{};
  QString details{};
  QString primary{};  // the button that has the keyboard
  QString secondary{};
};

// What stands in the page's place when there is no page: a load error, a bad certificate, a dead renderer. It is made
// of widgets and not of HTML, so that no page can imitate it from inside or press its buttons.
class TPageNotice final : public QScrollArea {
  Q_OBJECT

 public:
  explicit TPageNotice(QWidget *parent = nullptr);

  void Show(const TPageNoticeText &text);

 Q_SIGNALS:
  void PrimaryPressed();
  void SecondaryPressed();

 protected:
  void changeEvent(QEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;

 private:
  void UpdateTitleFont();

  QVBoxLayout *m_lines = nullptr;
  QLabel *m_title = nullptr;
  QLabel *m_text = nullptr;
  QLabel *m_address = nullptr;
  QLabel *m_details = nullptr;
  QPushButton *m_primary = nullptr;
  QPushButton *m_secondary = nullptr;
  TClickGuard *m_guard = nullptr;
};
