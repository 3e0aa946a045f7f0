#include "search/address_bar.h"

#include <algorithm>
#include <QKeyEvent>
#include <QLineEdit>
#include <QUrl>
#include <utility>

#include "config/language.h"
#include "config/settings.h"
#include "history/history_store.h"
#include "history/visit_words.h"
#include "search/inline_completion.h"
#include "search/page_icon.h"
#include "search/suggestion_list.h"
#include "ui/confirm_dialog.h"

namespace {

constexpr int StyleInline = 1;
constexpr int StyleDropDown = 2;
constexpr int MostSuggestions = 12;

bool IsModifierKey(int key) {
  return key == Qt::Key_Shift || key == Qt::Key_Control;
}

// The character that a key types; none for commands.
QString TypedText(const QKeyEvent &key) {
  if (key.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return {};
  return !key.text().isEmpty() && key.text().at(0).isPrint() ? key.text() : QString();
}

}  // namespace

TAddressBar::TAddressBar(const TLanguage &language, TSettings &settings, THistoryStore &history, QWidget *parent)
    : TZVComboBox(parent),
      m_language(language),
      m_settings(settings),
      m_history(history),
      m_icon(new TPageIcon(lineEdit())),
      m_suggestions(new TSuggestionList(this, lineEdit(), language.Text("MAIN", "AddressSuggestionsName"))) {
  setObjectName(QStringLiteral("cboAddress"));
  // The label names the box, but it is the edit field in it that has the keyboard.
  for (QWidget *part : {static_cast<QWidget *>(this), static_cast<QWidget *>(lineEdit())}) {
    part->setAccessibleName(language.Text("MAIN", "AddressLabel"));
  }
  lineEdit()->setPlaceholderText(language.Text("MAIN", "AddressPlaceholder"));
  connect(m_icon, &TPageIcon::Clicked, this, &TAddressBar::ConnectionClicked);
  connect(m_icon, &TPageIcon::DragWanted, this, &TAddressBar::DragWanted);
  ShowConnection(false, TEncryptionLevel::None);
  setMaxVisibleItems(TTypedAddresses::Most);
  settings.Follow(Setting::AutoCompleteStyle, this, [this] { HideSuggestions(); });
  LoadTypedAddresses();
  connect(this, &QComboBox::activated, this, [this](int row) {
    m_addressTyped = false;
    OpenText(EntryAddress(row), false);
  });
  m_suggest.setSingleShot(true);
  m_suggest.setInterval(0);
  connect(&m_suggest, &QTimer::timeout, this, &TAddressBar::Suggest);
  connect(lineEdit(), &QLineEdit::textEdited, this, [this] {
    if (CompletionStyle() == StyleDropDown) m_suggest.start();
  });
  connect(m_suggestions, &TSuggestionList::Clicked, this, [this](const QString &address) {
    m_addressTyped = true;
    OpenText(address, false);
  });
}

void TAddressBar::ShowAddress(const QString &address) {
  TZVComboBox::ShowAddress(address);
  if (std::exchange(m_isOnTheWay, false)) ShowIcon();
}

void TAddressBar::ShowConnection(bool isSecure, TEncryptionLevel level) {
  m_isSecure = isSecure;
  m_level = level;
  ShowIcon();
}

void TAddressBar::ShowIcon() {
  // The lock of one page must not stand beside the address of another.
  const TEncryptionLevel level = m_isOnTheWay ? TEncryptionLevel::None : m_level;
  const bool isPlain = level == TEncryptionLevel::None;
  const QUrl address(PageAddress());
  const char *picture = "page";
  QString hint;
  if (!isPlain) {
    picture = IsWhole(m_isSecure, level) ? "lock" : "insecure";
    hint = m_language.Text(EncryptionText(level));
  } else if (address.scheme() == QLatin1String("http")) {
    picture = "lock_open";
    hint = m_language.Text("MAIN", "ConnectionPlain");
  } else if (address.isLocalFile()) {
    // It comes over no network, and has no connection to tell about.
    hint = m_language.Text("MAIN", "PageFromDisk");
  } else if (!address.scheme().isEmpty() && address.scheme() != QLatin1String("about")) {
    // A handle to drag the page by, so that the text does not jump while the connection is made.
    hint = m_language.Text("MAIN", "PageHandle");
  } else {
    m_icon->Hide();
    return;
  }
  m_icon->Show(QIcon(QStringLiteral(":/icons/%1.svg").arg(QLatin1String(picture))), hint);
}

TAddressForms TAddressBar::Forms() const {
  return {{m_settings.Get(Setting::CtrlPre), m_settings.Get(Setting::CtrlPost)},
          {m_settings.Get(Setting::ShiftPre), m_settings.Get(Setting::ShiftPost)},
          {m_settings.Get(Setting::CtrlShiftPre), m_settings.Get(Setting::CtrlShiftPost)}};
}

int TAddressBar::CompletionStyle() const {
  return m_settings.AutoCompleteMode();
}

void TAddressBar::LoadTypedAddresses() {
  if (!m_addresses.IsLoaded() && m_addresses.Load(m_settings.Store())) SetEntries(m_addresses.List());
}

void TAddressBar::showPopup() {
  LoadTypedAddresses();
  TZVComboBox::showPopup();
}

void TAddressBar::SaveTypedAddresses() {
  m_addresses.Save(m_settings.Store());
}

void TAddressBar::AddTypedAddress(const QString &address) {
  FileTypedAddress(address);
  m_isOnTheWay = true;
  TZVComboBox::ShowAddress(address);
  ShowIcon();
}

void TAddressBar::FileTypedAddress(const QString &address) {
  if (!std::exchange(m_addressTyped, false)) return;
  m_addresses.File(address);
  SetEntries(m_addresses.List());
}

void TAddressBar::ClearAddressHistory() {
  const QString note = CompletionStyle() == StyleDropDown ? m_language.Global("ClearAddressHistoryNote") : QString();
  const QString caption = TLanguage::ShortHint(m_language.Text("MAIN", "MenuToolsClearAddressesHint"));
  const TAnswer answer = ShowConfirm(window(), {.caption = caption,
                                                .firstLine = m_language.Global("ClearAddressHistory"),
                                                .secondText = note,
                                                .ok = m_language.Global("Yes"),
                                                .cancel = m_language.Global("No"),
                                                .isRisky = true});
  if (answer.accepted) ForgetTypedAddresses();
}

void TAddressBar::ForgetTypedAddresses() {
  m_addresses.Clear();
  SetEntries({});
  SaveTypedAddresses();
}

bool TAddressBar::TakeKey(const QKeyEvent &key) {
  if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
    PressEnter(key.modifiers());
    return true;
  }
  // The modifier keys themselves are for Enter to see, not for the box.
  if (IsModifierKey(key.key())) return true;
  if (m_suggestions->isVisible() && TakeSuggestionKey(key)) return true;
  if (key.modifiers().testFlag(Qt::AltModifier)) return false;
  switch (key.key()) {
    case Qt::Key_Down:
    case Qt::Key_Up:
    case Qt::Key_PageDown:
    case Qt::Key_PageUp:
      // By itself the box would open every entry that is walked over.
      WalkList(key.key() == Qt::Key_Down || key.key() == Qt::Key_PageDown);
      return true;
    default:
      return CompletionStyle() == StyleInline && CompleteInline(key);
  }
}

void TAddressBar::PressEnter(Qt::KeyboardModifiers modifiers) {
  const QString text = Forms().Apply(lineEdit()->text(), modifiers);
  if (text != lineEdit()->text()) setEditText(text);
  m_addressTyped = !text.trimmed().isEmpty();
  Open(modifiers.testFlag(Qt::AltModifier));
}

void TAddressBar::Open(bool newTab) {
  OpenText(lineEdit()->text(), newTab);
}

void TAddressBar::OpenText(const QString &text, bool newTab) {
  m_suggest.stop();
  HideSuggestions();
  ForgetTyped();
  if (!text.trimmed().isEmpty()) Q_EMIT OpenRequested(text, newTab);
}

bool TAddressBar::CompleteInline(const QKeyEvent &key) {
  const QString character = TypedText(key);
  if (character.isEmpty()) return false;
  LoadTypedAddresses();
  const int caret = lineEdit()->hasSelectedText() ? lineEdit()->selectionStart() : lineEdit()->cursorPosition();
  const QString typed = lineEdit()->text().left(caret) + character;
  QStringList entries;
  for (int row = 0; row < count(); ++row) entries.append(itemText(row));
  const auto found = TInlineCompletion::Of(typed, entries);
  if (!found) return false;
  setCurrentIndex(int(found->entry));
  ShowTyped(found->text, typed.size());
  return true;
}

void TAddressBar::WalkList(bool down) {
  LoadTypedAddresses();
  if (count() == 0) return;
  const bool isShown = currentIndex() >= 0 && itemText(currentIndex()) == lineEdit()->text();
  const int first = down ? 0 : count() - 1;
  const int row = isShown ? std::clamp(currentIndex() + (down ? 1 : -1), 0, count() - 1) : first;
  setCurrentIndex(row);
  ShowTyped(itemText(row), 0);
}

bool TAddressBar::TakeSuggestionKey(const QKeyEvent &key) {
  switch (key.key()) {
    case Qt::Key_Down:
    case Qt::Key_Up:
    case Qt::Key_PageDown:
    case Qt::Key_PageUp: {
      if (key.modifiers().testFlag(Qt::AltModifier)) return false;
      const bool down = key.key() == Qt::Key_Down || key.key() == Qt::Key_PageDown;
      const bool page = key.key() == Qt::Key_PageDown || key.key() == Qt::Key_PageUp;
      m_suggestions->Move(down, page);
      const QString shown = m_suggestions->currentIndex().data().toString();
      const QString text = m_suggestions->Chosen().isEmpty() ? m_typedText : shown;
      ShowTyped(text, text.size());
      return true;
    }
    case Qt::Key_Delete: {
      const QString chosen = m_suggestions->Chosen();
      if (!key.modifiers().testFlag(Qt::ShiftModifier) || chosen.isEmpty()) return false;
      RemoveEntry(chosen);
      m_history.Remove(chosen);
      m_suggestions->RemoveChosen();
      ShowTyped(m_typedText, m_typedText.size());
      return true;
    }
    case Qt::Key_Escape:
      ShowTyped(m_typedText, m_typedText.size());
      HideSuggestions();
      return true;
    default:
      return false;
  }
}

void TAddressBar::Suggest() {
  m_typedText = lineEdit()->text();
  const QStringList query = VisitWords::Query(m_typedText);
  if (query.isEmpty() || !lineEdit()->hasFocus() || CompletionStyle() != StyleDropDown) {
    HideSuggestions();
    return;
  }
  LoadTypedAddresses();
  QList<TVisitedPage> pages = m_history.Search(m_typedText, MostSuggestions);
  for (const QString &address : m_addresses.List()) {
    const bool isThere = std::ranges::any_of(pages, [&](const TVisitedPage &page) { return page.address == address; });
    if (isThere) continue;
    const TVisitedPage page = m_history.Find(address).value_or(TVisitedPage{.address = address});
    if (VisitWords::Match(VisitWords::Of(page.address, page.title), query)) pages.append(page);
  }
  std::ranges::stable_sort(pages, std::greater(), &TVisitedPage::visits);
  QList<TSuggestion> suggestions;
  for (const TVisitedPage &page : pages.mid(0, MostSuggestions)) suggestions.append({page.address, page.title});
  m_suggestions->SetIcons(m_settings.Get(Setting::UseCustomIcons) ? m_icons : nullptr);
  m_suggestions->Offer(suggestions, query);
}

void TAddressBar::HideSuggestions() {
  m_suggestions->hide();
}

void TAddressBar::RemoveEntry(const QString &address) {
  m_addresses.Remove(address);
  SetEntries(m_addresses.List());
  SaveTypedAddresses();
}

void TAddressBar::TakeDropped(const QString &address) {
  setEditText(address);
  m_addressTyped = false;
  OpenText(address, false);
}
