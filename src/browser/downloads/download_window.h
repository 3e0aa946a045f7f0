#pragma once

#include <functional>
#include <memory>
#include <QDialog>
#include <vector>

class QAbstractButton;
class TDownloadList;
class TLanguage;

namespace Ui {
class TDownloadWindow;
}

// The list of downloads with its commands, a window beside that of its parent. Enter opens the file, Delete
// takes a line out of the list, Space pauses and resumes, the menu key opens the commands of the line.
class TDownloadWindow final : public QDialog {
  Q_OBJECT

 public:
  // `downloads` must live longer than the window.
  TDownloadWindow(TDownloadList &downloads, const TLanguage &language, QWidget *parent = nullptr);
  ~TDownloadWindow() override;

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  struct TCommand {
    QAbstractButton *button;
    std::function<bool(int)> applies;
    std::function<void(int)> run;
  };

  [[nodiscard]] int CurrentRow() const;
  [[nodiscard]] QString Path(int row) const;
  void UpdateButtons();
  void Open(int row);
  void OpenFolder(int row);
  [[nodiscard]] bool AskToRun(const QString &path);
  void Tell(const QString &text);
  void ShowMenu(const QPoint &globalPosition);

  TDownloadList &m_downloads;
  const TLanguage &m_language;
  std::unique_ptr<Ui::TDownloadWindow> m_ui;
  std::vector<TCommand> m_commands;
};
