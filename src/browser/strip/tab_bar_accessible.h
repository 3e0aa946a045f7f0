#pragma once

#include <QAccessibleWidget>
#include <QPointer>

class TTabBarView;
class QWidget;
struct TTab;

// The strip as screen readers see it: a tab list. Its children are the visible tabs in their order, then the scroll
// buttons.
class TTabBarAccessible final : public QAccessibleWidget {
 public:
  explicit TTabBarAccessible(TTabBarView *view);

  // Makes Qt know this class; further calls do nothing.
  static void Install();
  // Tells screen readers what has happened to a tab; a hidden one is none of their business.
  static void Announce(TTabBarView &view, QAccessible::Event type, const TTab *tab);
  // Another tab is active now than `before`, which may be null.
  static void AnnounceActive(TTabBarView &view, const TTab *before);
  // The strip has got the keyboard, and in it the active tab.
  static void AnnounceFocus(TTabBarView &view);
  // The tab has another place. Whoever has moved it by keyboard hears where it is now.
  static void AnnounceMove(TTabBarView &view, const TTab *tab);

  [[nodiscard]] int childCount() const override;
  [[nodiscard]] QAccessibleInterface *child(int index) const override;
  [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override;
  [[nodiscard]] QAccessibleInterface *childAt(int x, int y) const override;
  [[nodiscard]] QAccessibleInterface *focusChild() const override;
  [[nodiscard]] QString text(QAccessible::Text kind) const override;

 private:
  [[nodiscard]] TTabBarView *View() const;
  [[nodiscard]] QAccessibleInterface *InterfaceOf(TTab *tab) const;
};

// One tab. It lives as long as the tab does, and is found by its page.
class TTabAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  TTabAccessible(TTabBarView *view, QWidget *page);

  [[nodiscard]] bool isValid() const override;
  [[nodiscard]] QObject *object() const override { return nullptr; }
  [[nodiscard]] QAccessibleInterface *parent() const override;
  [[nodiscard]] QAccessibleInterface *child(int) const override { return nullptr; }
  [[nodiscard]] QAccessibleInterface *childAt(int, int) const override { return nullptr; }
  [[nodiscard]] int childCount() const override { return 0; }
  [[nodiscard]] int indexOfChild(const QAccessibleInterface *) const override { return -1; }
  [[nodiscard]] QString text(QAccessible::Text kind) const override;
  void setText(QAccessible::Text, const QString &) override {}
  [[nodiscard]] QRect rect() const override;
  [[nodiscard]] QAccessible::Role role() const override { return QAccessible::PageTab; }
  [[nodiscard]] QAccessible::State state() const override;
  void *interface_cast(QAccessible::InterfaceType type) override;

  [[nodiscard]] QStringList actionNames() const override;
  void doAction(const QString &name) override;
  [[nodiscard]] QStringList keyBindingsForAction(const QString &) const override { return {}; }

  [[nodiscard]] TTab *Tab() const;  // nullptr once it is gone

 private:
  QPointer<TTabBarView> m_view;
  QWidget *m_page;
};
