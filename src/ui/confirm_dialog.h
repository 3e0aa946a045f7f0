#pragma once

#include <memory>
#include <QDialog>

namespace Ui {
class TfrmConfirm;
}

// A question with a bold first line, a longer text below it, OK and Cancel, and a check box ("don't ask again"). Its
// size follows its contents and cannot be changed; it stands in the middle of the screen and has no title-bar buttons.
class TfrmConfirm final : public QDialog {
  Q_OBJECT

 public:
  explicit TfrmConfirm(QWidget *owner = nullptr);
  ~TfrmConfirm() override;

  // An empty text hides its control. With an empty `firstLine` the second text takes its place.
  void SetTexts(const QString &checkBoxText, const QString &cancelText, const QString &okText,
                const QString &secondText, const QString &firstLine);
  void SetChecked(bool checked);
  [[nodiscard]] bool IsChecked() const;

 protected:
  void showEvent(QShowEvent *event) override;

 private:
  void FitToContents();

  std::unique_ptr<Ui::TfrmConfirm> m_ui;
};

// Shows the dialog modally. True only when the user pressed OK: Escape and closing the window count as Cancel, also
// when there is no Cancel button. `checkBoxResult`, when given, gets the state of the box whatever the answer was.
[[nodiscard]] bool ShowConfirm(QWidget *owner, const QFont &font, const QString &caption, bool checkBoxState,
                               bool *checkBoxResult, const QString &checkBoxText, const QString &cancelText,
                               const QString &okText, const QString &secondText, const QString &firstLine);
