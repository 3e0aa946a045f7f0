#include <QSignalSpy>

#include "search/suggestion_list.h"
#include "window/address_bar_fixture.h"

// What the address bar completes in its box and suggests below it while the user types.
class TestAddressCompletion final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { m_f.Prepare(); }
  void init() { m_f.Begin(); }
  void cleanup() { m_f.End(); }

  void InlineCompletion() {
    m_f.File({"http://Example.org/Path"});
    m_f.Make("IE4");
    m_f.settings->SetAutoCompleteMode(0);
    m_f.Type("exa");
    QCOMPARE(m_f.Edit()->text(), "exa");
    m_f.settings->SetAutoCompleteMode(1);
    m_f.Type("exa");
    QCOMPARE(m_f.Edit()->text(), "Example.org/Path");
    QCOMPARE(m_f.Edit()->selectedText(), "mple.org/Path");
    m_f.AddTyped("M");
    QCOMPARE(m_f.Edit()->selectedText(), "ple.org/Path");
    // What does not fit replaces the completed rest.
    m_f.AddTyped("z");
    QCOMPARE(m_f.Edit()->text(), "Examz");
    m_f.Type("http://ex");
    QCOMPARE(m_f.Edit()->text(), "http://Example.org/Path");
    m_f.Press(Qt::Key_Backspace);
    QCOMPARE(m_f.Edit()->text(), "http://Ex");
    // Typed into the middle, what stands behind the caret is given up for the entry.
    m_f.Type("eorg");
    m_f.Edit()->setCursorPosition(1);
    m_f.AddTyped("x");
    QCOMPARE(m_f.Edit()->text(), "Example.org/Path");
    QCOMPARE(m_f.Edit()->selectedText(), "ample.org/Path");
    QSignalSpy opened(m_f.bar, &TAddressBar::OpenRequested);
    m_f.Press(Qt::Key_Return);
    QCOMPARE(opened.value(0).value(0).toString(), "Example.org/Path");
  }

  void SuggestsMostUsedFirst() {
    m_f.File({"http://typed.example/news", "http://often.example/"});
    m_f.Make("IE5");
    m_f.Visit("http://often.example/", "News often read", 5);
    m_f.Visit("http://now.example/", "Now and then <b>news</b>", 2);
    m_f.Visit("http://other.example/", "Something else", 9);
    m_f.Type("news");
    const QStringList expected = {"http://often.example/", "http://now.example/", "http://typed.example/news"};
    QTRY_COMPARE(Suggested(), expected);
    QCOMPARE(Suggestions()->model()->index(1, 1).data().toString(), "Now and then <b>news</b>");
    m_f.Type("exam else");
    QTRY_COMPARE(Suggested(), QStringList("http://other.example/"));
    m_f.Type("nowhere");
    QTRY_VERIFY(!Suggestions()->isVisible());
  }

  void SuggestionsNeverSteal() {
    m_f.Make("IE5");
    m_f.bar->ShowAddress("http://page.example/");
    m_f.Visit("http://a.example/", "News A", 2);
    m_f.Visit("http://xn--bcher-kva.example/", "News B", 1);
    QSignalSpy opened(m_f.bar, &TAddressBar::OpenRequested);
    m_f.Type("news");
    QTRY_COMPARE(Suggested().size(), 2);
    QVERIFY(m_f.Edit()->hasFocus());
    QCOMPARE(m_f.Edit()->text(), "news");
    QCOMPARE(m_f.Edit()->selectedText(), "");
    m_f.Press(Qt::Key_Return);
    QCOMPARE(opened.at(0).at(0).toString(), "news");
    QVERIFY(!Suggestions()->isVisible());

    m_f.Type("news");
    QTRY_VERIFY(Suggestions()->isVisible());
    m_f.Press(Qt::Key_Down);
    QCOMPARE(m_f.Edit()->text(), "http://a.example/");
    m_f.Press(Qt::Key_Down);
    QCOMPARE(m_f.Edit()->text(), QString("http://b\u00FCcher.example/"));
    m_f.Press(Qt::Key_Down);
    QCOMPARE(m_f.Edit()->text(), "news");
    m_f.Press(Qt::Key_Up);
    QCOMPARE(m_f.Edit()->text(), QString("http://b\u00FCcher.example/"));
    m_f.Press(Qt::Key_Escape);
    QCOMPARE(m_f.Edit()->text(), "news");
    QVERIFY(!Suggestions()->isVisible());
    m_f.Press(Qt::Key_Escape);
    QCOMPARE(m_f.Edit()->text(), "http://page.example/");

    m_f.Type("news");
    QTRY_VERIFY(Suggestions()->isVisible());
    const QRect row = Suggestions()->visualRect(Suggestions()->model()->index(1, 0));
    QTest::mouseClick(Suggestions()->viewport(), Qt::LeftButton, {}, row.center());
    QCOMPARE(opened.last().at(0).toString(), "http://xn--bcher-kva.example/");
    QVERIFY(!Suggestions()->isVisible());

    m_f.Type("news");
    QTRY_VERIFY(Suggestions()->isVisible());
    m_f.window->resize(700, 500);
    QTRY_VERIFY(!Suggestions()->isVisible());
    m_f.Type("news");
    QTRY_VERIFY(Suggestions()->isVisible());
    m_f.Edit()->clearFocus();
    QTRY_VERIFY(!Suggestions()->isVisible());
  }

  void SuggestionIsForgotten() {
    m_f.File({"http://a.example/"});
    m_f.Make("IE5");
    m_f.Visit("http://a.example/", "News A", 2);
    m_f.Visit("http://b.example/", "News B", 1);
    m_f.Type("news");
    QTRY_COMPARE(Suggested().size(), 2);
    // With nothing chosen the key stays what it is in a text.
    m_f.Press(Qt::Key_Delete, Qt::ShiftModifier);
    QCOMPARE(m_f.history->Count(), 2);
    m_f.Press(Qt::Key_Down);
    m_f.Press(Qt::Key_Delete, Qt::ShiftModifier);
    QCOMPARE(Suggested(), QStringList("http://b.example/"));
    QCOMPARE(m_f.Edit()->text(), "news");
    QCOMPARE(m_f.bar->count(), 0);
    QTRY_VERIFY(!m_f.history->Find("http://a.example/"));
  }

 private:
  [[nodiscard]] TSuggestionList *Suggestions() const { return m_f.bar->findChild<TSuggestionList *>(); }

  [[nodiscard]] QStringList Suggested() const {
    QStringList addresses;
    if (!Suggestions()->isVisible()) return addresses;
    const QAbstractItemModel *model = Suggestions()->model();
    for (int row = 0; row < model->rowCount(); ++row) addresses.append(model->index(row, 0).data().toString());
    return addresses;
  }

  TLoneAddressBarFixture m_f;
};

QTEST_MAIN(TestAddressCompletion)
#include "test_address_completion.moc"
