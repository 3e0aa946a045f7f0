#include <QTest>

#include "browser/tabs/tab_caption.h"
#include "support/data_row.h"

class TestTabCaption final : public QObject {
  Q_OBJECT

 private Q_SLOTS:

  void Caption_data() {
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("sticky");
    QTest::addColumn<int>("limit");
    QTest::addColumn<QString>("caption");

    const auto text = [](int length) { return QString(length, QLatin1Char('x')); };
    const QString dots = QStringLiteral("...");
    Row("short", "Hello", "", 35, "Hello");
    Row("as long as the limit", text(35), "", 35, text(35));
    Row("cut at the limit", text(36), "", 35, text(35) + dots);
    Row("no limit, fixed cut", text(51), "", 0, text(50) + dots);
    Row("no limit, 50 fit", text(50), "", 0, text(50));
    Row("limit above the fixed cut, shorter title", text(60), "", 80, text(50) + dots);
    Row("limit above the fixed cut, longer title", text(100), "", 80, text(80) + dots);
    Row("negative limit is none", text(51), "", -1, text(50) + dots);
    Row("sticky name is never cut", "Title", text(90), 10, text(90));
    Row("ampersands are doubled", "A & B && C", "", 35, "A && B &&&& C");
    Row("sticky ampersand", "Title", "R&D", 35, "R&&D");
    Row("blank", "about:blank", "", 35, "Nothing");
    Row("blank is compared exactly", "About:Blank", "", 35, "About:Blank");
    const QString face = QString::fromUcs4(U"\U0001F600");
    Row("a pair of surrogates stays whole", text(9) + face + text(9), "", 10, text(9) + dots);
    Row("empty", "", "", 35, "");
  }

  void Caption() {
    QFETCH(QString, title);
    QFETCH(QString, sticky);
    QFETCH(int, limit);
    QFETCH(QString, caption);
    QCOMPARE(TabCaption(title, sticky, limit, QStringLiteral("Nothing")), caption);
  }
};

QTEST_APPLESS_MAIN(TestTabCaption)
#include "test_tab_caption.moc"
