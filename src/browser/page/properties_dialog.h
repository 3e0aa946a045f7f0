#pragma once

#include <memory>
#include <QDialog>

#include "browser/page/page_properties.h"

class TLanguage;

namespace Ui {
class TPropertiesDialog;
}

// Shows what is known of a page. All texts are plain and can be selected and copied.
class TPropertiesDialog final : public QDialog {
  Q_OBJECT

 public:
  TPropertiesDialog(const TPageProperties &properties, const TLanguage &language, QWidget *parent = nullptr);
  ~TPropertiesDialog() override;

  // Shows what is known of the page's site as well, below the rest.
  void AddSection(QWidget *section);

 private:
  std::unique_ptr<Ui::TPropertiesDialog> m_ui;
};
