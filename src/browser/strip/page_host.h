#pragma once

#include <QPointer>
#include <QWidget>

// Holds the pages, of which only one is on screen. The others keep the size they had: resizing the window touches one
// page, not five hundred.
class TPageHost final : public QWidget {
  Q_OBJECT

 public:
  explicit TPageHost(QWidget *parent);

  void Take(QWidget *page);  // as a child that is not shown
  // Shows this page and hides the one before. When the keyboard was in that one, it goes over to the new one.
  void Present(QWidget *page);
  void FocusPage(Qt::FocusReason reason);

 Q_SIGNALS:
  // Somebody took a page away: it was deleted, or given to another parent. Use the pointer as a key only.
  void PageGone(QObject *page);

 protected:
  void childEvent(QChildEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;

 private:
  QPointer<QWidget> m_page;
};
