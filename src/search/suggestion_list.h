#pragma once

#include <QListView>
#include <QPointer>

class QLineEdit;
class QStandardItemModel;
class TPageIcons;
class TSuggestionDelegate;

struct TSuggestion {
  QString address;
  QString title;
};

// The drop-down below a text box that offers addresses while something is typed. It never has the keyboard and never
// changes the text by itself: keys stay with the box, which passes on those that walk through the list.
class TSuggestionList final : public QListView {
  Q_OBJECT

 public:
  // `below` is the widget under which the list opens; `edit` inside it has the keyboard.
  TSuggestionList(QWidget *below, QLineEdit *edit, const QString &accessibleName);

  // Where the pages' icons come from; while there is no such place all have the plain one.
  void SetIcons(TPageIcons *icons);
  // Shows the suggestions with none chosen; none at all hides the list. `query` are the words that stand out in them
  // (see VisitWords::Query).
  void Offer(const QList<TSuggestion> &suggestions, const QStringList &query);
  // Moves the choice, by a page with `page`; beyond either end nothing is chosen.
  void Move(bool down, bool page);
  // Takes the chosen suggestion out of the list; nothing is chosen then.
  void RemoveChosen();
  // The chosen address; empty when none is, or the list is hidden.
  [[nodiscard]] QString Chosen() const;

 Q_SIGNALS:
  void Clicked(const QString &address);

 protected:
  void showEvent(QShowEvent *event) override;
  void hideEvent(QHideEvent *event) override;
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  void Place();
  void ShowIcons();
  void TellChosen();

  QWidget *m_below;
  QLineEdit *m_edit;
  QStandardItemModel *m_model;
  TSuggestionDelegate *m_delegate;
  QPointer<TPageIcons> m_icons;
  QIcon m_plainIcon;
};
