#pragma once

#include <memory>
#include <QDialog>
#include <QString>

class TLanguage;
struct TFavorite;

namespace Ui {
class TfrmFavorite;
}

// The properties of one favorite: its name, its address where it holds one, and where it lies.
class TfrmFavorite final : public QDialog {
  Q_OBJECT

 public:
  TfrmFavorite(const TLanguage &language, const TFavorite &favorite, QWidget *parent = nullptr);
  ~TfrmFavorite() override;

  [[nodiscard]] QString Name() const;
  [[nodiscard]] QString Address() const;
  // By the user. A name from elsewhere may have blanks at its edges, and keeps them otherwise.
  [[nodiscard]] bool IsNameChanged() const;
  [[nodiscard]] bool IsAddressChanged() const;

 private:
  std::unique_ptr<Ui::TfrmFavorite> m_ui;
  QString m_firstName;
};
