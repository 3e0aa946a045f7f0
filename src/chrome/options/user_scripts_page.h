#pragma once

#include <functional>
#include <memory>
#include <QStringList>
#include <QWidget>

class QTreeWidgetItem;
class TLanguage;
class TUserScripts;
struct TUserScriptFile;

namespace Ui {
class TUserScriptsPage;
}

// The list of user scripts: which there are, whether each is on, and why one does not run or did not go on when it did
// last. What is changed here is a copy until Write.
class TUserScriptsPage final : public QWidget {
  Q_OBJECT

 public:
  // All must outlive the page.
  TUserScriptsPage(const TLanguage &language, TUserScripts &scripts, QWidget *parent = nullptr);
  ~TUserScriptsPage() override;

  // Puts the script in that file into the list, unless it is no such file, which is told.
  void Add(const QString &path);
  // Makes the list the one that is stored, with the files of what was added, and tells what could not be kept. What is
  // loaded stays as it is.
  void Write();

 private:
  void btnAddScriptClick();
  void btnRemoveScriptClick();
  QTreeWidgetItem *AddRow(const QString &file, bool isOn, const TUserScriptFile &contents, const QString &state);
  // Why the script does not run; empty where nothing keeps it from that.
  [[nodiscard]] QString TroubleText(const TUserScriptFile &file) const;
  void ShowState();

  const TLanguage &m_language;
  TUserScripts &m_scripts;
  std::unique_ptr<Ui::TUserScriptsPage> m_ui;
  QStringList m_removed;
};
