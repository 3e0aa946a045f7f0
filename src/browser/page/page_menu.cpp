#include "browser/page/page_menu.h"

#include <algorithm>
#include <array>
#include <QWebEngineHistory>
#include <QWebEnginePage>

#include "config/language.h"

namespace {

using TPage = QWebEnginePage;
using TPlace = TPageMenuPlace;
using TRequest = QWebEngineContextMenuRequest;

// Addresses that no tab can show and no download can fetch.
constexpr std::array NoPageSchemes{"javascript", "mailto", "tel", "sms", "news"};

// Where a line is shown, and when it is checked.
using TTest = bool (*)(const TPlace &);

bool HasLink(const TPlace &place) {
  return !place.link.isEmpty();
}
bool HasOpenableLink(const TPlace &place) {
  return HasLink(place) && std::none_of(NoPageSchemes.begin(), NoPageSchemes.end(), [&place](const char *scheme) {
           return place.link.scheme() == QLatin1String(scheme);
         });
}
bool HasImage(const TPlace &place) {
  return place.mediaType == TRequest::MediaTypeImage && !place.media.isEmpty();
}
bool HasWholeImage(const TPlace &place) {
  return HasImage(place) && !place.mediaFlags.testFlag(TRequest::MediaInError);
}
bool HasPlayer(const TPlace &place) {
  return (place.mediaType == TRequest::MediaTypeVideo || place.mediaType == TRequest::MediaTypeAudio) &&
         !place.mediaFlags.testFlag(TRequest::MediaInError);
}
template <TRequest::MediaFlag flag>
bool HasMediaFlag(const TPlace &place) {
  return place.mediaFlags.testFlag(flag);
}
template <TRequest::MediaFlag flag>
bool HasPlayerThat(const TPlace &place) {
  return HasPlayer(place) && place.mediaFlags.testFlag(flag);
}
bool HasPausedPlayer(const TPlace &place) {
  return HasPlayerThat<TRequest::MediaPaused>(place);
}
bool HasRunningPlayer(const TPlace &place) {
  return HasPlayer(place) && !HasPausedPlayer(place);
}
bool HasSavableMedia(const TPlace &place) {
  return HasPlayerThat<TRequest::MediaCanSave>(place) && !place.media.isEmpty();
}
template <TRequest::EditFlag flag>
bool HasEditorThat(const TPlace &place) {
  return place.editable && place.editFlags.testFlag(flag);
}
bool CanCopy(const TPlace &place) {
  return place.hasSelection || HasEditorThat<TRequest::CanCopy>(place);
}
bool IsBarePage(const TPlace &place) {
  return !HasLink(place) && !HasImage(place) && !HasPlayer(place) && !place.hasSelection && !place.editable;
}
bool CanGoBack(const TPlace &place) {
  return IsBarePage(place) && place.canGoBack;
}
bool CanGoForward(const TPlace &place) {
  return IsBarePage(place) && place.canGoForward;
}

enum class TTask { Engine, Command, OpenLink, OpenLinkInBackground, OpenImage };

struct TLine {
  int group;  // a separator stands between groups
  TTextKey text;
  TTest shown;
  TTask task;
  TPage::WebAction action = TPage::NoWebAction;
  TPageMenuCommand command = {};
  TTest checked = nullptr;  // lines that have it carry a check mark
};

constexpr TLine Engine(int group, const TTextKey &text, TTest shown, TPage::WebAction action, TTest checked = nullptr) {
  return {group, text, shown, TTask::Engine, action, {}, checked};
}

constexpr TLine Command(int group, const TTextKey &text, TTest shown, TPageMenuCommand command) {
  return {group, text, shown, TTask::Command, TPage::NoWebAction, command};
}

constexpr std::array Lines{
    TLine{0, {"PAGE_MENU", "OpenLink"}, HasOpenableLink, TTask::OpenLink},
    TLine{0, {"PAGE_MENU", "OpenLinkInBackground"}, HasOpenableLink, TTask::OpenLinkInBackground},
    Engine(0, {"PAGE_MENU", "CopyLink"}, HasLink, TPage::CopyLinkToClipboard),
    Engine(0, {"PAGE_MENU", "SaveLink"}, HasOpenableLink, TPage::DownloadLinkToDisk),

    TLine{1, {"PAGE_MENU", "OpenImage"}, HasImage, TTask::OpenImage},
    Engine(1, {"PAGE_MENU", "SaveImage"}, HasWholeImage, TPage::DownloadImageToDisk),
    Engine(1, {"PAGE_MENU", "CopyImage"}, HasWholeImage, TPage::CopyImageToClipboard),
    Engine(1, {"PAGE_MENU", "CopyImageAddress"}, HasImage, TPage::CopyImageUrlToClipboard),

    Engine(2, {"PAGE_MENU", "Play"}, HasPausedPlayer, TPage::ToggleMediaPlayPause),
    Engine(2, {"PAGE_MENU", "Pause"}, HasRunningPlayer, TPage::ToggleMediaPlayPause),
    Engine(2, {"PAGE_MENU", "Mute"}, HasPlayerThat<TRequest::MediaHasAudio>, TPage::ToggleMediaMute,
           HasMediaFlag<TRequest::MediaMuted>),
    Engine(2, {"PAGE_MENU", "Loop"}, HasPlayer, TPage::ToggleMediaLoop, HasMediaFlag<TRequest::MediaLoop>),
    Engine(2, {"PAGE_MENU", "Controls"}, HasPlayerThat<TRequest::MediaCanToggleControls>, TPage::ToggleMediaControls,
           HasMediaFlag<TRequest::MediaControls>),
    Engine(2, {"PAGE_MENU", "SaveMedia"}, HasSavableMedia, TPage::DownloadMediaToDisk),

    Engine(3, {"PAGE_MENU", "Undo"}, HasEditorThat<TRequest::CanUndo>, TPage::Undo),
    Engine(3, {"PAGE_MENU", "Redo"}, HasEditorThat<TRequest::CanRedo>, TPage::Redo),
    Engine(4, {"PAGE_MENU", "Cut"}, HasEditorThat<TRequest::CanCut>, TPage::Cut),
    Engine(4, {"PAGE_MENU", "Copy"}, CanCopy, TPage::Copy),
    Engine(4, {"PAGE_MENU", "Paste"}, HasEditorThat<TRequest::CanPaste>, TPage::Paste),
    Engine(4, {"PAGE_MENU", "SelectAll"}, HasEditorThat<TRequest::CanSelectAll>, TPage::SelectAll),

    Engine(5, {"PAGE_MENU", "Back"}, CanGoBack, TPage::Back),
    Engine(5, {"PAGE_MENU", "Forward"}, CanGoForward, TPage::Forward),
    Engine(5, {"PAGE_MENU", "Reload"}, IsBarePage, TPage::Reload),
    Command(6, {"PAGE_MENU", "SaveAs"}, IsBarePage, TPageMenuCommand::SaveAs),
    Command(6, {"PAGE_MENU", "Print"}, IsBarePage, TPageMenuCommand::Print),
    Command(6, {"PAGE_MENU", "Find"}, IsBarePage, TPageMenuCommand::Find),
    Engine(6, {"PAGE_MENU", "SelectAll"}, IsBarePage, TPage::SelectAll),
    Command(7, {"PAGE_MENU", "ViewSource"}, IsBarePage, TPageMenuCommand::ViewSource),
    Command(7, {"PAGE_MENU", "Properties"}, IsBarePage, TPageMenuCommand::Properties),
};

}  // namespace

TPageMenuPlace TPageMenuPlace::Of(const QWebEngineContextMenuRequest &request, const QWebEnginePage &page) {
  return {
      .link = request.linkUrl(),
      .media = request.mediaUrl(),
      .mediaType = request.mediaType(),
      .mediaFlags = request.mediaFlags(),
      .editFlags = request.editFlags(),
      .hasSelection = !request.selectedText().isEmpty(),
      .editable = request.isContentEditable(),
      .canGoBack = page.history()->canGoBack(),
      .canGoForward = page.history()->canGoForward(),
  };
}

TPageMenu::TPageMenu(const TLanguage &language, const TPageMenuPlace &place, QWebEnginePage *page, QWidget *parent)
    : QMenu(parent), m_page(page) {
  int lastGroup = -1;
  for (const TLine &line : Lines) {
    if (!line.shown(place)) continue;
    if (lastGroup != -1 && line.group != lastGroup) addSeparator();
    lastGroup = line.group;
    QAction *action = addAction(language.Text(line.text));
    action->setObjectName(QString::fromLatin1(line.text.key));
    action->setCheckable(line.checked != nullptr);
    action->setChecked(line.checked != nullptr && line.checked(place));
    connect(action, &QAction::triggered, this, [this, &line, place] {
      switch (line.task) {
        case TTask::Engine:
          if (m_page != nullptr) m_page->triggerAction(line.action);
          break;
        case TTask::Command:
          Q_EMIT CommandRequested(line.command);
          break;
        case TTask::OpenLink:
        case TTask::OpenLinkInBackground:
          Q_EMIT OpenRequested(place.link.toString(QUrl::FullyEncoded), line.task == TTask::OpenLinkInBackground);
          break;
        case TTask::OpenImage:
          Q_EMIT OpenRequested(place.media.toString(QUrl::FullyEncoded), false);
          break;
      }
    });
  }
}
