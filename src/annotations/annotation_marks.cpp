#include "annotations/annotation_marks.h"

#include <algorithm>

#include "browser/tabs/browser_tab.h"
#include "browser/tabs/tab_strip.h"
#include "config/settings.h"

struct TAnnotationMarks::TPage {
  QUrl address{};
  TAnnotatedWords words{};
  TAnnotatedWords found{};
  bool isLookedThrough = false;
};

TAnnotationMarks::TAnnotationMarks(TTabStrip &tabs, TSettings &settings) : m_tabs(tabs), m_settings(settings) {
  settings.Follow(Setting::FlyswatShowLinks, this, [this] {
    for (TBrowserTab *tab : m_tabs.Tabs()) {
      if (const auto page = m_pages.value(tab)) Look(tab, *page);
    }
  });
}

TAnnotationMarks::~TAnnotationMarks() = default;

void TAnnotationMarks::Watch(TBrowserTab *tab) {
  const auto forget = [this, tab] { Forget(tab); };
  connect(tab, &QObject::destroyed, this, [this, tab] { m_pages.remove(tab); });
  connect(tab, &TBrowserTab::Closing, this, forget);
  THalvexBrowser *browser = tab->Browser();
  connect(browser, &THalvexBrowser::NavigateComplete, this, forget);
  connect(browser, &THalvexBrowser::AddressChanged, this, [this, tab](const QString &address) {
    const auto page = m_pages.value(tab);
    if (page && !page->address.matches(QUrl(address), QUrl::RemoveFragment)) Forget(tab);
  });
  connect(browser, &THalvexBrowser::WordsFound, this, [this, tab](const QList<int> &found) { Take(tab, found); });
  connect(browser, &THalvexBrowser::WordClicked, this, [this, tab](int word, const QPoint &at) {
    const auto page = m_pages.value(tab);
    if (page && word < page->words.size()) Q_EMIT Clicked(tab, page->words.at(word), at);
  });
}

void TAnnotationMarks::Show(TBrowserTab *tab, const TAnnotatedWords &words) {
  if (tab->Browser() == nullptr) return;
  if (!m_pages.contains(tab)) Watch(tab);
  auto &page = m_pages[tab];
  page = std::make_shared<TPage>(TPage{.address = QUrl(tab->GetLocationUrl()), .words = words});
  page->isLookedThrough = words.isEmpty();
  Look(tab, *page);
  Q_EMIT Changed(tab);
}

void TAnnotationMarks::Look(TBrowserTab *tab, const TPage &page) {
  if (tab->Browser() == nullptr) return;
  QStringList words;
  for (const TAnnotatedWord &word : page.words) words.append(word.word);
  tab->Browser()->LookForWords(words, m_settings.Get(Setting::FlyswatShowLinks));
}

void TAnnotationMarks::Take(TBrowserTab *tab, const QList<int> &found) {
  const auto page = m_pages.value(tab);
  if (!page) return;
  page->isLookedThrough = true;
  page->found.clear();
  for (const int word : found) {
    if (word < page->words.size()) page->found.append(page->words.at(word));
  }
  std::ranges::sort(page->found, [](const TAnnotatedWord &a, const TAnnotatedWord &b) {
    return QString::localeAwareCompare(a.word, b.word) < 0;
  });
  Q_EMIT Changed(tab);
}

void TAnnotationMarks::Forget(TBrowserTab *tab) {
  const auto page = m_pages.find(tab);
  if (page == m_pages.end() || !*page) return;
  // The tab is watched on; another page may be explained next.
  page->reset();
  if (tab->Browser() != nullptr) tab->Browser()->LookForWords({}, false);
  Q_EMIT Changed(tab);
}

void TAnnotationMarks::ForgetAll() {
  for (TBrowserTab *tab : m_tabs.Tabs()) Forget(tab);
}

bool TAnnotationMarks::IsLookedThrough(const TBrowserTab *tab) const {
  const auto page = m_pages.value(tab);
  return page && page->isLookedThrough;
}

TAnnotatedWords TAnnotationMarks::Found(const TBrowserTab *tab) const {
  const auto page = m_pages.value(tab);
  return page ? page->found : TAnnotatedWords();
}
