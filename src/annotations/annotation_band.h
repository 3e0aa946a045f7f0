#pragma once

#include <functional>
#include <QHash>
#include <QObject>
#include <QPoint>
#include <QString>
#include <QTimer>
#include <utility>

#include "annotations/annotation_marks.h"
#include "annotations/annotation_service.h"

class QMenu;
class QToolButton;
class TActions;
class TLanguage;
class TSettings;
class TTabStrip;

// The words of the page in front that an outside service explains: a button with their number, the menu pmFlyswat (also
// in the menu bar) with each word and its links, and the same for a word that is marked in the page. Nothing of it
// shows where product.ini names no service.
//
// The service is asked for a page when the user looks at it, and only where he has agreed to send addresses to its host
// (FlyswatAgreed) or asks for this page by himself. Nothing asks him: both are entries of the menu that say where the
// address goes, and the button leads there on pages that could be explained.
class TAnnotationBand final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object. The service is the one of the tabs' product.
  TAnnotationBand(TActions &actions, TTabStrip &tabs, QToolButton &button);

  // Which pages the service may be asked for at all; at first those of the Internet (see IsInternetPage).
  void SetMayAsk(std::function<bool(const QString &address)> mayAsk) { m_mayAsk = std::move(mayAsk); }

 Q_SIGNALS:
  // A line for the user about what he has asked for.
  void Note(const QString &text);

 private:
  [[nodiscard]] bool IsAgreed() const;
  [[nodiscard]] bool IsOn() const;
  // The page of the tab is there, and may be asked for.
  [[nodiscard]] bool CanBeAsked(const TBrowserTab *tab) const;
  void AskIfAgreed(TBrowserTab *tab);
  void AskByUser();
  void Take(const QString &page, const TAnnotatedWords &words);
  void OnChanged(TBrowserTab *tab);
  void SetAgreed(bool agreed);
  void Switch();
  void ShowButton();
  void FillMenu();
  void Fill(QMenu &menu, const TAnnotatedWord &word);
  void PopUp(const TAnnotatedWord &word, const QPoint &at);

  TTabStrip &m_tabs;
  TSettings &m_settings;
  const TLanguage &m_language;
  QToolButton &m_button;
  QAction &m_showLinks;
  QMenu &m_menu;
  qsizetype m_fixed;  // items that always stand in the menu
  TAnnotationService m_service;
  TAnnotationMarks m_marks;
  std::function<bool(const QString &address)> m_mayAsk;
  QTimer m_rest;
  QString m_wanted;  // the page that the user has asked for by himself, until its words are known
};
