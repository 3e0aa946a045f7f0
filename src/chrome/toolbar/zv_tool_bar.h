#pragma once

#include <QWidget>
#include <vector>

#include "chrome/toolbar/toolbar_definition.h"

class QAction;
class QMenu;
class QToolButton;
class TActions;
class TLanguage;
struct TToolButtonKind;

// The tool bar (tbMain): flat buttons in one row, made of a list of entries. What does not fit its width does not show;
// whoever holds it offers that in a menu.
class TZVToolBar final : public QWidget {
  Q_OBJECT

 public:
  // Both must outlive this object. Without `hasSearchMenu` the search button is a plain one.
  TZVToolBar(const TActions &actions, const TLanguage &language, bool hasSearchMenu, QWidget *parent);

  // Builds the whole bar anew.
  void SetEntries(const TToolbarEntries &entries);
  [[nodiscard]] const TToolbarEntries &Entries() const { return m_entries; }
  // The button of this object name, whether or not it shows; nullptr when it is not on the bar.
  [[nodiscard]] QToolButton *FindButton(const QString &name) const;

  // Where that button is on the screen, or the end of the bar where there is no room for it; empty when it is not on
  // the bar or the user has put it away.
  [[nodiscard]] QRect PlaceOf(const QString &name) const;

  // Colours at all times, or only under the mouse and otherwise one ink.
  void SetShowsColor(bool shows);
  [[nodiscard]] bool ShowsColor() const { return m_showsColor; }

  // The width at which everything fits, in pixels.
  [[nodiscard]] int Length() const;
  // Puts what lies beyond the bar's right end, in part or as a whole, into `menu`, from left to right; the left one
  // where languages are read from right to left.
  void AddRestTo(QMenu &menu) const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

  bool eventFilter(QObject *watched, QEvent *event) override;

 Q_SIGNALS:
  void EntriesChanged();

 protected:
  void resizeEvent(QResizeEvent *event) override;
  void changeEvent(QEvent *event) override;
  void paintEvent(QPaintEvent *event) override;

 private:
  struct TItem {
    const TToolButtonKind *kind = nullptr;  // none for a separator, and for an index that no kind has
    QToolButton *button = nullptr;          // none for a separator
    bool shows = false;
    int left = 0;  // pixels, as if read from left to right
    int width = 0;

    [[nodiscard]] int Right() const { return left + width; }
  };

  [[nodiscard]] TItem Build(const TToolbarEntry &entry);
  [[nodiscard]] QToolButton *BuildButton(const TToolButtonKind *kind);
  void Follow(QToolButton *button, QAction *action);
  void SetIcon(const TItem &item) const;
  [[nodiscard]] bool DropsMenu(const TToolButtonKind &kind) const;
  void PlaceItems();
  void ShowItems();
  void AddRestItem(QMenu &menu, const TItem &item) const;

  const TActions &m_actions;
  const TLanguage &m_language;
  bool m_hasSearchMenu;
  bool m_showsColor = false;
  TToolbarEntries m_entries;
  std::vector<TItem> m_items;  // one for each entry
};
