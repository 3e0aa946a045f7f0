#pragma once

#include <memory>
#include <QDialog>

#include "chrome/toolbar/toolbar_definition.h"

class QListWidgetItem;
class TButtonList;
class TLanguage;

namespace Ui {
class TfrmCustomizeToolbar;
}

// Arranges the tool bar: the buttons that show in one list, all others in the other, beside a separator that never
// runs out.
class TfrmCustomizeToolbar final : public QDialog {
  Q_OBJECT

 public:
  // With `showsColor` its pictures have colours, as those of the tool bar then have.
  TfrmCustomizeToolbar(const TLanguage &language, const TToolbarEntries &entries, bool showsColor, QWidget *parent);
  ~TfrmCustomizeToolbar() override;

  // Once it was accepted, by OK or Reset: the tool bar as it is to be. What shows comes first, then what is hidden.
  [[nodiscard]] TToolbarEntries Entries() const;

 protected:
  void showEvent(QShowEvent *event) override;

 private:
  void Fill(const TToolbarEntries &entries);
  [[nodiscard]] QListWidgetItem *MakeItem(int index) const;
  void Add();
  void Remove();
  void MoveSelected(int by);
  void Drop(TButtonList *to, const QString &list, int source, int row);
  void Transfer(TButtonList *from, int source, TButtonList *to, int row);

  const TLanguage &m_language;
  bool m_showsColor;
  std::unique_ptr<Ui::TfrmCustomizeToolbar> m_ui;
  TButtonList *m_available;  // its first item is the separator that stays
  TButtonList *m_current;
  bool m_isReset = false;
};
