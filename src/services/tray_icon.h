#pragma once

#include <functional>
#include <memory>
#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class QWidget;
class TActions;
class TLanguage;
class TNotificationArea;
class TSettings;
class TTabStrip;
class TWindowHiding;

// The icon in the desktop's notification area (pgTray), there while the setting MinToTray is on. A window that is
// minimised then leaves the task bar and waits behind its icon; its pages go on as in any minimised window. Where the
// desktop has no such area, or loses it, windows are minimised as usual: none is ever out of reach.
class TTrayIcon final : public QObject {
  Q_OBJECT

 public:
  using TMakeArea = std::function<std::unique_ptr<TNotificationArea>()>;

  // All must outlive this object. `makeArea` is called when an icon is wanted; empty for the desktop's own.
  TTrayIcon(QWidget *window, TActions &actions, TTabStrip &tabs, const TLanguage &language, TSettings &settings,
            TMakeArea makeArea = {});
  ~TTrayIcon() override;

  // The window is minimised, to its icon or as usual.
  [[nodiscard]] bool IsMinimized() const { return m_isMinimized; }
  // The window comes back, as it was, and to the front.
  void Restore();
  // The same where it waits behind its icon; else nothing.
  void BringBack();
  // Says so beside the icon, in plain text, where the window waits behind it; else nothing.
  void Say(const QString &title, const QString &text);
  void Save();

  bool eventFilter(QObject *watched, QEvent *event) override;

 Q_SIGNALS:
  void Note(const QString &text);

 private:
  void Apply();
  void Toggle();
  void TakeClick();
  void TakeMinimized();
  void TakeRestored();
  void UpdateMenu();
  [[nodiscard]] bool MayGoAway() const;
  void GoAway();
  void TakeReturn();

  QWidget *m_window;
  TActions &m_actions;
  TTabStrip &m_tabs;
  const TLanguage &m_language;
  TSettings &m_settings;
  TMakeArea m_makeArea;
  std::unique_ptr<TNotificationArea> m_area;
  QTimer m_look{this};      // tmrTray; whether the area is still there
  QElapsedTimer m_clicked;  // since the last click that counted
  bool m_isMinimized = false;
  std::unique_ptr<TWindowHiding> m_hiding;  // the window that is away waits behind its icon
};
