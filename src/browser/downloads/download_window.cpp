#include "browser/downloads/download_window.h"

#include <QKeyEvent>
#include <QMenu>
#include <QPointer>

#include "browser/downloads/download_delegate.h"
#include "browser/downloads/download_list.h"
#include "config/language.h"
#include "ui/confirm_dialog.h"
#include "ui/dialog_placing.h"
#include "ui/message_box.h"
#include "ui_download_window.h"

namespace {

constexpr int WidthInCharacters = 90;
constexpr int HeightInLines = 24;

}  // namespace

TDownloadWindow::TDownloadWindow(TDownloadList &downloads, const TLanguage &language, QWidget *parent)
    : QDialog(parent), m_downloads(downloads), m_language(language), m_ui(std::make_unique<Ui::TDownloadWindow>()) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "DOWNLOADS");
  // It stays open beside the pages, as a window does; Enter belongs to the list.
  setWindowFlags(windowFlags() | Qt::WindowMinMaxButtonsHint);
  for (auto *button : findChildren<QPushButton *>()) button->setAutoDefault(false);
  const QSize wanted(fontMetrics().averageCharWidth() * WidthInCharacters, fontMetrics().lineSpacing() * HeightInLines);
  ResizeOnScreen(*this, wanted);
  QListView &list = *m_ui->lvDownloads;
  list.setModel(&downloads);
  list.setItemDelegate(new TDownloadDelegate(&list));
  list.setAccessibleName(windowTitle());
  list.installEventFilter(this);

  // The buttons and the menu of a line are the same commands.
  m_commands = {
      {m_ui->cmdPause, [this](int row) { return m_downloads.CanPause(row); },
       [this](int row) { m_downloads.Pause(row); }},
      {m_ui->cmdResume, [this](int row) { return m_downloads.CanResume(row); },
       [this](int row) { m_downloads.Resume(row); }},
      {m_ui->cmdCancel, [this](int row) { return m_downloads.CanCancel(row); },
       [this](int row) { m_downloads.Cancel(row); }},
      {m_ui->cmdRetry, [this](int row) { return m_downloads.CanRetry(row); },
       [this](int row) { m_downloads.Retry(row); }},
      {m_ui->cmdOpen, [this](int row) { return m_downloads.CanOpen(row); }, [this](int row) { Open(row); }},
      {m_ui->cmdFolder, [this](int row) { return !Path(row).isEmpty(); }, [this](int row) { OpenFolder(row); }},
      {m_ui->cmdRemove, [this](int row) { return row >= 0 && !m_downloads.CanCancel(row); },
       [this](int row) { m_downloads.Remove(row); }},
  };
  for (const TCommand &command : m_commands) {
    connect(command.button, &QPushButton::clicked, this, [run = command.run, this] { run(CurrentRow()); });
  }
  connect(m_ui->cmdClear, &QPushButton::clicked, &downloads, &TDownloadList::ClearFinished);
  connect(&list, &QListView::doubleClicked, this, [this](const QModelIndex &index) { Open(index.row()); });
  connect(&list, &QListView::customContextMenuRequested, this,
          [this](const QPoint &position) { ShowMenu(m_ui->lvDownloads->viewport()->mapToGlobal(position)); });
  connect(list.selectionModel(), &QItemSelectionModel::currentChanged, this, &TDownloadWindow::UpdateButtons);
  connect(&downloads, &QAbstractItemModel::dataChanged, this, &TDownloadWindow::UpdateButtons);
  connect(&downloads, &QAbstractItemModel::rowsRemoved, this, &TDownloadWindow::UpdateButtons);
  connect(&downloads, &QAbstractItemModel::rowsInserted, this, [this](const QModelIndex &, int first) {
    m_ui->lvDownloads->setCurrentIndex(m_downloads.index(first));
    UpdateButtons();
  });
  list.setCurrentIndex(downloads.index(0));
  UpdateButtons();
}

TDownloadWindow::~TDownloadWindow() = default;

bool TDownloadWindow::eventFilter(QObject *watched, QEvent *event) {
  if (event->type() != QEvent::KeyPress) return QDialog::eventFilter(watched, event);
  switch (static_cast<QKeyEvent *>(event)->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      m_ui->cmdOpen->click();
      return true;
    case Qt::Key_Delete:
      m_ui->cmdRemove->click();
      return true;
    case Qt::Key_Space:
      m_ui->cmdPause->isEnabled() ? m_ui->cmdPause->click() : m_ui->cmdResume->click();
      return true;
    default:
      return QDialog::eventFilter(watched, event);
  }
}

int TDownloadWindow::CurrentRow() const {
  const QModelIndex current = m_ui->lvDownloads->currentIndex();
  return current.isValid() ? current.row() : -1;
}

QString TDownloadWindow::Path(int row) const {
  return m_downloads.data(m_downloads.index(row), TDownloadList::PathRole).toString();
}

void TDownloadWindow::UpdateButtons() {
  const int row = CurrentRow();
  const bool focused = focusWidget() != nullptr && focusWidget()->hasFocus();
  for (const TCommand &command : m_commands) command.button->setEnabled(command.applies(row));
  // A button that was pressed and no longer applies must not leave the keyboard nowhere.
  if (focused && !focusWidget()->isEnabled()) m_ui->lvDownloads->setFocus();
  // Of these a download has one at a time; showing only that one keeps the row short.
  for (QWidget *button : {m_ui->cmdPause, m_ui->cmdResume, m_ui->cmdRetry, m_ui->cmdOpen}) {
    button->setVisible(button->isEnabled());
  }
  bool clearable = false;
  for (int other = 0; other < m_downloads.rowCount(); ++other) clearable |= !m_downloads.CanCancel(other);
  m_ui->cmdClear->setEnabled(clearable);
  m_ui->lblEmpty->setVisible(m_downloads.rowCount() == 0);
  m_ui->lvDownloads->setVisible(m_downloads.rowCount() != 0);
}

void TDownloadWindow::Open(int row) {
  if (!m_downloads.CanOpen(row)) return;
  const QPersistentModelIndex line(m_downloads.index(row));
  const QPointer<TDownloadWindow> self(this);
  const QString path = Path(row);
  if (m_downloads.IsExecutable(row) && !AskToRun(path)) return;
  if (self.isNull() || !line.isValid()) return;
  if (!m_downloads.Open(line.row())) Tell(m_language.Text("DOWNLOADS", "CannotOpen").arg(path));
}

void TDownloadWindow::OpenFolder(int row) {
  if (!m_downloads.OpenFolder(row)) Tell(m_language.Text("DOWNLOADS", "CannotOpenFolder").arg(Path(row)));
}

bool TDownloadWindow::AskToRun(const QString &path) {
  return ShowConfirm(this, {.caption = m_language.Text("DOWNLOADS", "RunCaption"),
                            .secondText = m_language.Text("DOWNLOADS", "RunPrompt").arg(path),
                            .ok = m_language.Text("DOWNLOADS", "Run"),
                            .cancel = m_language.Global("Cancel"),
                            .isRisky = true})
      .accepted;
}

void TDownloadWindow::Tell(const QString &text) {
  ShowNotice(this, m_language, text, windowTitle());
}

void TDownloadWindow::ShowMenu(const QPoint &globalPosition) {
  const QPersistentModelIndex line(m_ui->lvDownloads->currentIndex());
  if (!line.isValid()) return;
  auto *menu = new QMenu(this);
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (const TCommand &command : m_commands) {
    if (!command.applies(line.row())) continue;
    // Downloads go on while the menu is open: the line may have moved or gone.
    menu->addAction(command.button->text(), this, [line, run = command.run] {
      if (line.isValid()) run(line.row());
    });
  }
  menu->popup(globalPosition);
}
