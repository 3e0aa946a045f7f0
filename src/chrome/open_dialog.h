#pragma once

#include <memory>
#include <QDialog>

class TLanguage;

namespace Ui {
class TfrmOpen;
}

// Asks for an address, a file or a page group to open, and whether in a new tab.
class TfrmOpen final : public QDialog {
  Q_OBJECT

 public:
  // `addresses` are offered in the list.
  TfrmOpen(const TLanguage &language, const QStringList &addresses, QWidget *parent = nullptr);
  ~TfrmOpen() override;

 Q_SIGNALS:
  // OK: what is to be opened, never empty.
  void Chosen(const QString &text, bool newTab);

 private:
  void FormActivate(const QStringList &addresses);
  void ComboBox1Change();
  void cmdBrowseClick();
  void cmdOKClick();

  const TLanguage &m_language;
  std::unique_ptr<Ui::TfrmOpen> m_ui;
};
