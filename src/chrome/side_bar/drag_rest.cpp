#include "chrome/side_bar/drag_rest.h"

#include <QDragEnterEvent>
#include <QTimer>
#include <QWidget>
#include <utility>

namespace {

constexpr int RestTime = 600;  // milliseconds

class TDragRest final : public QObject {
 public:
  TDragRest(QWidget *widget, std::function<void()> handler) : QObject(widget), m_handler(std::move(handler)) {
    m_timer.setSingleShot(true);
    m_timer.setInterval(RestTime);
    connect(&m_timer, &QTimer::timeout, this, [this] { m_handler(); });
    widget->installEventFilter(this);
  }

  bool eventFilter(QObject *, QEvent *event) override {
    switch (event->type()) {
      case QEvent::DragEnter:
        m_timer.start();
        // Who does not accept it here is not told where it goes on.
        event->accept();
        return true;
      case QEvent::DragMove:
        event->ignore();
        return true;
      case QEvent::DragLeave:
      case QEvent::Drop:
        m_timer.stop();
        return false;
      default:
        return false;
    }
  }

 private:
  std::function<void()> m_handler;
  QTimer m_timer{this};
};

}  // namespace

void WhenDragRests(QWidget *widget, const std::function<void()> &handler) {
  new TDragRest(widget, handler);
}
