#pragma once

#include <QElapsedTimer>
#include <QPersistentModelIndex>
#include <QTimer>
#include <QWidget>

#include "chrome/side_bar/forget_dialog.h"
#include "chrome/side_bar/history_model.h"
#include "history/url_history.h"

class QAbstractItemView;
class QComboBox;
class QLineEdit;
class QMenu;
class QProgressBar;
class QToolButton;
class QTreeView;
class THistoryResults;
class TSettings;

// The side bar's page of visited pages: the tree or a list of them, what was found in them, and how they are forgotten.
// Nothing is read before it shows for the first time.
class THistoryPage final : public QWidget {
  Q_OBJECT

 public:
  // All must outlive this object; `icon` gives the picture of a page.
  THistoryPage(const TLanguage &language, TSettings &settings, THistoryStore &history, THistoryModel::TPageIcon icon,
               QWidget *parent = nullptr);
  ~THistoryPage() override;

  // Where the keyboard goes when the page is turned to.
  void FocusTree();
  // Pages may have other pictures by now.
  void ForgetIcons() { m_model.ForgetIcons(); }

 Q_SIGNALS:
  void OpenInCurrentTab(const QString &address);
  void OpenInNewTab(const QString &address);
  void OpenInBackgroundTab(const QString &address);
  // Pages were taken out; none named: all of them, or more than can be told. What else tells where the user has been
  // is to go with them.
  void Forgotten(const QStringList &addresses);
  // The user has also chosen other things to go, which are none of the history's.
  void ForgetAlong(const TForgetting &what);

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;
  void showEvent(QShowEvent *event) override;

 private:
  enum class TPlace { BySetting, CurrentTab, NewTab, BackgroundTab };

  void MakeParts();
  void MakeMenu();
  void Connect();
  void Open(const QString &address, TPlace place);
  // A page opens, a day or a site opens or closes in the tree.
  void OpenIndex(const QModelIndex &index, TPlace place);
  void Delete(const QModelIndex &index);
  void Copy(const QModelIndex &index) const;
  void ShowProperties(const QModelIndex &index);
  void ShowMenu(QAbstractItemView &view, const QPoint &place);
  [[nodiscard]] QString AddressOf(const QModelIndex &index) const;
  [[nodiscard]] bool shHistoryMouseDown(const QMouseEvent &event);
  [[nodiscard]] bool ListKeyDown(QAbstractItemView &view, const QKeyEvent &event);
  void spdFindHistoryClick();
  void FindWords();
  void SearchAgain();
  void EndSearch();
  void spdClearHistoryClick();
  void RemoveSpan(const THistorySpan &span);
  void ClearAll();
  void spdForgetHistoryClick();
  void FollowRemoval();
  void ShowRemoval();
  void ReadWhatShows();
  void Refresh();

  const TLanguage &m_language;
  TSettings &m_settings;
  THistoryStore &m_store;
  TUrlHistory m_history;
  THistoryModel m_model;
  THistoryResults *m_results;

  QComboBox *m_order = nullptr;     // cboHistoryOrder
  QTreeView *m_tree = nullptr;      // shHistory
  QLineEdit *m_text = nullptr;      // edtFindHistory
  QToolButton *m_find = nullptr;    // spdFindHistory
  QLineEdit *m_words = nullptr;     // edtFindWords
  QTreeView *m_found = nullptr;     // lvFindHistory
  QToolButton *m_clear = nullptr;   // spdClearHistory
  QToolButton *m_forget = nullptr;  // spdForgetHistory
  QProgressBar *m_progress = nullptr;
  QMenu *m_menu = nullptr;  // pmHistory
  QMenu *m_sortMenu = nullptr;
  QPersistentModelIndex m_target;  // what the menu is about
  std::function<void()> m_search;  // the last one; empty when there was none
  QTimer m_refresh;
  QTimer m_removal;
  QElapsedTimer m_removalClock;
  bool m_isMenuByKey = false;
  bool m_isStale = false;
  bool m_searchesAgain = false;  // when what is being removed is gone
  bool m_wasShown = false;
};
