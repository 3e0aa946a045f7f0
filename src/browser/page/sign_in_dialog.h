#pragma once

#include <memory>
#include <QDialog>

class TLanguage;

namespace Ui {
class TSignInDialog;
}

// Asks for the user name and password that a site or a proxy wants.
class TSignInDialog final : public QDialog {
  Q_OBJECT

 public:
  // `prompt` names who asks. `realm` is the server's own text; it is shown as a quotation, cut when it is long.
  // With `encrypted` unset the user is warned that others may read the password.
  TSignInDialog(const QString &prompt, const QString &realm, bool encrypted, const TLanguage &language,
                QWidget *owner = nullptr);
  ~TSignInDialog() override;

  // Says that `user` was not let in with the password that was given, and proposes the name again.
  void SetRefused(const QString &user);
  [[nodiscard]] QString User() const;
  [[nodiscard]] QString Password() const;

 protected:
  void showEvent(QShowEvent *event) override;

 private:
  const TLanguage &m_language;
  std::unique_ptr<Ui::TSignInDialog> m_ui;
};
