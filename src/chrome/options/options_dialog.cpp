#include "chrome/options/options_dialog.h"

#include <algorithm>
#include <QFileInfo>
#include <QFrame>
#include <QPointer>

#include "browser/tabs/auto_refresh.h"
#include "browser/tabs/home_page.h"
#include "browser/tabs/strip_settings.h"
#include "chrome/options/certificates_page.h"
#include "chrome/options/downloads_page.h"
#include "chrome/options/search_page.h"
#include "chrome/options/site_permissions_page.h"
#include "chrome/options/user_scripts_page.h"
#include "chrome/side_bar/history_days_question.h"
#include "config/language.h"
#include "config/settings.h"
#include "config/shell_association.h"
#include "config/startup_mode.h"
#include "ui/language_choice.h"
#include "ui/message_box.h"
#include "ui/shown_text.h"
#include "ui_bars_page.h"
#include "ui_options_dialog.h"

namespace {

// The steps in which OK writes, after the shell's association and the check of the group that is to open. The order is
// meant: who follows a setting may look at those that were written before.
enum TStep { Questions, Keys, Tabs, SideBar, Instances, NewTabs, Bars, Asking };

// A box that is one flag.
struct TFlagControl {
  int step;
  const char *box;
  const TFlagSetting *setting;
};
constexpr TFlagControl Flags[] = {
    {Questions, "chkConfirmCloseAll", &Setting::ConfirmCloseAll},
    {Questions, "chkConfirmShutdown", &Setting::ConfirmShutdown},
    {Questions, "chkPopupHalvexNotify", &Setting::PopupHalvexNotify},
    {Questions, "chkShowOpenAllFavorites", &Setting::ShowOpenAllFavorites},
    {Questions, "chkUseCustomIcons", &Setting::UseCustomIcons},
    {Questions, "chkToolbarShowColor", &Setting::ToolbarShowColor},
    {Questions, "chkFlyswatEnabled", &Setting::FlyswatEnabled},
    {Questions, "chkFlyswatShowLinks", &Setting::FlyswatShowLinks},
    {Keys, "chkDisableAltShortcuts", &Setting::DisableALTShortcuts},
    {Tabs, "chkHalvexGroupsCloseOthersFirst", &Setting::HGCloseFirst},
    {Tabs, "chkOpenInFront", &Setting::OpenNewInForeground},
    {Tabs, "chkOpenNewAtEnd", &Setting::OpenNewAtEnd},
    {Tabs, "chkAddressNewWin", &Setting::AddressNewWin},
    {SideBar, "chkHBAutoExpand", &Setting::HBAutoExpand},
    {Instances, "chkAllowMultiInstance", &Setting::AllowMultiInstance},
    {Bars, "chkTabsDown", &Setting::TabsDown},
    {Bars, "chkShowGo", &Setting::ShowGo},
    {Bars, "chkMultipleLines", &Setting::MultipleLines},
    {Bars, "chkUsePopupHalvex", &Setting::UsePopupHalvex},
    {Bars, "chkViewToolbar", &Setting::ViewToolbar},
    {Bars, "chkViewAddressBar", &Setting::ViewAddressBar},
    {Bars, "chkViewStatusBar", &Setting::ViewStatusBar},
    {Bars, "chkViewHalvexBar", &Setting::ViewHalvexBar},
    {Bars, "chkFullscreenMenuBar", &Setting::FullscreenMenuBar},
    {Bars, "chkFullscreenStatusBar", &Setting::FullscreenStatusBar},
    {Asking, "chkDefaultBrowser", &Setting::AskDefaultBrowser},
};

struct TTextControl {
  const char *box;
  const TStringSetting *setting;
};
constexpr TTextControl Texts[] = {
    {"edtCtrlPre", &Setting::CtrlPre},           {"edtCtrlPost", &Setting::CtrlPost},
    {"edtShiftPre", &Setting::ShiftPre},         {"edtShiftPost", &Setting::ShiftPost},
    {"edtCtrlShiftPre", &Setting::CtrlShiftPre}, {"edtCtrlShiftPost", &Setting::CtrlShiftPost},
};

// The rows of clbNewTabs, in order. That of the address bar is the same as chkAddressNewWin.
struct TNewTabRow {
  int step;
  const TFlagSetting *setting;
};
constexpr TNewTabRow NewTabRows[] = {
    {NewTabs, &Setting::FavoritesNewWin}, {NewTabs, &Setting::HistoryNewWin}, {NewTabs, &Setting::SearchNewWin},
    {NewTabs, &Setting::LinksNewWin},     {Tabs, &Setting::AddressNewWin},    {Tabs, &Setting::QuickSearchNewWin},
};

// As the menu has it.
QString TextOf(TCommand command, const TLanguage &language) {
  constexpr size_t Marker = 2;  // "__"
  return WithoutMnemonic(language.Text(CommandSection, CommandRows()[size_t(command)].text + Marker));
}

QColor ColorOf(int stored) {
  return QColor::fromRgb(static_cast<QRgb>(stored));
}

int StoredOf(const QColor &color) {
  return static_cast<int>(color.rgb() & 0xFFFFFFU);
}

}  // namespace

TfrmOptions::TfrmOptions(const TParts &parts, const TOffers &offers, QWidget *owner)
    : QDialog(owner),
      m_language(parts.language),
      m_settings(parts.settings),
      m_association(parts.association),
      m_history(parts.history),
      m_offers(offers),
      m_ui(std::make_unique<Ui::TfrmOptions>()) {
  m_ui->setupUi(this);
  m_language.TranslateForm(this, "OPTIONS");
  MakePages(parts);
  MakeTree();
  Load();
  LoadLists();
  LoadAutoRefresh(parts.autoRefresh());
  m_showsLinks = parts.showsLinks();
  m_linksBox = findChild<QCheckBox *>(QStringLiteral("chkViewLinksBar"));
  m_linksBox->setChecked(m_showsLinks);
  ConnectControls();
  UpdateStartup();
  UpdatePreview();
}

TfrmOptions::~TfrmOptions() = default;

// They stand before the last page, which not everybody has.
void TfrmOptions::MakePages(const TParts &parts) {
  auto *bars = new QWidget(this);
  Ui::TBarsPage().setupUi(bars);
  bars->setObjectName(QStringLiteral("tsBars"));
  m_language.TranslateForm(bars, "OPTIONS");
  m_downloads = new TDownloadsPage(m_language, m_settings, this);
  m_content = new TContentPage(m_language, parts.content, this);
  m_permissions = new TSitePermissionsPage(m_language, parts.permissions, this);
  m_certificates = new TCertificatesPage(m_language, parts.certificates, this);
  m_search = new TSearchPage(m_language, m_settings, this);
  m_scripts = new TUserScriptsPage(m_language, parts.scripts, this);
  for (QWidget *page : {bars, static_cast<QWidget *>(m_downloads), static_cast<QWidget *>(m_search),
                        static_cast<QWidget *>(m_content), static_cast<QWidget *>(m_permissions),
                        static_cast<QWidget *>(m_certificates), static_cast<QWidget *>(m_scripts)}) {
    m_ui->pcOptions->insertWidget(m_ui->pcOptions->count() - 1, page);
  }
}

void TfrmOptions::Load() {
  for (const TFlagControl &flag : Flags) {
    findChild<QCheckBox *>(QLatin1String(flag.box))->setChecked(m_settings.Get(*flag.setting));
  }
  for (const TTextControl &text : Texts) {
    findChild<QLineEdit *>(QLatin1String(text.box))->setText(m_settings.Get(*text.setting));
  }
  m_ui->chkMinToTray->setChecked(m_settings.Get(Setting::MinToTray));
  m_ui->chkVersionCheck->setChecked(m_settings.Get(Setting::VersionCheck) != 0);
  m_ui->chkLoadBHOs->setChecked(m_settings.Get(Setting::LoadBHOs));
  m_ui->chkBreakFavorites->setChecked(m_settings.Get(Setting::BreakFavorites));
  const int limit = m_settings.Get(Setting::LimitTitleLength);
  m_ui->chkLimitTitles->setChecked(limit > 0);
  if (limit > 0) SetNumber(*m_ui->spnMaxTitle, limit);
  m_ui->spnMaxTitle->setEnabled(limit > 0);
  const QString scheme = m_settings.Get(Setting::TabColorScheme);
  m_ui->radColorStandard->setChecked(scheme == QLatin1String("std"));
  m_ui->radColorReverse->setChecked(scheme == QLatin1String("rev"));
  m_ui->radColorCustom->setChecked(!m_ui->radColorStandard->isChecked() && !m_ui->radColorReverse->isChecked());
  m_hasColors = m_settings.IsChosen(Setting::InactiveTabColor) || m_settings.IsChosen(Setting::InactiveFontColor);
  // Of colours that nobody has chosen the strip knows nothing, so the swatches do not show those of the table.
  TInactiveTabColors colors = TInactiveTabColors::OfStrip(m_ui->pg->palette());
  if (m_hasColors) {
    colors = {ColorOf(m_settings.Get(Setting::InactiveTabColor)), ColorOf(m_settings.Get(Setting::InactiveFontColor))};
  }
  SetSwatch(m_ui->pnlTabColor, colors.tab);
  SetSwatch(m_ui->pnlFontColor, colors.font);
  QRadioButton *actions[] = {m_ui->radNewActionBlank, m_ui->radNewActionCurrent, m_ui->radNewActionHome};
  // Somebody else may have stored what is none.
  actions[qBound(0, m_settings.Get(Setting::NewAction), 2)]->setChecked(true);
  QRadioButton *completion[] = {m_ui->rdoNoneAC, m_ui->rdoIE4AC, m_ui->rdoIE5AC};
  completion[m_settings.AutoCompleteMode()]->setChecked(true);
  QRadioButton *modes[] = {m_ui->rdoStartupHome, m_ui->rdoStartupBlank, m_ui->rdoStartupLast,
                           m_ui->rdoStartupHalvexGroup};
  modes[static_cast<int>(StartupModeOf(m_settings.Get(Setting::StartupMode)))]->setChecked(true);
  m_ui->edtStartupHalvexGroup->setText(m_settings.Get(Setting::StartupHalvexGroup));
  m_ui->edtHomePage->setText(HomePage::Chosen(m_settings.Store()));
  m_homePage = m_ui->edtHomePage->text();
  SetNumber(*m_ui->spnSleepMinutes, m_settings.Get(Setting::SleepMinutes));
  SetNumber(*m_ui->spnHistoryDays, m_settings.Get(Setting::HistoryDays));
}

void TfrmOptions::SetNumber(QSpinBox &box, int number) {
  box.setMaximum(std::max(box.maximum(), number));
  box.setValue(number);
}

void TfrmOptions::SetSwatch(QWidget *swatch, const QColor &color) {
  QPalette palette = swatch->palette();
  palette.setColor(QPalette::Window, color);
  swatch->setPalette(palette);
  swatch->setToolTip(color.name());
}

void TfrmOptions::LoadLists() {
  const auto add = [](QListWidget *list, const QString &text, bool checked) {
    auto *row = new QListWidgetItem(text, list);
    row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    row->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
  };
  const QString newTabs[] = {
      m_language.Text("OPTIONS", "NewFromFavorites"), m_language.Text("OPTIONS", "NewFromHistory"),
      m_language.Text("OPTIONS", "NewFromSearch"),    m_language.Text("OPTIONS", "NewFromLinks"),
      m_language.Text("OPTIONS", "NewFromAddress"),   m_language.Text("OPTIONS", "NewFromQuickSearch"),
  };
  for (size_t i = 0; i < std::size(NewTabRows); ++i) {
    add(m_ui->clbNewTabs, newTabs[i], m_settings.Get(*NewTabRows[i].setting));
  }
  const QString classes[] = {
      m_language.Text("OPTIONS", "ClassHtmlFile"), m_language.Text("OPTIONS", "ClassHttp"),
      m_language.Text("OPTIONS", "ClassHttps"),    m_language.Text("OPTIONS", "ClassFile"),
      m_language.Text("OPTIONS", "ClassShortcut"),
  };
  for (size_t i = 0; i < std::size(TShellAssociation::Classes); ++i) {
    const QString name = QString::fromLatin1(TShellAssociation::Classes[i]);
    add(m_ui->clbDefaultBrowser, classes[i], m_association.IsOurs(name));
  }
  // One that cannot be read now is not known, and then not written either.
  const std::optional<QStringList> popups = m_settings.Lists().PopupList();
  m_ui->tsPopupHalvex->setEnabled(popups.has_value());
  for (const QString &pattern : popups.value_or(QStringList())) {
    (new QListWidgetItem(pattern, m_ui->lvPopupHalvex))
        ->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable);
  }
  for (const TLanguageFile &file : TLanguage::Available()) {
    auto *row = new QListWidgetItem(file.caption, m_ui->lvLanguages);
    row->setData(Qt::UserRole, file.name);
    if (file.name == m_language.FileName()) m_ui->lvLanguages->setCurrentItem(row);
  }
}

void TfrmOptions::LoadAutoRefresh(int interval) {
  QComboBox &choice = *m_ui->cboAutoRefresh;
  for (const TAutoRefresh::TInterval &one : TAutoRefresh::Intervals) {
    choice.addItem(TextOf(one.command, m_language), one.milliseconds);
  }
  choice.setCurrentIndex(choice.findData(interval));
  m_autoRefresh = choice.currentIndex();
}

void TfrmOptions::cmdOKClick() {
  // A pattern that is still being typed counts.
  m_ui->cmdOK->setFocus();
  // Before the check below, which may stop all the rest: meant so.
  WriteAssociations();
  const QPointer<TfrmOptions> self(this);
  if (!HasGroupToStart() || !HasHomePage() || !HasDownloadFolder() || !MayShortenHistory() || !self) return;
  if (m_offers.versionCheck) m_settings.Set(Setting::VersionCheck, m_ui->chkVersionCheck->isChecked() ? 1 : 0);
  if (m_offers.scripts) {
    // Whoever follows the setting takes the list as it is then.
    m_scripts->Write();
    m_settings.Set(Setting::LoadBHOs, m_ui->chkLoadBHOs->isChecked());
  }
  WriteFlags(Questions);
  const bool inColumns = m_ui->chkBreakFavorites->isChecked();
  if (m_ui->chkBreakFavorites->isEnabled() && inColumns != m_settings.Get(Setting::BreakFavorites)) {
    m_settings.Set(Setting::BreakFavorites, inColumns);
  }
  WriteFlags(Keys);
  m_settings.Set(Setting::NewAction, m_ui->radNewActionBlank->isChecked()     ? 0
                                     : m_ui->radNewActionCurrent->isChecked() ? 1
                                                                              : 2);
  m_settings.SetAutoCompleteMode(m_ui->rdoIE5AC->isChecked() ? 2 : m_ui->rdoIE4AC->isChecked() ? 1 : 0);
  // Written here, but followed only further down.
  if (m_offers.tray) m_settings.SetUntold(Setting::MinToTray, m_ui->chkMinToTray->isChecked());
  WriteColors();
  WriteFlags(Tabs);
  WriteFlags(SideBar);
  if (m_offers.tray) m_settings.Tell(Setting::MinToTray);
  WritePopupList();
  WriteFlags(Instances);
  WriteStartup();
  WriteFlags(NewTabs);
  WriteFlags(Bars);
  WriteLinksBar();
  for (const TTextControl &text : Texts) {
    m_settings.Set(*text.setting, findChild<QLineEdit *>(QLatin1String(text.box))->text());
  }
  WriteFlags(Asking);
  m_settings.Set(Setting::LimitTitleLength, m_ui->chkLimitTitles->isChecked() ? m_ui->spnMaxTitle->value() : 0);
  m_settings.Set(Setting::SleepMinutes, m_ui->spnSleepMinutes->value());
  if (const QComboBox &choice = *m_ui->cboAutoRefresh; choice.currentIndex() != m_autoRefresh) {
    m_settings.Set(Setting::AutoRefresh, choice.currentData().toInt());
  }
  m_settings.Set(Setting::HistoryDays, m_ui->spnHistoryDays->value());
  m_downloads->Write();
  m_permissions->Write();
  m_certificates->Write();
  if (m_search->Write()) Q_EMIT SearchesWritten();
  WriteHomePage();
  // As the last thing, since it loads all pages anew.
  m_content->Write();
  const QListWidgetItem *language = m_ui->lvLanguages->currentItem();
  accept();
  const QString file = language != nullptr ? language->data(Qt::UserRole).toString() : QString();
  if (!file.isEmpty() && file != m_language.FileName()) ChooseLanguage(parentWidget(), m_language, m_settings, file);
}

void TfrmOptions::WriteAssociations() {
  QStringList wanted;
  for (size_t i = 0; i < std::size(TShellAssociation::Classes); ++i) {
    const bool isWanted = m_ui->clbDefaultBrowser->item(int(i))->checkState() == Qt::Checked;
    if (isWanted) wanted.append(QString::fromLatin1(TShellAssociation::Classes[i]));
  }
  m_association.SetOnly(wanted);
}

bool TfrmOptions::HasGroupToStart() {
  const QString &group = m_ui->edtStartupHalvexGroup->text();
  if (!m_ui->rdoStartupHalvexGroup->isChecked() || QFileInfo(group).isFile()) return true;
  TurnTo(m_ui->pcOptions->indexOf(m_ui->tsStartup));
  m_ui->edtStartupHalvexGroup->setFocus();
  ShowNotice(this, m_language, m_language.Global("StartupHalvexGroup"));
  return false;
}

bool TfrmOptions::HasHomePage() {
  const QString text = m_ui->edtHomePage->text();
  if (text == m_homePage || HomePage::OfTyped(text)) return true;
  TurnTo(m_ui->pcOptions->indexOf(m_ui->tsStartup));
  m_ui->edtHomePage->setFocus();
  ShowNotice(this, m_language, m_language.Text("OPTIONS", "HomePageInvalid"));
  return false;
}

bool TfrmOptions::HasDownloadFolder() {
  if (m_downloads->IsGood()) return true;
  TurnTo(m_ui->pcOptions->indexOf(m_downloads));
  ShowNotice(this, m_language, m_language.Text("OPTIONS", "DownloadFolderMissing"));
  return false;
}

bool TfrmOptions::MayShortenHistory() {
  const int days = m_ui->spnHistoryDays->value();
  const QPointer<TfrmOptions> self(this);
  if (days == m_settings.Get(Setting::HistoryDays) || MayKeepOnly(days, this, m_language, m_history)) return true;
  if (!self) return false;
  TurnTo(m_ui->pcOptions->indexOf(m_ui->tsHistory));
  m_ui->spnHistoryDays->setFocus();
  return false;
}

void TfrmOptions::WriteFlags(int step) {
  for (const TFlagControl &flag : Flags) {
    if (flag.step != step) continue;
    m_settings.Set(*flag.setting, findChild<QCheckBox *>(QLatin1String(flag.box))->isChecked());
  }
  for (size_t i = 0; i < std::size(NewTabRows); ++i) {
    if (NewTabRows[i].step != step) continue;
    m_settings.Set(*NewTabRows[i].setting, m_ui->clbNewTabs->item(int(i))->checkState() == Qt::Checked);
  }
}

// While it waits for links it stays as it is: a box that nobody has touched says nothing.
void TfrmOptions::WriteLinksBar() {
  const bool shows = m_linksBox->isChecked();
  if (shows == m_showsLinks) return;
  m_settings.Set(Setting::ViewLinksBar, shows);
  if (shows) Q_EMIT LinksBarWanted();
}

void TfrmOptions::WriteColors() {
  // Colours that nobody has chosen are not stored: without any the strip follows the desktop.
  if (m_ui->radColorCustom->isChecked() && m_hasColors) {
    const auto color = [](const QWidget *swatch) { return StoredOf(swatch->palette().color(QPalette::Window)); };
    m_settings.Set(Setting::InactiveTabColor, color(m_ui->pnlTabColor));
    m_settings.Set(Setting::InactiveFontColor, color(m_ui->pnlFontColor));
  }
  m_settings.Set(Setting::TabColorScheme, ColorScheme());
}

QString TfrmOptions::ColorScheme() const {
  return m_ui->radColorStandard->isChecked()  ? QStringLiteral("std")
         : m_ui->radColorReverse->isChecked() ? QStringLiteral("rev")
                                              : QStringLiteral("custom");
}

void TfrmOptions::WritePopupList() {
  if (!m_ui->tsPopupHalvex->isEnabled()) return;
  QStringList patterns;
  for (int row = 0; row < m_ui->lvPopupHalvex->count(); ++row) patterns.append(m_ui->lvPopupHalvex->item(row)->text());
  m_settings.Lists().SetPopupList(patterns);
  Q_EMIT PopupListWritten();
}

void TfrmOptions::WriteStartup() {
  const TStartupMode mode = m_ui->rdoStartupLast->isChecked()    ? TStartupMode::Last
                            : m_ui->rdoStartupHome->isChecked()  ? TStartupMode::Home
                            : m_ui->rdoStartupBlank->isChecked() ? TStartupMode::Blank
                                                                 : TStartupMode::Group;
  m_settings.Set(Setting::StartupMode, NameOf(mode));
  if (mode == TStartupMode::Group) m_settings.Set(Setting::StartupHalvexGroup, m_ui->edtStartupHalvexGroup->text());
}

void TfrmOptions::WriteHomePage() {
  // One that somebody else has stored stays as it is, whatever it may be.
  const QString text = m_ui->edtHomePage->text();
  if (text != m_homePage) HomePage::Choose(m_settings.Store(), HomePage::OfTyped(text).value_or(QString()));
}
