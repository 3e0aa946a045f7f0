#include "chrome/downloads_view.h"

#include "actions/actions.h"
#include "browser/downloads/download_list.h"
#include "browser/downloads/download_window.h"
#include "chrome/main_status_bar.h"

TDownloadsView::TDownloadsView(TActions &actions, TMainStatusBar &status, TDownloadList &downloads,
                               const TLanguage &language)
    : m_status(status), m_downloads(downloads), m_language(language) {
  connect(actions[TCommand::Downloads], &QAction::triggered, this, &TDownloadsView::Open);
  connect(&status, &TMainStatusBar::DownloadsClicked, this, &TDownloadsView::Open);
  connect(&downloads, &TDownloadList::ActiveChanged, &status, &TMainStatusBar::ShowDownloads);
}

TDownloadsView::~TDownloadsView() {
  delete m_window;
}

void TDownloadsView::Open() {
  if (!m_window) m_window = new TDownloadWindow(m_downloads, m_language, m_status.window());
  m_window->show();
  m_window->raise();
  m_window->activateWindow();
}

void TDownloadsView::Close() {
  if (m_window) m_window->close();
}
