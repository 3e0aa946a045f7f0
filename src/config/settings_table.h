#pragma once

#include <array>
#include <QString>
#include <variant>

// Every scalar setting: its value name, kind, default and the rule by which a written number is brought into range.
// Getters, setters, tests and the options dialog all walk this one table.

struct TFlagSetting {
  const char *name;
  bool fallback;
};

struct TIntegerSetting {
  const char *name;
  int fallback;
  int (*clamp)(int) = nullptr;     // Applied when the value is written; none leaves the number as it is.
  int (*dynamic)() = nullptr;      // The default, where it depends on the desktop (window width and height).
};

struct TStringSetting {
  const char *name;
  const char *fallback;
};
