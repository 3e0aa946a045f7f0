#pragma once

#include <QObject>

class TActions;
class TLastOpenSites;
class TPageGroups;
class TSettings;
enum class TStartupMode;

// The choice of what opens when the program starts (StartupMode): the home page, a blank one, the pages of the last
// time, or a page group, which is asked for. While it is the pages of the last time, they are kept up to date.
class TStartupModes final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  TStartupModes(TActions &actions, TPageGroups &groups, TLastOpenSites &lastSites, TSettings &settings);

  // Begins to keep the open pages where the mode says so, and follows the mode from now on; not before the pages of
  // this start are there.
  void FollowPages();
  // At the end: writes the list of the open pages and closes them, or leaves an empty list in every other mode.
  void Save();

 private:
  [[nodiscard]] bool IsLast() const;
  void Choose(TStartupMode mode);
  void ShowChosen();
  void KeepPages();

  TActions &m_actions;
  TPageGroups &m_groups;
  TLastOpenSites &m_lastSites;
  TSettings &m_settings;
};
