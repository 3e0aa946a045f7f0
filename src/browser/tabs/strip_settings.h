#pragma once

#include <QObject>

class TActions;
class TSettings;
class TZVPageControl;

// Lets the strip follow the settings of its place and its colours, and the menu items that choose the place.
//
// Colours of the inactive tabs by TabColorScheme: "std" takes the desktop's button colours, "rev" those of inactive
// title bars, any other text the user's own two; as long as he has chosen none, the strip has the desktop's colours.
class TStripSettings final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  TStripSettings(TActions &actions, TZVPageControl &pages, TSettings &settings);

  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  void Place();
  void Colour();
  void ArrangeItems();

  TActions &m_actions;
  TZVPageControl &m_pages;
  TSettings &m_settings;
};
