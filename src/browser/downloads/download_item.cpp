#include "browser/downloads/download_item.h"

#include <algorithm>
#include <array>
#include <QFileInfo>
#include <QLocale>
#include <utility>

#include "browser/downloads/file_names.h"

namespace {

constexpr int ShortestSample = 300;  // ms
constexpr int StalledAfter = 3000;   // ms without a byte: the speed is not known any more
constexpr double NewSampleShare = 0.3;
constexpr qsizetype LongestKeptAddress = 8000;  // characters; one may hold a whole file

using TKeptState = TKeptDownload::TState;
// The first of a kind is what it comes back as.
constexpr std::array<std::pair<TDownloadState, TKeptState>, 8> KeptStates{{
    {TDownloadState::Failed, TKeptState::UnderWay},
    {TDownloadState::Running, TKeptState::UnderWay},
    {TDownloadState::Paused, TKeptState::UnderWay},
    {TDownloadState::Waiting, TKeptState::UnderWay},
    {TDownloadState::Finished, TKeptState::Finished},
    {TDownloadState::Cancelled, TKeptState::Cancelled},
    {TDownloadState::Failed, TKeptState::Failed},
    {TDownloadState::NotStarted, TKeptState::NotStarted},
}};

}  // namespace

void TDownloadList::TItem::MeasureSpeed() {
  if (!sampleSince.isValid()) sampleSince.start();
  const qint64 elapsed = sampleSince.elapsed();
  if (received == sampleReceived) {
    if (elapsed > StalledAfter) speed = 0;
    return;
  }
  if (elapsed < ShortestSample) return;
  const double now = double(received - sampleReceived) * 1000 / double(elapsed);
  speed = speed > 0 ? speed + (now - speed) * NewSampleShare : now;
  sampleReceived = received;
  sampleSince.restart();
}

bool TDownloadList::TItem::IsGone() const {
  return state == TDownloadState::Finished && !QFileInfo::exists(path);
}

bool TDownloadList::TItem::IsUnplaced() const {
  return !writtenTo.isEmpty() && QFileInfo::exists(writtenTo);
}

QString TDownloadList::TItem::TimeText() const {
  return QLocale().toString(when, QLocale::ShortFormat);
}

TKeptDownload TDownloadList::TItem::ToKeep() const {
  // Nobody else is told the password of an address.
  const QString asked = address.toString(QUrl::FullyEncoded | QUrl::RemovePassword);
  return {.id = id,
          .address = asked.size() <= LongestKeptAddress ? asked : QString(),
          .path = path,
          .part = writtenTo,
          .when = when,
          // The last of its kind: the first one is what comes back.
          .state = std::ranges::find(KeptStates.rbegin(), KeptStates.rend(), state,
                                     &std::pair<TDownloadState, TKeptState>::first)
                       ->second,
          .failure = failure,
          .received = received,
          .isPage = isPage};
}

void TDownloadList::TItem::Restore(const TKeptDownload &kept) {
  id = kept.id;
  address = QUrl(kept.address);
  path = kept.path;
  when = kept.when;
  state = std::ranges::find(KeptStates, kept.state, &std::pair<TDownloadState, TKeptState>::second)->first;
  isToldFinished = state == TDownloadState::Finished;
  failure = kept.failure;
  received = kept.received;
  isPage = kept.isPage;
  if (!kept.part.isEmpty() && QFileInfo::exists(kept.part)) writtenTo = kept.part;
  const QString part = kept.part.isEmpty() ? path : kept.part;
  if (kept.state == TKeptState::UnderWay && !part.isEmpty()) remains = FileNames::PartialOf(part);
  if (kept.state != TKeptState::UnderWay) keptState = state;
  keptPath = path;
}
