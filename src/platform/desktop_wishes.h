#pragma once

class QDBusConnection;

// What the user has told his desktop that windows and pages are to heed. It is asked once, before the engine starts,
// which takes none of it later.
struct TDesktopWishes {
  bool assistiveTechnology = false;  // a screen reader or the like listens
  bool reducedMotion = false;        // nothing is to move that need not

  // Asks over the session bus, where there is one, and looks into the files that desktops leave. What is not answered
  // within a few dozen milliseconds counts as not wished. Needs the application object.
  [[nodiscard]] static TDesktopWishes Ask();
  // What the services on `bus` say, waiting at most `patience` milliseconds: org.a11y.Status of AT-SPI, and the
  // settings of the desktop portal (org.freedesktop.portal.Settings).
  [[nodiscard]] static TDesktopWishes AskOn(const QDBusConnection &bus, int patience);
};
