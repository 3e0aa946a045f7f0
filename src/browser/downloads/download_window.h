#pragma once

#include <memory>
#include <QWidget>

class TDownloadList;
class TLanguage;

namespace Ui {
class TDownloadWindow;
}

// The list of downloads with its commands: a window of its own, or a widget in a dock. Enter opens the file, Delete takes
// a line out of the list, Space pauses and resumes, the menu key opens the commands of the line.
class TDownloadWindow final : public QWidget {
  Q_OBJECT

 public:
  // `downloads` must live longer than the window.
  TDownloadWindow(TDownloadList &downloads, const TLanguage &language, QWidget *parent = nullptr);
  ~TDownloadWindow() override;

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;
  void keyPressEvent(QKeyEvent *event) override;

 private:
  [[nodiscard]] int CurrentRow() const;
  void UpdateButtons();
  void Open();
  void OpenFolder();
  void TogglePause();
  void ShowMenu(const QPoint &globalPosition);

  TDownloadList &m_downloads;
  const TLanguage &m_language;
  std::unique_ptr<Ui::TDownloadWindow> m_ui;
};
