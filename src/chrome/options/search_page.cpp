#include "chrome/options/search_page.h"

#include <algorithm>

#include "browser/engine/search_page.h"
#include "config/language.h"
#include "config/settings.h"
#include "ui/shown_text.h"
#include "ui_search_page.h"

TSearchPage::TSearchPage(const TLanguage &language, TSettings &settings, QWidget *parent)
    : QWidget(parent), m_settings(settings), m_ui(std::make_unique<Ui::TSearchPage>()) {
  m_ui->setupUi(this);
  setObjectName(QStringLiteral("tsSearch"));
  language.TranslateForm(this, "OPTIONS");
  // A list that cannot be read now is not known, and then not changed.
  const std::optional<TNamedAddresses> searches = settings.Lists().QuickSearchEntries();
  m_ui->lvSearchDefault->setEnabled(searches.has_value());
  for (const TNamedAddress &search : searches ? *searches : TNamedAddresses()) {
    auto *row = new QListWidgetItem(search.name, m_ui->lvSearchDefault);
    row->setToolTip(PlainTip(search.address));
    row->setData(Qt::UserRole, search.address);
  }
  m_ui->lvSearchDefault->setCurrentRow(0);

  QComboBox &panel = *m_ui->cboSearchBar;
  // Not empty where the maker has named none: the panel takes that for the first page of the list.
  const QString makers = SettingRule::DefaultSearchBar();
  panel.addItem(language.Text("OPTIONS", "SearchPanelFirst"), SearchPage::First({makers}));
  const std::optional<TNamedAddresses> pages = settings.Lists().SearchBarEntries();
  for (const TNamedAddress &page : pages ? *pages : TNamedAddresses()) {
    panel.addItem(page.name, page.address);
  }
  const QString first = pages && !pages->isEmpty() ? pages->first().address : QString();
  const QString current = SearchPage::First({settings.Get(Setting::SearchBar), makers, first});
  if (panel.findData(current) < 0) panel.addItem(current, current);
  panel.setCurrentIndex(panel.findData(current));
  m_panel = panel.currentIndex();
}

TSearchPage::~TSearchPage() = default;

bool TSearchPage::Write() {
  if (m_ui->cboSearchBar->currentIndex() != m_panel) {
    m_settings.Set(Setting::SearchBar, m_ui->cboSearchBar->currentData().toString());
  }
  const QListWidgetItem *chosen = m_ui->lvSearchDefault->currentItem();
  if (chosen == nullptr || m_ui->lvSearchDefault->row(chosen) == 0) return false;
  // As it is by now.
  std::optional<TNamedAddresses> searches = m_settings.Lists().QuickSearchEntries();
  if (!searches) return false;
  const QString address = chosen->data(Qt::UserRole).toString();
  const auto place = std::ranges::find_if(*searches, [&](const TNamedAddress &search) {
    return search.name == chosen->text() && search.address == address;
  });
  if (place == searches->end()) return false;
  std::rotate(searches->begin(), place, place + 1);
  return m_settings.Lists().SetQuickSearchEntries(*searches);
}
