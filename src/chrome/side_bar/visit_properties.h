#pragma once

#include <memory>
#include <QDialog>

class TLanguage;
struct TVisitedPage;

namespace Ui {
class TfrmVisitProperties;
}

// What the history knows of a page.
class TfrmVisitProperties final : public QDialog {
  Q_OBJECT

 public:
  TfrmVisitProperties(const TLanguage &language, const TVisitedPage &page, QWidget *owner = nullptr);
  ~TfrmVisitProperties() override;

 private:
  std::unique_ptr<Ui::TfrmVisitProperties> m_ui;
};
