#pragma once

#include <QList>
#include <QMetaProperty>

// Which of a component's properties hold text for the language file.

// The kinds of text property, in the order in which they are translated.
enum class TTextKind { Caption, Title, Filter, Hint, Text };

struct TTextProperty {
  TTextKind kind;
  QMetaProperty property;
};

// The text properties that objects of this class have, in the order of their kinds.
[[nodiscard]] QList<TTextProperty> TextProperties(const QMetaObject &metaObject);

// A bar whose bands carry captions. Widgets that are one also derive from this class.
class TCaptionedBands {
 public:
  virtual ~TCaptionedBands() = default;
  [[nodiscard]] virtual int BandCount() const = 0;
  [[nodiscard]] virtual QString BandText(int band) const = 0;
  virtual void SetBandText(int band, const QString &text) = 0;
};
