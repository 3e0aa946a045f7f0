#pragma once

#include <memory>
#include <QVariant>
#include <QWidget>

#include "config/language.h"

namespace Ui {
class TRemovalList;
}

// The base of pages of the options that list what there is and let the user take out some or all of it. The list is a
// copy: what was taken out is a matter of whoever writes.
class TRemovalList : public QWidget {
  Q_OBJECT

 public:
  ~TRemovalList() override;

 protected:
  // `name` is the page's object name.
  TRemovalList(const char *name, const TLanguage &language, const TTextKey &label, const QStringList &headers,
               QWidget *parent);
  // `what` is what stands for the row among those that were taken out.
  void AddRow(const QStringList &texts, const QVariant &what);
  [[nodiscard]] const QVariantList &Removed() const { return m_removed; }

 private:
  void RemoveRows(bool all);
  void UpdateButtons();

  std::unique_ptr<Ui::TRemovalList> m_ui;
  QVariantList m_removed;
};
