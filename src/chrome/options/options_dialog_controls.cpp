// What the controls of the dialog do with each other: the tree and its search, and which of them depend on others.

#include <algorithm>
#include <QCheckBox>
#include <QColorDialog>
#include <QFileDialog>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPointer>
#include <QPushButton>
#include <QStyle>

#include "actions/actions.h"
#include "browser/tabs/strip_settings.h"
#include "chrome/options/options_dialog.h"
#include "chrome/options/user_scripts_page.h"
#include "config/language.h"
#include "config/settings.h"
#include "groups/group_folder.h"
#include "ui/contrast.h"
#include "ui/dialog_placing.h"
#include "ui/ink_icon.h"
#include "ui/shown_text.h"
#include "ui_options_dialog.h"

namespace {

constexpr int TreeMargin = 56;     // pixels, for icon and frame beside the longest name
constexpr int MarkStrength = 70;   // of the highlight's colour behind what a search has found, of 255
constexpr int FittingWidth = 780;  // pixels; with the window's frame it has room on the smallest screens
constexpr int HeightOfTree = 590;  // with all of its pages, where there is room for them

// The title of a page and its picture, in the order of the stack: the tree's node i shows page i.
struct TPage {
  TTextKey title;
  const char *icon;
};
constexpr TPage Pages[] = {
    {{"OPTIONS", "PageGeneral"}, "settings"},
    {{"OPTIONS", "PageTabs"}, "tab_list"},
    {{"OPTIONS", "PageColors"}, "pictures"},
    {{"OPTIONS", "PageNewTabs"}, "new_tab"},
    {{"OPTIONS", "PageStartup"}, "home"},
    {{"OPTIONS", "PageCompletion"}, "edit"},
    {{"OPTIONS", "PagePopups"}, "popup_blocked"},
    {{"OPTIONS", "PageAddressBar"}, "go"},
    {{"OPTIONS", "PageQuestions"}, "question"},
    {{"OPTIONS", "PageFavorites"}, "favorites"},
    {{"OPTIONS", "PageDefault"}, "open"},
    {{"OPTIONS", "PageHistory"}, "history"},
    {{"OPTIONS", "PageLanguage"}, "text_size"},
    {{"OPTIONS", "PageBars"}, "full_screen"},
    {{"OPTIONS", "PageDownloads"}, "downloads"},
    {{"OPTIONS", "PageSearch"}, "search"},
    {{"OPTIONS", "PageContent"}, "page"},
    {{"OPTIONS", "PagePermissions"}, "security"},
    {{"OPTIONS", "PageCertificates"}, "lock"},
    {{"OPTIONS", "PageScripts"}, "source"},
    {{"OPTIONS", "PageAnnotations"}, "information"},
};

// The columns' headers and the rows of a list.
QStringList WordsIn(const QAbstractItemView &view) {
  const QAbstractItemModel &model = *view.model();
  const int columns = model.columnCount();
  QStringList words;
  if (const auto *tree = qobject_cast<const QTreeView *>(&view); tree != nullptr && !tree->isHeaderHidden()) {
    for (int column = 0; column < columns; ++column) words += model.headerData(column, Qt::Horizontal).toString();
  }
  for (int row = 0; row < model.rowCount(); ++row) {
    for (int column = 0; column < columns; ++column) words += model.index(row, column).data().toString();
  }
  return words;
}

// What can be read on a control, and what it offers to choose from, without the marks of its keys.
QStringList WordsOf(const QWidget &control) {
  // What other controls are made of shows nothing of its own.
  if (qobject_cast<const QAbstractSpinBox *>(control.parentWidget()) != nullptr) return {};
  QStringList words{control.accessibleName()};
  if (const auto *button = qobject_cast<const QAbstractButton *>(&control)) {
    words += WithoutMnemonic(button->text());
  } else if (const auto *label = qobject_cast<const QLabel *>(&control)) {
    words += WithoutMnemonic(label->text());
  } else if (const auto *field = qobject_cast<const QLineEdit *>(&control)) {
    words += field->text().isEmpty() ? field->placeholderText() : field->text();
  } else if (const auto *number = qobject_cast<const QSpinBox *>(&control)) {
    words += number->text();
  } else if (const auto *choice = qobject_cast<const QComboBox *>(&control)) {
    for (int i = 0; i < choice->count(); ++i) words += choice->itemText(i);
  } else if (const auto *strip = qobject_cast<const TZVPageControl *>(&control)) {
    for (int i = 0; i < strip->PageCount(); ++i) words += strip->PageCaption(strip->Page(i));
  } else if (const auto *view = qobject_cast<const QAbstractItemView *>(&control);
             view != nullptr && qobject_cast<const QHeaderView *>(view) == nullptr) {
    words += WordsIn(*view);
  }
  return words;
}

// Not to be seen on its page; what has not shown yet only says so.
bool IsAway(const QWidget *control, const QWidget *page) {
  for (; control != page; control = control->parentWidget()) {
    const bool isHidden = control->testAttribute(Qt::WA_WState_ExplicitShowHide) && control->isHidden();
    if (isHidden || control->isWindow()) return true;
  }
  return false;
}

void Mark(QWidget &control, bool marked) {
  // Other controls paint a ground of their own.
  const bool hasGround = qobject_cast<QLabel *>(&control) == nullptr &&
                         qobject_cast<QCheckBox *>(&control) == nullptr &&
                         qobject_cast<QRadioButton *>(&control) == nullptr;
  if (!hasGround) control.setAutoFillBackground(marked);
  if (!marked) return control.setPalette(QPalette());
  QPalette palette = control.palette();
  QColor mark = palette.color(QPalette::Highlight);
  mark.setAlpha(MarkStrength);
  for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button}) {
    palette.setColor(role, Contrast::Over(mark, palette.color(role)));
  }
  control.setPalette(palette);
}

}  // namespace

void TfrmOptions::MakeTree() {
  Q_ASSERT(std::size(Pages) == size_t(m_ui->pcOptions->count()));
  QTreeWidget &tree = *m_ui->tvOptions;
  int widest = 0;
  for (const TPage &page : Pages) {
    widest = std::max(widest, tree.fontMetrics().horizontalAdvance(m_language.Text(page.title)));
    auto *node = new QTreeWidgetItem(&tree, {m_language.Text(page.title)});
    node->setIcon(0, InkIcon(CommandIcon(page.icon)));
  }
  tree.setFixedWidth(widest + TreeMargin + tree.style()->pixelMetric(QStyle::PM_ScrollBarExtent));
  m_ui->edtFindOptions->setFixedWidth(tree.width());
  m_ui->chkMinToTray->setVisible(m_offers.tray);
  m_ui->chkVersionCheck->setVisible(m_offers.versionCheck);
  m_ui->chkLoadBHOs->setVisible(m_offers.scripts);
  for (int i = 0; i < tree.topLevelItemCount(); ++i) tree.topLevelItem(i)->setHidden(!IsOffered(i));
  TurnTo(0);
  ResizeOnScreen(*this, {std::min(sizeHint().width(), FittingWidth), HeightOfTree});
}

void TfrmOptions::ConnectControls() {
  const auto &ui = *m_ui;
  connect(ui.cmdOK, &QPushButton::clicked, this, &TfrmOptions::cmdOKClick);
  connect(ui.cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(ui.tvOptions, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem *node) {
    if (node != nullptr) TurnTo(m_ui->tvOptions->indexOfTopLevelItem(node));
  });
  connect(ui.edtFindOptions, &QLineEdit::textChanged, this, &TfrmOptions::Find);
  ui.edtFindOptions->installEventFilter(this);
  connect(ui.chkLimitTitles, &QCheckBox::toggled, ui.spnMaxTitle, &QWidget::setEnabled);
  for (QRadioButton *mode : {ui.rdoStartupHome, ui.rdoStartupLast, ui.rdoStartupBlank, ui.rdoStartupHalvexGroup}) {
    connect(mode, &QRadioButton::toggled, this, &TfrmOptions::UpdateStartup);
  }
  connect(ui.cmdStartHalvexGroup, &QPushButton::clicked, this, &TfrmOptions::cmdStartHalvexGroupClick);
  for (QRadioButton *scheme : {ui.radColorStandard, ui.radColorReverse, ui.radColorCustom}) {
    connect(scheme, &QRadioButton::toggled, this, &TfrmOptions::UpdatePreview);
  }
  connect(ui.btnGetTabColor, &QPushButton::clicked, this, [this] { PickColor(m_ui->pnlTabColor); });
  connect(ui.btnGetFontColor, &QPushButton::clicked, this, [this] { PickColor(m_ui->pnlFontColor); });
  m_previewFront = new QWidget;
  m_previewBehind = new QWidget;
  ui.pg->SetTabsDown(false);
  ui.pg->InsertPage(0, m_previewFront);
  ui.pg->InsertPage(1, m_previewBehind);
  pgChange();
  connect(ui.pg, &TZVPageControl::ActivePageChanged, this, &TfrmOptions::pgChange);
  connect(ui.btnInsert, &QPushButton::clicked, this, &TfrmOptions::btnInsertClick);
  connect(ui.btnEdit, &QPushButton::clicked, this, &TfrmOptions::btnEditClick);
  connect(ui.btnDelete, &QPushButton::clicked, this, &TfrmOptions::btnDeleteClick);
  ui.lvPopupHalvex->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
  ui.lvPopupHalvex->installEventFilter(this);
  MirrorNewTabs();
  const auto showLinks = [this] { m_ui->chkFlyswatShowLinks->setVisible(m_ui->chkFlyswatEnabled->isChecked()); };
  connect(ui.chkFlyswatEnabled, &QCheckBox::toggled, this, showLinks);
  showLinks();
}

void TfrmOptions::TurnTo(int page) {
  m_ui->pcOptions->setCurrentIndex(page);
  m_ui->tvOptions->setCurrentItem(m_ui->tvOptions->topLevelItem(page));
  m_ui->lblPage->setText(m_language.Text(Pages[size_t(page)].title));
}

bool TfrmOptions::IsOffered(int page) const {
  const QWidget *widget = m_ui->pcOptions->widget(page);
  if (widget == m_ui->tsFlyswat) return m_offers.annotations;
  return widget != m_scripts || m_offers.scripts;
}

QWidget *TfrmOptions::PageOf(QWidget *control) const {
  while (control != nullptr && control->parentWidget() != m_ui->pcOptions) control = control->parentWidget();
  return control;
}

// Shows the pages that have the words, and marks where.
void TfrmOptions::Find(const QString &words) {
  for (QWidget *control : std::as_const(m_marked)) Mark(*control, false);
  m_marked.clear();
  const QString wanted = words.trimmed();
  QSet<QWidget *> pages;
  for (QWidget *control : m_ui->pcOptions->findChildren<QWidget *>()) {
    QWidget *page = PageOf(control);
    if (wanted.isEmpty() || page == nullptr || IsAway(control, page)) continue;
    if (WordsOf(*control).filter(wanted, Qt::CaseInsensitive).isEmpty()) continue;
    pages.insert(page);
    m_marked.insert(control);
    Mark(*control, true);
  }
  QTreeWidget &tree = *m_ui->tvOptions;
  int first = -1;
  for (int i = 0; i < tree.topLevelItemCount(); ++i) {
    QTreeWidgetItem *node = tree.topLevelItem(i);
    const bool isFound = wanted.isEmpty() || pages.contains(m_ui->pcOptions->widget(i)) ||
                         node->text(0).contains(wanted, Qt::CaseInsensitive);
    node->setHidden(!IsOffered(i) || !isFound);
    if (!node->isHidden() && first < 0) first = i;
  }
  const QTreeWidgetItem *current = tree.currentItem();
  if (first >= 0 && (current == nullptr || current->isHidden())) TurnTo(first);
}

void TfrmOptions::UpdateStartup() {
  // Of the four only these two are asked about, so the box is open with a blank page as well: meant so.
  const bool isOpen = !m_ui->rdoStartupHome->isChecked() && !m_ui->rdoStartupLast->isChecked();
  m_ui->edtStartupHalvexGroup->setEnabled(isOpen);
  m_ui->cmdStartHalvexGroup->setEnabled(isOpen);
}

void TfrmOptions::cmdStartHalvexGroupClick() {
  const QPointer<TfrmOptions> self(this);
  const QString group = QFileDialog::getOpenFileName(this, m_language.Global("HalvexGroup"), TGroupFolder::Path(),
                                                     m_language.Text("MAIN", "HalvexGroupFilter"));
  if (self && !group.isEmpty()) m_ui->edtStartupHalvexGroup->setText(group);
}

void TfrmOptions::UpdatePreview() {
  m_ui->pnlCustomColors->setVisible(m_ui->radColorCustom->isChecked());
  TInactiveTabColors own;
  if (m_hasColors) {
    own = {m_ui->pnlTabColor->palette().color(QPalette::Window), m_ui->pnlFontColor->palette().color(QPalette::Window)};
  }
  const TInactiveTabColors colors = TInactiveTabColors::Of(ColorScheme(), own);
  m_ui->pg->SetInactiveTabColor(colors.tab);
  m_ui->pg->SetInactiveFontColor(colors.font);
}

// The captions change places, so that the one in front always says so.
void TfrmOptions::pgChange() {
  const QWidget *front = m_ui->pg->ActivePage();
  for (QWidget *page : {m_previewFront, m_previewBehind}) {
    m_ui->pg->SetPageCaption(
        page, page == front ? m_language.Text("OPTIONS", "PreviewFront") : m_language.Text("OPTIONS", "PreviewBehind"));
  }
}

void TfrmOptions::PickColor(QWidget *swatch) {
  const QPointer<TfrmOptions> self(this);
  const QColor color = QColorDialog::getColor(swatch->palette().color(QPalette::Window), this);
  if (!self || !color.isValid()) return;
  SetSwatch(swatch, color);
  m_hasColors = true;
  UpdatePreview();
}

void TfrmOptions::btnInsertClick() {
  auto *row = new QListWidgetItem(m_language.Global("NewItem"), m_ui->lvPopupHalvex);
  row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable);
  m_ui->lvPopupHalvex->setCurrentItem(row);
  m_ui->lvPopupHalvex->editItem(row);
}

void TfrmOptions::btnEditClick() {
  QListWidgetItem *row = m_ui->lvPopupHalvex->currentItem();
  if (row != nullptr && row->isSelected()) m_ui->lvPopupHalvex->editItem(row);
}

void TfrmOptions::btnDeleteClick() {
  QListWidgetItem *row = m_ui->lvPopupHalvex->currentItem();
  if (row != nullptr && row->isSelected()) delete row;
}

bool TfrmOptions::eventFilter(QObject *watched, QEvent *event) {
  if (event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
  const int key = static_cast<QKeyEvent *>(event)->key();
  if (watched == m_ui->edtFindOptions) {
    const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
    // To what was found, and not to OK.
    if (isEnter) m_ui->tvOptions->setFocus(Qt::TabFocusReason);
    return isEnter;
  }
  if (watched != m_ui->lvPopupHalvex) return QDialog::eventFilter(watched, event);
  switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      btnEditClick();
      return true;
    case Qt::Key_Delete:
      btnDeleteClick();
      return true;
    case Qt::Key_Insert:
      btnInsertClick();
      return true;
    default:
      return false;
  }
}

// The row of the address bar and the box on its page are the same.
void TfrmOptions::MirrorNewTabs() {
  constexpr int AddressRow = 4;
  connect(m_ui->chkAddressNewWin, &QCheckBox::toggled, this,
          [this](bool on) { m_ui->clbNewTabs->item(AddressRow)->setCheckState(on ? Qt::Checked : Qt::Unchecked); });
  connect(m_ui->clbNewTabs, &QListWidget::itemChanged, this, [this](const QListWidgetItem *row) {
    if (m_ui->clbNewTabs->row(row) == AddressRow) {
      m_ui->chkAddressNewWin->setChecked(row->checkState() == Qt::Checked);
    }
  });
}
