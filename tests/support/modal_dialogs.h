#pragma once

#include <functional>
#include <QApplication>
#include <QTest>
#include <QTimer>

// Runs `act` on the modal dialog of type T as soon as one is open, so that a test can answer a call that blocks. When
// none comes the test fails, and whatever blocks instead is closed.
template <typename T>
void OnModalDialog(std::function<void(T &)> act) {
  constexpr int Interval = 10;  // ms
  constexpr int MostTries = 500;
  auto *timer = new QTimer(qApp);
  timer->setInterval(Interval);
  QObject::connect(timer, &QTimer::timeout, timer, [timer, act = std::move(act), tries = 0]() mutable {
    QWidget *open = QApplication::activeModalWidget();
    if (auto *dialog = qobject_cast<T *>(open)) {
      timer->stop();
      timer->deleteLater();
      act(*dialog);
    } else if (++tries > MostTries) {
      timer->stop();
      timer->deleteLater();
      QTest::qFail("the expected dialog did not open", __FILE__, __LINE__);
      if (open != nullptr) open->close();
    }
  });
  timer->start();
}
