#pragma once

#include <memory>
#include <QDialog>

class TLanguage;

namespace Ui {
class TScriptDialog;
}

// One dialog of a page's script: a message, and for a prompt a line to type into.
class TScriptDialog final : public QDialog {
  Q_OBJECT

 public:
  enum class TKind { Alert, Confirm, Prompt, BeforeUnload };

  // `heading` says who asks. Messages of any length are taken; the end of an endless one is left out.
  TScriptDialog(TKind kind, const QString &heading, const QString &message, const TLanguage &language,
                QWidget *owner = nullptr);
  ~TScriptDialog() override;

  [[nodiscard]] TKind Kind() const { return m_kind; }
  // What is typed replaces it.
  void SetValue(const QString &value);
  [[nodiscard]] QString Value() const;
  // Offers the check box that keeps the page from opening more dialogs.
  void OfferToKeep(bool offer);
  [[nodiscard]] bool KeepFromOpening() const;

 protected:
  void showEvent(QShowEvent *event) override;

 private:
  TKind m_kind;
  std::unique_ptr<Ui::TScriptDialog> m_ui;
};
