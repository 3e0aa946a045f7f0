#pragma once

#include <functional>
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>

class QDialog;
class QWidget;
class TLanguage;
class TRegistryStore;

// Where a download is to go: one file dialog at a time, beside which everything else goes on. It begins in the folder
// of its last answer. While the setting DownloadAsk is off nobody is asked, and all goes into the user's folder for
// downloads, which no answer changes.
class TSaveQuestion final : public QObject {
  Q_OBJECT

 public:
  using TDone = std::function<void(const QString &path)>;  // empty to cancel
  // Gets a full path that is free, and calls back with the chosen one, at once or later.
  using TChooseFile = std::function<void(const QString &suggested, const TDone &done)>;

  TSaveQuestion(const TLanguage &language, TRegistryStore &store, QObject *parent);

  // Replaces the file dialog. An empty function takes the suggested path without asking.
  void SetChooseFile(TChooseFile chooseFile);
  void SetPause(int pause) { m_pause = pause; }

  [[nodiscard]] bool IsOpen() const { return m_isOpen; }
  // It is open, or was a moment ago: what a page wants now was hardly asked for by the user.
  [[nodiscard]] bool Disturbs() const;
  // `done` comes once, maybe at once; not at all when this object goes first. Not while it is open.
  void Ask(const QString &suggested, QWidget *window, const TDone &done);
  // Gives up what is open, as the user's "cancel" does: what it was asked for is gone. A late answer counts nothing.
  void Close();
  // Where goes what nobody is asked about.
  [[nodiscard]] QString Folder() const;
  // Where the question begins; the same folder while nobody is asked.
  [[nodiscard]] QString FirstFolder() const;

 private:
  [[nodiscard]] bool IsAsked() const;
  void ShowDialog(const QString &suggested, QWidget *window, const TDone &done);

  const TLanguage &m_language;
  TRegistryStore &m_store;
  TChooseFile m_chooseFile;
  bool m_asksWithDialog = true;
  int m_pause = 500;  // ms
  bool m_isOpen = false;
  int m_number = 0;  // of the one that is or was open
  TDone m_finish;    // the same one's
  QPointer<QDialog> m_dialog;
  QElapsedTimer m_closed;
};
