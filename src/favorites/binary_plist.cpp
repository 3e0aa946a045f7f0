#include "favorites/binary_plist.h"

#include <optional>
#include <QStringDecoder>

namespace {

// The form: 8 bytes of header, objects, a table of their offsets, and at the end what tells how to read it. Numbers
// have their highest byte in front. An object begins with a byte whose upper half is its kind and whose lower half is
// its length, or 15, when the length follows as a number of its own.
constexpr qsizetype TrailerSize = 32;
constexpr quint64 MostEntries = 1000;

enum TObject : quint8 { Integer = 1, Ascii = 5, Utf16 = 6, Dictionary = 13 };

class TList final {
 public:
  explicit TList(QByteArrayView bytes) : m_bytes(bytes) {}

  // False when these bytes are none.
  [[nodiscard]] bool Open() {
    if (m_bytes.size() < TrailerSize) return false;
    const quint64 trailer = quint64(m_bytes.size() - TrailerSize);
    m_offsetSize = Number(trailer + 6, 1).value_or(0);
    m_referenceSize = Number(trailer + 7, 1).value_or(0);
    m_objects = Number(trailer + 8, 8).value_or(0);
    m_top = Number(trailer + 16, 8).value_or(0);
    m_table = Number(trailer + 24, 8).value_or(0);
    return m_objects <= quint64(m_bytes.size());
  }

  [[nodiscard]] QString TextOf(const QString &key) const {
    const std::optional<THead> top = Head(m_top);
    if (!top || top->kind != Dictionary || top->length > MostEntries) return {};
    for (quint64 i = 0; i < top->length; ++i) {
      const auto name = Number(top->contents + i * m_referenceSize, m_referenceSize);
      const auto value = Number(top->contents + (top->length + i) * m_referenceSize, m_referenceSize);
      if (name && value && Text(*name).compare(key, Qt::CaseInsensitive) == 0) return Text(*value);
    }
    return {};
  }

 private:
  struct THead {
    quint8 kind;
    quint64 length;
    quint64 contents;  // where they begin
  };

  [[nodiscard]] std::optional<quint64> Number(quint64 place, quint64 size) const {
    const auto end = quint64(m_bytes.size());
    if (size == 0 || size > 8 || place > end || size > end - place) return std::nullopt;
    quint64 number = 0;
    for (quint64 i = 0; i < size; ++i) number = number << 8 | uchar(m_bytes[qsizetype(place + i)]);
    return number;
  }

  [[nodiscard]] std::optional<THead> Head(quint64 object) const {
    if (object >= m_objects) return std::nullopt;
    // Below the number of bytes, so that this is never more than a number can hold.
    const auto place = Number(m_table + object * m_offsetSize, m_offsetSize);
    const auto marker = place ? Number(*place, 1) : std::nullopt;
    if (!marker) return std::nullopt;
    THead head{quint8(*marker >> 4), *marker & 15, *place + 1};
    if (head.length < 15) return head;
    const auto next = Number(head.contents, 1);
    if (!next || *next >> 4 != Integer || (*next & 15) > 3) return std::nullopt;
    const quint64 size = 1ULL << (*next & 15);
    const auto length = Number(head.contents + 1, size);
    if (!length) return std::nullopt;
    return THead{head.kind, *length, head.contents + 1 + size};
  }

  [[nodiscard]] QString Text(quint64 object) const {
    const std::optional<THead> head = Head(object);
    const auto end = quint64(m_bytes.size());
    if (!head || head->contents > end) return {};
    const quint64 room = end - head->contents;
    const QByteArrayView rest = m_bytes.sliced(qsizetype(head->contents));
    if (head->kind == Ascii && head->length <= room) return QString::fromLatin1(rest.first(qsizetype(head->length)));
    if (head->kind != Utf16 || head->length > room / 2) return {};
    return QStringDecoder(QStringDecoder::Utf16BE)(rest.first(qsizetype(head->length) * 2));
  }

  QByteArrayView m_bytes;
  quint64 m_offsetSize = 0;
  quint64 m_referenceSize = 0;
  quint64 m_objects = 0;
  quint64 m_top = 0;
  quint64 m_table = 0;
};

}  // namespace

QString BinaryPlist::TextOf(QByteArrayView bytes, const QString &key) {
  TList list(bytes);
  return list.Open() ? list.TextOf(key) : QString();
}
