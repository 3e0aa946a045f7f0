#pragma once

#include <cstring>
#include <QHash>
#include <QObject>
#include <QVariant>

#include "config/options.h"

// The user's settings while the program runs: whoever depends on one follows it, and whoever changes one only sets it.
// No value is kept here: a getter reads the store (what another window has stored holds at once), a setter writes it.
// Only what the store refuses to take is remembered, so that a choice holds for this run at least.
class TSettings final : public QObject {
  Q_OBJECT

 public:
  // `store` must live longer.
  explicit TSettings(TRegistryStore &store, QObject *parent = nullptr);

  template <typename TSetting>
  [[nodiscard]] auto Get(const TSetting &setting) const {
    using TValue = decltype(m_options.Get(setting));
    const auto refused = m_refused.constFind(QByteArray::fromRawData(setting.name, qsizetype(qstrlen(setting.name))));
    return refused == m_refused.constEnd() ? m_options.Get(setting) : refused->template value<TValue>();
  }
  // Somebody has chosen it, here or earlier; else `Get` returns the default.
  template <typename TSetting>
  [[nodiscard]] bool IsChosen(const TSetting &setting) const {
    return m_refused.contains(setting.name) || m_options.IsStored(setting.name);
  }
  // Stores at once, and tells those who follow; also when the value was there already, for another window may have
  // stored it, and nobody here has heard of that.
  void Set(const TFlagSetting &setting, bool value) { SetValue(setting, value); }
  void Set(const TIntegerSetting &setting, int value) { SetValue(setting, value); }
  void Set(const TStringSetting &setting, const QString &value) { SetValue(setting, value); }
  // The two halves of Set, for who must do something else between them: stores; tells those who follow.
  void SetUntold(const TFlagSetting &setting, bool value) { StoreValue(setting, value); }
  void Tell(const TFlagSetting &setting) { Q_EMIT Changed(setting.name); }

  // Address completion, see TZVOptions.
  [[nodiscard]] int AutoCompleteMode() const { return TZVOptions::AutoCompleteModeOf(Get(Setting::AutoCompleteStyle)); }
  void SetAutoCompleteMode(int mode) { Set(Setting::AutoCompleteStyle, TZVOptions::AutoCompleteStyleOf(mode)); }

  // Calls `handler` each time the setting is set, for as long as `context` lives.
  template <typename TSetting, typename THandler>
  void Follow(const TSetting &setting, QObject *context, THandler handler) {
    connect(this, &TSettings::Changed, context, [name = setting.name, handler](const char *changed) {
      if (std::strcmp(name, changed) == 0) handler();
    });
  }
  // The same, and once now.
  template <typename TSetting, typename THandler>
  void Apply(const TSetting &setting, QObject *context, THandler handler) {
    Follow(setting, context, handler);
    handler();
  }

  // For the end of the window, which leaves the settings that it obeys in the store: writes the value where the store
  // holds none, or has refused what was chosen here, and leaves alone what is there, another window's later choice too.
  template <typename TSetting>
  void Keep(const TSetting &setting) {
    Leave(setting, Get(setting), m_refused.contains(setting.name));
  }
  // The same for a value that the window has kept itself, and that overwrites what is there only when it has `changed`
  // here.
  template <typename TSetting, typename TValue>
  void Leave(const TSetting &setting, const TValue &value, bool changed) {
    if (changed) {
      m_options.Set(setting, value);
    } else {
      m_options.SetIfAbsent(setting, value);
    }
  }

  // The lists, and the store of all.
  [[nodiscard]] TZVOptions &Lists() { return m_options; }
  [[nodiscard]] TRegistryStore &Store() const { return m_options.Store(); }

 Q_SIGNALS:
  // By the setting's name in the table.
  void Changed(const char *name);

 private:
  template <typename TSetting, typename TValue>
  void SetValue(const TSetting &setting, const TValue &value) {
    StoreValue(setting, value);
    Q_EMIT Changed(setting.name);
  }
  template <typename TSetting, typename TValue>
  void StoreValue(const TSetting &setting, const TValue &value) {
    m_refused.remove(setting.name);
    if (!m_options.Set(setting, value)) m_refused.insert(setting.name, QVariant::fromValue(value));
  }

  TZVOptions m_options;
  QHash<QByteArray, QVariant> m_refused;
};
