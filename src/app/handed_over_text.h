#pragma once

#include <QObject>
#include <QStringList>

class QWidget;
class TPageGroups;
class TTabStrip;

// What a later start was given: the window comes to the front and opens it, a page-group file as a group, anything else
// as an address in a new tab. An empty text only brings the window to the front.
class THandedOverText final : public QObject {
  Q_OBJECT

 public:
  // All must outlive this object.
  THandedOverText(QWidget *window, TTabStrip &tabs, TPageGroups &groups);

  // While a dialog waits for its answer the text is dropped.
  void Take(const QString &text);
  // The pages of the start come first, for they take the tab that is there: what has come till now is opened now.
  void Begin();

 Q_SIGNALS:
  // It is about to come to the front, from wherever it is.
  void WindowWanted();

 private:
  void BringToFront();

  QWidget *m_window;
  TTabStrip &m_tabs;
  TPageGroups &m_groups;
  QStringList m_early;
  bool m_begun = false;
};
