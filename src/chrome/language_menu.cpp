#include "chrome/language_menu.h"

#include <QActionGroup>
#include <QFileInfo>

#include "config/language.h"
#include "ui/language_choice.h"

TLanguageMenu::TLanguageMenu(QMenu &menu, TLanguage &language, TSettings &settings)
    : m_menu(menu), m_language(language), m_settings(settings) {
  connect(&menu, &QMenu::aboutToShow, this, &TLanguageMenu::Fill);
}

void TLanguageMenu::Fill() {
  // The old entries go last, so that the menu is never empty while it opens.
  QList<QAction *> former = m_menu.actions();
  auto *group = new QActionGroup(&m_menu);
  for (const TLanguageFile &file : TLanguage::Available()) {
    auto *entry = group->addAction(file.caption);
    entry->setCheckable(true);
    // Exact on purpose: "ZVENG.INI" is another file than "zveng.ini".
    entry->setChecked(file.name == m_language.FileName());
    connect(entry, &QAction::triggered, this, [this, path = file.path] { Choose(path); });
    m_menu.addAction(entry);
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
  ChooseLanguage(m_menu.parentWidget(), m_language, m_settings, file.fileName());
}
