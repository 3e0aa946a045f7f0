#pragma once

#include <QObject>
#include <QString>

class QScrollBar;
class QToolButton;
class QWidget;
class TTabGeometry;

// What scrolls a strip with more tabs than room: two buttons for one row, a scroll bar for several.
class TTabScrollers final : public QObject {
  Q_OBJECT

 public:
  explicit TTabScrollers(QWidget *strip);

  void SetTexts(const QString &left, const QString &right);
  [[nodiscard]] int BarWidth() const;
  void Place(const TTabGeometry &geometry);
  void Show(const TTabGeometry &geometry);  // the offset, and which way it can still go

 Q_SIGNALS:
  void Stepped(int visualDirection);  // -1 to the left, 1 to the right
  void Scrolled(int offset);

 private:
  QToolButton *m_left;
  QToolButton *m_right;
  QScrollBar *m_bar;
};
