#pragma once

#include <QObject>

class QWidget;
class TDesktopDefaults;
class TLanguage;
class TSettings;
class TTabStrip;

// Asks once in a start whether the program is to be the default browser, when it is not and the setting
// AskDefaultBrowser wants it. It waits for the first page, so that nothing stands between the user and what he started
// the program for.
class TDefaultBrowserQuestion final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object; `window` owns the question.
  TDefaultBrowserQuestion(QWidget *window, TTabStrip &tabs, const TLanguage &language, TSettings &settings,
                          TDesktopDefaults &desktop);

  // The pages of the start have been opened.
  void Begin();
  // What the answer "Yes" does; also for the user who has said no before.
  void MakeDefault();

 private:
  void AskSoon();
  void Ask();

  QWidget *m_window;
  TTabStrip &m_tabs;
  const TLanguage &m_language;
  TSettings &m_settings;
  TDesktopDefaults &m_desktop;
};
