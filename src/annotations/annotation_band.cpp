#include "annotations/annotation_band.h"

#include <QGuiApplication>
#include <QMenu>
#include <QToolButton>

#include "actions/actions.h"
#include "annotations/internet_page.h"
#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/language.h"
#include "config/settings.h"
#include "platform/product_info.h"
#include "ui/shown_address.h"
#include "ui/shown_text.h"

namespace {

constexpr int RestTime = 1000;         // milliseconds
constexpr qsizetype LongestItem = 70;  // characters in a line of a menu

// A text in lines as long as a menu takes, broken at blanks where there are any.
QStringList Lines(QString text) {
  QStringList lines;
  while (text.size() > LongestItem) {
    const qsizetype blank = text.lastIndexOf(u' ', LongestItem);
    qsizetype end = blank > 0 ? blank : LongestItem;
    if (text.at(end - 1).isHighSurrogate()) --end;
    lines.append(text.left(end));
    text = text.mid(end).trimmed();
  }
  return lines << text;
}

bool IsSamePage(const QString &one, const QString &other) {
  return QUrl(one).matches(QUrl(other), QUrl::RemoveFragment);
}

}  // namespace

TAnnotationBand::TAnnotationBand(TActions &actions, TTabStrip &tabs, QToolButton &button)
    : m_tabs(tabs),
      m_settings(tabs.Environment().settings),
      m_language(tabs.Environment().language),
      m_button(button),
      m_showLinks(*actions[TCommand::AnnotationsShowLinks]),
      m_menu(*actions.Menu(TMenu::Annotations)),
      m_fixed(m_menu.actions().size()),
      m_service(tabs.Environment().product.annotationService),
      m_marks(tabs, m_settings),
      m_mayAsk(&IsInternetPage) {
  m_menu.menuAction()->setVisible(m_service.IsThere());
  m_button.hide();
  if (!m_service.IsThere()) return;
  m_button.setIcon(CommandIcon("annotations"));
  m_button.setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  m_button.setPopupMode(QToolButton::InstantPopup);
  m_button.setMenu(&m_menu);
  m_menu.setToolTipsVisible(true);
  connect(&m_menu, &QMenu::aboutToShow, this, &TAnnotationBand::FillMenu);
  connect(&m_service, &TAnnotationService::Answered, this, &TAnnotationBand::Take);
  connect(&m_marks, &TAnnotationMarks::Changed, this, &TAnnotationBand::OnChanged);
  connect(&m_marks, &TAnnotationMarks::Clicked, this,
          [this](TBrowserTab *tab, const TAnnotatedWord &word, const QPoint &at) {
            if (tab == m_tabs.GetActivePage()) PopUp(word, at);
          });
  const auto shown = [this](TBrowserTab *tab) {
    if (tab != m_tabs.GetActivePage()) return;
    AskIfAgreed(tab);
    ShowButton();
  };
  connect(&tabs, &TTabStrip::TabLoaded, this, shown);
  connect(&tabs, &TTabStrip::ActiveTabChanged, this, shown);
  // A page that changes its address by script is another one to ask about, once it has come to rest.
  m_rest.setSingleShot(true);
  m_rest.setInterval(RestTime);
  connect(&m_rest, &QTimer::timeout, this, [this] { AskIfAgreed(m_tabs.GetActivePage()); });
  connect(&tabs, &TTabStrip::AddressChanged, this, [this] {
    ShowButton();
    m_rest.start();
  });
  connect(&m_service, &TAnnotationService::Failed, this, [this](const QString &page) {
    if (page != m_wanted) return;
    m_wanted.clear();
    Q_EMIT Note(m_language.Text("ANNOTATIONS", "Failed"));
  });
  m_settings.Apply(Setting::FlyswatEnabled, this, [this] { Switch(); });
  m_settings.Follow(Setting::FlyswatAgreed, this, [this] { Switch(); });
}

bool TAnnotationBand::IsAgreed() const {
  return m_settings.Get(Setting::FlyswatAgreed) == m_service.Host();
}

bool TAnnotationBand::IsOn() const {
  return m_settings.Get(Setting::FlyswatEnabled);
}

bool TAnnotationBand::CanBeAsked(const TBrowserTab *tab) const {
  return tab != nullptr && tab->Load() == TLoad::Shown && m_mayAsk(tab->GetLocationUrl());
}

void TAnnotationBand::AskIfAgreed(TBrowserTab *tab) {
  if (IsOn() && IsAgreed() && CanBeAsked(tab) && !m_marks.IsShown(tab)) m_service.Ask(tab->GetLocationUrl());
}

void TAnnotationBand::AskByUser() {
  const TBrowserTab *tab = m_tabs.GetActivePage();
  if (!CanBeAsked(tab)) return;
  m_wanted = tab->GetLocationUrl();
  m_service.Ask(m_wanted, true);
}

// Another page may be there by now, and another tab in front.
void TAnnotationBand::Take(const QString &page, const TAnnotatedWords &words) {
  if (!IsOn() || !(IsAgreed() || page == m_wanted)) return;
  for (TBrowserTab *tab : m_tabs.Tabs()) {
    if (!CanBeAsked(tab) || !IsSamePage(tab->GetLocationUrl(), page)) continue;
    if (!m_marks.IsShown(tab) || page == m_wanted) m_marks.Show(tab, words);
  }
}

void TAnnotationBand::OnChanged(TBrowserTab *tab) {
  ShowButton();
  if (m_wanted.isEmpty() || !IsSamePage(tab->GetLocationUrl(), m_wanted) || !m_marks.IsLookedThrough(tab)) return;
  m_wanted.clear();
  if (tab == m_tabs.GetActivePage() && m_marks.Found(tab).isEmpty()) {
    Q_EMIT Note(m_language.Text("ANNOTATIONS", "None"));
  }
}

void TAnnotationBand::SetAgreed(bool agreed) {
  m_settings.Set(Setting::FlyswatAgreed, agreed ? m_service.Host() : QString());
}

void TAnnotationBand::Switch() {
  m_showLinks.setEnabled(IsOn());
  if (IsOn() && IsAgreed()) {
    AskIfAgreed(m_tabs.GetActivePage());
  } else {
    m_service.Stop();
    m_wanted.clear();
    m_marks.ForgetAll();
  }
  ShowButton();
}

void TAnnotationBand::ShowButton() {
  TBrowserTab *tab = m_tabs.GetActivePage();
  const qsizetype count = m_marks.Found(tab).size();
  // Also while the page is on its way: what stands beside it would move.
  const bool leadsToMenu = !IsAgreed() && tab != nullptr && m_mayAsk(tab->AddressToSave());
  m_button.setVisible(IsOn() && (count > 0 || leadsToMenu));
  m_button.setText(count > 0 ? QString::number(count) : QString());
  const QString hint =
      count > 0 ? m_language.Text("ANNOTATIONS", "Found").arg(count) : m_language.Text("ANNOTATIONS", "Hint");
  m_button.setToolTip(hint);
  m_button.setAccessibleName(hint);
}

void TAnnotationBand::FillMenu() {
  const QList<QAction *> items = m_menu.actions();
  for (QAction *item : items.mid(m_fixed)) {
    m_menu.removeAction(item);
    // A sub-menu's item goes with it.
    item->menu() != nullptr ? delete item->menu() : delete item;
  }
  if (!IsOn()) return;
  TBrowserTab *tab = m_tabs.GetActivePage();
  const QString host = MenuText(ShownHost(m_service.Host()));
  const TAnnotatedWords words = m_marks.Found(tab);
  if (!IsAgreed()) {
    QAction *ask = m_menu.addAction(m_language.Text("ANNOTATIONS", "AskForPage").arg(host));
    ask->setObjectName(QStringLiteral("pmFlyswatAsk"));
    ask->setEnabled(CanBeAsked(tab) && words.isEmpty());
    connect(ask, &QAction::triggered, this, &TAnnotationBand::AskByUser);
  }
  QAction *agree = m_menu.addAction(m_language.Text("ANNOTATIONS", "Agree").arg(host));
  agree->setObjectName(QStringLiteral("pmFlyswatAgree"));
  agree->setCheckable(true);
  agree->setChecked(IsAgreed());
  connect(agree, &QAction::toggled, this, &TAnnotationBand::SetAgreed);
  m_menu.addSeparator();
  for (const TAnnotatedWord &word : words) Fill(*m_menu.addMenu(MenuText(word.word, LongestItem)), word);
  if (words.isEmpty() && m_marks.IsLookedThrough(tab))
    m_menu.addAction(m_language.Text("ANNOTATIONS", "None"))->setEnabled(false);
}

void TAnnotationBand::Fill(QMenu &menu, const TAnnotatedWord &word) {
  menu.setToolTipsVisible(true);
  if (!word.title.isEmpty()) {
    // Lines that do nothing but can be walked to: what is at rest is hard to see, and read out by nobody.
    for (const QString &line : Lines(word.title)) menu.addAction(MenuText(line));
    if (!word.links.isEmpty()) menu.addSeparator();
  }
  for (const TAnnotationLink &link : word.links) {
    const QString shown = ShownAddress(link.address);
    const QString text = MenuText(link.title.isEmpty() ? shown : link.title, LongestItem);
    // What a link is called says nothing about where it leads.
    QAction *item =
        menu.addAction(text + u'\t' + MenuText(ShownHost(QUrl(link.address).host(QUrl::FullyEncoded)), LongestItem));
    item->setToolTip(PlainTip(shown));
    connect(item, &QAction::triggered, this, [this, address = link.address] {
      const bool background = QGuiApplication::queryKeyboardModifiers().testFlag(Qt::ControlModifier);
      m_tabs.OpenFromPage(TAddress::OfEngine(address), background);
    });
  }
}

void TAnnotationBand::PopUp(const TAnnotatedWord &word, const QPoint &at) {
  auto *menu = new QMenu(&m_button);
  menu->setObjectName(QStringLiteral("pmFlyswatWord"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  Fill(*menu, word);
  menu->popup(at);
}
