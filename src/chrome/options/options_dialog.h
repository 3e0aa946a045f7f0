#pragma once

#include <functional>
#include <memory>
#include <QDialog>
#include <QSet>

#include "chrome/options/content_page.h"
#include "config/options.h"

class QCheckBox;
class QSpinBox;
class TCertificateExceptions;
class TCertificatesPage;
class TDownloadsPage;
class THistoryStore;
class TLanguage;
class TPermissionDecisions;
class TSearchPage;
class TSettings;
class TShellAssociation;
class TSitePermissionsPage;
class TUserScripts;
class TUserScriptsPage;

namespace Ui {
class TfrmOptions;
}

// All settings that a user may change, on pages that a tree turns. Nothing is written before OK, which writes in the
// order that stands in options_dialog.cpp; whoever obeys a setting follows it there and then.
class TfrmOptions final : public QDialog {
  Q_OBJECT

 public:
  // What is not here yet, or of no use on this system, has no control.
  struct TOffers {
    bool tray = false;
    bool versionCheck = false;
    bool scripts = false;
    bool annotations = false;
  };

  // What the pages show and change. All must outlive the dialog.
  struct TParts {
    TLanguage &language;
    TSettings &settings;
    TShellAssociation &association;
    const THistoryStore &history;
    TPermissionDecisions &permissions;
    TCertificateExceptions &certificates;
    TUserScripts &scripts;
    // The interval of automatic reloading that holds in this window, in milliseconds; what is stored may be another
    // window's.
    std::function<int()> autoRefresh;
    TContentPage::TSwitches content;
    // The links bar shows only where there are links, whatever the setting says.
    std::function<bool()> showsLinks;
  };

  TfrmOptions(const TParts &parts, const TOffers &offers, QWidget *owner = nullptr);
  ~TfrmOptions() override;

 Q_SIGNALS:
  // The list of pop-ups in the store is another one.
  void PopupListWritten();
  // So is that of quick searches.
  void SearchesWritten();
  // The links bar is to be shown, which it was not.
  void LinksBarWanted();

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  // ---- options_dialog.cpp: reading, OK and writing ----
  void MakePages(const TParts &parts);
  void Load();
  void LoadLists();
  void LoadAutoRefresh(int interval);
  void cmdOKClick();
  void WriteAssociations();
  [[nodiscard]] bool HasGroupToStart();
  [[nodiscard]] bool MayShortenHistory();
  [[nodiscard]] bool HasDownloadFolder();
  [[nodiscard]] bool HasHomePage();
  // The flags of that step of OK, see Flags.
  void WriteFlags(int step);
  void WriteLinksBar();
  void WriteColors();
  void WritePopupList();
  void WriteStartup();
  void WriteHomePage();
  // The scheme that is chosen, by its name in the store.
  [[nodiscard]] QString ColorScheme() const;
  // Also one that is beyond the box's limit stays as it is until the user changes it.
  static void SetNumber(QSpinBox &box, int number);
  static void SetSwatch(QWidget *swatch, const QColor &color);

  // ---- options_dialog_controls.cpp: what depends on what ----
  void MakeTree();
  void ConnectControls();
  void TurnTo(int page);
  void Find(const QString &words);
  void UpdateStartup();
  void UpdatePreview();
  void pgChange();
  void PickColor(QWidget *swatch);
  void cmdStartHalvexGroupClick();
  void btnInsertClick();
  void btnEditClick();
  void btnDeleteClick();
  void MirrorNewTabs();
  [[nodiscard]] bool IsOffered(int page) const;
  [[nodiscard]] QWidget *PageOf(QWidget *control) const;

  TLanguage &m_language;
  TSettings &m_settings;
  TShellAssociation &m_association;
  const THistoryStore &m_history;
  const TOffers m_offers;
  std::unique_ptr<Ui::TfrmOptions> m_ui;
  TDownloadsPage *m_downloads = nullptr;
  TContentPage *m_content = nullptr;
  TSitePermissionsPage *m_permissions = nullptr;
  TCertificatesPage *m_certificates = nullptr;
  TSearchPage *m_search = nullptr;
  TUserScriptsPage *m_scripts = nullptr;
  QWidget *m_previewFront = nullptr;   // ts1
  QWidget *m_previewBehind = nullptr;  // ts2
  int m_autoRefresh = 0;               // the row that was chosen at first
  QString m_homePage;                  // what stood in its box then
  QCheckBox *m_linksBox = nullptr;
  bool m_showsLinks = false;  // whether the bar was there at first
  bool m_hasColors = false;   // somebody has chosen some
  QSet<QWidget *> m_marked;   // what a search has found
};
