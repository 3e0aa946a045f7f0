#pragma once

#include <functional>
#include <memory>
#include <QDate>
#include <QObject>
#include <QTimer>
#include <QUrl>

class QWidget;
class THiddenPage;
class TLanguage;
class TSettings;
class TTabStrip;
struct TVersionAnswer;

// Asks the update server once a day for a newer version, and offers it once. It begins a moment after the window is
// first activated; nothing of it is made before, and nothing at all where there is no server. What fails is tried again
// at the next start, in silence.
class TVersionCheck final : public QObject {
  Q_OBJECT

 public:
  static constexpr int Delay = 5000;  // milliseconds from the first activation

  // Whether there is a server at this address, as product.ini has it, that could be asked.
  [[nodiscard]] static bool HasServer(const QString &address);

  // What the world is like; for tests.
  struct TWorld {
    int delay = Delay;
    std::function<QDate()> today = QDate::currentDate;
    std::function<bool()> isConnected{};  // to the Internet; the platform is asked where it is empty
  };

  // `server` as product.ini has it: http or https and a host. All must outlive this object; `window` owns the question.
  TVersionCheck(QWidget *window, TTabStrip &tabs, TSettings &settings, const TLanguage &language,
                const QString &server);
  TVersionCheck(QWidget *window, TTabStrip &tabs, TSettings &settings, const TLanguage &language, const QString &server,
                TWorld world);
  ~TVersionCheck() override;

  bool eventFilter(QObject *watched, QEvent *event) override;

 Q_SIGNALS:
  // The user wants to see the page of the new version; its tab is there.
  void PageOpened();

 private:
  void tmrVersionCheckTimer();
  [[nodiscard]] bool IsConnected() const;
  // The settings can be read at this moment.
  [[nodiscard]] bool AreSettingsKnown() const;
  void Take(const TVersionAnswer &answer);
  void Offer(const TVersionAnswer &answer);

  QWidget *m_window;
  TTabStrip &m_tabs;
  TSettings &m_settings;
  const TLanguage &m_language;
  const QUrl m_server;
  const TWorld m_world;
  QTimer m_timer{this};  // tmrVersionCheck
  std::unique_ptr<THiddenPage> m_page;
};
