#include <QDir>
#include <QDropEvent>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>

#include "actions/actions.h"
#include "chrome/toolbar/button_list.h"
#include "chrome/toolbar/customize_toolbar_dialog.h"
#include "chrome/toolbar/tool_button_kinds.h"
#include "chrome/toolbar/toolbar_customizing.h"
#include "chrome/toolbar/toolbar_panel.h"
#include "chrome/toolbar/zv_tool_bar.h"
#include "config/settings.h"
#include "platform/program_folders.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "support/shipped_files.h"

using namespace Qt::StringLiterals;

// The tool bar, the menu of what does not fit it, and the dialog that arranges it.
class TestToolbar final : public QObject {
  Q_OBJECT

 private:
  // Indices from left to right, "|" for a separator, in brackets what is hidden.
  [[nodiscard]] static TToolbarEntries Entries(const QString &text) {
    TToolbarEntries entries;
    for (QString part : text.split(u' ', Qt::SkipEmptyParts)) {
      const bool visible = !part.startsWith(u'(');
      part.remove(u'(').remove(u')');
      entries.append({part == u"|"_s ? TToolbarEntry::Separator : part.toInt(), visible});
    }
    return entries;
  }
  [[nodiscard]] static QString Text(const TToolbarEntries &entries) {
    return QString::fromLatin1(ToolbarDefinition::ToBytes(entries)).remove(u"[Toolbar]\n"_s).simplified();
  }
  // The tags of a list's items, the selected one with a star.
  [[nodiscard]] static QString Text(const TButtonList &list) {
    QStringList tags;
    for (int row = 0; row < list.count(); ++row) {
      const QString tag = list.item(row)->data(Qt::UserRole).toString();
      tags.append((list.item(row)->isSelected() ? u"*"_s : u""_s) + (tag == u"-1"_s ? u"|"_s : tag));
    }
    return tags.join(u' ');
  }
  [[nodiscard]] static TButtonList &ListOf(TfrmCustomizeToolbar &dialog, QChar letter) {
    return *dialog.findChild<TButtonList *>(letter == u'a' ? u"lvAvailable"_s : u"lvCurrent"_s);
  }
  static void Click(const QWidget &dialog, const char *button) {
    dialog.findChild<QPushButton *>(QLatin1String(button))->click();
  }
  // "a1>c0": drags the item of row 1 in one list before row 0 of the other.
  static void Drag(TfrmCustomizeToolbar &dialog, const QString &step) {
    const TButtonList &from = ListOf(dialog, step[0]);
    TButtonList &to = ListOf(dialog, step[3]);
    const std::unique_ptr<QMimeData> data(from.model()->mimeData({from.model()->index(step[1].digitValue(), 0)}));
    const QRect under = to.visualItemRect(to.item(std::min(step[4].digitValue(), to.count() - 1)));
    const bool isBehind = step[4].digitValue() >= to.count();
    const QPointF at = isBehind ? under.bottomLeft() + QPoint(2, 0) : under.topLeft() + QPoint(2, 1);
    QDragEnterEvent enter(at.toPoint(), Qt::CopyAction, data.get(), Qt::LeftButton, {});
    QApplication::sendEvent(to.viewport(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(at, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton, {});
    QApplication::sendEvent(to.viewport(), &drop);
    // The list that it comes from would take it away after a move.
    QVERIFY(drop.isAccepted() && drop.dropAction() == Qt::CopyAction);
  }
  static void Do(TfrmCustomizeToolbar &dialog, const QString &step) {
    const QHash<QString, const char *> buttons{
        {u"add"_s, "cmdAdd"}, {u"remove"_s, "cmdRemove"}, {u"up"_s, "spdUp"}, {u"down"_s, "spdDown"}};
    TButtonList &current = ListOf(dialog, u'c');
    if (buttons.contains(step)) {
      Click(dialog, buttons.value(step));
    } else if (step.contains(u'>')) {
      Drag(dialog, step);
    } else if (step == u"enter"_s) {
      QTest::keyClick(&ListOf(dialog, u'a'), Qt::Key_Return);
    } else if (step == u"delete"_s) {
      QTest::keyClick(&current, Qt::Key_Delete);
    } else if (step == u"ctrl+up"_s || step == u"ctrl+down"_s) {
      QTest::keyClick(&current, step == u"ctrl+up"_s ? Qt::Key_Up : Qt::Key_Down, Qt::ControlModifier);
    } else if (step.startsWith(u"double"_s)) {
      TButtonList &list = ListOf(dialog, step[6]);
      const QPoint at = list.visualItemRect(list.item(step[7].digitValue())).center();
      QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at);
      QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, at);
    } else {
      ListOf(dialog, step[0]).SelectRow(step[1].digitValue());
    }
  }

 private Q_SLOTS:
  void initTestCase() { QVERIFY(m_language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini")))); }
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<TRegistryStore>(m_folder->filePath(u"registry.sqlite"_s));
    m_settings = std::make_unique<TSettings>(*m_store);
    m_window = std::make_unique<QWidget>();
    m_actions = std::make_unique<TActions>(m_window.get(), m_language, *m_settings);
    QDir().mkpath(ProgramFolders::UserData());
  }
  void cleanup() {
    m_customizing.reset();
    m_actions.reset();
    m_window.reset();
    m_settings.reset();
    m_store.reset();
    QFile::remove(File());
    QDir().rmdir(File());
  }

  // From 0 (1) (2) | 3: each step's effect on both lists.
  void DialogSteps_data() {
    Columns<QString, QString, QString>("steps", "available", "current");
    Row("as it opens", u""_s, u"| 1 2"_s, u"0 | 3"_s);
    Row("nothing selected", u"add remove up down"_s, u"| 1 2"_s, u"0 | 3"_s);
    Row("add to the end", u"a1 add"_s, u"| *2"_s, u"0 | 3 *1"_s);
    Row("add behind the selected", u"c0 a1 add"_s, u"| *2"_s, u"0 *1 | 3"_s);
    Row("add the last", u"a2 add"_s, u"| 1"_s, u"0 | 3 *2"_s);
    Row("add all", u"a1 add add"_s, u"|"_s, u"0 | 3 1 *2"_s);
    Row("add a separator", u"a0 add"_s, u"| *1 2"_s, u"0 | 3 *|"_s);
    Row("separators never end", u"a1 add add a0 add add"_s, u"*|"_s, u"0 | 3 1 2 | *|"_s);
    Row("remove", u"c0 remove"_s, u"| 1 2 *0"_s, u"*| 3"_s);
    Row("remove the last", u"c2 remove"_s, u"| 1 2 *3"_s, u"0 |"_s);
    Row("remove a separator", u"c1 remove"_s, u"| 1 2"_s, u"0 *3"_s);
    Row("remove behind the selected", u"a1 c0 remove"_s, u"| 1 *0 2"_s, u"*| 3"_s);
    Row("remove all", u"c0 remove remove remove"_s, u"| 1 2 0 *3"_s, u""_s);
    Row("up", u"c1 up"_s, u"| 1 2"_s, u"*| 0 3"_s);
    Row("up from the top", u"c0 up"_s, u"| 1 2"_s, u"*0 | 3"_s);
    Row("down", u"c0 down"_s, u"| 1 2"_s, u"| *0 3"_s);
    Row("down from the end", u"c2 down"_s, u"| 1 2"_s, u"0 | *3"_s);
    Row("by double click", u"doublea1 doublec0"_s, u"| 2 *0"_s, u"*| 3 1"_s);
    Row("by key", u"a1 enter c0 delete"_s, u"| 2 *0"_s, u"*| 3 1"_s);
    Row("up by key", u"c2 ctrl+up ctrl+up"_s, u"| 1 2"_s, u"*3 0 |"_s);
    Row("down by key", u"c0 ctrl+down"_s, u"| 1 2"_s, u"| *0 3"_s);
    Row("drag over", u"a1>c0"_s, u"| *2"_s, u"*1 0 | 3"_s);
    Row("drag behind all", u"a2>c9"_s, u"| 1"_s, u"0 | 3 *2"_s);
    Row("drag a separator", u"a0>c2"_s, u"| *1 2"_s, u"0 | *| 3"_s);
    Row("drag back", u"c0>a2"_s, u"| 1 *0 2"_s, u"*| 3"_s);
    Row("drag a separator back", u"c1>a1"_s, u"| 1 2"_s, u"0 *3"_s);
    Row("drag down", u"c0>c2"_s, u"| 1 2"_s, u"| *0 3"_s);
    Row("drag up", u"c2>c0"_s, u"| 1 2"_s, u"*3 0 |"_s);
    Row("one separator stays the first", u"a0>a2 a2>a0"_s, u"| *2 1"_s, u"0 | 3"_s);
    Row("nothing goes before it", u"c0>a0"_s, u"| *0 1 2"_s, u"*| 3"_s);
  }
  void DialogSteps() {
    QFETCH(QString, steps);
    TfrmCustomizeToolbar dialog(m_language, Entries(u"0 (1) (2) | 3"_s), false, nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    for (const QString &step : steps.split(u' ', Qt::SkipEmptyParts)) Do(dialog, step);
    QTEST(Text(ListOf(dialog, u'a')), "available");
    QTEST(Text(ListOf(dialog, u'c')), "current");
  }

  void DialogTexts() {
    TfrmCustomizeToolbar dialog(m_language, Entries(u"2 | 15 (33)"_s), false, nullptr);
    const TButtonList &current = ListOf(dialog, u'c');
    QCOMPARE(current.item(0)->text(), u"Back"_s);
    QCOMPARE(current.item(1)->text(), u"Separator"_s);
    QVERIFY(!current.item(0)->icon().isNull() && current.item(1)->icon().isNull());
    QCOMPARE(ListOf(dialog, u'a').item(1)->text(), QString());
  }

  // What is dragged here from elsewhere is none of ours.
  void ForeignDrops() {
    TfrmCustomizeToolbar dialog(m_language, Entries(u"0 | 3"_s), false, nullptr);
    dialog.show();
    TButtonList &current = ListOf(dialog, u'c');
    for (const QByteArray &text : {"1 lvCurrent 0"_ba, "lvCurrent"_ba, ""_ba,
                                   QByteArray::number(QCoreApplication::applicationPid()) + " lvCurrent 77"}) {
      QMimeData data;
      data.setData(u"application/x-zarvela-toolbar-item"_s, text);
      QDropEvent drop(QPointF(2, 2), Qt::CopyAction, &data, Qt::LeftButton, {});
      QApplication::sendEvent(current.viewport(), &drop);
      QCOMPARE(Text(current), u"0 | 3"_s);
    }
  }

  void Customizing_data() {
    Columns<QByteArray, QString, QString, QString>("before", "steps", "button", "after");
    const QString standard = Text(ToolbarDefinition::Default());
    Row("the file goes through a cancel", "[Toolbar]\n0=1\nx=1\nSep9=0\n2=1\n21=0\n"_ba, u"c0 remove"_s, u"cmdCancel"_s,
        u"Sep0=1 2=1 21=0"_s);
    Row("none is made by it", QByteArray(), u""_s, u"cmdCancel"_s, standard);
    Row("nothing before OK", "[Toolbar]\n0=1\n21=1\n"_ba, u"c0 remove a1 add"_s, u"cmdCancel"_s, u"0=1 21=1"_s);
    Row("what shows first", "[Toolbar]\n0=1\n1=0\nSep2=1\n2=1\n21=1\n"_ba, u"c0 remove c2 up"_s, u"cmdClose"_s,
        u"Sep0=1 21=1 2=1 1=0 0=0"_s);
    Row("nothing shows", "[Toolbar]\n0=1\nSep1=1\n2=1\n21=1\n"_ba, u"c0 remove remove remove c0 remove"_s,
        u"cmdClose"_s, u"0=0 2=0 21=0"_s);
    Row("the buttons of a later version stay", "[Toolbar]\n30=0\n31=1\n21=1\n"_ba, u""_s, u"cmdClose"_s,
        u"31=1 21=1 30=0"_s);
    Row("reset", "[Toolbar]\n0=0\n21=0\n"_ba, u"a1 add"_s, u"cmdReset"_s, standard);
  }
  void Customizing() {
    QFETCH(QByteArray, before);
    QFETCH(QString, steps);
    QFETCH(QString, button);
    QFETCH(QString, after);
    if (!before.isNull()) Write(before);
    Make();
    OnModalDialog<TfrmCustomizeToolbar>([&](TfrmCustomizeToolbar &dialog) {
      for (const QString &step : steps.split(u' ', Qt::SkipEmptyParts)) Do(dialog, step);
      Click(dialog, qPrintable(button));
    });
    (*m_actions)[TCommand::CustomizeToolbar]->trigger();
    QCOMPARE(Text(m_panel->Bar().Entries()), after);
    QFile file(File());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QString::fromLatin1(file.readAll()).remove(u"[Toolbar]\n"_s).simplified(), after);
  }

  // Nothing is lost of a file that cannot be read, and the user is told when he wants it written.
  void UnusableFile() {
    QFile huge(File());
    QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(65 * 1024 * 1024));
    huge.close();
    Make();
    QCOMPARE(m_panel->Bar().Entries(), ToolbarDefinition::Default());
    OnModalDialog<TfrmCustomizeToolbar>([](TfrmCustomizeToolbar &dialog) { dialog.reject(); });
    (*m_actions)[TCommand::CustomizeToolbar]->trigger();
    QVERIFY(m_window->findChild<QMessageBox *>() == nullptr);
    QCOMPARE(QFileInfo(File()).size(), 65 * 1024 * 1024);
    QVERIFY(QFile::remove(File()) && QDir().mkdir(File()));
    OnModalDialog<TfrmCustomizeToolbar>([](TfrmCustomizeToolbar &dialog) { dialog.accept(); });
    (*m_actions)[TCommand::CustomizeToolbar]->trigger();
    QTRY_VERIFY(m_window->findChild<QMessageBox *>() != nullptr);
  }

  void ButtonsFollowTheirCommands() {
    Make(u"0 2 (3) 7 16 21 22"_s);
    const auto button = [this](const char *name) { return m_panel->Bar().FindButton(QLatin1String(name)); };
    QVERIFY(button("tbOpen") == nullptr);
    QVERIFY(button("tbForward") != nullptr && !button("tbForward")->isVisible());
    QCOMPARE(button("tbSecurity")->menu(), m_actions->Menu(TMenu::Security));
    QCOMPARE(button("tbBack")->toolTip(), u"Back (Alt+Left)"_s);
    QCOMPARE(button("tbBack")->statusTip(), u"Go back to the page before this one"_s);
    QCOMPARE(button("tbNew")->menu(), m_actions->Menu(TMenu::NewTab));
    QAction *back = (*m_actions)[TCommand::Back];
    back->setEnabled(false);
    QVERIFY(!button("tbBack")->isEnabled());
    back->setEnabled(true);
    int pressed = 0;
    connect(back, &QAction::triggered, this, [&pressed] { ++pressed; });
    button("tbBack")->click();
    QCOMPARE(pressed, 1);
    QAction *full = (*m_actions)[TCommand::FullScreen];
    full->setChecked(true);
    QVERIFY(button("tbFullScreen")->isChecked());
    button("tbFullScreen")->click();
    QVERIFY(!full->isChecked() && !button("tbFullScreen")->isChecked());
  }

  // A browser of major version 4 has no menu of search engines.
  void SearchWithoutMenu() {
    Make(u"7"_s);
    QVERIFY(m_panel->Bar().FindButton(u"tbSearch"_s)->menu() != nullptr);
    TToolbarPanel plain(*m_actions, m_language, false, new QWidget(), m_window.get());
    plain.Bar().SetEntries(Entries(u"7"_s));
    QVERIFY(plain.Bar().FindButton(u"tbSearch"_s)->menu() == nullptr);
  }

  // In any width: what is to be seen lies in its panel as a whole, and all else is in the menu, in its order.
  void Chevron_data() {
    Columns<Qt::LayoutDirection>("direction");
    Row("from left to right", Qt::LeftToRight);
    Row("from right to left", Qt::RightToLeft);
  }
  void Chevron() {
    QFETCH(Qt::LayoutDirection, direction);
    Make(u"2 3 | 4 5 | 12 16 (17)"_s);
    m_window->setLayoutDirection(direction);
    const auto *main = m_window->findChild<QWidget *>(u"pnlToolbarMain"_s);
    const auto *extender = m_window->findChild<QWidget *>(u"tbarToolbarExtender"_s);
    auto *menu = m_window->findChild<QMenu *>(u"pmToolBarExtender"_s);
    const QStringList all{u"tbBack"_s, u"tbForward"_s, u"tbStop"_s, u"tbRefresh"_s, u"tbFontSize"_s, u"tbFullScreen"_s};
    const int whole = m_panel->sizeHint().width();
    for (int width = whole + 20; width >= 0; width -= 7) {
      m_panel->resize(width, 28);
      QCOMPARE(extender->width() > 0, width < whole);
      QStringList names;
      int edge = direction == Qt::LeftToRight ? 0 : main->width();
      for (const QString &name : all) {
        const QToolButton *button = m_panel->Bar().FindButton(name);
        if (!button->isVisible()) continue;
        QVERIFY(main->rect().contains(QRect(button->x(), 0, button->width(), 1)));
        QVERIFY(direction == Qt::LeftToRight ? button->x() >= edge : button->geometry().right() < edge);
        edge = direction == Qt::LeftToRight ? button->geometry().right() : button->x();
        names.append(name);
      }
      Q_EMIT menu->aboutToShow();
      QList<QAction *> items = menu->actions();
      QCOMPARE(items.takeLast()->text(), m_language.Global("Customize"));
      if (!items.isEmpty()) {
        QVERIFY(!items.first()->isSeparator());
        QVERIFY(items.takeLast()->isSeparator());
      }
      for (const QAction *item : items) {
        if (!item->isSeparator()) names.append(item->objectName());
      }
      QCOMPARE(names, all);
    }
  }

  void ChevronItems() {
    Make(u"13 | | 7 12 16 4 14 15 22"_s);
    (*m_actions)[TCommand::FullScreen]->setChecked(true);
    (*m_actions)[TCommand::Stop]->setEnabled(false);
    m_panel->resize(20, 28);
    auto *menu = m_window->findChild<QMenu *>(u"pmToolBarExtender"_s);
    for (int opened = 0; opened < 2; ++opened) {
      Q_EMIT menu->aboutToShow();
      m_actions->Menu(TMenu::EditWith)->addAction(u"none"_s)->setEnabled(false);
      QStringList texts;
      for (const QAction *item : menu->actions()) texts.append(item->isSeparator() ? u"-"_s : item->text());
      QCOMPARE(texts, QStringList({u"Print"_s, u"-"_s, u"-"_s, u"Search"_s, u"Text size"_s, u"Full screen"_s, u"Stop"_s,
                                   u"Page source"_s, u"Images"_s, u"-"_s, m_language.Global("Customize")}));
    }
    const auto item = [menu](const char *name) { return menu->findChild<QAction *>(QLatin1String(name)); };
    QVERIFY(!item("tbStop")->isEnabled() && item("tbPrint")->isEnabled());
    QVERIFY(item("tbFullScreen")->isCheckable() && item("tbFullScreen")->isChecked());
    QVERIFY(!item("tbPrint")->isCheckable());
    QCOMPARE(item("tbPrint")->statusTip(), u"Print this page"_s);
    // Where a drop-down has nothing to offer there is its command.
    QVERIFY(item("tbViewSource")->menu() == nullptr);
    // A drop-down gives its items, which stay in its own menu, and no command.
    QCOMPARE(item("tbFontSize")->menu()->actions(), m_actions->Menu(TMenu::FontSize)->actions());
    QCOMPARE(menu->findChildren<QMenu *>().size(), 2);  // none is left from the first time
    QVERIFY(m_actions->Menu(TMenu::View)->actions().contains(m_actions->Menu(TMenu::FontSize)->menuAction()));
    int printed = 0;
    connect((*m_actions)[TCommand::Print], &QAction::triggered, this, [&printed] { ++printed; });
    item("tbPrint")->trigger();
    QCOMPARE(printed, 1);
    OnModalDialog<TfrmCustomizeToolbar>([](TfrmCustomizeToolbar &dialog) { dialog.reject(); });
    menu->actions().last()->trigger();
  }

  // One ink, which is that of texts, and colours under the mouse; or colours at all times, at once.
  void Colours() {
    Make(u"6 16"_s);
    const auto colours = [this](QIcon::Mode mode) {
      const QImage image = m_panel->Bar().FindButton(u"tbHome"_s)->icon().pixmap(QSize(20, 20), 1, mode).toImage();
      QSet<int> hues;
      for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
          const QColor color = image.pixelColor(x, y);
          if (color.alpha() > 200) hues.insert(color.hsvSaturation() / 64);
        }
      }
      return hues.size();
    };
    QPalette palette = QGuiApplication::palette();
    palette.setColor(QPalette::ButtonText, Qt::black);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    QGuiApplication::setPalette(palette);
    QCOMPARE(colours(QIcon::Normal), 1);
    const QIcon icon = m_panel->Bar().FindButton(u"tbHome"_s)->icon();
    QVERIFY(icon.pixmap(20, QIcon::Selected).toImage() != icon.pixmap(20, QIcon::Normal).toImage());
    QCOMPARE(colours(QIcon::Selected), 1);
    QVERIFY(colours(QIcon::Active) > 1);
    QVERIFY(!m_panel->Bar().ShowsColor());
    m_settings->Set(Setting::ToolbarShowColor, true);
    QVERIFY(m_panel->Bar().ShowsColor() && colours(QIcon::Normal) > 1);
    m_settings->Set(Setting::ToolbarShowColor, false);
    QCOMPARE(colours(QIcon::Normal), 1);
  }

  void EveryKindHasItsTextAndPicture() {
    for (const TToolButtonKind &kind : ToolButtonKinds) {
      QVERIFY2(!m_language.Text(kind.hint).startsWith(u"UNDEFINED"_s), kind.name);
      QVERIFY2(!CommandIcon(kind.icon).pixmap(20).isNull(), kind.name);
    }
  }

 private:
  // Shown wide enough for everything; without `entries` as the file has it.
  void Make(const QString &entries = {}) {
    m_panel = new TToolbarPanel(*m_actions, m_language, true, new QWidget(), m_window.get());
    m_customizing =
        std::make_unique<TToolbarCustomizing>(m_window.get(), *m_actions, m_language, *m_settings, m_panel->Bar());
    if (!entries.isEmpty()) m_panel->Bar().SetEntries(Entries(entries));
    m_window->resize(1200, 100);
    m_panel->resize(1200, 28);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
  }
  [[nodiscard]] static QString File() { return ProgramFolders::UserData() + u"/tbmain.dat"_s; }
  static void Write(const QByteArray &bytes) {
    QFile file(File());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
  }

  TLanguage m_language;
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_store;
  std::unique_ptr<TSettings> m_settings;
  std::unique_ptr<QWidget> m_window;
  std::unique_ptr<TActions> m_actions;
  TToolbarPanel *m_panel = nullptr;  // belongs to the window
  std::unique_ptr<TToolbarCustomizing> m_customizing;
};

QTEST_MAIN(TestToolbar)
#include "test_toolbar.moc"
