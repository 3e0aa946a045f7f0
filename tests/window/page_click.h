#pragma once

#include <QTest>
#include <QWebEnginePage>
#include <QWebEngineView>

#include "browser/engine/halvex_browser.h"

// What a script in the page answers, once it has run to its end.
inline QVariant AnswerOf(QWebEnginePage &page, const QString &script) {
  constexpr int LongestWait = 20000;  // milliseconds
  QVariant answer;
  bool isDone = false;
  page.runJavaScript(script, [&](const QVariant &value) {
    answer = value;
    isDone = true;
  });
  [&] { QTRY_VERIFY_WITH_TIMEOUT(isDone, LongestWait); }();
  return answer;
}

// Clicks once the page takes clicks, which is when it has been painted. The page's title is "painted" then.
inline void ClickPage(THalvexBrowser &browser, const QPoint &at, Qt::MouseButton button = Qt::LeftButton) {
  browser.EnginePage()->runJavaScript(
      QStringLiteral("requestAnimationFrame(() => requestAnimationFrame(() => document.title = 'painted'))"));
  QTRY_COMPARE(browser.LocationName(), QStringLiteral("painted"));
  QWidget *target = browser.findChild<QWebEngineView *>()->focusProxy();
  QVERIFY(target);
  QTest::mouseClick(target, button, {}, at);
}
