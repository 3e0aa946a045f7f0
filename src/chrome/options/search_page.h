#pragma once

#include <memory>
#include <QWidget>

class TSettings;
class TLanguage;

namespace Ui {
class TSearchPage;
}

// Which of the quick searches words are looked for with that are no address, which is the first of the list, and which
// page the search panel opens.
class TSearchPage final : public QWidget {
  Q_OBJECT

 public:
  // `settings` must outlive the page.
  TSearchPage(const TLanguage &language, TSettings &settings, QWidget *parent = nullptr);
  ~TSearchPage() override;

  // True when the list of quick searches is another one now.
  bool Write();

 private:
  TSettings &m_settings;
  std::unique_ptr<Ui::TSearchPage> m_ui;
  int m_panel = 0;  // which was chosen at first
};
