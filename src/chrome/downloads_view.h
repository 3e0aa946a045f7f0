#pragma once

#include <QObject>
#include <QPointer>

class TActions;
class TDownloadList;
class TDownloadWindow;
class TLanguage;
class TMainStatusBar;

// How the frame shows the downloads: a count of those that run, and the window with their list, made when it is first
// asked for.
class TDownloadsView final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  TDownloadsView(TActions &actions, TMainStatusBar &status, TDownloadList &downloads, const TLanguage &language);
  ~TDownloadsView() override;

  void Open();
  void Close();

 private:
  TMainStatusBar &m_status;
  TDownloadList &m_downloads;
  const TLanguage &m_language;
  QPointer<TDownloadWindow> m_window;  // belongs to the main window, and stands over it
};
