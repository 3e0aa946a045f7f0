#pragma once

#include <functional>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTextEdit>
#include <QToolButton>
#include <QWebEnginePage>

#include "actions/command_table.h"
#include "browser/page/find_bar.h"
#include "browser/tabs/home_page.h"
#include "search/address_bar.h"
#include "support/modal_dialogs.h"
#include "ui/confirm_dialog.h"
#include "window/main_window_fixture.h"

using namespace Qt::StringLiterals;

#define SOON(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, TMainWindowFixture::LoadTime)

// One main window for many commands: the ways to a command, steps to make rows of a table from, and a way to put the
// window back in order: one tab, on /a, with the settings that it began with. The home page is /b.
class TCommandsFixture {
 public:
  using TStep = std::function<void()>;

  void Prepare() {
    QVERIFY(m_programs.isValid());
    QFile mail(m_programs.filePath(u"xdg-email"_s));
    QVERIFY(mail.open(QIODevice::WriteOnly));
    mail.write("#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$0.new\" && mv \"$0.new\" \"$0.got\"\n");
    mail.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    mail.close();
    for (const char *name : {"xdg-settings", "xdg-mime"})
      QVERIFY(QFile::link(u"/bin/true"_s, m_programs.filePath(QLatin1String(name))));
    qputenv("PATH", m_programs.path().toLocal8Bit() + ':' + qgetenv("PATH"));

    m_f.Prepare();
    m_f.server.RoutePage("/a", "Page A", "word word word");
    m_f.server.RoutePage("/b", "Page B");
    m_f.server.RoutePage("/c", "Page C");
    m_f.server.RoutePage("/odd", "Q&amp;A? 100% #1");
    m_f.server.RoutePage("/edit", "Edit", "<textarea id=t>text</textarea><script>t.focus();t.select()</script>");
    m_f.server.Route("/never", TTestResponse{.neverAnswer = true});
    m_f.Begin();
    HomePage::Choose(*m_f.store, Url(u"/b"_s));
    TZVOptions(*m_f.store).Set(Setting::ConfirmCloseAll, false);
    m_f.Open();
    for (const TSetting &setting : Setting::All) {
      std::visit([this](const auto &row) { m_stored.append(QVariant::fromValue(Settings().Get(row))); }, setting);
    }
  }
  [[nodiscard]] TfrmMain &Window() const { return *m_f.window; }
  [[nodiscard]] TTabStrip &Tabs() const { return Window().Tabs(); }
  [[nodiscard]] TBrowserTab *Active() const { return Tabs().GetActivePage(); }
  [[nodiscard]] TSettings &Settings() const { return m_f.window->Settings(); }
  [[nodiscard]] QAction *Action(TCommand command) const { return Window().Actions()[command]; }
  [[nodiscard]] QLineEdit *AddressEdit() const { return Window().findChild<TAddressBar *>()->lineEdit(); }
  [[nodiscard]] QString Url(const QString &path) const { return m_f.server.Url(path); }
  [[nodiscard]] QString MailFile() const { return m_programs.filePath(u"xdg-email.got"_s); }
  [[nodiscard]] QStringList Mailed() const {
    QFile file(MailFile());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()).trimmed().split(u'\n') : QStringList();
  }
  [[nodiscard]] QByteArray CacheHeader(const QByteArray &path) const {
    return m_f.server.Requests(path).last().Header("cache-control");
  }
  // How many tabs, which is in front (from 0), and its address.
  [[nodiscard]] QString State() const {
    return u"%1:%2 %3"_s.arg(QString::number(Tabs().TabCount()), QString::number(Tabs().ActiveTabIndex()),
                             Active()->GetLocationUrl().remove(Url(QString())));
  }
  [[nodiscard]] static QWidget *Dialog(const char *name) {
    for (QWidget *widget : QApplication::topLevelWidgets()) {
      if (widget->isVisible() && (widget->inherits(name) || widget->objectName() == QLatin1String(name))) return widget;
    }
    return nullptr;
  }

  void Load(const QString &path) {
    TBrowserTab *tab = Active();
    tab->Navigate(Url(path));
    QTRY_VERIFY_WITH_TIMEOUT(tab->GetLocationUrl() == Url(path) && !tab->Busy(), m_f.LoadTime);
  }
  void LoadBeside(const QString &path) {
    Tabs().NewTab();
    Load(path);
  }
  void RunScript(const QString &script) { Active()->Browser()->EnginePage()->runJavaScript(script); }

  [[nodiscard]] bool IsAsNew(const TBrowserTab &tab) const {
    const auto *bar = tab.findChild<TFindBar *>();
    return State() == u"1:0 /a"_s && tab.Load() == TLoad::Shown && !tab.BackEnabled() && !tab.ForwardEnabled() &&
           tab.Browser()->ZoomPercent() == 100 && !tab.Locked() && tab.StickyName().isEmpty() &&
           !tab.HideFromCloseAll() && (bar == nullptr || !bar->isVisible());
  }
  void PutInOrder() {
    for (QWidget *widget : QApplication::topLevelWidgets()) {
      if (widget->isVisible() && widget != m_f.window.get()) widget->close();
    }
    if (!Window().isVisible()) m_f.Open();
    Window().activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&Window()));
    // No key is held any more.
    QTest::keyPress(&Window(), Qt::Key_Shift);
    Window().menuBar()->setActiveAction(nullptr);
    Action(TCommand::FullScreen)->setChecked(false);
    Action(TCommand::AutoRefreshNone)->trigger();
    Window().findChild<QTimer *>(u"tmrRefresh"_s)->setSingleShot(false);
    for (size_t i = 0; i < Setting::All.size(); ++i) {
      std::visit(
          [this, i](const auto &row) {
            using TValue = decltype(Settings().Get(row));
            Settings().Set(row, m_stored.at(qsizetype(i)).value<TValue>());
          },
          Setting::All[i]);
    }
    HomePage::Choose(*m_f.store, Url(u"/b"_s));
    Active()->Browser()->ResetZoom();
    if (!IsAsNew(*Active())) {
      const TBrowserTab *fresh = Tabs().NewTab(TTabPlace::AtEnd);
      for (TBrowserTab *tab : Tabs().Tabs()) {
        if (tab != fresh) tab->Close();
      }
      Load(u"/a"_s);
    }
    QTest::keyClick(AddressEdit(), Qt::Key_Escape);  // what was typed is given up
    Active()->setFocus();
    m_f.server.ForgetRequests();
  }

  // ---- the ways to a command ----

  void Press(const QString &key) {
    const QKeyCombination press = QKeySequence(key, QKeySequence::PortableText)[0];
    QTest::keyClick(&Window(), press.key(), press.keyboardModifiers());
  }
  void Choose(TMenu menu, TCommand command) {
    QList<QMenu *> opened;
    for (TMenu above = menu;; above = MenuRows()[static_cast<size_t>(above)].parent) {
      opened.prepend(Window().Actions().Menu(above));
      const TMenu parent = MenuRows()[static_cast<size_t>(above)].parent;
      if (parent == above) QVERIFY(Window().menuBar()->actions().contains(opened.first()->menuAction()));
      if (parent == above || parent == TMenu::Count) break;
    }
    for (qsizetype i = 0; i < opened.size(); ++i) {
      Q_EMIT opened.at(i)->aboutToShow();
      if (i > 0) QVERIFY(opened.at(i - 1)->actions().contains(opened.at(i)->menuAction()));
    }
    QVERIFY(opened.last()->actions().contains(Action(command)));
    QVERIFY(Action(command)->isEnabled() && Action(command)->isVisible());
    Action(command)->trigger();
  }
  void ClickButton(TCommand command) {
    // Wide enough for every button, whatever the desktop's font is.
    Window().resize(1600, Window().height());
    for (QToolButton *button : Window().findChildren<QToolButton *>()) {
      if (button->defaultAction() == Action(command)) {
        QTRY_VERIFY(button->isVisible() && button->isEnabled());
        QTest::mouseClick(button, Qt::LeftButton);
        return;
      }
    }
    QFAIL("no button");
  }

  // ---- steps that rows share ----

  [[nodiscard]] TStep Shows(const QString &state) {
    return [this, state] { SOON(State(), state); };
  }
  [[nodiscard]] TStep Opens(const char *dialog) {
    return [dialog] { QTRY_VERIFY_WITH_TIMEOUT(Dialog(dialog) != nullptr, TMainWindowFixture::LoadTime); };
  }
  template <typename TSettingRow, typename TValue>
  [[nodiscard]] TStep Stores(const TSettingRow &setting, const TValue &value) {
    return [this, setting, value] { QCOMPARE(TZVOptions(*m_f.store).Get(setting), value); };
  }
  // A dialog that blocks is to open; `answer` looks at it and closes it.
  template <typename T>
  [[nodiscard]] TStep Asks(std::function<void(T &)> answer) {
    return [this, answer] {
      OnModalDialog<T>([this, answer](T &dialog) {
        m_asked = true;
        answer(dialog);
      });
    };
  }
  [[nodiscard]] TStep Asked() {
    return [this] { QTRY_VERIFY(m_asked); };
  }
  template <typename T>
  static void Reject(T &dialog) {
    dialog.reject();
  }
  // A question with exactly these texts, which is answered with OK.
  [[nodiscard]] TStep AsksQuestion(const TTextKey &caption, const TTextKey &first, const TTextKey &second) {
    return Asks<TfrmConfirm>([this, caption, first, second](TfrmConfirm &dialog) {
      const TLanguage &language = Window().Language();
      CompareTexts(dialog.windowTitle(), language.Text(caption));
      const QList<TBrowserTab *> tabs = Tabs().Tabs();
      const auto going = std::ranges::count_if(tabs, [](TBrowserTab *tab) { return !tab->HideFromCloseAll(); });
      CompareTexts(dialog.findChild<QLabel *>(u"lblTitle"_s)->text(),
                   language.Text(first).replace(u"%1"_s, QString::number(going)));
      CompareTexts(dialog.findChild<QTextEdit *>(u"mmoPrompt2"_s)->toPlainText(), language.Text(second));
      dialog.findChild<QPushButton *>(u"cmdOK"_s)->click();
    });
  }
  // Chooses a file by name.
  [[nodiscard]] TStep AsksFile(const QString &name) {
    return Asks<QFileDialog>([name](QFileDialog &dialog) {
      auto *box = dialog.findChild<QLineEdit *>();
      box->setText(name);
      QTest::keyClick(box, Qt::Key_Return);
    });
  }
  static void CompareTexts(const QString &actual, const QString &expected) { QCOMPARE(actual, expected); }

  [[nodiscard]] static TStep Then(TStep first, TStep second) {
    return [=] {
      first();
      if (!QTest::currentTestFailed()) second();
    };
  }
  [[nodiscard]] TStep With(const QString &path) {
    return [this, path] { LoadBeside(path); };
  }

  [[nodiscard]] static QByteArray ReadFile(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  static void WriteFile(const QString &path, const QByteArray &bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
  }
  // What the text box of the page /edit holds.
  [[nodiscard]] QString PageText() {
    QString text = u"?"_s;
    bool isThere = false;
    Active()->Browser()->EnginePage()->runJavaScript(u"t.value"_s, [&](const QVariant &value) {
      text = value.toString();
      isThere = true;
    });
    return QTest::qWaitFor([&] { return isThere; }) ? text : u"no answer"_s;
  }
  [[nodiscard]] QString FindResult() const {
    return Active()->findChild<TFindBar *>()->findChild<QLabel *>(u"lblResult"_s)->text();
  }
  // The positions in the menu of text sizes that are checked when it opens.
  [[nodiscard]] QList<int> CheckedFonts() const {
    QMenu *menu = Window().Actions().Menu(TMenu::FontSize);
    Q_EMIT menu->aboutToShow();
    QList<int> positions;
    for (int i = 0; i < menu->actions().size(); ++i) {
      if (menu->actions().at(i)->isChecked()) positions.append(i);
    }
    return positions;
  }
  // A menu is to pop up, which blocks until it is closed.
  [[nodiscard]] TStep OnPopup(TMenu menu) {
    return [this, menu] {
      auto *timer = new QTimer(&Window());
      QObject::connect(timer, &QTimer::timeout, timer, [this, timer, menu] {
        QWidget *open = QApplication::activePopupWidget();
        if (open == nullptr) return;
        m_asked = open == Window().Actions().Menu(menu);
        open->close();
        timer->deleteLater();
      });
      timer->start(1);
    };
  }

  TMainWindowFixture m_f;
  QTemporaryDir m_programs;
  QVariantList m_stored;
  bool m_asked = false;
};
