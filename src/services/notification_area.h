#pragma once

#include <memory>
#include <QObject>
#include <QString>

class QMenu;
class QSystemTrayIcon;
class TDesktopNotifications;

// The desktop's notification area, as far as one icon goes.
class TNotificationArea : public QObject {
  Q_OBJECT

 public:
  // Whether the desktop has one at this moment.
  [[nodiscard]] virtual bool IsThere() const = 0;
  // Plain text.
  virtual void SetHint(const QString &hint) = 0;
  // A short message beside the icon, in plain text.
  virtual void Tell(const QString &title, const QString &text) = 0;

 Q_SIGNALS:
  // The icon was double-clicked.
  void Activated();
  // It was clicked, on a desktop that tells of nothing else: a double click is two of these.
  void Clicked();
  void MessageClicked();
  // Nobody on this desktop shows messages: the last one was lost.
  void NotTold();
};

// The real one, with the program's icon in it for as long as the object lives, whenever the desktop has an area, be it
// that the area comes later than the program.
class TSystemNotificationArea final : public TNotificationArea {
  Q_OBJECT

 public:
  // `menu` opens on a click with the right mouse button; it must outlive this object.
  explicit TSystemNotificationArea(QMenu *menu);
  ~TSystemNotificationArea() override;

  [[nodiscard]] bool IsThere() const override;
  void SetHint(const QString &hint) override;
  void Tell(const QString &title, const QString &text) override;

 private:
  void MakeIcon();

  QMenu *m_menu;
  QString m_hint;
  bool m_isOnBus = false;                   // the desktop draws the icon, and is told of it over the session bus
  std::unique_ptr<QSystemTrayIcon> m_icon;  // nullptr as long as there is nobody to show it
  TDesktopNotifications *m_notifications = nullptr;  // made with the first message
};
