#pragma once

#include <QTimer>

#include "browser/page/encryption_level.h"
#include "search/address_forms.h"
#include "search/typed_addresses.h"
#include "search/zv_combo_box.h"

class THistoryStore;
class TLanguage;
class TPageIcon;
class TPageIcons;
class TSettings;
class TSuggestionList;

// The address box (cboAddress). Enter opens what it holds, with Ctrl and Shift in the frames that the user has set,
// with Alt in a new tab. Its list holds the addresses typed before; while one is typed it is completed in the box, from
// that list (style 1), or offered in a drop-down, from that list and all visited pages (style 2).
class TAddressBar final : public TZVComboBox {
  Q_OBJECT

 public:
  // Loads the typed addresses. All references must outlive the bar.
  TAddressBar(const TLanguage &language, TSettings &settings, THistoryStore &history, QWidget *parent = nullptr);

  // Opens what the box holds, in the current tab unless the settings say otherwise.
  void Go() { Open(false); }
  // The address of the page that is shown, which the connection is told of next.
  void ShowAddress(const QString &address);
  // The mark for the connection to the page that is shown; for a page from the disk, that it is one.
  void ShowConnection(bool isSecure, TEncryptionLevel level);
  // The active tab sets out for an address. When it was typed it goes to the top of the list; the box shows it, without
  // a mark for the connection, which is not known before the page comes.
  void AddTypedAddress(const QString &address);
  // The same for a tab that is not the active one any more: the box shows another page's address.
  void FileTypedAddress(const QString &address);
  // What was opened last has led nowhere: the tab's next address was not typed.
  void ForgetTypedAddress() { m_addressTyped = false; }
  // Writes the list; when the main window goes.
  void SaveTypedAddresses();
  // Empties the list and its store.
  void ForgetTypedAddresses();
  // Asks before.
  void ClearAddressHistory();
  // The typed addresses, the newest first.
  [[nodiscard]] const QStringList &TypedAddresses() const { return m_addresses.List(); }

  // The icons of the pages that are suggested, shown with UseCustomIcons. Before this call all have the plain one.
  void SetIcons(TPageIcons &icons) { m_icons = &icons; }

  void showPopup() override;

 Q_SIGNALS:
  // `text` is to be opened as it stands (see TAddressSearch::Open).
  void OpenRequested(const QString &text, bool newTab);
  void ConnectionClicked();
  // The user drags the page by its icon.
  void DragWanted();

 protected:
  bool TakeKey(const QKeyEvent &key) override;
  void RemoveEntry(const QString &address) override;
  void TakeDropped(const QString &address) override;

 private:
  // Until it has been possible; what the store holds may become readable later.
  void LoadTypedAddresses();
  void Open(bool newTab);
  void OpenText(const QString &text, bool newTab);
  void PressEnter(Qt::KeyboardModifiers modifiers);
  // 0 none, 1 in the box, 2 drop-down.
  [[nodiscard]] int CompletionStyle() const;
  [[nodiscard]] TAddressForms Forms() const;
  [[nodiscard]] bool CompleteInline(const QKeyEvent &key);
  void WalkList(bool down);
  [[nodiscard]] bool TakeSuggestionKey(const QKeyEvent &key);
  void Suggest();
  void HideSuggestions();
  void ShowIcon();

  const TLanguage &m_language;
  TSettings &m_settings;
  THistoryStore &m_history;
  TTypedAddresses m_addresses;
  TPageIcon *m_icon;
  // Of the page that is shown.
  bool m_isSecure = false;
  TEncryptionLevel m_level = TEncryptionLevel::None;
  bool m_isOnTheWay = false;  // the address is not that page's, but one that its tab has set out for
  TPageIcons *m_icons = nullptr;
  TSuggestionList *m_suggestions;
  QTimer m_suggest;     // runs when all that was typed has been shown
  QString m_typedText;  // what the suggestions were made for
  bool m_addressTyped = false;
};
