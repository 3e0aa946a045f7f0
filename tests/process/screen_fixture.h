#pragma once

#include <memory>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include "process/program_fixture.h"

// The built program on an X server in memory, with a window manager: what windows are to a desktop cannot be seen
// without either.
class TScreenFixture : public TProgramFixture {
 public:
  // Why there is no such screen here; empty when there is one to be had.
  [[nodiscard]] static QString Missing() {
    for (const char *name : {"Xvfb", "openbox", "xprop"}) {
      if (QStandardPaths::findExecutable(QLatin1String(name)).isEmpty()) {
        return QStringLiteral("%1 is not installed").arg(QLatin1String(name));
      }
    }
    return {};
  }
  // Starts both; programs are started there from now on.
  void BeginScreen() {
    m_folder = std::make_unique<QTemporaryDir>();
    // The server picks a free number by itself and writes it down when it is ready.
    QFile number(m_folder->filePath(QStringLiteral("display")));
    m_server = StartTool(QStringLiteral("sh"),
                         {QStringLiteral("-c"), QStringLiteral("exec Xvfb -displayfd 3 -screen 0 1280x900x24 "
                                                               "-nolisten tcp -noreset 3>'%1'")
                                                    .arg(number.fileName())});
    QTRY_VERIFY_WITH_TIMEOUT(number.size() > 1, Soon);
    QVERIFY(number.open(QFile::ReadOnly));
    qputenv("DISPLAY", ':' + number.readAll().trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("QT_LOGGING_RULES", qgetenv("QT_LOGGING_RULES") + ";qt.webenginecontext.*=false");
    m_manager = StartTool(QStringLiteral("openbox"), {});
    // It takes windows from when it has said that it is there.
    QTRY_VERIFY_WITH_TIMEOUT(Property({QStringLiteral("-root")}, "_NET_SUPPORTING_WM_CHECK").contains("0x"), Soon);
  }
  void EndScreen() {
    for (const auto *each : {&m_manager, &m_server}) {
      if (*each == nullptr) continue;
      (*each)->terminate();
      (*each)->waitForFinished();
    }
  }

  // A panel with a notification area, until the result goes. Null where none is installed, or nothing that minimizes.
  [[nodiscard]] static std::unique_ptr<QProcess> StartPanel() {
    for (const char *name : {"trayer", "xdotool"}) {
      if (QStandardPaths::findExecutable(QLatin1String(name)).isEmpty()) return nullptr;
    }
    auto panel = StartTool(QStringLiteral("trayer"), {});
    return QTest::qWaitFor([] { return !Window("trayer").isEmpty(); }, Soon) ? std::move(panel) : nullptr;
  }

  // What the window manager says that the program's window is, in names like _NET_WM_STATE_FULLSCREEN; "none" for a
  // plain window, empty when there is no window.
  [[nodiscard]] static QByteArray WindowState() {
    const QString window = Window("zarvela");
    if (window.isEmpty()) return {};
    const QByteArray state = Property({QStringLiteral("-id"), window}, "_NET_WM_STATE");
    return state.contains("_NET_WM_STATE_") ? state : QByteArray("none");
  }
  // As the button in the window's frame does.
  static void Minimize() {
    QProcess::execute(QStringLiteral("xdotool"), {QStringLiteral("windowminimize"), Window("zarvela")});
  }

 private:
  static std::unique_ptr<QProcess> StartTool(const QString &name, const QStringList &arguments) {
    auto tool = std::make_unique<QProcess>();
    tool->setStandardOutputFile(QProcess::nullDevice());
    tool->setStandardErrorFile(QProcess::nullDevice());
    tool->start(name, arguments);
    tool->waitForStarted();
    return tool;
  }
  // The number of the first window of that class that the window manager knows; empty when there is none.
  static QString Window(const char *className) {
    for (const QByteArray &window : Property({QStringLiteral("-root")}, "_NET_CLIENT_LIST").split(' ')) {
      const QByteArray id = window.trimmed().replace(",", QByteArray());
      if (!id.startsWith("0x")) continue;
      const QString place = QString::fromLatin1(id);
      if (Property({QStringLiteral("-id"), place}, "WM_CLASS").contains(className)) return place;
    }
    return {};
  }
  // What stands behind the property's name.
  static QByteArray Property(QStringList place, const char *name) {
    QProcess tool;
    tool.start(QStringLiteral("xprop"), place << QString::fromLatin1(name));
    tool.waitForFinished();
    const QByteArray line = tool.readAllStandardOutput();
    return line.mid(qstrlen(name));
  }

  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<QProcess> m_server;
  std::unique_ptr<QProcess> m_manager;
};
