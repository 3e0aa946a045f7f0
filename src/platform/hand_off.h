#pragma once

#include <QString>

class TInstanceLock;

enum class THandOff {
  Delivered,    // The running instance has taken the text.
  BecameFirst,  // There is no running instance any more, and this process has taken its place.
  Nobody,       // Somebody has the lock, but did not take the text in time.
};

// How long a second start waits, in milliseconds, for an instance that is still starting or just ending.
inline constexpr int HandOffPatience = 5000;

// Sends `text` (its first 1024 characters) to the running instance. Needs neither an application object nor an event
// loop. `activationToken` is the desktop's leave to take the focus; empty for none.
[[nodiscard]] THandOff SendToRunningInstance(TInstanceLock &lock, const QString &text, const QString &activationToken,
                                             int patience = HandOffPatience);

// The same with the command line's first argument and the token that the desktop gave this process. A file's name is
// made absolute, since the running instance has a working directory of its own; further arguments are dropped.
[[nodiscard]] THandOff HandOffCommandLine(TInstanceLock &lock, const QStringList &arguments);

// The full name when `argument` names an existing file, else the argument itself.
[[nodiscard]] QString FullFileName(const QString &argument);
