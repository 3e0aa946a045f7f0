#pragma once

#include <QTest>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineView>

#include "browser/engine/halvex_browser.h"

// What a script in the page answers, once it has run to its end. In a page without scripts of its own only one in the
// program's world answers anything.
inline QVariant AnswerOf(QWebEnginePage &page, const QString &script, quint32 world = QWebEngineScript::MainWorld) {
  constexpr int LongestWait = 20000;  // milliseconds
  QVariant answer;
  bool isDone = false;
  page.runJavaScript(script, world, [&](const QVariant &value) {
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
