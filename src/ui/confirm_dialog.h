#pragma once

#include <memory>
#include <QDialog>

namespace Ui {
class TfrmConfirm;
}

// What a confirmation says. An empty text hides its control; with an empty `firstLine` the second text takes its place.
struct TQuestion {
  QString caption{};
  QString firstLine{};  // bold
  QString secondText{};
  QString ok{};
  QString cancel{};
  QString checkBox{};  // "don't ask again"
  bool checkBoxState = false;
  bool isRisky = false;  // Cancel is the default button, and the picture warns
};

struct TAnswer {
  bool accepted = false;
  bool checked = false;  // the box, whatever the answer was
};

// A question with a bold first line, a longer text below it, OK and Cancel, and a check box. Its size follows its
// contents and cannot be changed; it stands in the middle of the screen and has no title-bar buttons.
class TfrmConfirm final : public QDialog {
  Q_OBJECT

 public:
  explicit TfrmConfirm(const TQuestion &question, QWidget *owner = nullptr);
  ~TfrmConfirm() override;

  [[nodiscard]] bool IsChecked() const;

 protected:
  void showEvent(QShowEvent *event) override;

 private:
  void SetTexts(const TQuestion &question);
  void FitToContents();

  std::unique_ptr<Ui::TfrmConfirm> m_ui;
};

// Shows the dialog modally, in the owner's font. Accepted only when the user pressed OK: Escape and closing the window
// count as Cancel, also when there is no Cancel button. When the owner goes meanwhile the answer is Cancel, with the
// box as it was at first; whoever asked may have gone with it, and should look before he uses anything of his own.
[[nodiscard]] TAnswer ShowConfirm(QWidget *owner, const TQuestion &question);
