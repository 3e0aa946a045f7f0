#include "content/ie_options.h"

#include <QString>

#include "config/registry_paths.h"
#include "store/registry_store.h"

namespace {

constexpr auto User = TRegistryHive::CurrentUser;

const QString Yes = QStringLiteral("yes");
const QString No = QStringLiteral("no");

QString Key() {
  return QString::fromLatin1(RegistryKey::SystemBrowser);
}

QString NameOf(TContentSwitch which) {
  switch (which) {
    case TContentSwitch::Images:
      return QStringLiteral("Display Inline Images");
    case TContentSwitch::Videos:
      return QStringLiteral("Display Inline Videos");
    case TContentSwitch::Sounds:
      return QStringLiteral("Play_Background_Sounds");
    case TContentSwitch::Animations:
      return QStringLiteral("Play_Animations");
  }
  return {};
}

}  // namespace

bool TIEOptions::Get(TContentSwitch which) const {
  return m_store.Read(User, Key(), NameOf(which)).value_or(Yes) == Yes;
}

bool TIEOptions::Set(TContentSwitch which, bool on) {
  return m_store.Write(User, Key(), NameOf(which), on ? Yes : No);
}

std::optional<TContentStates> TIEOptions::KnownStates() const {
  const auto values = m_store.KnownValues(User, Key());
  if (!values) return std::nullopt;
  TContentStates states;
  states.fill(true);
  for (const TContentSwitch which : ContentSwitches) {
    for (const TRegistryValue &value : *values) {
      if (value.name.compare(NameOf(which), Qt::CaseInsensitive) == 0) states.at(size_t(which)) = value.data == Yes;
    }
  }
  return states;
}
