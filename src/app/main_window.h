#pragma once

#include <memory>
#include <QMainWindow>
#include <QTimer>

#include "config/language.h"
#include "config/settings.h"

class QMenuBar;
class TActions;
class TModules;
class TStoreNotice;
class TTabStrip;

// The main window. It makes the modules, lays them out and translates their texts; what a command does is the affair of
// the module that owns it.
class TfrmMain final : public QMainWindow {
  Q_OBJECT

 public:
  // `store` must live longer than the window. `argument` is opened at start, whatever the setting CommandLine holds.
  explicit TfrmMain(TRegistryStore &store, const QString &argument = {});
  ~TfrmMain() override;

  [[nodiscard]] TTabStrip &Tabs() const;
  [[nodiscard]] TActions &Actions() const;
  // The menu bar stands in a band. The base class's function knows none there and would put an empty one in the place
  // of all bands.
  [[nodiscard]] QMenuBar *menuBar() const;
  [[nodiscard]] TSettings &Settings() { return m_settings; }
  [[nodiscard]] const TLanguage &Language() const { return m_language; }
  // Closes the window without the shutdown question, with everything written as always.
  void CloseWithoutAsking();
  // The desktop is about to end, perhaps: all that lasts is on disk when this returns, and the window stays.
  void WriteAll();
  // What a later start was given, from the instance channel; see THandedOverText.
  void wmCopyDataDataReceived(const QString &text);

 Q_SIGNALS:
  // The window goes for good; what comes now would be lost.
  void Closing();

 protected:
  void closeEvent(QCloseEvent *event) override;

 private:
  void FormCreate();
  void LoadLanguage();
  void LayOut();
  void tmrLoadCoolbarTimer();
  // Leaves `canClose` false when the user wants to go on.
  void FormCloseQuery(bool &canClose);
  void FormDestroy();

  TSettings m_settings;
  TLanguage m_language;
  QString m_argument;
  std::unique_ptr<TModules> m_modules;
  std::unique_ptr<TStoreNotice> m_storeNotice;
  QTimer m_loadCoolbar{this};  // tmrLoadCoolbar
  bool m_closeConfirmed = false;
};
