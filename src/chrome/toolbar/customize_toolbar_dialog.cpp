#include "chrome/toolbar/customize_toolbar_dialog.h"

#include "actions/actions.h"
#include "chrome/toolbar/tool_button_kinds.h"
#include "config/language.h"
#include "ui/dialog_placing.h"
#include "ui/ink_icon.h"
#include "ui_customize_toolbar_dialog.h"

namespace {

constexpr QSize DialogSize(593, 316);  // pixels, as long as the texts have room
constexpr int TagRole = Qt::UserRole;  // the index of the entry, as decimal text
constexpr QLatin1String SeparatorTag("-1");

bool IsSeparator(const QListWidgetItem *item) {
  return item->data(TagRole).toString() == SeparatorTag;
}

}  // namespace

TfrmCustomizeToolbar::TfrmCustomizeToolbar(const TLanguage &language, const TToolbarEntries &entries, bool showsColor,
                                           QWidget *parent)
    : QDialog(parent),
      m_language(language),
      m_showsColor(showsColor),
      m_ui(std::make_unique<Ui::TfrmCustomizeToolbar>()) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "CUSTOMIZE_TOOLBAR");
  m_available = m_ui->lvAvailable;
  m_current = m_ui->lvCurrent;
  Fill(entries);
  connect(m_ui->cmdAdd, &QPushButton::clicked, this, &TfrmCustomizeToolbar::Add);
  connect(m_ui->cmdRemove, &QPushButton::clicked, this, &TfrmCustomizeToolbar::Remove);
  connect(m_available, &TButtonList::Chosen, this, &TfrmCustomizeToolbar::Add);
  connect(m_current, &TButtonList::Chosen, this, &TfrmCustomizeToolbar::Remove);
  connect(m_current, &TButtonList::RemoveWanted, this, &TfrmCustomizeToolbar::Remove);
  connect(m_current, &TButtonList::MoveWanted, this, &TfrmCustomizeToolbar::MoveSelected);
  connect(m_ui->spdUp, &QPushButton::clicked, this, [this] { MoveSelected(-1); });
  connect(m_ui->spdDown, &QPushButton::clicked, this, [this] { MoveSelected(1); });
  for (TButtonList *list : {m_available, m_current}) {
    connect(list, &TButtonList::Dropped, this,
            [this, list](const QString &source, int from, int row) { Drop(list, source, from, row); });
  }
  connect(m_ui->cmdClose, &QPushButton::clicked, this, &QDialog::accept);
  connect(m_ui->cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(m_ui->cmdReset, &QPushButton::clicked, this, [this] {
    m_isReset = true;
    accept();
  });
}

TfrmCustomizeToolbar::~TfrmCustomizeToolbar() = default;

void TfrmCustomizeToolbar::showEvent(QShowEvent *event) {
  setFixedSize(DialogSize.expandedTo(minimumSizeHint()));
  CentreOnScreen(*this);
  QDialog::showEvent(event);
}

void TfrmCustomizeToolbar::Fill(const TToolbarEntries &entries) {
  m_available->addItem(MakeItem(TToolbarEntry::Separator));
  for (const TToolbarEntry &entry : entries) (entry.visible ? m_current : m_available)->addItem(MakeItem(entry.index));
}

QListWidgetItem *TfrmCustomizeToolbar::MakeItem(int index) const {
  auto *item = new QListWidgetItem();
  item->setData(TagRole, QString::number(index));
  // Nothing is dropped onto an item, only between two.
  item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled);
  const TToolButtonKind *kind = ToolButtonKindOf(index);
  if (index == TToolbarEntry::Separator) {
    item->setText(m_language.Text("CUSTOMIZE_TOOLBAR", "Separator"));
  } else if (kind != nullptr) {
    item->setText(TLanguage::ShortHint(m_language.Text(kind->hint)));
    const QIcon icon = CommandIcon(kind->icon);
    item->setIcon(m_showsColor ? icon : InkIcon(icon));
  }
  return item;
}

void TfrmCustomizeToolbar::Add() {
  const int selected = m_current->SelectedRow();
  Transfer(m_available, m_available->SelectedRow(), m_current, selected < 0 ? m_current->count() : selected + 1);
}

void TfrmCustomizeToolbar::Remove() {
  const int selected = m_available->SelectedRow();
  Transfer(m_current, m_current->SelectedRow(), m_available, selected < 0 ? m_available->count() : selected + 1);
}

// Separators are not used up on the one side, and are not kept on the other.
void TfrmCustomizeToolbar::Transfer(TButtonList *from, int source, TButtonList *to, int row) {
  const QListWidgetItem *item = from->item(source);
  if (item == nullptr) return;
  const bool isSeparator = IsSeparator(item);
  if (to == m_current || !isSeparator) {
    to->insertItem(row, item->clone());
    to->SelectRow(row);
  }
  // The next item is selected then. Behind the last one the selection stays with the item itself, and goes with it,
  // which is meant; only a separator that stays keeps it.
  const bool isLast = source == from->count() - 1;
  if (from == m_current || !isSeparator) {
    delete from->takeItem(source);
    from->SelectRow(isLast ? -1 : source);
  } else {
    from->SelectRow(isLast ? source : source + 1);
  }
}

void TfrmCustomizeToolbar::MoveSelected(int by) {
  const int row = m_current->SelectedRow();
  if (row < 0 || row + by < 0 || row + by >= m_current->count()) return;
  m_current->insertItem(row + by, m_current->takeItem(row));
  m_current->SelectRow(row + by);
}

void TfrmCustomizeToolbar::Drop(TButtonList *to, const QString &list, int source, int row) {
  TButtonList *from = list == m_available->objectName() ? m_available : m_current;
  if (source < 0 || source >= from->count()) return;
  // The separator that stays is the first, and stays the first.
  if (to == m_available) row = std::max(row, 1);
  if (from != to) {
    Transfer(from, source, to, row);
    return;
  }
  if (from == m_available && source == 0) return;
  QListWidgetItem *item = to->takeItem(source);
  if (row > source) --row;
  to->insertItem(row, item);
  to->SelectRow(row);
}

TToolbarEntries TfrmCustomizeToolbar::Entries() const {
  if (m_isReset) return ToolbarDefinition::Default();
  TToolbarEntries entries;
  const auto take = [&entries](const TButtonList *list, int first, bool visible) {
    for (int row = first; row < list->count(); ++row) {
      entries.append({list->item(row)->data(TagRole).toInt(), visible});
    }
  };
  take(m_current, 0, true);
  take(m_available, 1, false);
  return entries;
}
