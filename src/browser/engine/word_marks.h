#pragma once

#include <QList>
#include <QObject>
#include <QPoint>
#include <QString>
#include <QStringList>

class TEnginePage;

// Words that are looked for in the text of a page, and marked there. That is done by a script in a world of its own:
// the page sees the marks, and can tell the program nothing in their name.
class TWordMarks final : public QObject {
  Q_OBJECT

 public:
  static constexpr int MostMarks = 500;  // on a page; the others stay plain

  // Belongs to `page`.
  explicit TWordMarks(TEnginePage *page);

  // Looks for whole words in whatever case, in the text that is to be seen and that the user does not write himself,
  // and with `marks` marks them where a click does nothing else. What was looked for before is forgotten, and its marks
  // are taken out again; an empty list does only that. Found comes later, unless the page goes away or lets no scripts
  // run.
  void Look(const QStringList &words, bool marks);

 Q_SIGNALS:
  // By their places in the list.
  void Found(const QList<int> &words);
  // The user has clicked one; `at` is below it, in the view.
  void Clicked(int word, const QPoint &at);

 private:
  void OnConsole(const QString &message);

  TEnginePage *m_page;
  QString m_token;  // that begins what the script tells; empty while there is none
  qsizetype m_words = 0;
};
