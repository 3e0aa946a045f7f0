#include <QAbstractButton>
#include <QDir>
#include <QGroupBox>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QWebEngineProfile>

#include "browser/downloads/download_list.h"
#include "browser/downloads/download_window.h"
#include "browser/engine/print_preview.h"
#include "browser/page/find_bar.h"
#include "browser/page/page_menu.h"
#include "browser/page/permission_bar.h"
#include "browser/page/properties_dialog.h"
#include "browser/page/script_dialog.h"
#include "browser/page/sign_in_dialog.h"
#include "browser/tabs/close_all_dialog.h"
#include "browser/tabs/load_queue.h"
#include "chrome/favorites/add_favorite_dialog.h"
#include "chrome/favorites/favorite_commands.h"
#include "chrome/favorites/favorite_dialog.h"
#include "chrome/folder_view/folder_view.h"
#include "chrome/open_dialog.h"
#include "chrome/save_group_dialog.h"
#include "groups/halvex_group_dialog.h"
#include "security/security_dialog.h"
#include "support/modal_dialogs.h"
#include "support/shipped_files.h"
#include "ui/confirm_dialog.h"
#include "window/main_window_fixture.h"

using namespace Qt::StringLiterals;

// In each language nothing is left untranslated in the main window, and an Alt+letter leads to one place: within a
// menu, within the main window with all that can stand in it, and within each dialog.
class TestMnemonics final : public QObject {
  Q_OBJECT

 private:
  // The letters that can be pressed at the same time, each with the text that has it.
  class TLetters final {
   public:
    explicit TLetters(const QString &place) : m_place(place) {}

    void Take(const QKeySequence &key, const QString &owner) {
      if (key.isEmpty()) return;
      QVERIFY2(!m_owners.contains(key),
               qPrintable(u"%1: %2 is “%3” and “%4”"_s.arg(m_place, key.toString(), m_owners.value(key), owner)));
      m_owners.insert(key, owner);
    }
    void Take(const QString &text) { Take(QKeySequence::mnemonic(text), text); }
    // What rests or is hidden does not hear its letter.
    void TakeAll(const QWidget &form) {
      for (const QWidget *widget : form.findChildren<QWidget *>()) {
        if (!widget->isVisibleTo(&form) || !widget->isEnabledTo(&form)) continue;
        if (const auto *button = qobject_cast<const QAbstractButton *>(widget)) Take(button->text());
        if (const auto *group = qobject_cast<const QGroupBox *>(widget)) Take(group->title());
        const auto *label = qobject_cast<const QLabel *>(widget);
        if (label != nullptr && label->buddy() != nullptr) Take(label->text());
      }
    }
    [[nodiscard]] qsizetype Count() const { return m_owners.size(); }

   private:
    QString m_place;
    QHash<QKeySequence, QString> m_owners;
  };

 private Q_SLOTS:
  void initTestCase() {
    m_f.Prepare();
    m_languages = QDir(SourceFile(QStringLiteral("Languages"))).entryList({u"*.ini"_s});
    QCOMPARE(m_languages.size(), 6);
  }
  void init() { m_f.Begin(); }
  void cleanup() { m_f.End(); }

  void Windows_data() { Languages(); }
  void Windows() {
    QFETCH(QString, file);
    TZVOptions options(*m_f.store);
    options.Set(Setting::LanguageFile, file);
    options.SetSearchEngines({{u"a"_s, u"http://a.test/"_s}});
    options.SetQuickSearchEntries({{u"a"_s, u"http://a.test/"_s}});
    m_f.Open();
    const TLanguage &language = m_f.window->Language();
    QCOMPARE(language.FileName(), file);

    TLetters window(u"window"_s);
    for (const TCommandRow &row : CommandRows()) {
      for (const QKeySequence &key : m_f.window->Actions()[row.command]->shortcuts()) {
        window.Take(key, QString::fromLatin1(row.name));
      }
    }
    const qsizetype keys = window.Count();
    for (const QAction *menu : m_f.window->menuBar()->actions()) window.Take(menu->text());
    QCOMPARE(window.Count(), keys + m_f.window->menuBar()->actions().size());
    window.TakeAll(*m_f.window);
    TPermissionBar permission(language);
    permission.Ask(u"?"_s, true);
    QTRY_VERIFY(permission.findChild<QAbstractButton *>(u"cmdAllow"_s)->isEnabled());
    window.TakeAll(permission);
    window.TakeAll(TFindBar(language));
    for (const char *key : {"TryAgain", "GoBack", "GoOnAnyway", "Reload"}) window.Take(language.Text("PAGES", key));
    QCOMPARE(window.Count(), keys + m_f.window->menuBar()->actions().size() + 8);

    for (const QAction *action : m_f.window->findChildren<QAction *>()) {
      for (const QString &text : {action->text(), action->toolTip(), action->statusTip()}) CheckNoMarker(text);
    }
    for (const QWidget *widget : m_f.window->findChildren<QWidget *>()) {
      for (const char *property : {"windowTitle", "toolTip", "accessibleName", "text", "title"}) {
        CheckNoMarker(widget->property(property).toString());
      }
    }
    QMenu *languages = m_f.window->Actions().Menu(TMenu::Languages);
    Q_EMIT languages->aboutToShow();
    QCOMPARE(languages->actions().size(), m_languages.size());

    for (const TMenuRow &row : MenuRows()) {
      // Names of languages and programs.
      if (row.menu == TMenu::Languages || row.menu == TMenu::EditWith || row.menu == TMenu::OpenWith) continue;
      const QMenu *menu = m_f.window->Actions().Menu(row.menu);
      if (row.menu != TMenu::Tab) Q_EMIT m_f.window->Actions().Menu(row.menu)->aboutToShow();
      CheckMenu(*menu, QString::fromLatin1(row.name));
    }
    m_f.window->Actions()[TCommand::OrganizeFavorites]->trigger();
    auto *organizer = m_f.window->findChild<QDialog *>(u"TfrmOrganizeFavorites"_s);
    QMenu organizing;
    const auto *list = organizer->findChild<TFolderView *>();
    for (int i = 0; i < int(TFolderAction::Count); ++i) organizing.addAction(list->Action(TFolderAction(i)));
    CheckMenu(organizing, u"organizer"_s);
    organizer->close();
    TLoadQueue queue(m_f.window->Tabs());
    TFavoriteLauncher launcher(m_f.window.get(), m_f.window->Tabs(), queue);
    TFavoriteCommands favorites(m_f.window.get(), launcher, language);
    QMenu favorite;
    favorites.Fill(favorite, {});
    CheckMenu(favorite, u"favorite"_s);
    for (const TCommand command : {TCommand::OrganizeSearchEngines, TCommand::OrganizeQuickSearch, TCommand::About,
                                   TCommand::TabName, TCommand::CustomizeToolbar}) {
      OnModalDialog<QDialog>([](QDialog &dialog) {
        dialog.inherits("TfrmSearchEngine") ? CheckEditor(dialog) : Check(dialog, 0);
        dialog.reject();
      });
      m_f.window->Actions()[command]->trigger();
    }
  }

  void Dialogs_data() { Languages(); }
  void Dialogs() {
    QFETCH(QString, file);
    TLanguage language;
    QVERIFY(language.LoadFile(SourceFile(QStringLiteral("Languages/") + file)));
    const QString yes = language.Global("Yes"), no = language.Global("No"), cancel = language.Global("Cancel");
    Check(TfrmConfirm({.firstLine = u"?"_s, .ok = yes, .cancel = no, .checkBox = language.Text("CONFIRM", "DontAsk")}),
          3);
    Check(TfrmConfirm({.ok = language.Global("OK"), .checkBox = language.Global("PopupNotifyDontAsk")}), 1);
    Check(TfrmConfirm({.ok = language.Text("DOWNLOADS", "Run"), .cancel = cancel}), 1);
    Check(TfrmConfirm({.ok = language.Text("HalvexGroups", "MoveToTrash"), .cancel = cancel}), 1);
    TScriptDialog leave(TScriptDialog::TKind::BeforeUnload, u"?"_s, u"?"_s, language);
    leave.OfferToKeep(true);
    Check(leave, 3);
    Check(TSignInDialog(u"?"_s, u"?"_s, false, language), 3);
    Check(TPropertiesDialog(TPageProperties{}, language), 0);
    Check(TfrmCloseAll(language, {u"a"_s}), 4);
    Check(TfrmOpen(language, {}), 3);
    TZoneStore zones(*m_f.store);
    const TIEZoneMgr manager(&zones, language);
    TfrmSecurity security(zones, manager, language);
    security.ShowZone(4);
    Check(security, 7);
    Check(TPrintPreview(language, {}, u"?"_s, nullptr), 6);

    Check(TfrmAddFavorite(language, u"a"_s, m_f.Path(u"a"_s), QString()), 3);
    Check(TfrmSaveGroup(language, m_f.Path(u"a"_s), {}), 4);
    Check(TfrmFavorite(language, {u"a"_s, m_f.Path(u"a.url"_s), false}), 2);

    QFile group(m_f.Path(u"x.hgp"_s));
    QVERIFY(group.open(QIODevice::WriteOnly));
    group.write("[HalvexGroup]\na=http://a.test/\n");
    group.close();
    TfrmHalvexGroup editor(language, group.fileName());
    CheckEditor(editor);

    // Of a download's buttons only those show that it has a use for; together they cover every state.
    QWebEngineProfile profile;
    TDownloadList downloads(profile, language, *m_f.store);
    TDownloadWindow list(downloads, language);
    for (auto *button : list.findChildren<QAbstractButton *>()) {
      button->setEnabled(true);
      button->show();
    }
    Check(list, 8);

    using TRequest = QWebEngineContextMenuRequest;
    const QUrl address(u"http://a.test/"_s);
    const TRequest::EditFlags all(0xffff);
    const TPageMenuPlace places[] = {
        {.canGoBack = true, .canGoForward = true},
        {.link = address, .media = address, .mediaType = TRequest::MediaTypeImage},
        {.link = address, .hasSelection = true},
        {.link = address,
         .media = address,
         .mediaType = TRequest::MediaTypeVideo,
         .mediaFlags = TRequest::MediaFlags(0xffff & ~TRequest::MediaInError)},
        {.editFlags = all, .hasSelection = true, .editable = true},
    };
    for (const TPageMenuPlace &place : places) {
      const TPageMenu menu(language, place, nullptr);
      QVERIFY(menu.actions().size() > 3);
      CheckMenu(menu, u"page menu"_s);
    }
  }

 private:
  void Languages() {
    QTest::addColumn<QString>("file");
    for (const QString &file : m_languages) QTest::newRow(qPrintable(file)) << file;
  }
  static void CheckNoMarker(const QString &text) {
    QVERIFY2(!text.startsWith(u"__"_s) && !text.startsWith(u"~~"_s) && !text.contains(u"UNDEFINED"_s),
             qPrintable(text));
  }
  static void CheckMenu(const QMenu &menu, const QString &name) {
    TLetters letters(name);
    for (const QAction *item : menu.actions()) letters.Take(item->text());
  }
  // `least`: how many letters there are, so that a dialog which hides everything does not pass.
  static void Check(const QWidget &dialog, int least) {
    TLetters letters(QString::fromLatin1(dialog.metaObject()->className()));
    letters.TakeAll(dialog);
    QVERIFY2(letters.Count() >= least, dialog.metaObject()->className());
  }
  // At rest, while an entry is added, and while one is changed.
  static void CheckEditor(QDialog &editor) {
    Check(editor, 3);
    for (const char *button : {"cmdInsert", "cmdUpdate"}) {
      auto *begin = editor.findChild<QAbstractButton *>(QLatin1String(button));
      QVERIFY(begin->isEnabled());
      begin->click();
      Check(editor, 4);
      editor.findChild<QAbstractButton *>(u"cmdUrlCancel"_s)->click();
    }
  }

  TMainWindowFixture m_f;
  QStringList m_languages;
};

int main(int argc, char **argv) {
  return RunWithEngine<TestMnemonics>(argc, argv);
}
#include "test_mnemonics.moc"
