#include "browser/page/site_permissions.h"

#include <algorithm>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QPointer>

#include "browser/page/origin_text.h"
#include "config/language.h"

namespace {

struct TName {
  TPermission permission;
  TTextKey text;
};
constexpr TName Names[] = {
    {TPermission::Notifications, {"PERMISSIONS", "NameNotifications"}},
    {TPermission::Location, {"PERMISSIONS", "NameLocation"}},
    {TPermission::Microphone, {"PERMISSIONS", "NameMicrophone"}},
    {TPermission::Camera, {"PERMISSIONS", "NameCamera"}},
    {TPermission::MouseLock, {"PERMISSIONS", "NameMouseLock"}},
    {TPermission::Clipboard, {"PERMISSIONS", "NameClipboard"}},
    {TPermission::Screen, {"PERMISSIONS", "NameScreen"}},
    {TPermission::ScreenAndSound, {"PERMISSIONS", "NameScreenAndSound"}},
    {TPermission::Scripts, {"PERMISSIONS", "NameScripts"}},
    {TPermission::PlugIns, {"PERMISSIONS", "NamePlugIns"}},
    {TPermission::StoredCookies, {"PERMISSIONS", "NameStoredCookies"}},
    {TPermission::SessionCookies, {"PERMISSIONS", "NameSessionCookies"}},
};

struct TChoice {
  TPermissionDecision decision;
  TTextKey text;
};
constexpr TChoice Choices[] = {
    {TPermissionDecision::Ask, {"PERMISSIONS", "Ask"}},
    {TPermissionDecision::AllowedForNow, {"PERMISSIONS", "AllowedForNow"}},
    {TPermissionDecision::Allowed, {"PERMISSIONS", "Allowed"}},
    {TPermissionDecision::RefusedForNow, {"PERMISSIONS", "RefusedForNow"}},
    {TPermissionDecision::Refused, {"PERMISSIONS", "Refused"}},
};

}  // namespace

TSitePermissions::TSitePermissions(const QUrl &site, TPermissionDecisions &decisions, const TLanguage &language,
                                   QWidget *parent)
    : QGroupBox(language.Text("PERMISSIONS", "SiteMay").arg(OriginText(site, language)), parent) {
  setObjectName(QStringLiteral("grpPermissions"));
  auto *layout = new QFormLayout(this);
  for (const TPermission permission : decisions.Decided(site)) {
    auto *choice = new QComboBox(this);
    for (const TChoice &one : Choices) choice->addItem(language.Text(one.text), int(one.decision));
    choice->setCurrentIndex(choice->findData(int(decisions.Find(site, permission))));
    auto *name = new QLabel(language.Text("PERMISSIONS", "NameLabel").arg(NameOf(permission, language)), this);
    name->setBuddy(choice);
    layout->addRow(name, choice);
    connect(choice, &QComboBox::activated, this, [=, this, known = QPointer(&decisions)] {
      if (!known) return;
      known->Remember(site, permission, TPermissionDecision(choice->currentData().toInt()));
    });
  }
}

QString TSitePermissions::NameOf(TPermission permission, const TLanguage &language) {
  return language.Text(std::ranges::find(Names, permission, &TName::permission)->text);
}

QString TSitePermissions::NameOf(TPermissionDecision decision, const TLanguage &language) {
  return language.Text(std::ranges::find(Choices, decision, &TChoice::decision)->text);
}
