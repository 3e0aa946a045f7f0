#pragma once

#include <QMenu>
#include <QObject>

class TLanguage;
class TSettings;

// The languages submenu: one radio entry for each language file. It is filled each time it opens, from the user's own
// language folder and then the shipped one; a shipped file is hidden by a user's file of the same name. A chosen
// language is stored and applies from the next start.
class TLanguageMenu final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  TLanguageMenu(QMenu &menu, TLanguage &language, TSettings &settings);

 private:
  void Fill();
  void Choose(const QString &path);

  QMenu &m_menu;
  TLanguage &m_language;
  TSettings &m_settings;
};
