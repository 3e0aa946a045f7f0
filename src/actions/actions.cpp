#include "actions/actions.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <QActionGroup>
#include <QGuiApplication>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>

#include "config/settings.h"
#include "ui/shown_text.h"

namespace {

QList<QKeySequence> KeysOf(const char *keys) {
  QList<QKeySequence> sequences;
  for (const QString &key : QString::fromLatin1(keys).split(QStringLiteral("; "), Qt::SkipEmptyParts)) {
    sequences.append(QKeySequence(key, QKeySequence::PortableText));
  }
  return sequences;
}

// What stands for a picture that means a direction where reading runs from right to left.
constexpr const char *MirroredIcons[][2] = {{"back", "forward"}, {"forward", "back"}, {"go", "go_mirrored"}};

}  // namespace

QIcon CommandIcon(const char *name) {
  if (QGuiApplication::isRightToLeft()) {
    const auto *pair =
        std::ranges::find_if(MirroredIcons, [name](auto &icons) { return qstrcmp(icons[0], name) == 0; });
    if (pair != std::end(MirroredIcons)) name = (*pair)[1];
  }
  return QIcon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(name)));
}

TActions::TActions(QWidget *window, const TLanguage &language, TSettings &settings)
    : m_window(window), m_language(language), m_settings(settings) {
  MakeMenus();
  MakeActions();
  FillMenus();
  m_settings.Apply(Setting::DisableALTShortcuts, this, [this] { ShowMnemonics(); });
}

void TActions::MakeActions() {
  std::map<TChoice, QActionGroup *> choices;
  for (const TCommandRow &row : CommandRows()) {
    auto *action = new QAction(QString::fromLatin1(row.text), m_window);
    action->setObjectName(QString::fromLatin1(row.name));
    action->setCheckable(row.traits.checkable);
    action->setShortcuts(KeysOf(row.keys));
    if (*row.icon != '\0') action->setIcon(CommandIcon(row.icon));
    m_language.TranslateForm(action, CommandSection);
    m_actions[static_cast<size_t>(row.command)] = action;
    GiveHint(row);
    if (row.traits.choice != TChoice::None) {
      QActionGroup *&choice = choices[row.traits.choice];
      if (choice == nullptr) choice = new QActionGroup(this);
      choice->addAction(action);
    }
    if (row.traits.setting != nullptr) SwitchFlag(row);
  }
  m_window->addActions(QList<QAction *>(m_actions.begin(), m_actions.end()));
}

void TActions::GiveHint(const TCommandRow &row) const {
  if (row.traits.hint.section == nullptr) return;
  QAction *action = (*this)[row.command];
  const QString hint = m_language.Text(row.traits.hint);
  action->setToolTip(WithKeys(TLanguage::ShortHint(hint), action));
  action->setStatusTip(TLanguage::LongHint(hint));
}

QString TActions::WithKeys(const QString &hint, const QAction *action) {
  if (action == nullptr || action->shortcut().isEmpty()) return hint;
  return QStringLiteral("%1 (%2)").arg(hint, action->shortcut().toString(QKeySequence::NativeText));
}

void TActions::SwitchFlag(const TCommandRow &row) {
  QAction *action = (*this)[row.command];
  const TFlagSetting &setting = *row.traits.setting;
  m_settings.Apply(setting, this, [this, action, &setting] { action->setChecked(m_settings.Get(setting)); });
  connect(action, &QAction::toggled, this, [this, &setting](bool on) { m_settings.Set(setting, on); });
}

void TActions::MakeMenus() {
  for (const TMenuRow &row : MenuRows()) {
    auto *menu = new QMenu(QString::fromLatin1(row.title), m_window);
    menu->setObjectName(QString::fromLatin1(row.name));
    m_language.TranslateForm(menu, CommandSection);
    m_menus[static_cast<size_t>(row.menu)] = menu;
    m_titles[static_cast<size_t>(row.menu)] = menu->title();
  }
}

void TActions::FillMenus() {
  for (const TMenuEntry &entry : MenuEntries()) {
    QMenu *menu = Menu(entry.menu);
    switch (entry.kind) {
      case TMenuEntry::TKind::Command:
        menu->addAction((*this)[static_cast<TCommand>(entry.index)]);
        break;
      case TMenuEntry::TKind::Menu:
        menu->addMenu(Menu(static_cast<TMenu>(entry.index)));
        break;
      case TMenuEntry::TKind::Separator:
        menu->addSeparator();
        break;
      case TMenuEntry::TKind::ContentsOf:
        menu->addActions(Menu(static_cast<TMenu>(entry.index))->actions());
        break;
    }
  }
}

void TActions::FillMenuBar(QMenuBar *bar) {
  for (const TMenuRow &row : MenuRows()) {
    if (row.menu == row.parent) bar->addMenu(Menu(row.menu));
  }
}

void TActions::AddTo(QToolBar *bar, TCommand command) const {
  bar->addAction((*this)[command]);
  if (auto *button = qobject_cast<QToolButton *>(bar->widgetForAction((*this)[command]))) Equip(button, command);
}

void TActions::Equip(QToolButton *button, TCommand command) const {
  QAction *action = (*this)[command];
  button->setDefaultAction(action);
  button->setObjectName(action->objectName());
  // Not the action itself: it would take the place of the menu's own entry in the menu bar, text, icon and all.
  const TMenu menu = CommandRows()[static_cast<size_t>(command)].traits.menu;
  if (menu == TMenu::Count) return;
  button->setMenu(Menu(menu));
  button->setPopupMode(QToolButton::InstantPopup);
}

void TActions::ShowMnemonics() {
  const bool plain = m_settings.Get(Setting::DisableALTShortcuts);
  for (const TMenuRow &row : MenuRows()) {
    if (row.menu != row.parent) continue;
    const QString &title = m_titles[static_cast<size_t>(row.menu)];
    Menu(row.menu)->setTitle(plain ? WithoutMnemonic(title) : title);
  }
}

void TActions::Save() {
  m_settings.Keep(Setting::DisableALTShortcuts);
  for (const TCommandRow &row : CommandRows()) {
    if (row.traits.setting != nullptr) m_settings.Keep(*row.traits.setting);
  }
}
