#pragma once

#include <functional>
#include <QHash>
#include <QObject>
#include <QString>

// Short messages that the desktop shows for the program, over the desktop's notification service
// (org.freedesktop.Notifications). Without such a service nothing is shown and every message counts as closed at once.
class TDesktopNotifications final : public QObject {
  Q_OBJECT

 public:
  struct TMessage {
    QString title;
    QString text;                     // plain
    std::function<void()> clicked{};  // the user wants to see more
    std::function<void()> failed{};   // nothing was shown; before `closed`
    std::function<void()> closed{};   // called once, after `clicked` as well
  };

  explicit TDesktopNotifications(QObject *parent = nullptr);

  void Show(TMessage message);

 private Q_SLOTS:
  void OnActionInvoked(uint id, const QString &action);
  void OnClosed(uint id, uint reason);

 private:
  void Forget(uint id);

  QHash<uint, TMessage> m_shown;
};
