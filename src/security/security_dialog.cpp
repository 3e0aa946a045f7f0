#include "security/security_dialog.h"

#include <QSet>

#include "config/language.h"
#include "security/zone_images.h"
#include "ui/dialog_placing.h"
#include "ui_security_dialog.h"

namespace {

constexpr int ListWidthInCharacters = 50;
constexpr int LookInterval = 500;  // milliseconds

}  // namespace

TfrmSecurity::TfrmSecurity(TZoneStore &zones, const TIEZoneMgr &manager, const TLanguage &language, QWidget *parent)
    : QDialog(parent),
      m_zones(zones),
      m_manager(manager),
      m_language(language),
      m_ui(std::make_unique<Ui::TfrmSecurity>()) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "SECURITY");
  m_ui->txtSite->setAccessibleName(language.Text("SECURITY", "Site"));
  m_ui->txtSite->setPlaceholderText(language.Text("SECURITY", "SiteHint"));
  m_ui->lstSites->setAccessibleName(m_ui->grpSites->title());
  m_ui->lstSites->setMinimumWidth(fontMetrics().averageCharWidth() * ListWidthInCharacters);
  for (int zone = 0; zone < ZoneCount; ++zone) {
    m_ui->cboZone->addItem(ZoneImages::Of(zone), manager.ZoneDisplayName(zone));
  }
  m_rules = {m_ui->cboActiveX, m_ui->cboScripting, m_ui->cboCookies, m_ui->cboSession};
  for (size_t rule = 0; rule < m_rules.size(); ++rule) {
    for (const TZonePolicy policy : {TZonePolicy::Allow, TZonePolicy::Query, TZonePolicy::Disallow}) {
      m_rules[rule]->addItem(manager.PolicyWord(policy));
    }
    connect(m_rules[rule], &QComboBox::activated, this, [this, rule] { SetRule(rule); });
  }
  connect(m_ui->cboZone, &QComboBox::currentIndexChanged, this, &TfrmSecurity::Fill);
  connect(m_ui->cmdAdd, &QPushButton::clicked, this, &TfrmSecurity::AddSite);
  connect(m_ui->cmdRemove, &QPushButton::clicked, this, &TfrmSecurity::RemoveSites);
  connect(m_ui->cmdDefaults, &QPushButton::clicked, this, &TfrmSecurity::ResetRules);
  connect(m_ui->txtSite, &QLineEdit::textChanged, this, [this](const QString &text) {
    m_ui->cmdAdd->setEnabled(!text.trimmed().isEmpty());
    // What Enter does is what was typed for.
    m_ui->cmdAdd->setDefault(m_ui->cmdAdd->isEnabled());
    m_ui->cmdClose->setDefault(!m_ui->cmdAdd->isEnabled());
    m_ui->lblBadSite->clear();
  });
  connect(m_ui->lstSites, &QListWidget::itemSelectionChanged, this,
          [this] { m_ui->cmdRemove->setEnabled(!m_ui->lstSites->selectedItems().isEmpty()); });
  m_ui->cmdAdd->setEnabled(false);
  ShowZone(ZoneNumber::Internet);
  Fill();
  m_look.setObjectName(QStringLiteral("tmrZones"));
  connect(&m_look, &QTimer::timeout, this, &TfrmSecurity::Look);
  m_look.start(LookInterval);
  CentreOnScreen(*this);
}

TfrmSecurity::~TfrmSecurity() = default;

int TfrmSecurity::Zone() const {
  return m_ui->cboZone->currentIndex();
}

void TfrmSecurity::ShowZone(int zone) {
  if (IsZone(zone)) m_ui->cboZone->setCurrentIndex(zone);
}

void TfrmSecurity::Fill() {
  const int zone = Zone();
  m_revision = m_zones.Revision();
  QSet<QString> chosen;
  for (const QListWidgetItem *item : m_ui->lstSites->selectedItems()) chosen.insert(item->text());
  m_ui->lstSites->clear();
  for (const TZoneMapping &mapping : m_zones.Mappings()) {
    if (mapping.zone != zone) continue;
    auto *site = new QListWidgetItem(mapping.pattern, m_ui->lstSites);
    site->setSelected(chosen.contains(mapping.pattern));
  }
  m_ui->grpSites->setEnabled(zone != ZoneNumber::LocalMachine);
  m_ui->cmdRemove->setEnabled(!m_ui->lstSites->selectedItems().isEmpty());
  m_ui->lblBadSite->clear();
  m_ui->lblBadRule->clear();
  for (size_t rule = 0; rule < m_rules.size(); ++rule) {
    m_rules[rule]->setCurrentIndex(static_cast<int>(m_manager.Policy(zone, UrlActions[rule])));
  }
}

void TfrmSecurity::Look() {
  if (m_zones.Revision() != m_revision) Fill();
}

void TfrmSecurity::AddSite() {
  const QString site = m_ui->txtSite->text().trimmed();
  if (m_zones.AddMapping(site, Zone())) {
    m_ui->txtSite->clear();
    Fill();
    Q_EMIT SitesChanged();
    return;
  }
  m_ui->lblBadSite->setText(TZonePattern::Of(site) ? m_language.Text("SECURITY", "NotKept")
                                                   : m_language.Text("SECURITY", "BadSite"));
  m_ui->txtSite->setFocus();
}

void TfrmSecurity::RemoveSites() {
  QStringList sites;
  for (const QListWidgetItem *item : m_ui->lstSites->selectedItems()) sites.append(item->text());
  const bool isDone = m_zones.RemoveMappings(sites);
  Fill();
  if (!isDone) m_ui->lblBadSite->setText(m_language.Text("SECURITY", "NotKept"));
  Q_EMIT SitesChanged();
}

void TfrmSecurity::SetRule(size_t rule) {
  const auto policy = static_cast<TZonePolicy>(m_rules[rule]->currentIndex());
  // A value of somebody else's stays where the user has chosen what it already counted as.
  if (policy == m_manager.Policy(Zone(), UrlActions[rule])) return;
  ShowRules(m_manager.SetPolicy(Zone(), UrlActions[rule], policy) == TIEZoneMgr::Done);
}

void TfrmSecurity::ResetRules() {
  ShowRules(m_zones.ResetPolicies(Zone()));
}

void TfrmSecurity::ShowRules(bool isKept) {
  Fill();
  if (isKept) Q_EMIT RulesChanged();
  if (!isKept) m_ui->lblBadRule->setText(m_language.Text("SECURITY", "NotKept"));
}
