#pragma once

#include <QObject>
#include <QTimer>

#include "actions/command_table.h"
#include "content/ie_options.h"

class QWidget;
class TActions;
class TTabStrip;

// The four switches of the window: whether pages show images, play videos and sounds, and whether anything in them
// moves. Whoever judges pages asks here.
class TContentSwitches final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object. Begins with what is stored; what cannot be read then is on until it can.
  TContentSwitches(QWidget *window, TActions &actions, TTabStrip &tabs, TRegistryStore &store);

  // What holds for the page that is asked for now. What another program has stored meanwhile is noticed here, and when
  // the window becomes active; pages that are there stay as they are then.
  [[nodiscard]] bool IsOn(TContentSwitch which) { return States().at(size_t(which)); }
  // The same for all of them.
  [[nodiscard]] TContentStates States();
  // Turns those that are not so yet, and then loads all pages anew, once.
  void Set(const TContentStates &on);

  bool eventFilter(QObject *watched, QEvent *event) override;

 Q_SIGNALS:
  // A switch was stored; `area` says where, see TIEOptions::Area.
  void SettingChanged(const QString &area);

 private:
  void Apply(TContentSwitch which, bool on);
  void Choose(TContentSwitch which, bool on);
  void Look();

  TActions &m_actions;
  TTabStrip &m_tabs;
  TRegistryStore &m_store;
  TContentStates m_on{};
  TContentStates m_stored{};  // at the last look
  bool m_isKnown = false;     // it could be read
  quint64 m_seen = 0;         // the store's revision then
  QTimer m_again{this};       // tmrContent; for as long as it could not
};
