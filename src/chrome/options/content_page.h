#pragma once

#include <functional>
#include <memory>
#include <QWidget>

#include "content/ie_options.h"

class QCheckBox;
class TLanguage;

namespace Ui {
class TContentPage;
}

// What pages show and play.
class TContentPage final : public QWidget {
  Q_OBJECT

 public:
  // The switches as they hold in the window, and what sets those that are to be others.
  struct TSwitches {
    std::function<TContentStates()> states;
    std::function<void(const TContentStates &)> set;
  };

  // What `switches` reach must outlive the page.
  TContentPage(const TLanguage &language, TSwitches switches, QWidget *parent = nullptr);
  ~TContentPage() override;

  // What was not changed here is left as it is by then.
  void Write();

 private:
  [[nodiscard]] QCheckBox *BoxOf(TContentSwitch which) const;

  const TSwitches m_switches;
  const TContentStates m_shown;  // at first
  std::unique_ptr<Ui::TContentPage> m_ui;
};
