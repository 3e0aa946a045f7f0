#include "search/address_forms.h"

#include <algorithm>

namespace {

constexpr const char *KnownEndings[] = {".com", ".com/", ".org", ".org/", ".net", ".net/"};

bool HasKnownEnding(const QString &text) {
  return std::ranges::any_of(KnownEndings, [&](const char *ending) { return text.endsWith(QLatin1String(ending)); });
}

// A suffix at the very end does not count, only one that a single character follows; that is meant.
bool HasSuffixBeforeLast(const QString &text, const QString &suffix) {
  return text.chopped(1).endsWith(suffix);
}

}  // namespace

QString FrameAddress(const QString &text, const TAddressForm &form) {
  QString framed = text.startsWith(form.prefix) ? text : form.prefix + text;
  if (framed.isEmpty()) return form.suffix;
  if (!HasKnownEnding(framed) && !HasSuffixBeforeLast(framed, form.suffix)) framed += form.suffix;
  return framed;
}

QString TAddressForms::Apply(const QString &text, Qt::KeyboardModifiers modifiers) const {
  const bool withCtrl = modifiers.testFlag(Qt::ControlModifier);
  const bool withShift = modifiers.testFlag(Qt::ShiftModifier);
  if (withCtrl && withShift) return FrameAddress(text, ctrlShift);
  if (withCtrl) return FrameAddress(text, ctrl);
  if (withShift) return FrameAddress(text, shift);
  return text;
}
