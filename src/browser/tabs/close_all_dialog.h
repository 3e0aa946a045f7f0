#pragma once

#include <memory>
#include <QDialog>
#include <QList>

class TLanguage;

namespace Ui {
class TfrmCloseAll;
}

// Lets the user tick which pages to close. All lines are ticked at first.
class TfrmCloseAll final : public QDialog {
  Q_OBJECT

 public:
  // `lines` name the pages in strip order.
  TfrmCloseAll(const TLanguage &language, const QStringList &lines, QWidget *parent = nullptr);
  ~TfrmCloseAll() override;

  // The positions of the ticked lines, from the last to the first, in which order they are to be closed: those before
  // them stay valid.
  [[nodiscard]] QList<int> Ticked() const;

 protected:
  void showEvent(QShowEvent *event) override;

 private:
  void SetAllChecked(bool checked);

  std::unique_ptr<Ui::TfrmCloseAll> m_ui;
};
