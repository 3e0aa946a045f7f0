#pragma once

#include <memory>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMainWindow>
#include <QTemporaryDir>
#include <QTest>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/close_all.h"
#include "browser/tabs/load_queue.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/options.h"
#include "groups/group_pages.h"
#include "support/test_server.h"

inline constexpr int LoadTime = 20000;  // milliseconds

// A window with tabs, page groups and a local server that has the pages /page0 to /page199 ("Page 0" and so on) and
// /silent, which never answers.
class TGroupsFixture {
 public:
  // Once for all tests.
  void Prepare() {
    QVERIFY(language.LoadFile(QStringLiteral(ZV_SOURCE_DIR "/Languages/zveng.ini")));
    QVERIFY(server.Listen());
    for (int i = 0; i < 200; ++i) server.RoutePage("/page" + QByteArray::number(i), "Page " + QByteArray::number(i));
    server.Route("/silent", TTestResponse{.neverAnswer = true});
  }
  // With one empty tab.
  void Begin() {
    m_temporary = std::make_unique<QTemporaryDir>();
    store = std::make_unique<TRegistryStore>(m_temporary->filePath(QStringLiteral("registry.sqlite")));
    m_engine = std::make_unique<TEngine>(language, *store);
    environment.reset(new TTabEnvironment{*m_engine, language, *store, {}, {}});
    window = std::make_unique<QMainWindow>();
    auto *pages = new TZVPageControl(window.get());
    window->setCentralWidget(pages);
    window->resize(800, 600);
    window->show();
    tabs = std::make_unique<TTabStrip>(window.get(), pages, *environment);
    closeAll = std::make_unique<TCloseAllTabs>(window.get(), *tabs);
    queue = std::make_unique<TLoadQueue>(*tabs);
    groups = std::make_unique<TPageGroups>(window.get(), *tabs, *closeAll, *queue, language, *store);
    tabs->NewTab();
    server.ForgetRequests();
  }
  void End() {
    groups.reset();
    queue.reset();
    closeAll.reset();
    tabs.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    window.reset();
    environment.reset();
    m_engine.reset();
    store.reset();
    m_temporary.reset();
    QDir(TGroupFolder::Path()).removeRecursively();
  }

  // Writes a group file of these lines; its path, or empty.
  [[nodiscard]] static QString Put(const QString &name, const QString &lines) {
    const QString path = TGroupFolder::Path() + QLatin1Char('/') + name;
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    const QByteArray bytes = "[HalvexGroup]\n" + lines.toUtf8() + '\n';
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? path : QString();
  }
  // The lines of a group file without its section.
  [[nodiscard]] static QString Lines(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    return QString::fromUtf8(file.readAll()).section(QLatin1Char('\n'), 1).trimmed();
  }
  [[nodiscard]] QString Page(int number) const { return server.Url(QStringLiteral("/page%1").arg(number)); }
  // The lines "n0" and so on for the first pages.
  [[nodiscard]] QString LinesOf(int pages) const {
    QStringList lines;
    for (int i = 0; i < pages; ++i) lines.append(QStringLiteral("n%1=%2").arg(QString::number(i), Page(i)));
    return lines.join(QLatin1Char('\n'));
  }

  TTestServer server;
  TLanguage language;
  std::unique_ptr<TRegistryStore> store;
  std::unique_ptr<TTabEnvironment> environment;
  std::unique_ptr<QMainWindow> window;
  std::unique_ptr<TTabStrip> tabs;
  std::unique_ptr<TCloseAllTabs> closeAll;
  std::unique_ptr<TLoadQueue> queue;
  std::unique_ptr<TPageGroups> groups;

 private:
  std::unique_ptr<QTemporaryDir> m_temporary;
  std::unique_ptr<TEngine> m_engine;
};

// Runs the tests of `T` with the engine's schemes known.
template <typename T>
int RunWithEngine(int argc, char **argv) {
  TEngine::RegisterSchemes();
  QApplication application(argc, argv);
  T test;
  return QTest::qExec(&test, argc, argv);
}
