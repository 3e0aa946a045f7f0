#pragma once

#include <algorithm>
#include <memory>
#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QStackedWidget>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QtTest>

#include "browser/engine/certificate_exceptions.h"
#include "browser/page/permission_decisions.h"
#include "chrome/options/options_dialog.h"
#include "config/language.h"
#include "config/registry_paths.h"
#include "config/settings.h"
#include "config/shell_association.h"
#include "history/history_store.h"
#include "support/data_row.h"
#include "support/modal_dialogs.h"
#include "support/shipped_files.h"
#include "user_scripts/user_scripts.h"

using namespace Qt::StringLiterals;

// The dialog of all settings over a store of its own, without a window behind it.
class TOptionsFixture {
 public:
  static constexpr TfrmOptions::TOffers All{true, true, true, true};

  // Once for all tests.
  void Prepare() {
    UseShippedLanguages();
    QVERIFY(language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini"))));
  }
  void Begin() {
    folder = std::make_unique<QTemporaryDir>();
    store = std::make_unique<TRegistryStore>(folder->filePath(u"registry.sqlite"_s));
    settings = std::make_unique<TSettings>(*store);
    association = std::make_unique<TShellAssociation>(*store);
    history = std::make_unique<THistoryStore>(folder->filePath(u"history.sqlite"_s));
    permissions = std::make_unique<TPermissionDecisions>(nullptr);
    permissions->KeepIn(*store);
    certificates = {};
    hasLinks = true;
    scripts = std::make_unique<TUserScripts>(*settings);
  }
  void End() {
    dialog.reset();
    scripts.reset();
    permissions.reset();
    history.reset();
    association.reset();
    settings.reset();
    store.reset();
  }

  template <typename T = QAbstractButton>
  [[nodiscard]] T &Part(const QString &name) const {
    return *dialog->findChild<T *>(name);
  }
  void Open(const TfrmOptions::TOffers &offers = All) {
    dialog = std::make_unique<TfrmOptions>(PartsIn(language), offers);
    dialog->show();
  }
  [[nodiscard]] TfrmOptions::TParts PartsIn(TLanguage &texts) {
    return {texts,
            *settings,
            *association,
            *history,
            *permissions,
            certificates,
            *scripts,
            [this] { return settings->Get(Setting::AutoRefresh); },
            {[this] { return *TIEOptions(*store).KnownStates(); },
             [this](const TContentStates &on) {
               for (const TContentSwitch which : ContentSwitches) TIEOptions(*store).Set(which, on.at(size_t(which)));
             }},
            [this] { return hasLinks && settings->Get(Setting::ViewLinksBar); }};
  }
  void OK() const { Part(u"cmdOK"_s).click(); }
  // All that the store holds, in order.
  [[nodiscard]] QStringList Stored() const {
    QStringList all;
    for (const TSetting &setting : Setting::All) {
      std::visit(
          [&](const auto &one) {
            const bool isChosen = settings->IsChosen(one);
            all.append(QLatin1String(one.name) + u'=' + (isChosen ? QVariant(settings->Get(one)).toString() : u"-"_s));
          },
          setting);
    }
    const QString browser = QString::fromLatin1(RegistryKey::SystemBrowser);
    for (const TRegistryValue &value : store->Values(TRegistryHive::CurrentUser, browser)) {
      all.append(value.name + u'=' + value.data);
    }
    return all + settings->Lists().PopupList().value_or(QStringList());
  }
  [[nodiscard]] static int Messages() {
    const auto all = QApplication::topLevelWidgets();
    return int(std::ranges::count_if(all, [](QWidget *one) { return qobject_cast<QMessageBox *>(one) != nullptr; }));
  }
  // The pages that are left in the tree.
  [[nodiscard]] QStringList Left() const {
    QStringList left;
    const auto &tree = Part<QTreeWidget>(u"tvOptions"_s);
    for (int i = 0; i < tree.topLevelItemCount(); ++i) {
      if (!tree.topLevelItem(i)->isHidden()) left.append(Part<QStackedWidget>(u"pcOptions"_s).widget(i)->objectName());
    }
    return left;
  }
  // What is set in the dialog, control by control.
  [[nodiscard]] QStringList Shown() const {
    QStringList shown;
    for (const QWidget *part : Part<QStackedWidget>(u"pcOptions"_s).findChildren<QWidget *>()) {
      if (part->objectName().startsWith(u"qt_"_s)) continue;
      if (const auto *button = qobject_cast<const QAbstractButton *>(part);
          button != nullptr && button->isCheckable()) {
        shown.append(part->objectName() + QString::number(int(button->isChecked())));
      } else if (const auto *list = qobject_cast<const QListWidget *>(part)) {
        for (int row = 0; row < list->count(); ++row) {
          shown.append(list->item(row)->text() + QString::number(int(list->item(row)->checkState())) +
                       QString::number(int(row == list->currentRow() && part->objectName() == u"lvLanguages"_s)));
        }
      } else if (const auto *choice = qobject_cast<const QComboBox *>(part)) {
        shown.append(choice->currentText());
      } else if (const auto *field = qobject_cast<const QLineEdit *>(part)) {
        shown.append(part->objectName() + field->text());
      }
    }
    return shown;
  }
  TLanguage language;
  std::unique_ptr<QTemporaryDir> folder;
  std::unique_ptr<TRegistryStore> store;
  std::unique_ptr<TSettings> settings;
  std::unique_ptr<TShellAssociation> association;
  std::unique_ptr<THistoryStore> history;
  std::unique_ptr<TPermissionDecisions> permissions;
  TCertificateExceptions certificates;
  std::unique_ptr<TUserScripts> scripts;
  bool hasLinks = true;
  std::unique_ptr<TfrmOptions> dialog;
};
