#pragma once

#include <QObject>
#include <QString>
#include <QThread>

class TFolderWatch;

// Tells when something in a folder or its sub-folders is added, removed or renamed; new sub-folders are watched as soon
// as they are there. The folder itself may be missing: its coming and going is told too. All work is done in a thread
// of its own. Links to folders inside it are not followed, and where the system watches no more folders the rest goes
// unwatched.
class TFolderWatcher final : public QObject {
  Q_OBJECT

 public:
  // Milliseconds for which changes are gathered before they are told together.
  static constexpr int Settle = 100;
  // Beyond this many folders the rest goes unwatched.
  static constexpr int MostFolders = 4096;

  explicit TFolderWatcher(QObject *parent = nullptr);
  ~TFolderWatcher() override;

  // Watches `folder` instead of what was watched before. Returns at once; Changed comes when the watch is up, since
  // something may have happened until then.
  void Watch(const QString &folder);
  void Stop();
  [[nodiscard]] const QString &Folder() const { return m_folder; }  // empty when nothing is watched

 Q_SIGNALS:
  void Changed();

 private:
  void Pass(int number);

  QThread m_thread;
  TFolderWatch *m_watch = nullptr;  // lives in the thread
  QString m_folder;
  int m_number = 0;  // of the watch: what an earlier one still tells does not count
};
