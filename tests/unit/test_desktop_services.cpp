#include <QDir>
#include <QFile>
#include <QTest>

#include "platform/desktop_services.h"
#include "support/data_row.h"

class TestDesktopServices final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void CommandLine_data() {
    Columns<QString, QStringList>("exec", "command");
    const QString file = QStringLiteral("/tmp/a b.htm");
    QTest::newRow("file") << "edit %f" << QStringList{"edit", file};
    QTest::newRow("address") << "edit %u" << QStringList{"edit", "file:///tmp/a%20b.htm"};
    QTest::newRow("no code") << "edit --new" << QStringList{"edit", "--new", file};
    QTest::newRow("dropped codes") << "edit %i %c %k -- %F" << QStringList{"edit", "--", file};
    QTest::newRow("quoted") << "\"my editor\" --file=%f" << QStringList{"my editor", "--file=" + file};
    QTest::newRow("percent") << "edit 100%% %f" << QStringList{"edit", "100%", file};
    QTest::newRow("lone percent at the end") << "edit %" << QStringList{"edit", "%", file};
    QTest::newRow("empty") << "" << QStringList{};
  }
  void CommandLine() {
    QFETCH(QString, exec);
    QTEST(DesktopServices::CommandLine(exec, QStringLiteral("/tmp/a b.htm")), "command");
  }

  void Editors() {
    const QDir folder(qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/applications"));
    QVERIFY(folder.mkpath(QStringLiteral(".")));
    const auto write = [&](const QString &name, const QByteArray &lines) {
      QFile file(folder.filePath(name));
      QVERIFY(file.open(QIODevice::WriteOnly));
      file.write("[Desktop Entry]\nType=Application\n" + lines);
    };
    write(QStringLiteral("zz-test-editor.desktop"), "Name=Z Test Editor\nExec=zz %F\nCategories=Utility;TextEditor;\n");
    write(QStringLiteral("zz-test-browser.desktop"),
          "Name=Z Test Browser\nExec=bb %u\nMimeType=text/html;\nCategories=Network;WebBrowser;TextEditor;\n");
    write(QStringLiteral("zz-test-hidden.desktop"), "Name=Z Hidden\nExec=hh\nNoDisplay=true\nCategories=TextEditor;\n");
    write(QStringLiteral("zz-test-broken.desktop"), QByteArray("\0\xff[[==\nCategories", 18));

    QStringList names;
    for (const DesktopServices::TEditor &editor : DesktopServices::Editors()) names.append(editor.name);
    QVERIFY(names.contains(QStringLiteral("Z Test Editor")));
    QVERIFY(!names.contains(QStringLiteral("Z Test Browser")));
    QVERIFY(!names.contains(QStringLiteral("Z Hidden")));
  }
};

QTEST_APPLESS_MAIN(TestDesktopServices)
#include "test_desktop_services.moc"
