#include "favorites/bookmark_json.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <vector>

namespace {

using TRoot = TBookmark::TRoot;
using TReason = TSkippedBookmark::TReason;

constexpr qsizetype HeadSize = 64;
constexpr qint64 SecondsFrom1601 = 11'644'473'600;  // to 1970, where the times of one browser begin
constexpr qint64 Microseconds = 1'000'000;

// Folders within folders, read without recursion.
class TJsonReader final {
 public:
  explicit TJsonReader(TSkippedBookmarks *skipped) : m_list(skipped) {}

  std::optional<TBookmarks> Read(const QJsonObject &roots) {
    static constexpr struct {
      const char *key;
      TRoot root;
    } Known[] = {{"bookmark_bar", TRoot::Bar},
                 {"bookmark_menu", TRoot::Menu},
                 {"other", TRoot::Other},
                 {"synced", TRoot::Mobile}};
    bool isAny = false;
    for (const auto &[key, root] : Known) {
      const QJsonValue value = roots.value(QLatin1String(key));
      if (!value.isObject()) continue;
      isAny = true;
      const qsizetype place = m_list.All().size();
      const QJsonObject folder = value.toObject();
      m_list.AddFolder(0, folder.value(u"name").toString(), 0, root);
      ReadFolder(folder);
      m_list.DropIfEmpty(place);
    }
    return isAny ? std::optional(m_list.All()) : std::nullopt;
  }

 private:
  struct TOpen {
    QJsonArray children;
    qsizetype next = 0;
  };

  void ReadFolder(const QJsonObject &folder) {
    std::vector<TOpen> open{{folder.value(u"children").toArray()}};
    while (!open.empty()) {
      if (open.back().next == open.back().children.size()) {
        open.pop_back();
        continue;
      }
      const QJsonObject child = open.back().children.at(open.back().next++).toObject();
      const QString type = child.value(u"type").toString();
      const QString name = child.value(u"name").toString();
      const int depth = int(open.size());
      if (type == u"folder") {
        m_list.AddFolder(depth, name, Added(child), TRoot::None);
        open.push_back({child.value(u"children").toArray()});
      } else if (type == u"separator") {
        m_list.Skip(TReason::Separator);
      } else {
        m_list.AddPage(depth, name, child.value(u"url").toString(), Added(child));
      }
    }
  }

  static qint64 Added(const QJsonObject &child) {
    const qint64 time = child.value(u"date_added").toString().toLongLong();
    return qMax<qint64>(0, time / Microseconds - SecondsFrom1601);
  }

  TBookmarkList m_list;
};

}  // namespace

std::optional<TBookmarks> BookmarkJson::Read(const QByteArray &bytes, TSkippedBookmarks *skipped) {
  const QByteArray start = bytes.left(HeadSize).trimmed();
  if (!start.startsWith('{') && !start.startsWith("\xEF\xBB\xBF{")) return std::nullopt;
  const QJsonValue roots = QJsonDocument::fromJson(bytes).object().value(u"roots");
  return roots.isObject() ? TJsonReader(skipped).Read(roots.toObject()) : std::nullopt;
}
