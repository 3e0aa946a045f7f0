#pragma once

#include <QAbstractItemView>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

// Works a list editor as a user does.
struct TListEditorDriver {
  QDialog &dialog;
  const char *list;                   // the list's object name
  std::array<const char *, 2> boxes;  // those of the name and the address

  template <typename T>
  [[nodiscard]] T &Part(const char *name) const {
    auto *part = dialog.findChild<T *>(QLatin1String(name));
    Q_ASSERT_X(part != nullptr, "Part", name);
    return *part;
  }
  [[nodiscard]] QAbstractItemView &List() const { return Part<QAbstractItemView>(list); }
  void Click(const char *button) const { Part<QPushButton>(button).click(); }
  void Select(int row) const { List().setCurrentIndex(List().model()->index(row, 0)); }
  // Types an entry over what stands in the boxes and takes it with Enter.
  void Enter(const QString &name, const QString &address) const {
    Part<QLineEdit>(boxes[0]).setText(name);
    Part<QLineEdit>(boxes[1]).setText(address);
    QTest::keyClick(&Part<QLineEdit>(boxes[1]), Qt::Key_Return);
  }
  [[nodiscard]] QStringList Entered() const {
    return {Part<QLineEdit>(boxes[0]).text(), Part<QLineEdit>(boxes[1]).text()};
  }
  [[nodiscard]] bool IsEditing() const { return Part<QWidget>("grpEdit").isVisible(); }
  // The rows, their cells joined by "|".
  [[nodiscard]] QStringList Shown() const {
    const QAbstractItemModel &model = *List().model();
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < model.columnCount(); ++column) {
        cells.append(model.index(row, column).data().toString());
      }
      rows.append(cells.join(u'|'));
    }
    return rows;
  }
  // The buttons of the list that can be pressed, and OK.
  [[nodiscard]] QString Enabled() const {
    QStringList names;
    for (const char *name : {"cmdInsert", "cmdUpdate", "cmdDelete", "cmdUp", "cmdDown", "cmdOk"}) {
      if (Part<QPushButton>(name).isEnabled()) names.append(QString::fromLatin1(name).sliced(3));
    }
    return names.join(u' ');
  }
};
