#pragma once

#include <functional>
#include <memory>
#include <QDialog>

class TLanguage;

namespace Ui {
class TfrmCloseAll;
}

// Lets the user tick which pages to close. All lines are ticked at first.
class TfrmCloseAll final : public QDialog {
  Q_OBJECT

 public:
  // `lines` name the pages in strip order; `closeAt` closes the page at a position and ignores one that has gone. Close
  // walks the ticked lines from the last to the first, so that the positions before them stay valid, and then accepts.
  TfrmCloseAll(const TLanguage &language, const QStringList &lines, std::function<void(int)> closeAt,
               QWidget *parent = nullptr);
  ~TfrmCloseAll() override;

 protected:
  void showEvent(QShowEvent *event) override;

 private:
  void SetAllChecked(bool checked);
  void CloseChecked();

  std::unique_ptr<Ui::TfrmCloseAll> m_ui;
  std::function<void(int)> m_closeAt;
};
