#pragma once

#include <QString>
#include <Qt>

// What Enter puts around the text of the address bar while a modifier key is held.
struct TAddressForm {
  QString prefix;
  QString suffix;
};

// The text in the form's frame. All comparisons are exact, upper and lower case differ.
//
// The prefix goes in front unless the text begins with it. The suffix goes behind unless the text (prefix included)
// ends in ".com", ".org" or ".net", with or without a slash, whatever the suffix is; or unless the text is the suffix
// followed by exactly one more character. A text that ends in another suffix than the six therefore gets it a second
// time.
[[nodiscard]] QString FrameAddress(const QString &text, const TAddressForm &form);

// The three forms that the user can set.
struct TAddressForms {
  TAddressForm ctrl;
  TAddressForm shift;
  TAddressForm ctrlShift;

  // What Enter makes of `text` with these keys held; without Ctrl and Shift the text stays as it was typed.
  [[nodiscard]] QString Apply(const QString &text, Qt::KeyboardModifiers modifiers) const;
};
