#include "chrome/language_menu.h"

#include <QActionGroup>
#include <QDirIterator>
#include <QFileInfo>
#include <QSet>

#include "config/language.h"
#include "config/settings.h"
#include "platform/program_folders.h"
#include "ui/message_box.h"

TLanguageMenu::TLanguageMenu(QMenu &menu, TLanguage &language, TSettings &settings)
    : m_menu(menu), m_language(language), m_settings(settings) {
  connect(&menu, &QMenu::aboutToShow, this, &TLanguageMenu::Fill);
}

void TLanguageMenu::Fill() {
  // The old entries go last, so that the menu is never empty while it opens.
  QList<QAction *> former = m_menu.actions();
  auto *group = new QActionGroup(&m_menu);
  QSet<QString> names;
  for (const QString &folder : ProgramFolders::SearchPath(TLanguage::Folder)) {
    QDirIterator files(folder, {"*.ini"}, QDir::Files);
    while (files.hasNext()) {
      const QString path = files.next();
      const QString name = files.fileName();
      if (names.contains(name)) continue;
      names.insert(name);
      TIniFile file;
      file.Load(path);
      auto *entry = group->addAction(file.Value("INFO", "Language"));
      entry->setCheckable(true);
      // Exact on purpose: "ZVENG.INI" is another file than "zveng.ini".
      entry->setChecked(name == m_language.FileName());
      connect(entry, &QAction::triggered, this, [this, path] { Choose(path); });
      m_menu.addAction(entry);
    }
  }
  while (!former.isEmpty()) {
    QAction *entry = former.takeLast();
    QActionGroup *formerGroup = entry->actionGroup();
    delete entry;
    if (formerGroup != nullptr && formerGroup->actions().isEmpty()) delete formerGroup;
  }
}

void TLanguageMenu::Choose(const QString &path) {
  const QFileInfo file(path);
  if (!file.isFile()) return;
  m_language.SetFileName(file.fileName());
  m_settings.Set(Setting::LanguageFile, file.fileName());
  ShowNotice(m_menu.parentWidget(), m_language, m_language.Global("ChangeRestart"));
}
