#include <QCheckBox>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QStyleOptionButton>
#include <QTextEdit>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "browser/page/find_bar.h"
#include "browser/page/properties_dialog.h"
#include "browser/page/script_dialog.h"
#include "browser/page/script_dialogs.h"
#include "browser/tabs/close_all_dialog.h"
#include "config/language.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "support/shipped_files.h"
#include "ui/confirm_dialog.h"
#include "ui/contrast.h"
#include "ui/control_style.h"
#include "ui/dialog_placing.h"
#include "ui/input_box.h"

using namespace Qt::StringLiterals;

namespace {

const QUrl Site(u"https://example.test:8443/path"_s);

template <typename T>
T &Child(const QWidget &form, const char *name) {
  auto *child = form.findChild<T *>(QLatin1String(name));
  Q_ASSERT_X(child != nullptr, "Child", name);
  return *child;
}

}  // namespace

// What asks and tells in windows of its own, and the bar that finds text in a page.
class TestDialogs final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QVERIFY(m_language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini")))); }
  void init() {
    m_owner = std::make_unique<QWidget>();
    m_bar = new TFindBar(m_language, m_owner.get());
    m_requests = std::make_unique<QSignalSpy>(m_bar, &TFindBar::FindRequested);
    m_owner->show();
    m_owner->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_owner.get()));
    m_dialogs = std::make_unique<TScriptDialogs>(m_language);
  }

  void opensInTheMiddle() {
    QDialog dialog(m_owner.get());
    (new QVBoxLayout(&dialog))->addWidget(new QLabel(u"much\nto\nsay"_s));
    CentreOnScreen(dialog);
    dialog.show();
    const QPoint off = dialog.geometry().center() - m_owner->screen()->availableGeometry().center();
    QVERIFY2(off.manhattanLength() <= 4, qPrintable(u"%1, %2"_s.arg(off.x()).arg(off.y())));
  }

  void confirmAnswers_data() {
    Columns<QString, Qt::Key, bool, bool, bool>("cancelText", "key", "tick", "isRisky", "accepted");
    QTest::newRow("enter") << "No" << Qt::Key_Return << false << false << true;
    QTest::newRow("escape") << "No" << Qt::Key_Escape << false << false << false;
    // "Don't ask again" holds for the answer No as well.
    QTest::newRow("escape, ticked") << "No" << Qt::Key_Escape << true << false << false;
    QTest::newRow("escape without a Cancel button") << "" << Qt::Key_Escape << false << false << false;
    QTest::newRow("enter without a Cancel button") << "" << Qt::Key_Return << false << false << true;
    QTest::newRow("enter, where it is risky") << "No" << Qt::Key_Return << false << true << false;
    // Enter is for the button that has the keyboard.
    QTest::newRow("enter on Cancel") << "On No" << Qt::Key_Return << false << false << false;
  }

  void confirmAnswers() {
    QFETCH(QString, cancelText);
    QFETCH(Qt::Key, key);
    QFETCH(bool, tick);
    QFETCH(bool, isRisky);
    OnModalDialog<TfrmConfirm>([=](TfrmConfirm &dialog) {
      QCOMPARE(dialog.windowTitle(), u"Caption"_s);
      QCOMPARE(dialog.accessibleDescription(), u"First\nSecond"_s);
      QCOMPARE(Child<QLabel>(dialog, "lblTitle").text(), u"First"_s);
      QCOMPARE(Child<QTextEdit>(dialog, "mmoPrompt2").toPlainText(), u"Second"_s);
      QCOMPARE(Child<QCheckBox>(dialog, "chkConfirm").text(), u"Box"_s);
      if (tick) QTest::keyClick(&Child<QCheckBox>(dialog, "chkConfirm"), Qt::Key_Space);
      auto &cancel = Child<QPushButton>(dialog, "cmdCancel");
      const bool isOnCancel = cancelText.startsWith(u"On");
      if (isOnCancel) cancel.setFocus();
      QTest::keyClick(isOnCancel ? &cancel : static_cast<QWidget *>(&dialog), key);
    });
    const TAnswer answer = ShowConfirm(nullptr, {.caption = u"Caption"_s,
                                                 .firstLine = u"First"_s,
                                                 .secondText = u"Second"_s,
                                                 .ok = u"Yes"_s,
                                                 .cancel = cancelText,
                                                 .checkBox = u"Box"_s,
                                                 .isRisky = isRisky});
    QTEST(answer.accepted, "accepted");
    QCOMPARE(answer.checked, tick);
  }

  void confirmHidesWhatHasNoText() {
    TfrmConfirm dialog({.firstLine = u"First"_s, .secondText = u"Second"_s, .ok = u"OK"_s});
    dialog.show();
    const int firstLineTop = Child<QLabel>(dialog, "lblTitle").mapTo(&dialog, QPoint()).y();
    QVERIFY(!Child<QPushButton>(dialog, "cmdCancel").isVisible());
    QVERIFY(!Child<QCheckBox>(dialog, "chkConfirm").isVisible());
    QVERIFY(dialog.minimumSize() == dialog.maximumSize());

    TfrmConfirm withoutFirstLine({.secondText = u"Second"_s, .cancel = u"No"_s, .checkBox = u"Box"_s});
    withoutFirstLine.show();
    QVERIFY(!Child<QPushButton>(withoutFirstLine, "cmdOK").isVisible());
    QCOMPARE(Child<QTextEdit>(withoutFirstLine, "mmoPrompt2").mapTo(&withoutFirstLine, QPoint()).y(), firstLineTop);
  }

  void confirmGrowsWithItsTexts() {
    const QString sentence = u"Donaudampfschifffahrtsgesellschaftskapitän und noch einige Wörter dazu. "_s;
    TfrmConfirm dialog({.firstLine = sentence.repeated(3),
                        .secondText = sentence.repeated(6),
                        .ok = sentence,
                        .cancel = sentence,
                        .checkBox = sentence});
    dialog.show();
    const auto &title = Child<QLabel>(dialog, "lblTitle");
    const auto &prompt = Child<QTextEdit>(dialog, "mmoPrompt2");
    QVERIFY(title.height() >= title.heightForWidth(title.width()));
    QVERIFY(prompt.viewport()->height() >= int(prompt.document()->size().height()));
    for (const char *name : {"cmdOK", "cmdCancel", "chkConfirm"}) {
      const auto &button = Child<QAbstractButton>(dialog, name);
      QVERIFY2(button.width() >= button.sizeHint().width(), name);
    }
    // What cannot fit on the screen scrolls.
    TfrmConfirm endless({.secondText = sentence.repeated(2000), .ok = u"OK"_s});
    endless.show();
    QVERIFY(endless.height() <= endless.screen()->availableSize().height());
  }

  void controlsAreSeenAndHit_data() {
    Columns<QColor, QColor, QColor>("window", "text", "highlight");
    Row("light", QColor(239, 239, 239), QColor(Qt::black), QColor(48, 140, 198));
    Row("dark", QColor(35, 38, 41), QColor(Qt::white), QColor(61, 140, 198));
    Row("dark with a dark accent", QColor(35, 38, 41), QColor(Qt::white), QColor(30, 60, 90));
    Row("light with a light accent", QColor(Qt::white), QColor(Qt::black), QColor(220, 230, 255));
  }
  void controlsAreSeenAndHit() {
    QFETCH(QColor, window);
    QFETCH(QColor, text);
    QFETCH(QColor, highlight);
    TControlStyle style;
    QPalette palette(window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, window);
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
    style.polish(palette);
    QCOMPARE(palette.color(QPalette::PlaceholderText).rgb() & RGB_MASK, text.rgb() & RGB_MASK);
    // How far the frame in `place` stands out, in all of its four sides.
    const auto frame = [&](const QImage &picture, const QRect &place) {
      double least = 21;
      for (const QPoint inward : {QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)}) {
        QPoint at =
            place.center() - QPoint(inward.x() * (place.width() / 2 + 1), inward.y() * (place.height() / 2 + 1));
        double most = 0;
        for (int step = 0; step < 4; ++step, at += inward) {
          if (picture.rect().contains(at)) most = std::max(most, Contrast::Between(picture.pixelColor(at), window));
        }
        least = std::min(least, most);
      }
      return least;
    };
    QWidget owner(nullptr, Qt::FramelessWindowHint);
    owner.setPalette(palette);
    QToolButton button(&owner);
    QCheckBox box(QStringLiteral("x"), &owner);
    QPushButton push(&owner);
    push.setDefault(true);
    QListWidget list(&owner);
    list.addItem(u"x"_s);
    QMenu menu(&owner);
    QAction *item = menu.addAction(u"x"_s);
    QAction *line = menu.addSeparator();
    QFont small = menu.font();
    small.setPixelSize(8);
    for (QWidget *widget :
         {static_cast<QWidget *>(&button), static_cast<QWidget *>(&box), static_cast<QWidget *>(&push),
          static_cast<QWidget *>(&list), static_cast<QWidget *>(&menu)}) {
      widget->setStyle(&style);
      widget->setFont(small);
    }
    button.setAutoRaise(true);
    button.setGeometry(10, 10, 40, 30);
    box.move(60, 0);
    push.move(0, 60);
    list.move(0, 120);
    owner.show();
    owner.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&owner));
    box.clearFocus();
    button.clearFocus();
    QStyleOptionButton option;
    option.initFrom(&box);
    const QRect square = style.subElementRect(QStyle::SE_CheckBoxIndicator, &option, &box).translated(box.pos());
    QVERIFY(frame(owner.grab().toImage(), square) >= Contrast::ForMarks);
    owner.setAttribute(Qt::WA_KeyboardFocusChange);
    for (QAbstractButton *shown : {static_cast<QAbstractButton *>(&button), static_cast<QAbstractButton *>(&push)}) {
      const QImage before = shown->grab().toImage();
      shown->setFocus(Qt::TabFocusReason);
      const QImage after = shown->grab().toImage();
      const QRect outline = after.rect().adjusted(2, 2, -2, -2);
      QVERIFY2(frame(after, outline) >= Contrast::ForMarks, shown->metaObject()->className());
      int changed = 0;
      for (int x = 0; x < after.width(); ++x) {
        for (int y = 0; y < after.height(); ++y) {
          changed += Contrast::Between(before.pixelColor(x, y), after.pixelColor(x, y)) > 2 ? 1 : 0;
        }
      }
      QVERIFY2(changed > shown->width(), qPrintable(QString::number(changed)));
    }
    push.setText(u"Longer than any button at the least"_s);
    const int joined = push.sizeHint().width();
    push.setLayoutDirection(Qt::RightToLeft);
    QVERIFY(push.sizeHint().width() > joined);
    QVERIFY(list.sizeHintForRow(0) >= TControlStyle::LeastRow);
    QVERIFY(menu.actionGeometry(item).height() >= TControlStyle::LeastRow);
    QVERIFY(menu.actionGeometry(line).height() < TControlStyle::LeastRow);
  }

  // Drawings take the ink of the text beside them, pictures of pages stay what they are.
  void selectedRows() {
    TControlStyle style;
    QMenu menu;
    QTreeWidget tree;
    tree.setHeaderHidden(true);
    tree.setRootIsDecorated(false);
    for (QWidget *widget : {static_cast<QWidget *>(&menu), static_cast<QWidget *>(&tree)}) {
      widget->setStyle(&style);
      QPalette palette = widget->palette();
      palette.setColor(QPalette::Highlight, Qt::black);
      widget->setPalette(palette);
    }
    const auto coloured = [](const QPixmap &row) {
      const QImage picture = row.toImage();
      int count = 0;
      for (int x = 0; x < picture.width(); ++x) {
        for (int y = 0; y < picture.height(); ++y) count += picture.pixelColor(x, y).saturation() > 60 ? 1 : 0;
      }
      return count;
    };
    QPixmap picture(16, 16);
    picture.fill(Qt::red);
    for (const QIcon &icon : {QIcon(u":/icons/favorites.svg"_s), QIcon(picture)}) {
      menu.addAction(icon, u"x"_s);
      (new QTreeWidgetItem(&tree, {u"x"_s}))->setIcon(0, icon);
    }
    menu.popup({});
    tree.show();
    for (const bool isDrawn : {true, false}) {
      QAction *item = menu.actions().at(isDrawn ? 0 : 1);
      menu.setActiveAction(item);
      QCOMPARE(coloured(menu.grab(menu.actionGeometry(item))) == 0, isDrawn);
      QTreeWidgetItem *row = tree.topLevelItem(isDrawn ? 0 : 1);
      tree.setCurrentItem(row);
      QCOMPARE(coloured(tree.viewport()->grab(tree.visualItemRect(row))) == 0, isDrawn);
    }
  }

  void questionsOutliveTheirOwner() {
    auto *owner = new QWidget;
    OnModalDialog<TfrmConfirm>([owner](TfrmConfirm &) { delete owner; });
    const TAnswer answer = ShowConfirm(owner, {.ok = u"Yes"_s, .cancel = u"No"_s, .checkBoxState = true});
    QVERIFY(!answer.accepted && answer.checked);
    owner = new QWidget;
    OnModalDialog<QInputDialog>([owner](QInputDialog &dialog) {
      dialog.done(QDialog::Accepted);
      delete owner;
    });
    QVERIFY(!AskText(owner, m_language, {.text = u"proposed"_s}));
  }

  void inputAnswers_data() {
    Columns<QString, Qt::Key, QString, QString>("typed", "key", "text", "line");
    QTest::newRow("as proposed") << "" << Qt::Key_Return << u"b<br>"_s << u"none"_s;  // no line is
    QTest::newRow("other") << "b" << Qt::Key_Return << u"b"_s << u"b"_s;
    QTest::newRow("given up") << "b" << Qt::Key_Escape << u"none"_s << u"none"_s;
  }

  void inputAnswers() {
    QFETCH(QString, typed);
    QFETCH(Qt::Key, key);
    const auto answer = [=](QInputDialog &dialog) {
      QCOMPARE(dialog.labelText(), u"<b>Prompt</b>"_s);
      QCOMPARE(dialog.findChild<QLabel *>()->textFormat(), Qt::PlainText);
      if (!typed.isEmpty()) QTest::keyClicks(dialog.focusWidget(), typed);
      QTest::keyClick(&dialog, key);
    };
    OnModalDialog<QInputDialog>(answer);
    const auto text = AskText(nullptr, m_language, {.prompt = u"<b>Prompt</b>"_s, .text = u"b<br>"_s});
    QTEST(text.value_or(u"none"_s), "text");
    const std::unique_ptr<QInputDialog> lines(
        MakeLineDialog(m_language, {.prompt = u"<b>Prompt</b>"_s, .lines = {u"a<br>"_s, u"b"_s}}));
    lines->show();
    answer(*lines);
    QTEST(lines->result() == QDialog::Accepted ? lines->textValue() : u"none"_s, "line");
  }

  void closeAllWalksBackwards() {
    TfrmCloseAll dialog(m_language, {u"A"_s, u"B & C"_s, u"three\nlines\r\nhere"_s, u"D"_s});
    dialog.show();
    auto &list = Child<QListWidget>(dialog, "CheckListBox1");
    QCOMPARE(list.item(1)->text(), u"B & C"_s);
    QCOMPARE(list.item(2)->text(), u"three lines here"_s);
    list.setCurrentRow(1);
    QTest::keyClick(&list, Qt::Key_Space);
    QTest::keyClick(&dialog, Qt::Key_Return);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QCOMPARE(dialog.Ticked(), (QList<int>{3, 2, 0}));
    dialog.show();
    Child<QPushButton>(dialog, "cmdDeselectAll").click();
    QVERIFY(dialog.Ticked().isEmpty());
    Child<QPushButton>(dialog, "cmdSelectAll").click();
    QCOMPARE(dialog.Ticked(), (QList<int>{3, 2, 1, 0}));
    QCOMPARE(Child<QPushButton>(dialog, "cmdClose").text(), m_language.Text("CLOSE_ALL_LIST", "Close"));
  }

  void scriptDialogAnswers_data() {
    Columns<QString, Qt::Key, QString, bool, QString>("kind", "key", "typed", "accepted", "value");
    QTest::newRow("confirm, no") << "confirm" << Qt::Key_Escape << "" << false << "";
    QTest::newRow("prompt, default") << "prompt" << Qt::Key_Return << "" << true << "default";
    QTest::newRow("prompt, typed") << "prompt" << Qt::Key_Return << "typed" << true << "typed";
    QTest::newRow("prompt, cancelled") << "prompt" << Qt::Key_Escape << "typed" << false << "untouched";
    QTest::newRow("stay") << "unload" << Qt::Key_Escape << "" << false << "";
  }

  void scriptDialogAnswers() {
    QFETCH(QString, kind);
    QFETCH(Qt::Key, key);
    QFETCH(QString, typed);
    QFETCH(bool, accepted);
    const QSignalSpy broughtToFront(m_dialogs.get(), &TScriptDialogs::BringToFrontRequested);
    OnModalDialog<TScriptDialog>([=](TScriptDialog &dialog) {
      QVERIFY(!Child<QCheckBox>(dialog, "chkKeep").isVisible());
      // The default text is selected: typing replaces it.
      if (!typed.isEmpty()) QTest::keyClicks(dialog.focusWidget(), typed);
      QTest::keyClick(&dialog, key);
    });
    QString result = u"untouched"_s;
    if (kind == "confirm") {
      QCOMPARE(m_dialogs->Confirm(m_owner.get(), Site, u"Really?"_s), accepted);
    } else if (kind == "prompt") {
      QCOMPARE(m_dialogs->Prompt(m_owner.get(), Site, u"Name?"_s, u"default"_s, &result), accepted);
      QTEST(result, "value");
    } else {
      QCOMPARE(m_dialogs->BeforeUnload(m_owner.get(), Site), accepted);
    }
    QCOMPARE(broughtToFront.size(), 1);
  }

  void scriptDialogsCanBeKeptFromOpening() {
    int opened = 0;
    const auto answer = [&opened](bool offered, bool tick) {
      OnModalDialog<TScriptDialog>([=, &opened](TScriptDialog &dialog) {
        ++opened;
        auto &keep = Child<QCheckBox>(dialog, "chkKeep");
        QCOMPARE(keep.isVisible(), offered);
        keep.setChecked(tick);
        QTest::keyClick(&dialog, Qt::Key_Return);
      });
    };
    answer(false, false);
    m_dialogs->Alert(m_owner.get(), Site, u"1"_s);
    answer(true, false);
    QVERIFY(m_dialogs->Confirm(m_owner.get(), Site, u"2"_s));
    answer(true, true);
    QVERIFY(m_dialogs->Confirm(m_owner.get(), Site, u"3"_s));
    QString result;
    m_dialogs->Alert(m_owner.get(), Site, u"4"_s);
    QVERIFY(!m_dialogs->Confirm(m_owner.get(), Site, u"5"_s));
    QVERIFY(!m_dialogs->Prompt(m_owner.get(), Site, u"6"_s, u"x"_s, &result) && result.isEmpty());
    QCOMPARE(opened, 3);
    // Unsaved input is guarded all the same, and Enter keeps it.
    answer(false, false);
    QVERIFY(!m_dialogs->BeforeUnload(m_owner.get(), Site));
    m_dialogs->Reset();
    answer(false, false);
    QVERIFY(m_dialogs->Confirm(m_owner.get(), Site, u"7"_s));
    QCOMPARE(opened, 5);
  }

  void scriptDialogShowsTextAsItIs() {
    const QString message = u"<b>bold</b> &amp; __Key ~~OK\nsecond line"_s;
    OnModalDialog<TScriptDialog>([=](TScriptDialog &dialog) {
      QCOMPARE(Child<QPlainTextEdit>(dialog, "mmoMessage").toPlainText(), message);
      dialog.reject();
    });
    m_dialogs->Alert(m_owner.get(), Site, message);
    OnModalDialog<TScriptDialog>([](TScriptDialog &dialog) {
      const QSize room = dialog.screen()->availableSize();
      QVERIFY(dialog.height() < room.height() && dialog.width() < room.width());
      QVERIFY(Child<QPushButton>(dialog, "cmdOK").visibleRegion().boundingRect().isValid());
      dialog.reject();
    });
    m_dialogs->Alert(m_owner.get(), Site, u"line\n"_s.repeated(200000) + QString(100000, 'x'));
  }

  void scriptDialogsSurviveTheirOwner() {
    QWidget *owner = m_owner.get();
    auto *owned = new TScriptDialogs(m_language, owner);
    OnModalDialog<TScriptDialog>([this](TScriptDialog &) { m_owner.reset(); });
    QVERIFY(!owned->Confirm(owner, Site, u"?"_s));
    QWidget window;
    TScriptDialogs *alone = m_dialogs.get();
    OnModalDialog<TScriptDialog>([this](TScriptDialog &) { m_dialogs.reset(); });
    QVERIFY(!alone->Confirm(&window, Site, u"?"_s));
  }

  void scriptDialogsNeverStack() {
    OnModalDialog<TScriptDialog>([&](TScriptDialog &dialog) {
      QVERIFY(!m_dialogs->Confirm(m_owner.get(), Site, u"inner"_s));
      QCOMPARE(QApplication::activeModalWidget(), &dialog);
      m_dialogs->Dismiss();
    });
    QVERIFY(!m_dialogs->Confirm(m_owner.get(), Site, u"outer"_s));
  }

  void scriptDialogHeading_data() {
    Columns<QUrl, QString>("origin", "name");
    QTest::newRow("secure") << QUrl(u"https://example.test/a?b"_s) << u"example.test"_s;
    QTest::newRow("with port") << Site << u"example.test:8443"_s;
    QTest::newRow("not secure") << QUrl(u"http://example.test"_s) << u"http://example.test"_s;
    QTest::newRow("user info left out") << QUrl(u"https://bank.test@evil.test"_s) << u"evil.test"_s;
    QTest::newRow("look-alike letters") << QUrl(u"https://\u0430pple.test"_s) << u"xn--pple-43d.test"_s;
    QTest::newRow("file") << QUrl(u"file:///home/a.html"_s) << u"a file on this computer"_s;
    QTest::newRow("none") << QUrl() << u"this page"_s;
    QTest::newRow("data") << QUrl(u"data:text/html,x"_s) << u"this page"_s;
  }

  void scriptDialogHeading() {
    QFETCH(QUrl, origin);
    QFETCH(QString, name);
    QString heading;
    OnModalDialog<TScriptDialog>([&heading](TScriptDialog &dialog) {
      heading = Child<QLabel>(dialog, "lblOrigin").text();
      dialog.reject();
    });
    m_dialogs->Alert(nullptr, origin, u"!"_s);
    QCOMPARE(heading, m_language.Text("SCRIPT_DIALOG", "Caption").arg(name));
  }

  void propertiesTakeAnyText() {
    TPageProperties properties{.title = u"<b>T</b>\n__Caption"_s,
                               .address = u"data:text/plain,"_s + QString(3000000, 'x'),
                               .contentType = u"text/html"_s,
                               .size = 1234567,
                               .modified = {},
                               .encryptionLevel = TEncryptionLevel::Bits128,
                               .certificate = u"Subject\nIssuer"_s};
    TPropertiesDialog dialog(properties, m_language);
    dialog.show();
    QCOMPARE(Child<QLineEdit>(dialog, "txtTitle").text(), u"<b>T</b> __Caption"_s);
    QVERIFY(Child<QLineEdit>(dialog, "txtAddress").text().size() < 10000);
    QVERIFY(Child<QLineEdit>(dialog, "txtSize").text().contains(QLocale().toString(1234567)));
    QCOMPARE(Child<QLineEdit>(dialog, "txtModified").text(), m_language.Text("PROPERTIES", "Unknown"));
    QCOMPARE(Child<QPlainTextEdit>(dialog, "mmoCertificate").toPlainText(), u"Subject\nIssuer"_s);
    QVERIFY(dialog.width() < dialog.screen()->availableSize().width());
    for (const auto &[level, section, key] : {std::tuple(TEncryptionLevel::None, "PROPERTIES", "NotEncrypted"),
                                              {TEncryptionLevel::Mixed, "MAIN", "EncryptionMixed"},
                                              {TEncryptionLevel::Unknown, "MAIN", "EncryptionUnknown"},
                                              {TEncryptionLevel::Bits128, "MAIN", "Encryption128Bit"}}) {
      properties.encryptionLevel = level;
      const TPropertiesDialog shown(properties, m_language);
      QCOMPARE(Child<QLineEdit>(shown, "txtEncryption").text(), m_language.Text(section, key));
    }
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
  std::unique_ptr<QWidget> m_owner;  // of the find bar and the dialogs of scripts
  TFindBar *m_bar = nullptr;
  std::unique_ptr<QSignalSpy> m_requests;
  std::unique_ptr<TScriptDialogs> m_dialogs;
};

QTEST_MAIN(TestDialogs)
#include "test_dialogs.moc"
