#pragma once

#include <QString>
#include <QUrl>

// What a text that was given as an address turned out to be.
struct TFixedAddress {
  enum class TKind {
    Empty,        // nothing but blanks
    Url,          // `url` can be handed to the engine
    Script,       // "javascript:": `script` is to run in the current page
    External,     // `url` belongs to a program of the desktop (mail)
    UnknownKind,  // a scheme that nothing here can open
    Invalid,      // no address at all
  };

  TKind kind = TKind::Invalid;
  QUrl url{};
  QString script{};
};

// Makes an address of what a user types or a file holds. A URL stays as it stands, the absolute path of a local file
// becomes a file URL (also when its name holds blanks, "#", "%" or "?"), "~/" is the user's home, and a host name, with
// or without port and path, gets "http://" put before it. Text that is none of these is Invalid; it is never searched
// for.
[[nodiscard]] TFixedAddress FixUpAddress(const QString &text);

// True for the schemes that the engine itself loads.
[[nodiscard]] bool IsEngineScheme(const QString &scheme);

// The one spelling of a URL that is shown, stored and compared: fully encoded, as the engine has it.
[[nodiscard]] QString AddressOf(const QUrl &url);
