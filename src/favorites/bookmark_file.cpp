#include "favorites/bookmark_file.h"

#include <cctype>
#include <cstring>
#include <optional>
#include <QStringDecoder>
#include <vector>

#include "store/utf8_text.h"

namespace {

constexpr qsizetype LongestText = 16 * 1024;  // of a name, in bytes; the rest is not kept
constexpr qsizetype Beginning = 64 * 1024;
constexpr int Indent = 4;

constexpr const char *Head = R"(<!DOCTYPE NETSCAPE-Bookmark-file-1>
<META HTTP-EQUIV="Content-Type" CONTENT="text/html; charset=UTF-8">
)";

struct TTag {
  QByteArrayView name{};  // without "/"
  bool isEnd = false;
  // The values that matter, as they stand there.
  std::optional<QByteArrayView> href{};
  std::optional<QByteArrayView> added{};
  bool isBar = false;
};

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

bool Is(QByteArrayView name, const char *other) {
  return name.compare(other, Qt::CaseInsensitive) == 0;
}

// Goes through the file once; every byte is looked at a few times at the most, whatever is left open.
class TTokens final {
 public:
  explicit TTokens(QByteArrayView bytes) : m_bytes(bytes) {}

  // The text up to the next tag, and that tag, or none at the end of the file; false when there is nothing more.
  bool Next(QByteArrayView &text, TTag &tag) {
    tag = {};
    const qsizetype begin = m_place;
    if (begin == m_bytes.size()) return false;
    for (;;) {
      const qsizetype open = m_bytes.indexOf('<', m_place);
      m_place = open < 0 ? m_bytes.size() : open + 1;
      if (m_place == m_bytes.size()) {
        text = m_bytes.sliced(begin);
        return true;
      }
      const char first = m_bytes[m_place];
      if (!std::isalpha(uchar(first)) && first != '/' && first != '!' && first != '?') continue;  // a "<" of the text
      text = m_bytes.sliced(begin, open - begin);
      if (first == '!' || first == '?') {
        SkipDeclaration();
        return true;
      }
      ReadTag(tag);
      return true;
    }
  }

 private:
  void SkipDeclaration() {
    if (m_hasCommentEnds && m_bytes.sliced(m_place).startsWith("!--")) {
      const qsizetype end = m_bytes.indexOf("-->", m_place + 3);
      m_hasCommentEnds = end >= 0;
      if (end >= 0) {
        m_place = end + 3;
        return;
      }
    }
    const qsizetype end = m_bytes.indexOf('>', m_place);
    m_place = end < 0 ? m_bytes.size() : end + 1;
  }

  // One in which the file ends is none.
  void ReadTag(TTag &tag) {
    tag.isEnd = m_bytes[m_place] == '/';
    if (tag.isEnd) ++m_place;
    tag.name = Word();
    while (m_place < m_bytes.size()) {
      const char c = m_bytes[m_place];
      if (c == '>') {
        ++m_place;
        return;
      }
      if (IsBlank(c) || c == '/' || c == '=') {
        ++m_place;
      } else {
        ReadAttribute(tag);
      }
    }
    tag = {};
  }

  void ReadAttribute(TTag &tag) {
    const QByteArrayView name = Word();
    SkipBlanks();
    QByteArrayView value;
    if (m_place < m_bytes.size() && m_bytes[m_place] == '=') {
      ++m_place;
      SkipBlanks();
      value = Value();
    }
    if (Is(name, "href")) {
      if (!tag.href) tag.href = value;
    } else if (Is(name, "add_date")) {
      tag.added = value;
    } else if (Is(name, "personal_toolbar_folder")) {
      tag.isBar = Is(value, "true");
    }
  }

  QByteArrayView Value() {
    if (m_place == m_bytes.size()) return {};
    const char quote = m_bytes[m_place];
    bool *hasMore = quote == '"' ? &m_hasDouble : quote == '\'' ? &m_hasSingle : nullptr;
    if (hasMore != nullptr && *hasMore) {
      const qsizetype end = m_bytes.indexOf(quote, m_place + 1);
      *hasMore = end >= 0;
      if (end >= 0) {
        const qsizetype begin = m_place + 1;
        m_place = end + 1;
        return m_bytes.sliced(begin, end - begin);
      }
    }
    const qsizetype begin = m_place;
    while (m_place < m_bytes.size() && !IsBlank(m_bytes[m_place]) && m_bytes[m_place] != '>') ++m_place;
    return m_bytes.sliced(begin, m_place - begin);
  }

  QByteArrayView Word() {
    const qsizetype begin = m_place;
    while (m_place < m_bytes.size() && !IsBlank(m_bytes[m_place]) && std::strchr(">/=", m_bytes[m_place]) == nullptr) {
      ++m_place;
    }
    // Never stands still, whatever it was called for; the zero byte is found in the list, too.
    if (m_place == begin && m_place < m_bytes.size() && m_bytes[m_place] == '\0') ++m_place;
    return m_bytes.sliced(begin, m_place - begin);
  }

  void SkipBlanks() {
    while (m_place < m_bytes.size() && IsBlank(m_bytes[m_place])) ++m_place;
  }

  QByteArrayView m_bytes;
  qsizetype m_place = 0;
  // What was looked for up to the end in vain is not looked for again.
  bool m_hasCommentEnds = true;
  bool m_hasDouble = true;
  bool m_hasSingle = true;
};

// The character of a reference without "&" and ";"; empty when there is no such one.
QString Character(QByteArrayView name) {
  static constexpr struct {
    const char *name;
    char16_t character;
  } Known[] = {{"amp", u'&'}, {"lt", u'<'}, {"gt", u'>'}, {"quot", u'"'}, {"apos", u'\''}, {"nbsp", u'\u00A0'}};
  for (const auto &one : Known) {
    if (Is(name, one.name)) return QString(QChar(one.character));
  }
  if (!name.startsWith('#') || name.size() > 9) return {};
  const QByteArrayView number = name.sliced(1);
  const bool isHex = number.startsWith('x') || number.startsWith('X');
  bool isNumber = false;
  const uint code = (isHex ? number.sliced(1) : number).toByteArray().toUInt(&isNumber, isHex ? 16 : 10);
  if (!isNumber || code == 0 || code > QChar::LastValidCodePoint || QChar::isSurrogate(code)) return {};
  const char32_t character = code;
  return QString::fromUcs4(&character, 1);
}

QString Decoded(QByteArrayView bytes) {
  const QString text = bytes.isValidUtf8() ? TextOfUtf8(bytes) : QString::fromLatin1(bytes);
  if (!text.contains(u'&')) return text;
  constexpr qsizetype LongestReference = 10;
  QString decoded;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text.at(i) == u'&') {
      const qsizetype end = QStringView(text).mid(i, LongestReference).indexOf(u';');
      const QString character = end < 0 ? QString() : Character(text.mid(i + 1, end - 1).toLatin1());
      if (!character.isEmpty()) {
        decoded += character;
        i += end;
        continue;
      }
    }
    decoded += text.at(i);
  }
  return decoded;
}

QByteArray Encoded(const QString &text) {
  return text.toHtmlEscaped().toUtf8();
}

class TReader final {
 public:
  explicit TReader(TSkippedBookmarks *skipped) : m_list(skipped) {}

  TBookmarks Read(QByteArrayView bytes) {
    TTokens tokens(bytes);
    QByteArrayView text;
    TTag tag;
    while (tokens.Next(text, tag)) {
      Take(text);
      Take(tag);
    }
    Close();
    return m_list.All();
  }

 private:
  enum class TOpen { Nothing, Page, Folder };

  void Take(QByteArrayView text) {
    if (m_open != TOpen::Nothing) m_text += text.first(qMin(text.size(), LongestText - m_text.size()));
  }

  void Take(const TTag &tag) {
    if (Is(tag.name, "a")) {
      Close();
      if (!tag.isEnd) Open(TOpen::Page, tag);
    } else if (Is(tag.name, "h3")) {
      Close();
      if (!tag.isEnd) Open(TOpen::Folder, tag);
    } else if (Is(tag.name, "dl")) {
      Close();
      if (tag.isEnd) {
        CloseList();
      } else {
        m_lists.push_back(m_isFolderNext);
        if (m_isFolderNext) ++m_depth;
        m_isFolderNext = false;
      }
    } else if (Is(tag.name, "dt") || Is(tag.name, "dd")) {
      Close();
    } else if (Is(tag.name, "hr") && !tag.isEnd) {
      Close();
      m_list.Skip(TSkippedBookmark::TReason::Separator);
    }
  }

  void Open(TOpen what, const TTag &tag) {
    m_open = what;
    m_tag = tag;
    m_text.clear();
    // A folder without a list is an empty one.
    m_isFolderNext = false;
  }

  void Close() {
    const TOpen what = std::exchange(m_open, TOpen::Nothing);
    if (what == TOpen::Nothing) return;
    const QString name = Decoded(m_text);
    const qint64 added = m_tag.added ? m_tag.added->toByteArray().trimmed().toLongLong() : 0;
    if (what == TOpen::Page) {
      m_list.AddPage(m_depth, name, Decoded(m_tag.href.value_or(QByteArrayView())), added);
    } else {
      m_list.AddFolder(m_depth, name, added, m_tag.isBar ? TBookmark::TRoot::Bar : TBookmark::TRoot::None);
      m_isFolderNext = true;
    }
  }

  void CloseList() {
    m_isFolderNext = false;
    if (m_lists.empty()) return;
    if (m_lists.back()) --m_depth;
    m_lists.pop_back();
  }

  TBookmarkList m_list;
  TOpen m_open = TOpen::Nothing;
  TTag m_tag;
  QByteArray m_text;
  int m_depth = 0;
  bool m_isFolderNext = false;  // the next list is that of the folder that was read last
  std::vector<bool> m_lists;    // those that are open, and whether they are a folder's
};

// In UTF-8 where it was UTF-16, else nothing.
std::optional<QByteArray> OfUtf16(QByteArrayView bytes) {
  if (bytes.startsWith("\xFF\xFE")) return QString(QStringDecoder(QStringDecoder::Utf16LE)(bytes)).toUtf8();
  if (bytes.startsWith("\xFE\xFF")) return QString(QStringDecoder(QStringDecoder::Utf16BE)(bytes)).toUtf8();
  return std::nullopt;
}

}  // namespace

namespace BookmarkFile {

TBookmarks Read(QByteArrayView bytes, TSkippedBookmarks *skipped) {
  const std::optional<QByteArray> converted = OfUtf16(bytes);
  return TReader(skipped).Read(converted ? QByteArrayView(*converted) : bytes);
}

bool IsOne(QByteArrayView beginning) {
  const QByteArrayView part = beginning.first(qMin(beginning.size(), Beginning));
  const QByteArray text = OfUtf16(part).value_or(part.toByteArray()).toLower();
  return text.contains("<!doctype netscape-bookmark-file") || text.contains("<dl") || text.contains("<dt");
}

QByteArray Write(const TBookmarks &bookmarks, const QString &title) {
  const QByteArray name = Encoded(title);
  QByteArray bytes = QByteArray(Head) + "<TITLE>" + name + "</TITLE>\n<H1>" + name + "</H1>\n<DL><p>\n";
  int depth = 0;
  const auto closeTo = [&](int to) {
    while (depth > to) bytes += QByteArray(Indent * depth--, ' ') + "</DL><p>\n";
  };
  // The margin is for those who look at the file; nobody can follow it this far.
  constexpr int MostIndented = 64;
  for (const TBookmark &bookmark : bookmarks) {
    closeTo(bookmark.depth);
    const QByteArray margin(Indent * qMin(depth + 1, MostIndented), ' ');
    const QByteArray added =
        bookmark.added > 0 ? " ADD_DATE=\"" + QByteArray::number(bookmark.added) + '"' : QByteArray();
    if (bookmark.kind == TBookmark::TKind::Page) {
      bytes +=
          margin + "<DT><A HREF=\"" + Encoded(bookmark.address) + '"' + added + '>' + Encoded(bookmark.name) + "</A>\n";
    } else {
      const QByteArray bar = bookmark.root == TBookmark::TRoot::Bar ? " PERSONAL_TOOLBAR_FOLDER=\"true\"" : "";
      bytes += margin + "<DT><H3" + added + bar + '>' + Encoded(bookmark.name) + "</H3>\n" + margin + "<DL><p>\n";
      ++depth;
    }
  }
  closeTo(0);
  return bytes + "</DL><p>\n";
}

}  // namespace BookmarkFile
