#pragma once

#include <QClipboard>
#include <QComboBox>
#include <QInputDialog>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTreeView>

#include "browser/downloads/download_window.h"
#include "browser/tabs/close_all_dialog.h"
#include "chrome/favorites/add_favorite_dialog.h"
#include "chrome/favorites/links_bar.h"
#include "chrome/options/options_dialog.h"
#include "chrome/save_group_dialog.h"
#include "chrome/toolbar/customize_toolbar_dialog.h"
#include "config/shell_association.h"
#include "favorites/favorites_edit.h"
#include "favorites/favorites_folder.h"
#include "groups/group_folder.h"
#include "groups/halvex_group_dialog.h"
#include "platform/program_folders.h"
#include "search/search_engine_dialog.h"
#include "security/zone_store.h"
#include "window/commands_fixture.h"

// What each command of the program is prepared by, and what it must cause then.
class TCommandRows : protected TCommandsFixture {
 protected:
  struct TRow {
    TCommand command;
    TStep prepare;
    TStep effect;
  };

  [[nodiscard]] QList<TRow> Rows() {
    return FileRows() + EditRows() + PageRows() + ViewRows() + TabRows() + ToolRows() + ButtonRows();
  }

  [[nodiscard]] QList<TRow> ButtonRows() {
    return {
        {TCommand::TabListButton, OnPopup(TMenu::TabList), Asked()},
    };
  }

  [[nodiscard]] QList<TRow> FileRows() {
    const TStep none = [] {};
    const TStep question =
        Then([this] { Settings().Set(Setting::ConfirmCloseAll, true); },
             AsksQuestion({"CONFIRM", "CloseAll"}, {"CONFIRM", "CloseAllPrompt"}, {"CONFIRM", "Proceed"}));
    const TStep three = Then(With(u"/b"_s), With(u"/c"_s));
    const TStep middle = Then(three, [this] { Tabs().Activate(Tabs().Tab(1)); });
    const TStep list =
        Then(three,
             Asks<TfrmCloseAll>([](TfrmCloseAll &dialog) { dialog.findChild<QPushButton *>(u"cmdClose"_s)->click(); }));
    const TStep program = [this] {
      const QString folder = qEnvironmentVariable("XDG_DATA_HOME") + u"/applications"_s;
      WriteFile(folder + u"/mail.desktop"_s,
                "[Desktop Entry]\nType=Application\nName=Mail\nExec=xdg-email --read %u\n"
                "MimeType=x-scheme-handler/mailto;x-scheme-handler/news;\n");
    };
    const TStep mailed = [this] { QTRY_VERIFY_WITH_TIMEOUT(!Mailed().isEmpty(), m_f.LoadTime); };
    const TStep started = Then(mailed, [this] { QCOMPARE(Mailed(), QStringList(u"--read"_s)); });
    const TStep endQuestion =
        Then([this] { Settings().Set(Setting::ConfirmShutdown, true); },
             AsksQuestion({"CONFIRM", "ShutDown"}, {"CONFIRM", "ShutDownPrompt"}, {"CONFIRM", "Proceed"}));
    const TStep ended = Then(Asked(), [this] { QTRY_VERIFY(!Window().isVisible()); });
    return {
        {TCommand::NewBlank, none, Then(Shows(u"2:1 /b"_s), [this] { QVERIFY(AddressEdit()->hasFocus()); })},
        {TCommand::NewHome, none, Shows(u"2:1 /b"_s)},
        {TCommand::NewCurrent, none, Shows(u"2:1 /a"_s)},
        {TCommand::NewClipboard,
         [this] {
           QApplication::clipboard()->clear();
           Q_EMIT Window().Actions().Menu(TMenu::NewTab)->aboutToShow();
           QVERIFY(!Action(TCommand::NewClipboard)->isEnabled());
           QApplication::clipboard()->setText(u" %1\n"_s.arg(Url(u"/c"_s)));
         },
         Shows(u"2:1 /c"_s)},
        {TCommand::OpenFile, none, Opens("TfrmOpen")},
        {TCommand::SaveAs, none, Opens("dlgSaveAs")},
        {TCommand::PageSetup, none, Opens("QPageSetupDialog")},
        {TCommand::Print, none, Opens("QPrintDialog")},
        {TCommand::PrintNow, none, [] { QVERIFY(Dialog("QPrintDialog") == nullptr); }},
        {TCommand::PrintPreview, none, Opens("TPrintPreview")},
        {TCommand::MailNewMessage, none, Then(mailed, [this] { QCOMPARE(Mailed(), QStringList(u"mailto:"_s)); })},
        {TCommand::MailLink, [this] { Load(u"/odd?a=b&c=d"_s); },
         Then(mailed,
              [this] {
                const QString line = u"mailto:?subject=Q%26A%3F%20100%25%20%231%20%28%1%29&body=%1"_s;
                QCOMPARE(Mailed(), QStringList(line.arg(Url(u"/odd%3Fa%3Db%26c%3Dd"_s))));
              })},
        {TCommand::MailPage, none,
         Then(mailed,
              [this] {
                QCOMPARE(Mailed().first(), u"--attach"_s);
                const QByteArray page = ReadFile(Mailed().last());
                QVERIFY(page.contains("<BASE HREF=\"" + Url(u"/a"_s).toUtf8()));
                QFile::remove(Mailed().last());
              })},
        {TCommand::ReadMail, program, started},
        {TCommand::ReadNews, program, started},
        {TCommand::Properties, none, Opens("TPropertiesDialog")},
        // The tab that is left has its own past again, the one beside it had none.
        {TCommand::CloseTab,
         Then([this] { Load(u"/b"_s); },
              Then(With(u"/c"_s), [this] { QVERIFY(!Action(TCommand::Back)->isEnabled()); })),
         Then(Shows(u"1:0 /b"_s), [this] { QVERIFY(Action(TCommand::Back)->isEnabled()); })},
        {TCommand::CloseAll, Then(three, question), Then(Asked(), Shows(u"1:0 about:blank"_s))},
        {TCommand::TabCloseAll, Then(three, question), Then(Asked(), Shows(u"1:0 about:blank"_s))},
        {TCommand::CloseAllKeepCurrent, middle, Shows(u"1:0 /b"_s)},
        {TCommand::TabCloseAllKeepCurrent, middle, Shows(u"1:0 /b"_s)},
        {TCommand::CloseAllShowList, list, Then(Asked(), Shows(u"1:0 about:blank"_s))},
        {TCommand::TabCloseAllShowList, list, Then(Asked(), Shows(u"1:0 about:blank"_s))},
        {TCommand::ReopenTab, Then(With(u"/b"_s), [this] { Tabs().CloseActive(); }), Shows(u"2:1 /b"_s)},
        {TCommand::Exit, endQuestion, ended},
        {TCommand::TrayExit, endQuestion, ended},
        {TCommand::TrayRestore, [] {},
         [this] {
           QTRY_VERIFY(Window().isMinimized());
           Action(TCommand::TrayRestore)->trigger();
           QTRY_VERIFY(!Window().isMinimized());
         }},
    };
  }

  // Each goes to the text box that has the keyboard, and to the page where none has it.
  [[nodiscard]] QList<TRow> EditRows() {
    const auto typed = [this] {
      Action(TCommand::EditAddress)->trigger();
      QTest::keyClicks(AddressEdit(), u"typed"_s);
    };
    const TStep all = [this] { Action(TCommand::EditAddress)->trigger(); };
    const TStep page = Then([this] { Load(u"/edit"_s); },
                            [this] {
                              Active()->setFocus();
                              QTRY_VERIFY_WITH_TIMEOUT(Active()->Browser()->EnginePage()->hasSelection(), m_f.LoadTime);
                            });
    const TStep cut = Then(page, [this] {
      Active()->Browser()->Cut();
      SOON(PageText(), QString());
    });
    const auto clipboard = [](const QString &text) { return [text] { QApplication::clipboard()->setText(text); }; };
    const auto boxShows = [this](const QString &text) {
      return [this, text] { QCOMPARE(AddressEdit()->text(), text); };
    };
    const auto pageShows = [this](const QString &text) { return [this, text] { SOON(PageText(), text); }; };
    const auto copied = [](const QString &text) { return [text] { SOON(QApplication::clipboard()->text(), text); }; };
    const QString address = Url(u"/a"_s);
    return {
        {TCommand::Undo, typed, boxShows(address)},
        {TCommand::Redo, Then(typed, [this] { AddressEdit()->undo(); }), boxShows(u"typed"_s)},
        {TCommand::Cut, all, Then(boxShows(QString()), copied(address))},
        {TCommand::Copy, Then(clipboard(u"-"_s), all), Then(boxShows(address), copied(address))},
        {TCommand::Paste, Then(clipboard(u"pasted"_s), all), boxShows(u"pasted"_s)},
        {TCommand::SelectAll, Then(typed, [this] { AddressEdit()->deselect(); }),
         [this] { QCOMPARE(AddressEdit()->selectedText(), u"typed"_s); }},
        {TCommand::Undo, cut, pageShows(u"text"_s)},
        {TCommand::Redo, Then(cut, Then([this] { Active()->Browser()->Undo(); }, pageShows(u"text"_s))),
         pageShows(QString())},
        {TCommand::Cut, page, Then(copied(u"text"_s), pageShows(QString()))},
        {TCommand::Copy, Then(clipboard(u"-"_s), page), Then(copied(u"text"_s), pageShows(u"text"_s))},
        {TCommand::Paste, Then(clipboard(u"pasted"_s), page), pageShows(u"pasted"_s)},
        {TCommand::SelectAll, [] {},
         [this] { SOON(Active()->Browser()->EnginePage()->selectedText().trimmed(), u"word word word"_s); }},
        {TCommand::EditAddress, [] {},
         [this] {
           QVERIFY(AddressEdit()->hasFocus());
           QCOMPARE(AddressEdit()->selectedText(), Url(u"/a"_s));
         }},
    };
  }

  // What the page in front, or each page, is told.
  [[nodiscard]] QList<TRow> PageRows() {
    const TStep none = [] {};
    const TStep found = [this] {
      Action(TCommand::Find)->trigger();
      auto *bar = Active()->findChild<TFindBar *>();
      QTest::keyClicks(bar->findChild<QLineEdit *>(), u"word"_s);
      SOON(FindResult(), u"1 of 3"_s);
    };
    const auto finds = [this](const QString &result) { return [this, result] { SOON(FindResult(), result); }; };
    const TStep moved = [this] { Load(u"/b"_s); };
    const TStep goneBack =
        Then(moved, Then([this] { Active()->GoBack(); },
                         Then(Shows(u"1:0 /a"_s), [this] { QTRY_VERIFY(Action(TCommand::Forward)->isEnabled()); })));
    const TStep silent = [this] {
      Active()->Navigate(Url(u"/never"_s));
      QTRY_VERIFY_WITH_TIMEOUT(m_f.server.RequestCount("/never") > 0, m_f.LoadTime);
      QTRY_VERIFY(Active()->Busy() && Action(TCommand::Stop)->isEnabled());
    };
    const TStep stopped = [this] {
      QTRY_VERIFY_WITH_TIMEOUT(!Tabs().Tab(0)->Busy() && !Active()->Busy(), m_f.LoadTime);
      QVERIFY(!Action(TCommand::Stop)->isEnabled());
    };
    const auto reloads = [this](bool passesCache) {
      return [this, passesCache] {
        SOON(m_f.server.RequestCount("/a"), 1);
        QCOMPARE(CacheHeader("/a") == "no-cache", passesCache);
      };
    };
    const TStep reloadsAll = [this] {
      QTRY_VERIFY_WITH_TIMEOUT(m_f.server.RequestCount("/a") > 0 && m_f.server.RequestCount("/b") > 1, m_f.LoadTime);
    };
    const auto zooms = [this](int zoom) { return [this, zoom] { QCOMPARE(Active()->Browser()->Zoom(), zoom); }; };
    const auto percent = [this](int zoom) {
      return [this, zoom] { QCOMPARE(Active()->Browser()->ZoomPercent(), zoom); };
    };
    const TStep small = [this] { Active()->Browser()->SetZoom(0); };
    const TStep linked = Then([this] { RunScript(u"location.href = '/b'"_s); }, Shows(u"1:0 /b"_s));
    QList<TRow> rows{
        {TCommand::Find, none,
         [this] {
           const auto *bar = Active()->findChild<TFindBar *>();
           QVERIFY(bar->findChild<QLineEdit *>()->hasFocus());
           QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
           QVERIFY(!bar->isVisible());
           QTRY_VERIFY(Active()->Browser()->isAncestorOf(QApplication::focusWidget()));
         }},
        {TCommand::FindNext, found, finds(u"2 of 3"_s)},
        {TCommand::FindPrevious, found, finds(u"3 of 3"_s)},
        {TCommand::Back, moved,
         Then(Shows(u"1:0 /a"_s),
              [this] {
                SOON(AddressEdit()->text(), Url(u"/a"_s));
                QTRY_VERIFY(!Action(TCommand::Back)->isEnabled());
              })},
        {TCommand::Forward, goneBack, Shows(u"1:0 /b"_s)},
        {TCommand::Home, none, Shows(u"1:0 /b"_s)},
        {TCommand::TabHome, linked, Shows(u"1:0 /a"_s)},
        {TCommand::Stop, silent, stopped},
        {TCommand::TabStop, silent, stopped},
        {TCommand::StopAll, Then(silent, Then([this] { Tabs().NewTab(); }, silent)), stopped},
        {TCommand::Refresh, none, reloads(false)},
        {TCommand::TabRefresh, none, reloads(false)},
        {TCommand::RefreshPlain, none, reloads(false)},
        {TCommand::RefreshCompletely, none, reloads(true)},
        {TCommand::RefreshAll, With(u"/b"_s), reloadsAll},
        {TCommand::FontLargest, none, zooms(4)},
        {TCommand::FontLarge, none, zooms(3)},
        {TCommand::FontMedium, small, zooms(2)},
        {TCommand::FontSmaller, none, zooms(1)},
        {TCommand::FontSmallest, none, Then(zooms(0), [this] { QCOMPARE(CheckedFonts(), QList<int>{4}); })},
        {TCommand::ZoomIn, none, Then(percent(110), [this] { QCOMPARE(CheckedFonts(), QList<int>{2}); })},
        {TCommand::ZoomOut, none, percent(90)},
        {TCommand::ZoomReset, small, Then(percent(100), zooms(2))},
        {TCommand::ViewSource, none, Shows(u"2:1 view-source:/a"_s)},
    };
    const std::pair<TCommand, int> intervals[] = {
        {TCommand::AutoRefreshNone, 0},   {TCommand::AutoRefresh15, 15000},   {TCommand::AutoRefresh30, 30000},
        {TCommand::AutoRefresh60, 60000}, {TCommand::AutoRefresh120, 120000}, {TCommand::AutoRefresh300, 300000},
    };
    for (const auto &[command, interval] : intervals) {
      rows.append({command, Then(With(u"/b"_s), [this] { Action(TCommand::AutoRefresh15)->trigger(); }),
                   Then(Stores(Setting::AutoRefresh, interval), [this, interval = interval, reloadsAll] {
                     auto *timer = Window().findChild<QTimer *>(u"tmrRefresh"_s);
                     QCOMPARE(timer->isActive(), interval != 0);
                     QCOMPARE(timer->interval(), interval);
                     Action(TCommand::Options)->trigger();
                     const std::unique_ptr<TfrmOptions> options(Window().findChild<TfrmOptions *>());
                     QCOMPARE(options->findChild<QComboBox *>(u"cboAutoRefresh"_s)->currentData().toInt(), interval);
                     if (interval == 0) return;
                     timer->setSingleShot(true);
                     timer->start(1);
                     reloadsAll();
                   })});
    }
    return rows;
  }

  [[nodiscard]] QList<TRow> ViewRows() {
    const TStep none = [] {};
    const TStep full = [this] {
      Action(TCommand::FullScreen)->setChecked(true);
      QTRY_VERIFY(Window().isFullScreen());
    };
    const auto hides = [this](const char *bar) {
      return [this, bar] { QVERIFY(!Window().findChild<QWidget *>(QLatin1String(bar))->isVisible()); };
    };
    const auto turnsTo = [this](TCommand page) {
      return [this, page] {
        const QString button = Action(page)->objectName() + u"Button"_s;
        QVERIFY(Window().findChild<QAbstractButton *>(button)->isChecked());
        QVERIFY(Window().findChild<QStackedWidget *>(u"pcHalvexBar"_s)->currentWidget()->isVisible());
      };
    };
    const TStep links = [this] {
      FavoritesEdit::AddPage(favorites + u"/Links"_s, u"c"_s, Url(u"/c"_s));
      QTRY_VERIFY(Window().findChild<QWidget *>(u"pnlLinks"_s)->isVisible());
    };
    const TStep noLinks = [this] {
      QVERIFY(!QDir(favorites + u"/Links"_s).exists());
      // What comes and goes within a moment, as between two rows, is told by nobody.
      Window().findChild<TLinksBar *>()->Refresh();
      QVERIFY(!Action(TCommand::ViewLinksBar)->isChecked());
    };
    // Whoever wants the bar gets the folder that it shows.
    const TStep makesLinks = [this] {
      QVERIFY(Window().findChild<QWidget *>(u"pnlLinks"_s)->isVisible());
      QVERIFY(Action(TCommand::ViewLinksBar)->isChecked() && Action(TCommand::CustomizeViewLinksBar)->isChecked());
      QVERIFY(QDir().rmdir(favorites + u"/Links"_s));
    };
    const auto set = [this](const TFlagSetting &setting, bool value) {
      return [this, setting, value] { Settings().Set(setting, value); };
    };
    const auto strip = [this](bool below, bool several) {
      return [this, below, several] {
        const auto *pages = Window().findChild<TZVPageControl *>();
        QCOMPARE(pages->TabsDown(), below);
        QCOMPARE(pages->MultipleLines(), several);
        const QList<QAction *> items = Window().Actions().Menu(TMenu::TabPosition)->actions();
        QCOMPARE(items.first(), Action(below ? TCommand::TabsBelow : TCommand::TabsAbove));
        QVERIFY(Action(several ? TCommand::TabsSeveralRows : TCommand::TabsOneRow)->isChecked());
      };
    };
    const auto turned = [this](TCommand command) {
      return [this, command] {
        QVERIFY(!Action(command)->isChecked());
        SOON(m_f.server.RequestCount("/a"), 1);
        SOON(Active()->Busy(), false);
        Action(command)->trigger();
        SOON(m_f.server.RequestCount("/a"), 2);
        SOON(Active()->Busy(), false);
      };
    };
    return {
        {TCommand::ViewToolbar, none, Then(hides("pnlToolbar"), Stores(Setting::ViewToolbar, false))},
        {TCommand::ViewAddressBar, none, Then(hides("pnlAddress"), Stores(Setting::ViewAddressBar, false))},
        {TCommand::ViewLinksBar, noLinks, makesLinks},
        {TCommand::ViewLinksBar, links, Then(hides("pnlLinks"), Stores(Setting::ViewLinksBar, false))},
        {TCommand::ViewStatusBar, none, Then(hides("StatusBar"), Stores(Setting::ViewStatusBar, false))},
        {TCommand::ViewStatusBar, full,
         Then(Stores(Setting::FullscreenStatusBar, true),
              Then(Stores(Setting::ViewStatusBar, true), [this] { QVERIFY(Window().statusBar()->isVisible()); }))},
        {TCommand::ViewMenuBar, full,
         Then(Stores(Setting::FullscreenMenuBar, true), [this] { QVERIFY(Window().menuBar()->isVisible()); })},
        {TCommand::ViewHalvexBar, none,
         Then(Stores(Setting::ViewHalvexBar, true),
              [this] { QVERIFY(Window().findChild<QWidget *>(u"HalvexBar"_s)->isVisible()); })},
        {TCommand::SideBarFavorites, none, turnsTo(TCommand::SideBarFavorites)},
        {TCommand::SideBarHistory, none, turnsTo(TCommand::SideBarHistory)},
        {TCommand::SideBarSearch, none, turnsTo(TCommand::SideBarSearch)},
        {TCommand::SideBarGroups, none, turnsTo(TCommand::SideBarGroups)},
        {TCommand::HistoryInNewTab, none, Stores(Setting::HistoryNewWin, false)},
        {TCommand::SearchInNewTab, none, Stores(Setting::SearchNewWin, false)},
        {TCommand::SideBarAutoExpand, none, Stores(Setting::HBAutoExpand, false)},
        {TCommand::CustomizeViewAddressBar, none, Then(hides("pnlAddress"), Stores(Setting::ViewAddressBar, false))},
        {TCommand::CustomizeViewToolbar, none, Then(hides("pnlToolbar"), Stores(Setting::ViewToolbar, false))},
        {TCommand::CustomizeViewMenuBar, full,
         Then(Stores(Setting::FullscreenMenuBar, true), [this] { QVERIFY(Window().menuBar()->isVisible()); })},
        {TCommand::CustomizeViewLinksBar, noLinks, makesLinks},
        {TCommand::CustomizeViewLinksBar, links, Then(hides("pnlLinks"), Stores(Setting::ViewLinksBar, false))},
        {TCommand::CustomizeOrganizeLinks, noLinks,
         Then(Opens("TfrmOrganizeFavorites"), [this] { QVERIFY(QDir().rmdir(favorites + u"/Links"_s)); })},
        {TCommand::CustomizeToolbar, Asks<TfrmCustomizeToolbar>(Reject<TfrmCustomizeToolbar>), Asked()},
        {TCommand::FullScreen, none,
         Then(Stores(Setting::FullScreen, true),
              [this] {
                QTRY_VERIFY(Window().isFullScreen());
                QVERIFY(!Window().menuBar()->isVisible() && !Window().statusBar()->isVisible());
              })},
        {TCommand::FullScreen, full,
         Then(Stores(Setting::FullScreen, false),
              [this] {
                QTRY_VERIFY(!Window().isFullScreen());
                QVERIFY(Window().menuBar()->isVisible() && Window().statusBar()->isVisible());
              })},
        {TCommand::GoSearch, none, [this] { QVERIFY(AddressEdit()->hasFocus()); }},  // there is no search page
        {TCommand::FocusStrip, none, [this] { QVERIFY(Tabs().Pages().StripHasFocus()); }},
        {TCommand::FocusMenuBar, none,
         [this] {
           QMenuBar *bar = Window().menuBar();
           QCOMPARE(bar->activeAction(), bar->actions().first());
         }},
        {TCommand::TabsBelow, set(Setting::TabsDown, false), Then(strip(true, false), Stores(Setting::TabsDown, true))},
        {TCommand::TabsAbove, none, Then(strip(false, false), Stores(Setting::TabsDown, false))},
        {TCommand::TabsOneRow, set(Setting::MultipleLines, true),
         Then(strip(true, false), Stores(Setting::MultipleLines, false))},
        {TCommand::TabsSeveralRows, none, Then(strip(true, true), Stores(Setting::MultipleLines, true))},
        {TCommand::OpenNewAtEnd, none, Stores(Setting::OpenNewAtEnd, true)},
        {TCommand::OpenNewInForeground, none, Stores(Setting::OpenNewInForeground, true)},
        {TCommand::CloseTabsFirst, none, Stores(Setting::HGCloseFirst, true)},
        {TCommand::UsePopupBlocker, none, Stores(Setting::UsePopupHalvex, false)},
        {TCommand::FavoritesInNewTab, none, Stores(Setting::FavoritesNewWin, false)},
        {TCommand::LinksInNewTab, none, Stores(Setting::LinksNewWin, false)},
        {TCommand::FavoritesInColumns, none, Stores(Setting::BreakFavorites, true)},
        {TCommand::OfferOpenAll, none, Stores(Setting::ShowOpenAllFavorites, false)},
        {TCommand::ShowPageIcons, none, Stores(Setting::UseCustomIcons, false)},
        {TCommand::CustomizeColor, none, Stores(Setting::ToolbarShowColor, true)},
        {TCommand::AnnotationsEnabled, none, Stores(Setting::FlyswatEnabled, false)},
        {TCommand::AnnotationsShowLinks, none, Stores(Setting::FlyswatShowLinks, false)},
        {TCommand::LoadImages, none, turned(TCommand::LoadImages)},
        {TCommand::LoadVideos, none, turned(TCommand::LoadVideos)},
        {TCommand::LoadSounds, none, turned(TCommand::LoadSounds)},
        {TCommand::LoadAnimations, none, turned(TCommand::LoadAnimations)},
    };
  }

  [[nodiscard]] QList<TRow> TabRows() {
    const TStep ten = [this] {
      for (int i = 0; i < 9; ++i) Tabs().NewTab(TTabPlace::AtEnd);
    };
    const auto shows = [this](int position) {
      return [this, position] {
        QCOMPARE(Tabs().ActiveTabIndex(), position);
        QTRY_VERIFY(Active()->isAncestorOf(QApplication::focusWidget()));
      };
    };
    QList<TRow> rows{
        {TCommand::NextTab, ten, shows(0)},
        {TCommand::PreviousTab, ten, shows(8)},
        {TCommand::LastTab, Then(ten, [this] { Tabs().Activate(Tabs().Tab(0)); }), shows(9)},
        {TCommand::EighthTab, With(u"/b"_s), shows(1)},  // there are not so many
        {TCommand::TabLocked, [] {}, [this] { QVERIFY(Active()->Locked()); }},
        {TCommand::TabName, Asks<QInputDialog>([](QInputDialog &dialog) {
           CompareTexts(dialog.textValue(), u"Page A"_s);
           dialog.setTextValue(u"Mine"_s);
           dialog.accept();
         }),
         [this] { QCOMPARE(Active()->StickyName(), u"Mine"_s); }},
        {TCommand::TabName, [this] { Active()->SetStickyName(u"Mine"_s); },
         [this] { QCOMPARE(Active()->StickyName(), QString()); }},
        {TCommand::TabSpared, [] {}, [this] { QVERIFY(Active()->HideFromCloseAll()); }},
        {TCommand::TabKeptAwake, [] {}, [this] { QVERIFY(Active()->KeptAwake()); }},
        {TCommand::TabBlockPopups, Then([this] { Load(u"/a?x=1"_s); }, Asks<QInputDialog>([this](QInputDialog &dialog) {
                                          CompareTexts(dialog.textValue(), Url(u"/a"_s));
                                          dialog.reject();
                                        })),
         Then(Asked(), Shows(u"1:0 /a?x=1"_s))},
        {TCommand::TabClose, With(u"/b"_s), Shows(u"1:0 /a"_s)},
    };
    for (int i = 0; i < 8; ++i) {
      rows.append({static_cast<TCommand>(int(TCommand::FirstTab) + i), ten, shows(i)});
    }
    return rows;
  }

  [[nodiscard]] QList<TRow> ToolRows() {
    const TStep none = [] {};
    const QString set = TGroupFolder::Path() + u"/Set.hgp"_s;
    const TStep group = [set] { WriteFile(set, "[HalvexGroup]\n"); };
    const TStep added = Then(Asked(), [this, set] {
      QVERIFY(ReadFile(set).contains(Url(u"/a"_s).toUtf8()));
      QFile::remove(set);
    });
    const TStep opened = [this] { QVERIFY(m_asked && State() == u"1:0 /a"_s); };
    const auto starts = [this](TCommand command, const char *mode) {
      return TRow{command, [this] { Settings().Set(Setting::StartupMode, u"Other"_s); },
                  Then(Stores(Setting::StartupMode, QString::fromLatin1(mode)),
                       [this, command] { QVERIFY(Action(command)->isChecked()); })};
    };
    const auto lists = [this](const TTextKey &caption) {
      return Asks<TfrmSearchEngine>([this, caption](TfrmSearchEngine &dialog) {
        CompareTexts(dialog.windowTitle(), Window().Language().Text(caption));
        dialog.reject();
      });
    };
    const QString bookmarks = m_f.Path(u"bookmarks.html"_s);
    const TStep adds = Asks<TfrmAddFavorite>([](TfrmAddFavorite &dialog) { dialog.accept(); });
    const TStep isFavorite = [this] {
      QVERIFY(m_asked);
      QCOMPARE(FavoritesFolder::Targets(favorites), QStringList(Url(u"/a"_s)));
    };
    // The status bar tells it and takes it back.
    const TStep isSaved = [this, set] {
      QVERIFY(ReadFile(set).contains(Url(u"/a"_s).toUtf8()));
      QVERIFY(Window().findChild<QToolButton *>(u"tbOffer"_s)->isVisible());
    };
    const TStep isOffered = [this] { Window().findChild<QToolButton *>(u"tbOffer"_s)->click(); };
    const TStep gone = [set] { QVERIFY(!QFile::exists(set)); };
    const auto maps = [this](int zone) {
      return [this, zone] {
        const QList<TZoneMapping> mappings = TZoneStore(*m_f.store).Mappings();
        QCOMPARE(mappings, (QList<TZoneMapping>{{u"http://127.0.0.1"_s, zone}}));
        QVERIFY(TZoneStore(*m_f.store).RemoveMapping(mappings.first().pattern));
        QTRY_VERIFY(Window().Tabs().Environment().engine.Policy().ZoneOf(Url(u"/a"_s)) == TSecurityZone::Internet);
        Active()->RefreshZone();
      };
    };
    const TStep trusted = [this] {
      Load(u"/"_s);
      Action(TCommand::SecurityAddTrusted)->trigger();
    };
    const TStep inNoZone = [this] {
      QVERIFY(TZoneStore(*m_f.store).Mappings().isEmpty());
      QCOMPARE(Active()->SecureZone(), TSecurityZone::Internet);
    };
    QList<TRow> rows{
        {TCommand::SecurityCurrent, none, Shows(u"1:0 /a"_s)},
        {TCommand::SecurityAddTrusted, none, maps(2)},
        {TCommand::SecurityAddIntra, none, maps(1)},
        {TCommand::SecurityAddRestricted, none, maps(4)},
        {TCommand::SecurityRemove, trusted, inNoZone},
        {TCommand::SecuritySettings, none, Opens("TfrmSecurity")},
        {TCommand::AddToGroup, Then(group, AsksFile(set)), added},
        {TCommand::TabAddToGroup, Then(group, AsksFile(set)), added},
        {TCommand::SaveAsGroup, Asks<TfrmSaveGroup>([](TfrmSaveGroup &dialog) {
           dialog.findChild<QLineEdit *>(u"edtName"_s)->setText(u"Set"_s);
           dialog.findChild<QPushButton *>(u"cmdOK"_s)->click();
         }),
         Then(Asked(), Then(isSaved, Then(isOffered, gone)))},
        {TCommand::OrganizeGroups, Then(group, Then(AsksFile(set), Asks<TfrmHalvexGroup>(Reject<TfrmHalvexGroup>))),
         opened},
        {TCommand::AddFavorite, adds, isFavorite},
        {TCommand::TabAddToFavorites, adds, isFavorite},
        {TCommand::ShowFavorites, [this] { FavoritesEdit::AddPage(favorites, u"c"_s, Url(u"/c"_s)); },
         [this] {
           auto *popup = Window().findChild<QWidget *>(u"TfrmFavorites"_s);
           QVERIFY(popup != nullptr && popup->isVisible());
           auto *tree = popup->findChild<QTreeView *>();
           QTRY_COMPARE(tree->model()->rowCount(tree->rootIndex()), 1);
           QTest::keyClick(tree, Qt::Key_Escape);
           QVERIFY(!popup->isVisible());
         }},
        {TCommand::OrganizeFavorites, none, Opens("TfrmOrganizeFavorites")},
        {TCommand::ImportFavorites,
         Then([bookmarks] { WriteFile(bookmarks, "<DL><DT><A HREF=\"http://x.test/\">X</A>"); }, AsksFile(bookmarks)),
         [this] { QTRY_COMPARE(FavoritesFolder::List(favorites).size(), 1); }},
        {TCommand::ExportFavorites,
         Then(
             [this, bookmarks] {
               QFile::remove(bookmarks);
               FavoritesEdit::AddPage(favorites, u"c"_s, Url(u"/c"_s));
             },
             AsksFile(bookmarks)),
         [this, bookmarks] { QTRY_VERIFY(ReadFile(bookmarks).contains(Url(u"/c"_s).toUtf8())); }},
        {TCommand::OpenAllFavorites, [this] { FavoritesEdit::AddPage(favorites, u"c"_s, Url(u"/c"_s)); },
         Then([this] { SOON(Tabs().TabCount(), 2); }, [this] { SOON(Tabs().Tab(1)->GetLocationUrl(), Url(u"/c"_s)); })},
        {TCommand::Downloads, none, Opens("TDownloadWindow")},
        {TCommand::OrganizeSearchEngines, lists({"SEARCH_ENGINE", "OrganizeSearchEngines"}), opened},
        {TCommand::OrganizeQuickSearch, lists({"QUICK_SEARCH", "OrganizeQuickSearch"}), opened},
        {TCommand::ClearAddresses,
         Then(
             [this] {
               AddressEdit()->setText(Url(u"/a"_s));
               QTest::keyClick(AddressEdit(), Qt::Key_Return);
               SOON(Window().findChild<TAddressBar *>()->count(), 1);
             },
             Asks<TfrmConfirm>([this](TfrmConfirm &dialog) {
               const TLanguage &language = Window().Language();
               CompareTexts(dialog.findChild<QLabel *>(u"lblTitle"_s)->text(), language.Global("ClearAddressHistory"));
               dialog.accept();
             })),
         [this] { QVERIFY(m_asked && Window().findChild<TAddressBar *>()->count() == 0); }},
        {TCommand::SetHomePage, none, [this] { QCOMPARE(HomePage::Chosen(*m_f.store), Url(u"/a"_s)); }},
        {TCommand::MakeDefaultBrowser, none, [this] { QVERIFY(TShellAssociation(*m_f.store).IsDefaultBrowser()); }},
        starts(TCommand::StartHome, "Home"),
        starts(TCommand::StartBlank, "Blank"),
        starts(TCommand::StartLast, "Last"),
        {TCommand::Manual, [] {},
         [this] {
           SOON(Tabs().TabCount(), 2);
           SOON(Active()->GetLocationUrl().endsWith(u"/manual/using.html"_s), true);
         }},
        {TCommand::Options, Asks<TfrmOptions>(Reject<TfrmOptions>), Asked()},
        {TCommand::About, Asks<QDialog>([](QDialog &dialog) {
           CompareTexts(dialog.objectName(), u"TfrmAbout"_s);
           dialog.reject();
         }),
         opened},
        {TCommand::Go,
         [this] {
           Settings().Set(Setting::ShowGo, true);
           AddressEdit()->setText(Url(u"/c"_s));
         },
         // Only Enter files what was typed.
         Then(Shows(u"1:0 /c"_s), [this] { QCOMPARE(Window().findChild<TAddressBar *>()->count(), 0); })},
    };
    TRow startGroup = starts(TCommand::StartGroup, "HalvexGroup");
    startGroup.prepare = Then(Then(startGroup.prepare, group), AsksFile(set));
    rows.append(startGroup);
    const std::pair<TCommand, TUrlAction> rules[] = {
        {TCommand::SecurityActiveXAllow, TUrlAction::ActiveX},
        {TCommand::SecurityScriptingAllow, TUrlAction::Scripting},
        {TCommand::SecurityCookiesAllow, TUrlAction::Cookies},
        {TCommand::SecuritySessionAllow, TUrlAction::SessionCookies},
    };
    for (const auto &[first, action] : rules) {
      for (const unsigned policy : {TZoneStore::Allow, TZoneStore::Query, TZoneStore::Disallow}) {
        const int step = policy == TZoneStore::Disallow ? 2 : int(policy);
        rows.append({static_cast<TCommand>(int(first) + step), none, [this, first = first, action = action, policy] {
                       QCOMPARE(TZoneStore(*m_f.store).Policy(3, action), policy);
                       Action(first)->trigger();
                     }});
      }
    }
    return rows;
  }

  const QString favorites = ProgramFolders::UserData() + u"/Favorites"_s;
};
