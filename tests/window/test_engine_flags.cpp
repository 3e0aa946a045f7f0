#include <QAccessible>
#include <QPalette>
#include <QWebEngineView>

#include "browser/engine/engine_flags.h"
#include "platform/desktop_wishes.h"
#include "support/data_row.h"
#include "window/browser_fixture.h"

// What the engine makes of a desktop that is dark, does not move, and has a screen reader.
class TestEngineFlags final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    m_f = std::make_unique<TBrowserFixture>();
    m_f->Begin();
    // As the toolkit does when a screen reader comes.
    QAccessible::setActive(true);
    m_f->Server().RoutePage("/page", "Page", "<h1>A heading to be read</h1><button>To press</button>");
    QVERIFY(m_f->OpenPath(u"/page"_s));
  }
  void cleanupTestCase() {
    m_f->End();
    m_f.reset();
  }

  void PagesAreTold_data() {
    Columns<QString>("query");
    Row("reduced motion", u"(prefers-reduced-motion: reduce)"_s);
#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0)
    // Later engines ask the desktop, which is nothing that a test could say in its stead.
    Row("dark", u"(prefers-color-scheme: dark)"_s);
#endif
  }
  void PagesAreTold() {
    QFETCH(QString, query);
    QVERIFY(m_f->Script(u"matchMedia('%1').matches"_s.arg(query)).toBool());
  }

  void PagesAreReadOut() {
    QStringList names;
    const auto isThere = [&] {
      names.clear();
      Gather(QAccessible::queryAccessibleInterface(m_f->Browser().window()), names);
      return names.contains(u"To press"_s) && names.contains(u"A heading to be read"_s);
    };
    QVERIFY2(QTest::qWaitFor(isThere, TBrowserFixture::LoadTime), qPrintable(names.join(u'\n')));
  }

  // What the user has set himself stays.
  void TheUsersOwn() {
    qputenv("QTWEBENGINE_ENABLE_LINUX_ACCESSIBILITY", "0");
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--blink-settings=preferredColorScheme=1");
    SetEngineFlags({.assistiveTechnology = true, .reducedMotion = true});
    QCOMPARE(qgetenv("QTWEBENGINE_ENABLE_LINUX_ACCESSIBILITY"), "0");
    QVERIFY(qgetenv("QTWEBENGINE_CHROMIUM_FLAGS").endsWith(" --blink-settings=preferredColorScheme=1"));
    for (const char *name : {"QTWEBENGINE_ENABLE_LINUX_ACCESSIBILITY", "QTWEBENGINE_CHROMIUM_FLAGS"}) qunsetenv(name);
    QApplication::setPalette(QPalette(Qt::white));
    SetEngineFlags({});
    for (const char *name : {"QTWEBENGINE_ENABLE_LINUX_ACCESSIBILITY", "QTWEBENGINE_CHROMIUM_FLAGS"}) {
      QVERIFY(!qEnvironmentVariableIsSet(name));
    }
  }

 private:
  static void Gather(QAccessibleInterface *part, QStringList &names) {
    if (part == nullptr || !part->isValid()) return;
    names.append(part->text(QAccessible::Name));
    for (int i = 0; i < part->childCount(); ++i) Gather(part->child(i), names);
  }

  std::unique_ptr<TBrowserFixture> m_f;
};

int main(int argc, char **argv) {
  TEngine::RegisterSchemes();
  QApplication application(argc, argv);
  QApplication::setPalette(QPalette(QColor(40, 40, 40)));
  SetEngineFlags({.assistiveTechnology = true, .reducedMotion = true});
  TestEngineFlags test;
  return QTest::qExec(&test, argc, argv);
}
#include "test_engine_flags.moc"
