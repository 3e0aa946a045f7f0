#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include "browser/page/find_bar.h"
#include "config/language.h"
#include "support/data_row.h"

using namespace Qt::StringLiterals;

class TestFindBar final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QVERIFY(m_language.LoadFile(QStringLiteral(ZV_SOURCE_DIR "/Languages/zveng.ini"))); }

  void init() {
    m_window = std::make_unique<QWidget>();
    m_bar = new TFindBar(m_language, m_window.get());
    m_requests = std::make_unique<QSignalSpy>(m_bar, &TFindBar::FindRequested);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
  }

  void typingSearchesOnce() {
    m_bar->FindNext(true);  // without a text to look for
    QVERIFY(m_bar->isVisible() && Box().hasFocus());
    m_requests->clear();
    QTest::keyClicks(&Box(), "word");
    QTRY_COMPARE(m_requests->size(), 1);
    QCOMPARE(TakeRequest(), (QList<QVariant>{u"word"_s, true, false, true}));
    // Emptying the box takes the matches away.
    Box().clear();
    QTRY_COMPARE(m_requests->size(), 1);
    QCOMPARE(TakeRequest().first().toString(), QString());
    m_bar->findChild<QCheckBox *>("chkMatchCase")->click();
    QCOMPARE(TakeRequest().at(2).toBool(), true);
  }

  void keysWalkMatches() {
    m_bar->Open(u"word"_s);
    m_bar->ShowResult(1, 3);
    m_requests->clear();
    QTest::keyClick(&Box(), Qt::Key_Return);
    QCOMPARE(TakeRequest().at(1).toBool(), true);
    QTest::keyClick(&Box(), Qt::Key_Return, Qt::ShiftModifier);
    QCOMPARE(TakeRequest().at(1).toBool(), false);
    m_bar->findChild<QToolButton *>("cmdNext")->click();
    QCOMPARE(TakeRequest().at(1).toBool(), true);
    // Enter right after typing searches for what was typed, once.
    QTest::keyClicks(&Box(), "x");
    QTest::keyClick(&Box(), Qt::Key_Return);
    QCOMPARE(m_requests->size(), 1);
    QCOMPARE(TakeRequest().first().toString(), u"x"_s);
  }

  void withoutWrapItStopsAtTheEnds() {
    m_bar->Open(u"word"_s);
    m_bar->findChild<QCheckBox *>("chkWrap")->setChecked(false);
    m_bar->ShowResult(3, 3);
    m_requests->clear();
    m_bar->FindNext(true);
    QVERIFY(m_requests->isEmpty());
    QCOMPARE(Result(), m_language.Text("FIND_BAR", "LastMatch"));
    m_bar->FindNext(false);
    QCOMPARE(TakeRequest(), (QList<QVariant>{u"word"_s, false, false, false}));
    m_bar->ShowResult(1, 3);
    m_bar->FindNext(false);
    QVERIFY(m_requests->isEmpty());
    QCOMPARE(Result(), m_language.Text("FIND_BAR", "FirstMatch"));
  }

  void resultInWords_data() {
    Columns<QString, int, int, QString>("text", "active", "total", "words");
    Row("some", "a", 3, 17, "3 of 17");
    Row("none", "a", 0, 0, "No matches");
    Row("found, none active yet", "a", 0, 2, "1 of 2");
    Row("nothing looked for", "", 0, 0, "");
  }
  void resultInWords() {
    QFETCH(QString, text);
    QFETCH(int, active);
    QFETCH(int, total);
    m_bar->Open(text);
    m_bar->ShowResult(active, total);
    QTEST(Result(), "words");
  }

  void noMatchTurnsTheBox() {
    m_bar->Open(u"word"_s);
    const QColor normal = Box().palette().color(QPalette::Base);
    m_bar->ShowResult(0, 0);
    QVERIFY(Box().palette().color(QPalette::Base) != normal);
    m_bar->ShowResult(1, 1);
    QCOMPARE(Box().palette().color(QPalette::Base), normal);
    // A dark palette that comes meanwhile is taken up.
    m_bar->ShowResult(0, 0);
    QPalette dark;
    dark.setColor(QPalette::Base, QColor(20, 20, 20));
    dark.setColor(QPalette::Text, Qt::white);
    m_bar->setPalette(dark);
    QTRY_VERIFY(Box().palette().color(QPalette::Base).lightness() < 80);
    QVERIFY(Box().palette().color(QPalette::Base) != QColor(20, 20, 20));
    QCOMPARE(Box().palette().color(QPalette::Text), QColor(Qt::white));
  }

  void openTakesText_data() {
    Columns<QString, QString>("given", "text");
    Row("plain", "word", "word");
    Row("nothing keeps the last text", "", "before");
    Row("first line", "one\ntwo", "one");
    Row("blank lines before", " \r\n one\r\ntwo", "one");
    Row("endless", QString(100000, 'x'), QString(1000, 'x'));
  }
  void openTakesText() {
    QFETCH(QString, given);
    QFETCH(QString, text);
    m_bar->Open(u"before"_s);
    m_bar->Open(given);
    QCOMPARE(m_bar->SearchText(), text);
    QCOMPARE(Box().selectedText(), text);
    QCOMPARE(TakeRequest().first().toString(), text);
  }

 private:
  [[nodiscard]] QLineEdit &Box() const { return *m_bar->findChild<QLineEdit *>("txtFind"); }
  [[nodiscard]] QString Result() const { return m_bar->findChild<QLabel *>("lblResult")->text(); }
  // Text, forward, match case, wrap of the last request.
  [[nodiscard]] QList<QVariant> TakeRequest() {
    return m_requests->isEmpty() ? QList<QVariant>() : m_requests->takeLast();
  }

  TLanguage m_language;
  std::unique_ptr<QWidget> m_window;
  TFindBar *m_bar = nullptr;
  std::unique_ptr<QSignalSpy> m_requests;
};

QTEST_MAIN(TestFindBar)
#include "test_find_bar.moc"
