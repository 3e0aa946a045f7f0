#pragma once

#include <memory>
#include <QDateTime>
#include <QDialog>

class TLanguage;

namespace Ui {
class TfrmForget;
}

// What is to be forgotten.
struct TForgetting {
  QDateTime since{};  // pages that were visited since; not valid for all
  // Whole, of whatever age: nobody knows when what is in them came.
  bool typedAddresses = false;
  bool cookies = false;
  bool cache = false;
  bool permissions = false;
};

// Asks how much of the past is to be forgotten, and what goes along.
class TfrmForget final : public QDialog {
  Q_OBJECT

 public:
  explicit TfrmForget(const TLanguage &language, QWidget *owner = nullptr);
  ~TfrmForget() override;

  // As chosen, counted back from `now`.
  [[nodiscard]] TForgetting Choice(const QDateTime &now = QDateTime::currentDateTime()) const;

 private:
  std::unique_ptr<Ui::TfrmForget> m_ui;
};
