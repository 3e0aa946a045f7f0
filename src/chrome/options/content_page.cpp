#include "chrome/options/content_page.h"

#include <utility>

#include "config/language.h"
#include "ui_content_page.h"

TContentPage::TContentPage(const TLanguage &language, TSwitches switches, QWidget *parent)
    : QWidget(parent),
      m_switches(std::move(switches)),
      m_shown(m_switches.states()),
      m_ui(std::make_unique<Ui::TContentPage>()) {
  m_ui->setupUi(this);
  setObjectName(QStringLiteral("tsContent"));
  language.TranslateForm(this, "OPTIONS");
  for (const TContentSwitch which : ContentSwitches) BoxOf(which)->setChecked(m_shown.at(size_t(which)));
}

TContentPage::~TContentPage() = default;

QCheckBox *TContentPage::BoxOf(TContentSwitch which) const {
  switch (which) {
    case TContentSwitch::Images:
      return m_ui->chkContentImages;
    case TContentSwitch::Videos:
      return m_ui->chkContentVideos;
    case TContentSwitch::Sounds:
      return m_ui->chkContentSounds;
    case TContentSwitch::Animations:
      break;
  }
  return m_ui->chkContentAnimations;
}

void TContentPage::Write() {
  TContentStates on = m_switches.states();
  for (const TContentSwitch which : ContentSwitches) {
    const bool wanted = BoxOf(which)->isChecked();
    if (wanted != m_shown.at(size_t(which))) on.at(size_t(which)) = wanted;
  }
  m_switches.set(on);
}
