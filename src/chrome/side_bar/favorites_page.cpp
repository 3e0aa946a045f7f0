#include "chrome/side_bar/favorites_page.h"

#include <QAction>
#include <QKeyEvent>
#include <QSplitter>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "chrome/folder_view/folder_view.h"
#include "chrome/folder_view/message_line.h"
#include "chrome/side_bar/favorites_find_panel.h"
#include "chrome/side_bar/page_parts.h"
#include "config/language.h"
#include "config/settings.h"
#include "ui/close_button.h"

TFavoritesPage::TFavoritesPage(const TLanguage &language, TSettings &settings, TFavoriteLauncher &launcher,
                               const TFavoriteIcons &icons, QWidget *parent)
    : QWidget(parent),
      m_language(language),
      m_settings(settings),
      m_commands(this, launcher, language),
      m_kind(launcher, icons),
      m_tree(new TFolderView(m_kind, m_editor, language, TFolderView::TLook::Tree, TFolderModel::TShow::All, this)),
      m_find(new TFavoritesFindPanel(language, settings, m_kind, m_editor, this)),
      m_message(new TMessageLine),
      m_splitter(new QSplitter(Qt::Vertical)) {
  setObjectName(QStringLiteral("pgFavorites"));
  MakeParts();
  Connect();
}

TFavoritesPage::~TFavoritesPage() {
  // They look at the kind and the editor, which go before them.
  delete m_tree;
  delete m_find;
}

void TFavoritesPage::MakeParts() {
  const QString title = TLanguage::ShortHint(m_language.Text("FAVORITES_POPUP", "ShowFavoritesHint"));
  m_tree->setObjectName(QStringLiteral("shFavorites"));
  m_tree->setAccessibleName(title);
  m_tree->SetOpensOnClick(true);
  setFocusProxy(m_tree);
  // The Tab key comes from the page to the tree, so that what stood before it in the order would never be reached.
  setFocusPolicy(Qt::StrongFocus);

  auto *folder = PageParts::MakeIconButton(m_language.Text("FAVORITES_PAGE", "NewFolderHint"), "new_folder",
                                           "spdNewFavoritesFolder", this);
  auto *organize =
      PageParts::MakeIconButton(m_language.Text("FAVORITES", "OrganizeCaption"), "edit", "spdOrganizeFavorites", this);
  auto *refresh = PageParts::MakeIconButton(m_language.Text("FAVORITES_PAGE", "RefreshHint"), "refresh",
                                            "spdRefreshFavorites", this);
  connect(folder, &QToolButton::clicked, m_tree->Action(TFolderAction::NewFolder), &QAction::trigger);
  connect(organize, &QToolButton::clicked, this, [this] { Q_EMIT OrganizeWanted(m_tree->Folder()); });
  connect(refresh, &QToolButton::clicked, this, &TFavoritesPage::Refresh);
  auto *buttons = new QHBoxLayout;
  for (QToolButton *button : {folder, organize, refresh}) buttons->addWidget(button);
  buttons->addStretch();

  m_splitter->setChildrenCollapsible(false);
  m_splitter->addWidget(m_tree);
  m_splitter->addWidget(m_find);
  m_splitter->setStretchFactor(0, 1);
  auto *layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(buttons);
  layout->addWidget(m_splitter, 1);
  layout->addWidget(m_message);
  const QWidgetList order = QWidgetList{m_tree} + m_find->TabOrder() + QWidgetList{folder, organize, refresh};
  for (qsizetype i = 1; i < order.size(); ++i) setTabOrder(order.at(i - 1), order.at(i));
  ShowResults(false);
}

void TFavoritesPage::Connect() {
  m_kind.Serve(*m_tree);
  m_kind.Serve(*m_find->List());
  connect(m_tree, &TFolderView::Told, m_message, &TMessageLine::Show);
  connect(m_tree, &TFolderView::PropertiesWanted, &m_commands, &TFavoriteCommands::ShowProperties);
  connect(m_find, &TFavoritesFindPanel::PropertiesWanted, &m_commands, &TFavoriteCommands::ShowProperties);
  connect(m_find, &TFavoritesFindPanel::ResultsShown, this, &TFavoritesPage::ShowResults);
  connect(m_find, &TFavoritesFindPanel::Left, m_tree, [this] { m_tree->setFocus(Qt::OtherFocusReason); });
  connect(m_find, &TFavoritesFindPanel::RevealWanted, this, [this](const QString &path) {
    m_tree->setFocus(Qt::OtherFocusReason);
    m_tree->RevealFile(path);
  });
  connect(&m_commands, &TFavoriteCommands::Done, &m_editor, &TFolderEditor::Note);
  connect(&m_editor, &TFolderEditor::Done, this, [this] {
    m_message->Show(QString());
    m_find->Refresh();
    Q_EMIT Changed();
  });
  connect(&m_editor, &TFolderEditor::Failed, m_message,
          [this](const QString &reason) { m_message->Show(m_language.Text("FAVORITES", "CannotChange").arg(reason)); });
}

void TFavoritesPage::Refresh() {
  if (!isVisible()) return;
  const QString folder = FavoritesFolder::Path(m_settings.Store());
  if (m_tree->Model().Root() != folder) {
    m_tree->SetRoot(folder, m_tree->accessibleName());
    m_find->SetShownFolder(folder);
  } else {
    m_tree->Refresh();
  }
  m_find->Refresh();
}

void TFavoritesPage::showEvent(QShowEvent *event) {
  QWidget::showEvent(event);
  if (event->spontaneous()) return;
  if (!std::exchange(m_wasShown, true)) {
    m_settings.Apply(Setting::HBAutoExpand, m_tree,
                     [this] { m_tree->SetKeepsOneOpen(m_settings.Get(Setting::HBAutoExpand)); });
  }
  Refresh();
}

// Escape in the tree closes the results, too; without any it is the window's.
bool TFavoritesPage::event(QEvent *event) {
  // Others come while the page is being made.
  const bool isKey = event->type() == QEvent::ShortcutOverride;
  return (isKey && m_find->HasResults() && ClaimEscape(*event)) || QWidget::event(event);
}

void TFavoritesPage::keyPressEvent(QKeyEvent *event) {
  if (event->key() == Qt::Key_Escape && m_find->HasResults()) {
    m_find->Close();
    m_tree->setFocus(Qt::OtherFocusReason);
  } else {
    QWidget::keyPressEvent(event);
  }
}

void TFavoritesPage::ShowResults(bool isShown) {
  const bool wasShown = m_find->sizePolicy().verticalPolicy() != QSizePolicy::Fixed;
  if (wasShown == isShown) return;
  if (!isShown) m_sizes = m_splitter->sizes();
  // Without results it is as high as its field.
  m_find->setSizePolicy(QSizePolicy::Preferred, isShown ? QSizePolicy::Preferred : QSizePolicy::Fixed);
  m_splitter->handle(1)->setEnabled(isShown);
  if (!isShown) return;
  const int half = m_splitter->height() / 2;
  m_splitter->setSizes(m_sizes.value(1) > m_find->minimumSizeHint().height() ? m_sizes : QList<int>{half, half});
}
