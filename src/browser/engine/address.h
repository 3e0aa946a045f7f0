#pragma once

#include <QString>
#include <QUrl>

// An address that is to be opened: the text as it was given, for captions, lists and stores, and what it turned out to
// be. Whatever enters the program (typed, from a file, from a second start) is fixed up once, by becoming one of these,
// and travels like that.
class TAddress final {
 public:
  enum class TKind {
    Empty,        // nothing but blanks
    Url,          // `Url` can be handed to the engine
    Script,       // "javascript:": `Script` is to run in the current page
    External,     // `Url` belongs to a program of the desktop (mail)
    UnknownKind,  // a scheme that nothing here can open
    Invalid,      // no address at all
  };

  TAddress() = default;
  // A URL stays as it stands, the absolute path of a local file becomes a file URL (also when its name holds blanks,
  // "#", "%" or "?"), "~/" is the user's home, and a host name, with or without port and path, gets "http://" put
  // before it. Text that is none of these is Invalid; it is never searched for. Implicit: a text that is to be opened
  // is one place away from being an address.
  TAddress(const QString &text);
  // What the engine itself told, of a page or a link: such an address is whole, and nothing is fixed up.
  [[nodiscard]] static TAddress OfEngine(const QString &address);

  [[nodiscard]] TKind Kind() const { return m_kind; }
  [[nodiscard]] const QString &Text() const { return m_text; }
  [[nodiscard]] const QUrl &Url() const { return m_url; }
  [[nodiscard]] const QString &Script() const { return m_script; }
  [[nodiscard]] bool IsBlankPage() const;  // the engine opens it without asking and without a request

 private:
  void FixUp();
  [[nodiscard]] bool TakeScript(const QString &text);
  void TakeUrl(const QUrl &url);
  void TakePath(const QString &path);
  void TakeHost(const QString &text);
  void TakeKnownScheme(const QString &scheme, const QString &rest, const QString &text);

  TKind m_kind = TKind::Empty;
  QString m_text;
  QUrl m_url;
  QString m_script;
};

// True for the schemes that the engine itself loads.
[[nodiscard]] bool IsEngineScheme(const QString &scheme);

// The one spelling of a URL that is shown, stored and compared: fully encoded, as the engine has it.
[[nodiscard]] QString AddressOf(const QUrl &url);

// The address of the empty page, as the engine has it.
inline const QString BlankPageAddress = QStringLiteral("about:blank");
