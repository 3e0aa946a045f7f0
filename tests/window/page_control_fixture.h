#pragma once

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QWheelEvent>
#include "browser/strip/page_control.h"
#include "browser/strip/tab_bar_view.h"

// A control in a window, its pages known by their one-word captions.
struct TStrip {
  explicit TStrip(const QString &names = QString(), QSize size = {800, 400}) {
    control.resize(size);
    for (const QString &name : names.split(u' ', Qt::SkipEmptyParts)) Add(name);
    control.show();
    control.activateWindow();
    (void)QTest::qWaitForWindowActive(&control);
    Settle();
  }

  QWidget *Add(const QString &name, int position = -1, bool visible = true) {
    auto *page = new QLineEdit(name);
    control.InsertPage(position, page, visible);
    control.SetPageCaption(page, name);
    return page;
  }

  // The name that a page was added with, "-" for none.
  static QString NameOf(const QWidget *page) {
    return page ? static_cast<const QLineEdit *>(page)->text() : QStringLiteral("-");
  }

  void AddMany(int count) {
    for (int i = 0; i < count; ++i) Add(QStringLiteral("a-longer-caption-%1").arg(i));
    Settle();
  }

  QWidget *Named(const QString &name) const {
    for (int i = 0; i < control.PageCount(); ++i) {
      if (control.PageCaption(control.Page(i)) == name) return control.Page(i);
    }
    return nullptr;
  }

  // The pages in their order, the active one marked with a star, hidden ones in brackets.
  QString State() const {
    QStringList names;
    for (int i = 0; i < control.PageCount(); ++i) {
      QWidget *page = control.Page(i);
      const QString name = control.PageCaption(page);
      names << (page == control.ActivePage() ? u'*' + name : control.IsPageVisible(page) ? name : u'(' + name + u')');
    }
    return names.join(u' ');
  }

  TTabBarView *View() const { return control.findChild<TTabBarView *>(); }
  QWidget *PageAt(const QPoint &inView) const {
    const TTab *tab = View()->TabAt(inView);
    return tab ? tab->page : nullptr;
  }
  QPoint Centre(const QString &name) const { return InView(control.TabRect(Named(name)).center()); }
  QPoint CloseButton(const QString &name) const {
    const QRect tab = control.TabRect(Named(name));
    const int inset = 16;
    const bool mirrored = control.layoutDirection() == Qt::RightToLeft;
    return InView(QPoint(mirrored ? tab.left() + inset : tab.right() - inset, tab.center().y()));
  }
  QPoint InView(const QPoint &point) const { return View()->mapFrom(&control, point); }
  void Click(const QPoint &at, Qt::MouseButton button = Qt::LeftButton) { QTest::mouseClick(View(), button, {}, at); }
  void Wheel(const QPoint &turn) {
    const QPointF at(10, 10);
    QWheelEvent event(at, View()->mapToGlobal(at), {}, turn, Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(View(), &event);
  }
  void Drag(const QPoint &from, const QPoint &to, int steps = 40) {
    QTest::mousePress(View(), Qt::LeftButton, {}, from);
    for (int i = 1; i <= steps; ++i) DragTo(from + (to - from) * (qreal(i) / steps));
    QTest::mouseRelease(View(), Qt::LeftButton, {}, to);
  }
  void DragTo(const QPointF &at) {
    QMouseEvent move(QEvent::MouseMove, at, View()->mapToGlobal(at), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(View(), &move);
  }
  static void Settle() { QCoreApplication::processEvents(); }

  TZVPageControl control;
};
