#include <memory>
#include <QAbstractItemView>
#include <QAccessible>
#include <QClipboard>
#include <QDropEvent>
#include <QMimeData>
#include <QPaintEvent>
#include <QPushButton>
#include <QSignalSpy>
#include <QTextEdit>
#include <QToolButton>
#include <QWheelEvent>

#include "favorites/favicon_cache.h"
#include "favorites/page_icons.h"
#include "search/suggestion_delegate.h"
#include "search/suggestion_list.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "support/visit_count.h"
#include "ui/confirm_dialog.h"
#include "window/address_bar_fixture.h"

// The address bar by itself: its keys, its list of typed addresses, what it completes and suggests, what is dropped on
// it.
class TestAddressBar final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init() { m_f = std::make_unique<TLoneAddressBarFixture>(); }
  void cleanup() {
    m_f.reset();
    QApplication::setPalette(QPalette());
    QApplication::setLayoutDirection(Qt::LeftToRight);
  }

  void HostStandsOutUnlessEdited() {
    m_f->Make();
    QLineEdit *edit = m_f->bar->lineEdit();
    const auto hasFullInk = [edit] {
      const QImage picture = edit->grab().toImage();
      const QRgb ink = edit->palette().color(QPalette::Text).rgb();
      int found = 0;
      for (int x = 0; x < picture.width(); ++x) found += picture.pixel(x, picture.height() / 2) == ink ? 1 : 0;
      return found > 20;
    };
    // Full blocks are pure ink.
    m_f->bar->ShowAddress("http://example.test/" + QString(8, QChar(0x2588)));
    edit->setFocus();
    edit->deselect();
    QTRY_VERIFY(hasFullInk());
    edit->clearFocus();
    QTRY_VERIFY(!hasFullInk());
    m_f->bar->ShowAddress(QString(8, QChar(0x2588)));
    QTRY_VERIFY(hasFullInk());
  }

  void Enter_data() {
    Columns<QString, Qt::KeyboardModifiers, QStringList, bool>("typed", "keys", "opened", "newTab");
    const Qt::KeyboardModifiers none, ctrl(Qt::ControlModifier), shift(Qt::ShiftModifier), alt(Qt::AltModifier);
    QTest::newRow("as typed") << "a.example/x y" << none << QStringList("a.example/x y") << false;
    QTest::newRow("keypad") << "word" << (ctrl | Qt::KeypadModifier) << QStringList("http://www.word.com") << false;
    QTest::newRow("shift") << "word" << shift << QStringList("http://www.word.net") << false;
    QTest::newRow("both") << "word" << (ctrl | shift) << QStringList("gopher:word.invalid") << false;
    QTest::newRow("alt") << "word" << alt << QStringList("word") << true;
    QTest::newRow("nothing") << "" << none << QStringList() << false;
    QTest::newRow("a blank") << " " << none << QStringList() << false;
  }
  void Enter() {
    QFETCH(QString, typed);
    QFETCH(Qt::KeyboardModifiers, keys);
    TZVOptions options(m_f->store);
    options.Set(Setting::CtrlShiftPre, "gopher:");
    options.Set(Setting::CtrlShiftPost, ".invalid");
    m_f->Make();
    QSignalSpy opened(m_f->bar, &TAddressBar::OpenRequested);
    m_f->Type(typed);
    // The keys themselves do nothing to the box.
    if (keys & Qt::ShiftModifier) QTest::keyPress(m_f->window.windowHandle(), Qt::Key_Shift);
    m_f->Press(Qt::Key_Return, keys);
    QStringList texts;
    for (const auto &call : opened) texts.append(call.at(0).toString());
    QTEST(texts, "opened");
    if (!opened.isEmpty()) QTEST(opened.at(0).at(1).toBool(), "newTab");
  }

  // The icon is there for pages that can be dragged by it, or have a connection to tell about; a click is no drag.
  void Icon_data() {
    Columns<QString, bool, int, bool>("address", "isThere", "far", "drags");
    Row("blank", "about:blank", false, 0, false);
    Row("no address", "no address", false, 0, false);
    Row("click", "http://a.example/", true, 0, false);
    Row("shaky click", "http://a.example/", true, -1, false);
    Row("drag", "http://a.example/", true, 1, true);
    Row("of no connection", "data:text/html,a", true, 0, false);
    Row("drag of a page from the disk", "file:///tmp/a.html", true, 1, true);
  }
  void Icon() {
    QFETCH(QString, address);
    QFETCH(bool, isThere);
    QFETCH(int, far);  // how the mouse moves: not, less than a drag needs, and as far
    QFETCH(bool, drags);
    m_f->Make();
    m_f->bar->ShowAddress(address);
    m_f->bar->ShowConnection(false, TEncryptionLevel::None);
    auto *icon = m_f->bar->findChild<QToolButton *>("imgIELink");
    QVERIFY(icon != nullptr);
    QCOMPARE(icon->isVisible(), isThere);
    if (!isThere) return;
    const QSignalSpy clicked(m_f->bar, &TAddressBar::ConnectionClicked);
    const QSignalSpy dragged(m_f->bar, &TAddressBar::DragWanted);
    const QPoint middle = icon->rect().center();
    const int step = far > 0 ? QApplication::startDragDistance() : QApplication::startDragDistance() - 1;
    const QPoint to = far == 0 ? middle : middle - QPoint(step, 0);
    QTest::mousePress(icon, Qt::LeftButton, {}, middle);
    for (int i = 0; i < 2; ++i) {
      QMouseEvent move(QEvent::MouseMove, to, icon->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
      QApplication::sendEvent(icon, &move);
    }
    if (!drags) QTest::mouseRelease(icon, Qt::LeftButton, {}, middle);
    QCOMPARE(dragged.count(), drags ? 1 : 0);
    QCOMPARE(clicked.count(), drags ? 0 : 1);
    QVERIFY(!icon->isDown());
  }

  // A page's lock is not shown beside the address that its tab sets out for.
  void LockIsThePagesOwn() {
    m_f->Make();
    auto *icon = m_f->bar->findChild<QToolButton *>("imgIELink");
    const auto hint = [&] { return icon->toolTip(); };
    m_f->bar->ShowAddress("https://bank.example/");
    m_f->bar->ShowConnection(true, TEncryptionLevel::Bits128);
    const QString whole = hint();
    m_f->bar->AddTypedAddress("https://other.example/");
    m_f->bar->ShowConnection(true, TEncryptionLevel::Bits128);
    QVERIFY(icon->isVisible() && hint() != whole);
    // The tab stays where it is.
    m_f->bar->ShowAddress("https://bank.example/");
    QCOMPARE(hint(), whole);
  }

  // The text that is there already moves, and is painted anew as a whole.
  void IconMovesTheText() {
    m_f->Make();
    m_f->bar->ShowConnection(false, TEncryptionLevel::None);
    m_f->bar->ShowAddress("http://page.example/");
    struct TPaints final : QObject {
      bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() == QEvent::Paint) region += static_cast<QPaintEvent *>(event)->region();
        return false;
      }
      QRegion region;
    } paints;
    QCoreApplication::processEvents();  // what is still to be painted
    m_f->Edit()->installEventFilter(&paints);
    m_f->bar->ShowConnection(false, TEncryptionLevel::None);
    QTRY_VERIFY((QRegion(m_f->Edit()->rect()) - paints.region).isEmpty());
  }

  void Scripts_data() {
    Columns<QString, QString, QString>("before", "pasted", "text");
    Row("alone", "", " javascript:JavaScript: alert(1)", "alert(1)");
    Row("over a longer text", "http://page.example/with/a/long/path", "javascript:a", "a");
    Row("not at the start", "", "see javascript:a", "see javascript:a");
    Row("behind what was typed", "javascript:", "alert(1)", "javascript:alert(1)");
  }
  void Scripts() {
    QFETCH(QString, before);
    QFETCH(QString, pasted);
    m_f->Make();
    m_f->Type(before);
    if (before.startsWith("http")) m_f->Edit()->selectAll();
    QApplication::clipboard()->setText(pasted);
    m_f->Edit()->paste();
    QTEST(m_f->Edit()->text(), "text");
  }

  void EscapeAndLeaving() {
    // What stands in the list is not opened because the box that shows it is left.
    m_f->File({"http://page.example/", "http://other.example/"});
    m_f->Make();
    const QSignalSpy opened(m_f->bar, &TAddressBar::OpenRequested);
    QSignalSpy left(m_f->bar, &TAddressBar::Left);
    m_f->bar->ShowAddress("http://page.example/");
    QCOMPARE(m_f->Edit()->text(), "http://page.example/");
    m_f->Type("half");
    m_f->bar->ShowAddress("http://other.example/");
    QCOMPARE(m_f->Edit()->text(), "half");
    m_f->Press(Qt::Key_Escape);
    QCOMPARE(m_f->Edit()->text(), "http://other.example/");
    QCOMPARE(m_f->Edit()->selectedText(), m_f->Edit()->text());
    QCOMPARE(left.size(), 0);
    m_f->Press(Qt::Key_Escape);
    QCOMPARE(left.size(), 1);

    m_f->Type("half");
    auto *page = new QWidget(&m_f->window);
    m_f->window.setCentralWidget(page);
    page->setFocusPolicy(Qt::ClickFocus);
    QTRY_VERIFY(page->isVisible());
    page->setFocus(Qt::ShortcutFocusReason);
    QCOMPARE(m_f->Edit()->text(), "half");
    m_f->bar->setFocus();
    QVERIFY(m_f->Edit()->hasFocus());
    QTest::mouseClick(page, Qt::LeftButton);
    QVERIFY(page->hasFocus());
    QCOMPARE(m_f->Edit()->text(), "http://other.example/");
    // The click that brings the keyboard selects all, the next one places the caret.
    QTest::mouseClick(m_f->Edit(), Qt::LeftButton);
    QCOMPARE(m_f->Edit()->selectedText(), m_f->Edit()->text());
    QTest::mouseClick(m_f->Edit(), Qt::LeftButton);
    QCOMPARE(m_f->Edit()->selectedText(), "");
    m_f->Type("http://page.example/");
    QTest::mouseClick(page, Qt::LeftButton);
    QCOMPARE(opened.size(), 0);
    m_f->bar->ShowAddress("about:blank");
    QCOMPARE(m_f->Edit()->text(), "");
  }

  void ShowsAndCopiesForeignNames() {
    m_f->Make();
    m_f->bar->ShowAddress("http://xn--bcher-kva.example/a%20b");
    QCOMPARE(m_f->Edit()->text(), QString("http://b\u00FCcher.example/a%20b"));
    m_f->bar->FocusAll();
    m_f->Edit()->copy();
    m_f->Press(Qt::Key_Delete);
    m_f->Edit()->paste();
    QCOMPARE(QString(QUrl(m_f->Edit()->text()).toEncoded()), "http://xn--bcher-kva.example/a%20b");
    m_f->Press(Qt::Key_Escape);
    m_f->bar->ShowAddress("http://xn--80ak6aa92e.com/");
    QCOMPARE(m_f->Edit()->text(), "http://xn--80ak6aa92e.com/");
  }

  void FilesWhatWasTyped() {
    m_f->Make();
    m_f->bar->AddTypedAddress("http://link.example/");
    QCOMPARE(m_f->Entries(), QStringList());
    for (const char *address : {"http://1.example/", "http://2.example/"}) {
      m_f->Type("x");
      m_f->Press(Qt::Key_Return);
      m_f->bar->AddTypedAddress(address);
      // What follows was not typed.
      m_f->bar->AddTypedAddress("http://link.example/");
    }
    QCOMPARE(m_f->Entries(), QStringList({"http://2.example/", "http://1.example/"}));
    QCOMPARE(m_f->Edit()->text(), "http://link.example/");
    // The list changes under a text that is being typed without touching it.
    m_f->Type("going on");
    m_f->Edit()->setSelection(2, 3);
    m_f->Press(Qt::Key_Return);
    m_f->Type("typing");
    m_f->Edit()->setCursorPosition(3);
    m_f->bar->AddTypedAddress("http://1.example/");
    QCOMPARE(m_f->Entries(), QStringList({"http://1.example/", "http://2.example/"}));
    QCOMPARE(m_f->Edit()->text(), "typing");
    QCOMPARE(m_f->Edit()->cursorPosition(), 3);
  }

  void ListOpensAndForgets() {
    m_f->File({"http://c.example/", "http://b.example/", "http://a.example/"});
    m_f->Make("IE5");
    m_f->bar->ShowAddress("http://page.example/");
    for (const auto &[key, keys] : {std::pair(Qt::Key_F4, Qt::NoModifier), {Qt::Key_Down, Qt::AltModifier}}) {
      m_f->bar->hidePopup();
      m_f->Press(key, keys);
      QTRY_VERIFY(m_f->bar->view()->isVisible());
    }
    m_f->bar->view()->setCurrentIndex(m_f->bar->model()->index(1, 0));
    QTest::keyClick(m_f->bar->view(), Qt::Key_Delete, Qt::ShiftModifier);
    QCOMPARE(m_f->Entries(), QStringList({"http://a.example/", "http://c.example/"}));
    QVERIFY(m_f->bar->view()->isVisible());
    QCOMPARE(m_f->bar->view()->currentIndex().row(), 1);
    QTest::keyClick(m_f->bar->view(), Qt::Key_Delete, Qt::ShiftModifier);
    QTest::keyClick(m_f->bar->view(), Qt::Key_Delete, Qt::ShiftModifier);
    QCOMPARE(m_f->bar->count(), 0);
    QTRY_VERIFY(!m_f->bar->view()->isVisible());
    QCOMPARE(m_f->Edit()->text(), "http://page.example/");
    QVERIFY(m_f->Filed().isEmpty());
  }

  void ChoosingFromTheList() {
    m_f->File({"http://xn--bcher-kva.example/", "http://a.example/"});
    m_f->Make();
    QSignalSpy opened(m_f->bar, &TAddressBar::OpenRequested);
    m_f->bar->showPopup();
    m_f->bar->view()->setCurrentIndex(m_f->bar->model()->index(1, 0));
    QTest::keyClick(m_f->bar->view(), Qt::Key_Return);
    QCOMPARE(opened.size(), 1);
    QCOMPARE(opened.at(0).at(0).toString(), "http://xn--bcher-kva.example/");
    QCOMPARE(m_f->Edit()->text(), QString("http://b\u00FCcher.example/"));
  }

  void WalkingOpensNothing() {
    m_f->File({"http://b.example/", "http://a.example/"});
    m_f->Make();
    m_f->bar->ShowAddress("http://page.example/");
    QSignalSpy opened(m_f->bar, &TAddressBar::OpenRequested);
    m_f->Press(Qt::Key_Down);
    QCOMPARE(m_f->Edit()->text(), "http://a.example/");
    m_f->Press(Qt::Key_Down);
    m_f->Press(Qt::Key_Down);
    QCOMPARE(m_f->Edit()->text(), "http://b.example/");
    QWheelEvent wheel(QPointF(5, 5), m_f->bar->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(m_f->bar, &wheel);
    QCOMPARE(m_f->Edit()->text(), "http://b.example/");
    QCOMPARE(opened.size(), 0);
    m_f->Press(Qt::Key_Escape);
    QCOMPARE(m_f->Edit()->text(), "http://page.example/");
  }

  void ClearsAfterAsking_data() {
    Columns<QByteArray, bool>("style", "yes");
    QTest::newRow("yes") << QByteArray("IE5") << true;
    QTest::newRow("no, and no note for suggestions that do not show") << QByteArray("IE4") << false;
  }
  void ClearsAfterAsking() {
    QFETCH(QByteArray, style);
    QFETCH(bool, yes);
    m_f->File({"http://a.example/"});
    m_f->Make(style);
    m_f->bar->ShowAddress("http://page.example/");
    OnModalDialog<TfrmConfirm>([&](TfrmConfirm &dialog) {
      QCOMPARE(dialog.windowTitle(), "Clear typed addresses");
      QCOMPARE(dialog.findChild<QTextEdit *>("mmoPrompt2")->isVisible(), style == "IE5");
      dialog.findChild<QPushButton *>(yes ? "cmdOK" : "cmdCancel")->click();
    });
    m_f->bar->ClearAddressHistory();
    QCOMPARE(m_f->bar->count(), yes ? 0 : 1);
    QCOMPARE(m_f->Edit()->text(), "http://page.example/");
    QCOMPARE(m_f->Filed().isEmpty(), yes);
  }

  void TakesDrops_data() {
    Columns<QString, bool, QString>("text", "isLink", "address");
    QTest::newRow("link") << "http://a.example/x" << true << "http://a.example/x";
    QTest::newRow("address as text") << " https://a.example/ " << false << "https://a.example/";
    QTest::newRow("host as text") << "www.a.example/x" << false << "www.a.example/x";
    QTest::newRow("the own machine") << "localhost:8080" << false << "localhost:8080";
    QTest::newRow("host and port as text") << "127.0.0.1:8080/x" << false << "127.0.0.1:8080/x";
    QTest::newRow("time of day") << "12:30" << false << "";
    QTest::newRow("prose") << "see www.a.example there" << false << "";
    QTest::newRow("word") << "word" << false << "";
    QTest::newRow("script") << "javascript:alert(1.5)" << false << "";
    QTest::newRow("script as link") << "javascript:alert(1)" << true << "";
  }
  void TakesDrops() {
    QFETCH(QString, text);
    QFETCH(bool, isLink);
    m_f->Make();
    QSignalSpy opened(m_f->bar, &TAddressBar::OpenRequested);
    QMimeData data;
    data.setText(text);
    if (isLink) data.setUrls({QUrl(text)});
    const auto drop = [&](QWidget *target) {
      QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction | Qt::LinkAction, &data, Qt::LeftButton, Qt::NoModifier);
      QApplication::sendEvent(target, &enter);
      QDropEvent event(QPointF(5, 5), Qt::CopyAction | Qt::LinkAction, &data, Qt::LeftButton, Qt::NoModifier);
      QApplication::sendEvent(target, &event);
    };
    QFETCH(QString, address);
    for (QWidget *target : {static_cast<QWidget *>(m_f->Edit()), static_cast<QWidget *>(m_f->bar)}) {
      opened.clear();
      drop(target);
      QCOMPARE(opened.size(), address.isEmpty() ? 0 : 1);
      if (!address.isEmpty()) QCOMPARE(opened.at(0).at(0).toString(), address);
    }
  }

  void InlineCompletion() {
    m_f->File({"http://Example.org/Path"});
    m_f->Make("IE4");
    m_f->settings.SetAutoCompleteMode(0);
    m_f->Type("exa");
    QCOMPARE(m_f->Edit()->text(), "exa");
    m_f->settings.SetAutoCompleteMode(1);
    m_f->Type("exa");
    QCOMPARE(m_f->Edit()->text(), "Example.org/Path");
    QCOMPARE(m_f->Edit()->selectedText(), "mple.org/Path");
    m_f->AddTyped("M");
    QCOMPARE(m_f->Edit()->selectedText(), "ple.org/Path");
    // What does not fit replaces the completed rest.
    m_f->AddTyped("z");
    QCOMPARE(m_f->Edit()->text(), "Examz");
    m_f->Type("http://ex");
    QCOMPARE(m_f->Edit()->text(), "http://Example.org/Path");
    m_f->Press(Qt::Key_Backspace);
    QCOMPARE(m_f->Edit()->text(), "http://Ex");
    // Typed into the middle, what stands behind the caret is given up for the entry.
    m_f->Type("eorg");
    m_f->Edit()->setCursorPosition(1);
    m_f->AddTyped("x");
    QCOMPARE(m_f->Edit()->text(), "Example.org/Path");
    QCOMPARE(m_f->Edit()->selectedText(), "ample.org/Path");
    QSignalSpy opened(m_f->bar, &TAddressBar::OpenRequested);
    m_f->Press(Qt::Key_Return);
    QCOMPARE(opened.value(0).value(0).toString(), "Example.org/Path");
  }

  void SuggestsMostUsedFirst() {
    m_f->File({"http://typed.example/news", "http://often.example/"});
    m_f->Make("IE5");
    m_f->Visit("http://often.example/", "News often read", 5);
    m_f->Visit("http://now.example/", "Now and then <b>news</b>", 2);
    m_f->Visit("http://other.example/", "Something else", 9);
    m_f->Type("news");
    const QStringList expected = {"http://often.example/", "http://now.example/", "http://typed.example/news"};
    QTRY_COMPARE(Suggested(), expected);
    QCOMPARE(Suggestions()->model()->index(1, 0).data(TSuggestionDelegate::TitleRole).toString(),
             "Now and then <b>news</b>");
    for (const QAbstractItemView *list : {static_cast<QAbstractItemView *>(Suggestions()), m_f->bar->view()}) {
      QVERIFY(list->sizeHintForRow(0) >= 28);
    }
    m_f->Type("exam else");
    QTRY_COMPARE(Suggested(), QStringList("http://other.example/"));
    m_f->Type("nowhere");
    QTRY_VERIFY(!Suggestions()->isVisible());
  }

  void SuggestionsShowWhatTheyAre_data() {
    Columns<bool, bool, QString, QString>("rightToLeft", "dark", "title", "path");
    const QString word(4, QChar(0x2588));  // full blocks are pure ink
    const QString line(300, QChar(0x2588));
    Row("short", false, false, word, word);
    Row("from right to left", true, false, word, word);
    Row("dark", false, true, word, word);
    Row("long title", false, false, line, word);
    Row("both long", false, false, line, line);
    Row("both long, from right to left", true, true, line, line);
  }
  // Icon, title in full ink, and then the address, which always keeps a part of the row.
  void SuggestionsShowWhatTheyAre() {
    QFETCH(bool, rightToLeft);
    QFETCH(bool, dark);
    QFETCH(QString, title);
    QFETCH(QString, path);
    QPalette palette;
    palette.setColor(QPalette::Base, dark ? Qt::black : Qt::white);
    palette.setColor(QPalette::Text, dark ? Qt::white : Qt::black);
    QApplication::setPalette(palette);
    if (rightToLeft) QApplication::setLayoutDirection(Qt::RightToLeft);
    TFaviconCache cache(m_f->folder.filePath("icons"));
    QImage red(32, 32, QImage::Format_RGB32);
    red.fill(Qt::red);
    cache.Put("http://a.example/", red);
    const TFaviconCache unread(m_f->folder.filePath("icons"));
    TPageIcons icons(unread);
    m_f->Make("IE5");
    m_f->bar->SetIcons(icons);
    m_f->Visit("http://a.example/news" + path, title, 1);
    m_f->Type("news");
    QTRY_COMPARE(Suggested().size(), 1);
    const QImage picture = [this] {
      const QRect row = Suggestions()->visualRect(Suggestions()->model()->index(0, 0));
      const auto grab = [&] { return Suggestions()->viewport()->grab(row).toImage(); };
      [&] { QTRY_VERIFY(Count(grab(), Qt::red).first > 10); }();
      return grab();
    }();
    const auto [redWidth, redMiddle] = Count(picture, Qt::red);
    const auto [titleWidth, titleMiddle] = Count(picture, palette.color(QPalette::Text));
    QCOMPARE(redWidth, 16);
    // In the order of reading, each in its part of the row.
    const double direction = rightToLeft ? -1 : 1;
    QVERIFY(direction * (titleMiddle - redMiddle) > 0);
    QVERIFY(titleWidth > 8 && titleWidth < picture.width() * 0.7);
    const auto [leftInk, rightInk] = Extent(picture, palette.color(QPalette::Base));
    QVERIFY(leftInk > 2 && rightInk < picture.width() - 3);
    const int addressEnd =
        rightToLeft ? int(titleMiddle) - titleWidth / 2 - leftInk : rightInk - int(titleMiddle) - titleWidth / 2;
    QVERIFY2(addressEnd > 80, qPrintable(QString::number(addressEnd)));

    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(Suggestions());
    const QString spoken = list->child(0)->text(QAccessible::Name);
    QVERIFY2(spoken.startsWith(title) && spoken.endsWith(path), qPrintable(spoken));
    // Without icons of their own all have the plain one.
    m_f->settings.Set(Setting::UseCustomIcons, false);
    m_f->Type("news");
    QTRY_COMPARE(Suggested().size(), 1);
    QCOMPARE(Count(Suggestions()->viewport()->grab().toImage(), Qt::red).first, 0);
  }

  void SuggestionsNeverSteal() {
    m_f->Make("IE5");
    m_f->bar->ShowAddress("http://page.example/");
    m_f->Visit("http://a.example/", "News A", 2);
    m_f->Visit("http://xn--bcher-kva.example/", "News B", 1);
    QSignalSpy opened(m_f->bar, &TAddressBar::OpenRequested);
    m_f->Type("news");
    QTRY_COMPARE(Suggested().size(), 2);
    QVERIFY(m_f->Edit()->hasFocus());
    QCOMPARE(m_f->Edit()->text(), "news");
    QCOMPARE(m_f->Edit()->selectedText(), "");
    m_f->Press(Qt::Key_Return);
    QCOMPARE(opened.at(0).at(0).toString(), "news");
    QVERIFY(!Suggestions()->isVisible());

    m_f->Type("news");
    QTRY_VERIFY(Suggestions()->isVisible());
    m_f->Press(Qt::Key_Down);
    QCOMPARE(m_f->Edit()->text(), "http://a.example/");
    m_f->Press(Qt::Key_Down);
    QCOMPARE(m_f->Edit()->text(), QString("http://b\u00FCcher.example/"));
    m_f->Press(Qt::Key_Down);
    QCOMPARE(m_f->Edit()->text(), "news");
    m_f->Press(Qt::Key_Up);
    QCOMPARE(m_f->Edit()->text(), QString("http://b\u00FCcher.example/"));
    m_f->Press(Qt::Key_Escape);
    QCOMPARE(m_f->Edit()->text(), "news");
    QVERIFY(!Suggestions()->isVisible());
    m_f->Press(Qt::Key_Escape);
    QCOMPARE(m_f->Edit()->text(), "http://page.example/");

    m_f->Type("news");
    QTRY_VERIFY(Suggestions()->isVisible());
    const QRect row = Suggestions()->visualRect(Suggestions()->model()->index(1, 0));
    QTest::mouseClick(Suggestions()->viewport(), Qt::LeftButton, {}, row.center());
    QCOMPARE(opened.last().at(0).toString(), "http://xn--bcher-kva.example/");
    QVERIFY(!Suggestions()->isVisible());

    m_f->Type("news");
    QTRY_VERIFY(Suggestions()->isVisible());
    m_f->window.resize(700, 500);
    QTRY_VERIFY(!Suggestions()->isVisible());
    m_f->Type("news");
    QTRY_VERIFY(Suggestions()->isVisible());
    m_f->Edit()->clearFocus();
    QTRY_VERIFY(!Suggestions()->isVisible());
  }

  void SuggestionIsForgotten() {
    m_f->File({"http://a.example/"});
    m_f->Make("IE5");
    m_f->Visit("http://a.example/", "News A", 2);
    m_f->Visit("http://b.example/", "News B", 1);
    m_f->Type("news");
    QTRY_COMPARE(Suggested().size(), 2);
    // With nothing chosen the key stays what it is in a text.
    m_f->Press(Qt::Key_Delete, Qt::ShiftModifier);
    QCOMPARE(VisitCount(m_f->history.FilePath()), 2);
    m_f->Press(Qt::Key_Down);
    m_f->Press(Qt::Key_Delete, Qt::ShiftModifier);
    QCOMPARE(Suggested(), QStringList("http://b.example/"));
    QCOMPARE(m_f->Edit()->text(), "news");
    QCOMPARE(m_f->bar->count(), 0);
    QTRY_VERIFY(!m_f->history.Find("http://a.example/"));
  }

 private:
  [[nodiscard]] TSuggestionList *Suggestions() const { return m_f->bar->findChild<TSuggestionList *>(); }

  // In how many columns there is such a point, and where they are in the mean.
  [[nodiscard]] static std::pair<int, double> Count(const QImage &picture, const QColor &colour) {
    int found = 0;
    double sum = 0;
    for (int x = 0; x < picture.width(); ++x) {
      bool isThere = false;
      for (int y = 0; y < picture.height(); ++y) isThere |= picture.pixel(x, y) == colour.rgb();
      found += isThere ? 1 : 0;
      sum += isThere ? x : 0;
    }
    return {found, found > 0 ? sum / found : 0};
  }
  // The first and the last column with anything but the ground in it.
  [[nodiscard]] static std::pair<int, int> Extent(const QImage &picture, const QColor &ground) {
    int first = picture.width();
    int last = -1;
    for (int x = 0; x < picture.width(); ++x) {
      for (int y = 0; y < picture.height(); ++y) {
        if (picture.pixel(x, y) == ground.rgb()) continue;
        first = std::min(first, x);
        last = x;
      }
    }
    return {first, last};
  }

  [[nodiscard]] QStringList Suggested() const {
    QStringList addresses;
    if (!Suggestions()->isVisible()) return addresses;
    const QAbstractItemModel *model = Suggestions()->model();
    for (int row = 0; row < model->rowCount(); ++row) addresses.append(model->index(row, 0).data().toString());
    return addresses;
  }

  std::unique_ptr<TLoneAddressBarFixture> m_f;
};

QTEST_MAIN(TestAddressBar)
#include "test_address_bar.moc"
