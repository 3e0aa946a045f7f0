#pragma once

#include <QObject>

#include "chrome/toolbar/toolbar_definition.h"

class TActions;
class TLanguage;
class TSettings;
class TZVToolBar;

// Brings the tool bar as the user has arranged it, and lets him arrange it anew. The file "tbmain.dat" is looked for in
// the program's folders, the user's own first, and written in the user's own.
class TToolbarCustomizing final : public QObject {
  Q_OBJECT

 public:
  // Builds `bar`. `window` is what the dialog belongs to. All must outlive this object.
  TToolbarCustomizing(QWidget *window, const TActions &actions, const TLanguage &language, TSettings &settings,
                      TZVToolBar &bar);

 private:
  void Load();
  void Customize();
  void Save();

  QWidget *m_window;
  const TLanguage &m_language;
  TZVToolBar &m_bar;
  bool m_isUnread = false;  // there is a file, which could not be read
};
