#pragma once

#include <optional>
#include <QByteArray>
#include <QString>

// What is needed to bring a tab back as it was: after a start, or when the user wants a closed one again.
struct TTabRecord {
  QString address{};
  QString title{};
  QString stickyName{};
  bool locked = false;  // also when it was to be locked as soon as its page had come
  bool spared = false;  // by close-all
  bool keptAwake = false;
  // Back and forward, and how far each page was scrolled, as the engine streams them. Empty where there is none.
  QByteArray history{};

  bool operator==(const TTabRecord &) const = default;

  // One line of text, as stores keep it.
  [[nodiscard]] QString ToText() const;
  // Nothing where the text is none of the above.
  [[nodiscard]] static std::optional<TTabRecord> FromText(const QString &text);
};
