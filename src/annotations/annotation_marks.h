#pragma once

#include <memory>
#include <QHash>
#include <QObject>
#include <QPoint>

#include "annotations/annotation_answer.h"

class TBrowserTab;
class TSettings;
class TTabStrip;

// Which of the words that a service has told are on the page of each tab, marked there while FlyswatShowLinks is set.
// Another page in the tab, or another address of the same one, ends it.
class TAnnotationMarks final : public QObject {
  Q_OBJECT

 public:
  // Both must outlive this object.
  TAnnotationMarks(TTabStrip &tabs, TSettings &settings);
  ~TAnnotationMarks() override;

  // Has the page that the tab shows looked through for these.
  void Show(TBrowserTab *tab, const TAnnotatedWords &words);
  void Forget(TBrowserTab *tab);
  void ForgetAll();
  // Whether words were told for the page that the tab shows, be it that there are none.
  [[nodiscard]] bool IsShown(const TBrowserTab *tab) const { return m_pages.value(tab) != nullptr; }
  // Whether it is known which of them it has.
  [[nodiscard]] bool IsLookedThrough(const TBrowserTab *tab) const;
  // Those that the page has, in the order of their letters.
  [[nodiscard]] TAnnotatedWords Found(const TBrowserTab *tab) const;

 Q_SIGNALS:
  void Changed(TBrowserTab *tab);
  // The user has clicked a mark; `at` is below it, on the screen.
  void Clicked(TBrowserTab *tab, const TAnnotatedWord &word, const QPoint &at);

 private:
  struct TPage;
  void Watch(TBrowserTab *tab);
  void Look(TBrowserTab *tab, const TPage &page);
  void Take(TBrowserTab *tab, const QList<int> &found);

  TTabStrip &m_tabs;
  TSettings &m_settings;
  QHash<const TBrowserTab *, std::shared_ptr<TPage>> m_pages;
};
