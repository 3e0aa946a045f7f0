#pragma once

#include <QColor>
#include <QObject>

class QPalette;
class TActions;
class TSettings;
class TZVPageControl;

// Of the inactive tabs; a colour that is not valid stands for the strip's own, which follows the desktop, light or
// dark.
struct TInactiveTabColors {
  QColor tab{};
  QColor font{};

  // What a colour scheme makes of them: "std" takes the desktop's button colours, "rev" those of inactive title bars,
  // any other text the user's own two.
  [[nodiscard]] static TInactiveTabColors Of(const QString &scheme, const TInactiveTabColors &own);
  // What a strip without valid ones has, in this palette.
  [[nodiscard]] static TInactiveTabColors OfStrip(const QPalette &palette);
};

// Lets the strip follow the settings of its place and its colours, and the menu items that choose the place.
//
// As long as the user has chosen no colours of his own, the strip has the desktop's.
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
