#include "groups/halvex_group_dialog.h"

#include <QFileInfo>

#include "config/language.h"
#include "groups/halvex_group.h"
#include "ui/message_box.h"
#include "ui/table_rows.h"

namespace {

enum TColumn { NameColumn, LocationColumn, LockedColumn };

constexpr TListColumn Columns[] = {
    {{"HalvexGroups", "StickyNameColumn"}, {"HalvexGroups", "StickyName"}, "edtTitle"},
    {{"HalvexGroups", "LocationColumn"}, {"HalvexGroups", "Location"}, "edtLocation"},
    {{"HalvexGroups", "LockedColumn"}, {"HalvexGroups", "TabLocked"}, "chkTabLocked", true},
};
constexpr TListForm Form{.list = "lstSites",
                         .columns = Columns,
                         .editTitle = {"HalvexGroups", "EditPage"},
                         .updateBox = LocationColumn,
                         .rests = TListForm::TRests::List};

constexpr QLatin1String Blank("BLANK");

QStringList CellsOf(const THalvexGroup &group) {
  QStringList cells;
  cells.reserve(group.Count() * qsizetype(std::size(Columns)));
  for (int line = 0; line < group.Count(); ++line) {
    auto [name, location] = group.At(line);
    // Here any spelling of "blank" means no name, and when a group is opened only the lower-case one does: meant so.
    if (name.left(Blank.size()).toUpper() == Blank) name.clear();
    const bool isLocked = location.startsWith(QLatin1Char('*'));
    if (isLocked) location.remove(0, 1);
    cells << name << location << (isLocked ? QString(TListColumn::Ticked) : QString());
  }
  return cells;
}

}  // namespace

TfrmHalvexGroup::TfrmHalvexGroup(const TLanguage &language, const QString &fileName, QWidget *owner)
    : TListEditor(language, Form, owner), m_fileName(fileName) {
  setObjectName(QStringLiteral("TfrmHalvexGroup"));
  const THalvexGroup group(fileName);
  m_readError = group.ReadError();
  const QString caption = language.Text("HalvexGroups", "HalvexGroup");
  Begin(QStringLiteral("%1: %2").arg(caption, QFileInfo(fileName).fileName()), CellsOf(group));
}

bool TfrmHalvexGroup::Accepts(QStringList &page) const {
  page[LocationColumn] = page.at(LocationColumn).trimmed();
  return !page.at(LocationColumn).isEmpty();
}

bool TfrmHalvexGroup::Save() {
  THalvexGroup group(m_fileName);
  // The file may have gone since the dialog was opened; it is made again then.
  group.SetFileName(m_fileName);
  group.Clear();
  for (int row = 0; row < Rows().Count(); ++row) {
    const QStringList page = Rows().At(row);
    group.AddEntry(page.at(NameColumn), page.at(LocationColumn), page.at(LockedColumn) == TListColumn::Ticked);
  }
  QString error;
  if (group.Save(&error)) return true;
  const TLanguage &language = Language();
  const QString text = language.Text("HalvexGroups", "CannotWrite").arg(QFileInfo(m_fileName).fileName(), error);
  ShowWarning(this, language, text, language.Global("HalvexGroup"));
  return false;
}
