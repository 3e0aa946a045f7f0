#pragma once

#include <QLineEdit>
#include <QMainWindow>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

#include "config/language.h"
#include "config/settings.h"
#include "history/history_store.h"
#include "search/address_bar.h"
#include "support/shipped_files.h"

// The address bar in a tool bar of a window, and the keys that are typed into it.
class TAddressBarFixture {
 public:
  // The bar becomes the window's; it has the keyboard.
  void Make(QMainWindow &window, const TLanguage &language, TSettings &settings, THistoryStore &history) {
    m_window = &window;
    band = window.addToolBar(QStringLiteral("band"));
    bar = new TAddressBar(language, settings, history, band);
    band->addWidget(bar);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    bar->FocusAll();
    QTRY_VERIFY(Edit()->hasFocus());
  }

  [[nodiscard]] QLineEdit *Edit() const { return bar->lineEdit(); }
  [[nodiscard]] QStringList Entries() const {
    QStringList entries;
    for (int row = 0; row < bar->count(); ++row) entries.append(bar->itemText(row));
    return entries;
  }
  // Keys go the way of real ones: to the window, and from there to whatever has the keyboard.
  void Type(const QString &text) const {
    QVERIFY(Edit()->hasFocus());
    Edit()->selectAll();
    AddTyped(text);
  }
  void AddTyped(const QString &text) const {
    for (const QChar c : text) QTest::keyClick(m_window->windowHandle(), c.toLatin1());
  }
  void Press(Qt::Key key, Qt::KeyboardModifiers keys = {}) const {
    QTest::keyClick(m_window->windowHandle(), key, keys);
  }
  // What the user does to open an address.
  void Enter(const QString &text, Qt::KeyboardModifiers keys = {}) const {
    bar->FocusAll();
    Type(text);
    Press(Qt::Key_Return, keys);
  }

  QToolBar *band = nullptr;
  TAddressBar *bar = nullptr;

 private:
  QMainWindow *m_window = nullptr;
};

// The bar with nothing beside it.
class TLoneAddressBarFixture : public TAddressBarFixture {
 public:
  TLoneAddressBarFixture() {
    window.resize(800, 600);
    if (!language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini")))) qFatal("no language");
  }
  // With one of the styles of completion.
  void Make(const char *style = "none") {
    settings.Set(Setting::AutoCompleteStyle, QString::fromLatin1(style));
    TAddressBarFixture::Make(window, language, settings, history);
  }
  // Typed addresses of earlier, the last one on top.
  void File(std::initializer_list<const char *> addresses) {
    TTypedAddresses typed;
    for (const char *address : addresses) typed.File(QString::fromLatin1(address));
    typed.Save(store);
  }
  [[nodiscard]] QStringList Filed() const {
    TTypedAddresses typed;
    typed.Load(store);
    return typed.List();
  }
  void Visit(const QString &address, const QString &title, int times) {
    for (int i = 0; i < times; ++i) history.AddVisit(address, title);
    QVERIFY(history.Flush());
  }

  QTemporaryDir folder;
  TLanguage language;
  TRegistryStore store{folder.filePath(QStringLiteral("registry.sqlite"))};
  TSettings settings{store};
  THistoryStore history{folder.filePath(QStringLiteral("history.sqlite"))};
  QMainWindow window;
};
