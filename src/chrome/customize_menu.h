#pragma once

#include <QObject>

class QWidget;
class TActions;
class TFullScreen;
class TSettings;

// The context menu of the bars (pmCustomize): which of them show, and how they are arranged.
class TCustomizeMenu final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  TCustomizeMenu(TActions &actions, TFullScreen &fullScreen, TSettings &settings);

  // Opens the menu where it is asked for in `bar`, or in what lies in it and has no menu of its own.
  void OfferOn(QWidget *bar);

 private:
  void Update();

  TActions &m_actions;
  TFullScreen &m_fullScreen;
  TSettings &m_settings;
};
