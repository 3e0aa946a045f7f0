#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

#include "chrome/side_bar/history_days_menu.h"
#include "config/language.h"
#include "config/settings.h"
#include "history/history_store.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "support/shipped_files.h"
#include "ui/confirm_dialog.h"

using namespace Qt::StringLiterals;

// The menu that says how long visited pages are kept.
class TestHistoryDays final : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() { QVERIFY(m_language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini")))); }
  void init() {
    m_folder = std::make_unique<QTemporaryDir>();
    m_registry = std::make_unique<TRegistryStore>(m_folder->filePath(u"registry.sqlite"_s));
    m_settings = std::make_unique<TSettings>(*m_registry);
    m_store = std::make_unique<THistoryStore>(m_folder->filePath(u"history.sqlite"_s));
  }
  void cleanup() { m_store.reset(); }

  void Choices_data() {
    Columns<int, QStringList>("stored", "choices");
    const QStringList all{u"for a week"_s, u"for a month"_s, u"for three months"_s, u"for a year"_s, u"for ever"_s};
    const auto with = [&all](int place, const QString &text) {
      return all.mid(0, place) + QStringList(text) + all.mid(place);
    };
    Row("a year", 365, all);
    Row("for ever", 0, all);
    Row("a day", 1, with(0, u"for a day"_s));
    Row("between two", 45, with(2, u"for 45 days"_s));
    Row("longer than all", 1000, with(4, u"for 1,000 days"_s));
  }
  void Choices() {
    QFETCH(int, stored);
    QFETCH(QStringList, choices);
    m_settings->Set(Setting::HistoryDays, stored);
    THistoryDaysMenu menu(m_language, *m_settings, *m_store, &m_window);
    // Each time anew.
    for (int i = 0; i < 2; ++i) {
      Q_EMIT menu.aboutToShow();
      QStringList texts;
      QStringList checked;
      for (const QAction *action : menu.actions()) {
        texts.append(action->text().remove(u'&'));
        if (action->isChecked()) checked.append(action->data().toString());
      }
      QCOMPARE(texts, choices);
      QCOMPARE(checked, QStringList(QString::number(stored)));
    }
  }

  // What would take pages away that are there asks before.
  void Choosing() {
    m_store->AddVisit(u"http://old.example/"_s, u"Old"_s, QDateTime::currentDateTime().addDays(-20));
    QVERIFY(m_store->Flush());
    m_settings->Set(Setting::HistoryDays, 0);
    THistoryDaysMenu menu(m_language, *m_settings, *m_store, &m_window);
    const auto choose = [&](int days) {
      Q_EMIT menu.aboutToShow();
      for (QAction *action : menu.actions()) {
        if (action->data().toInt() != days) continue;
        action->trigger();
        return;
      }
    };
    choose(30);
    QCOMPARE(m_settings->Get(Setting::HistoryDays), 30);
    for (const bool isSure : {false, true}) {
      bool isAsked = false;
      OnModalDialog<TfrmConfirm>([&](TfrmConfirm &dialog) {
        isAsked = true;
        isSure ? dialog.accept() : dialog.reject();
      });
      choose(7);
      QVERIFY(isAsked);
      QCOMPARE(m_settings->Get(Setting::HistoryDays), isSure ? 7 : 30);
    }
    choose(0);
    QCOMPARE(m_settings->Get(Setting::HistoryDays), 0);
  }

  // In no language a letter stands for two of them.
  void Letters() {
    for (const QString &file : QDir(SourceFile(QStringLiteral("Languages"))).entryList({u"*.ini"_s})) {
      TLanguage language;
      QVERIFY(language.LoadFile(SourceFile(QStringLiteral("Languages/") + file)));
      THistoryDaysMenu menu(language, *m_settings, *m_store, &m_window);
      Q_EMIT menu.aboutToShow();
      QSet<QKeySequence> letters;
      for (const QAction *action : menu.actions()) letters.insert(QKeySequence::mnemonic(action->text()));
      QVERIFY2(letters.size() == 5 && !letters.contains(QKeySequence()), qPrintable(file));
    }
  }

 private:
  TLanguage m_language;
  QWidget m_window;
  std::unique_ptr<QTemporaryDir> m_folder;
  std::unique_ptr<TRegistryStore> m_registry;
  std::unique_ptr<TSettings> m_settings;
  std::unique_ptr<THistoryStore> m_store;
};

QTEST_MAIN(TestHistoryDays)
#include "test_history_days.moc"
