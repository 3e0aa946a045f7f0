#pragma once

#include <memory>
#include <QWidget>

class TLanguage;
class TSettings;

namespace Ui {
class TDownloadsPage;
}

// Where downloads go, and whether the user is asked each time.
class TDownloadsPage final : public QWidget {
  Q_OBJECT

 public:
  // All must outlive the page.
  TDownloadsPage(const TLanguage &language, TSettings &settings, QWidget *parent = nullptr);
  ~TDownloadsPage() override;

  // False for a folder that was changed here and is none that can be written into; the box has the keyboard then.
  [[nodiscard]] bool IsGood();
  void Write();

 private:
  void btnDownloadFolderClick();

  const TLanguage &m_language;
  TSettings &m_settings;
  std::unique_ptr<Ui::TDownloadsPage> m_ui;
};
