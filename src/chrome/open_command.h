#pragma once

#include <QObject>

class QWidget;
class TActions;
class TAddressBar;
class TAddressSearch;
class TLanguage;
class TPageGroups;
class TTabStrip;

// The command "Open": asks what to open and opens it, a page-group file as a group, anything else as if it had been
// typed.
class TOpenCommand final : public QObject {
  Q_OBJECT

 public:
  // `window` owns the dialog. All must outlive this object.
  TOpenCommand(QWidget *window, TActions &actions, const TAddressBar &bar, TAddressSearch &search, TPageGroups &groups,
               const TLanguage &language);

 private:
  void Ask();
  void Open(const QString &text, bool newTab);

  QWidget *m_window;
  const TAddressBar &m_bar;
  TAddressSearch &m_search;
  TPageGroups &m_groups;
  const TLanguage &m_language;
};
