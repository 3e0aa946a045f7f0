#pragma once

#include <memory>
#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>

#include "chrome/folder_view/folder_editor.h"
#include "chrome/folder_view/folder_kind.h"
#include "chrome/folder_view/folder_view.h"
#include "config/language.h"
#include "favorites/shortcut_file.h"
#include "support/shipped_files.h"

using namespace Qt::StringLiterals;

// Notes what is opened, and where.
class TNotingKind final : public TFolderKind {
 public:
  [[nodiscard]] QStringList Endings() const override { return endings; }
  [[nodiscard]] QIcon IconOf(const QString &address) const override {
    ++icons;
    QPixmap pixmap(4, 4);
    pixmap.fill(address.contains(u"a.test"_s) ? Qt::red : Qt::green);
    return pixmap;
  }
  void Open(const TFavorite &file, TOpenPlace place) override {
    static const QStringList Places{u"by setting"_s, u"new tab"_s, u"background"_s};
    opened.append(file.caption + u": "_s + Places.at(int(place)));
  }
  void OpenAll(const QString &folder) override { opened.append(u"all of "_s + QDir(folder).dirName()); }

  QStringList endings;
  QStringList opened;
  mutable int icons = 0;
};

// A tree over a folder of the disk.
class TFolderViewFixture {
 protected:
  // Once for all tests.
  void Prepare() { QVERIFY(m_language.LoadFile(SourceFile(QStringLiteral("Languages/zveng.ini")))); }
  // With a tree over a few files, each a favorite of http://NAME.test/.
  void Begin() {
    m_temporary = std::make_unique<QTemporaryDir>();
    m_root = m_temporary->filePath(u"root"_s);
    for (const char *name : {"f/x.url", "f/g/y.url", "h/z.url", "a.url", "b.url", "c.url"}) Put(QLatin1String(name));
    m_editor = std::make_unique<TFolderEditor>();
    m_kind.opened.clear();
    m_kind.endings.clear();
    Make(TFolderView::TLook::Tree);
    QCOMPARE(Rows(), (QStringList{u"f"_s, u"h"_s, u"a"_s, u"b"_s, u"c"_s}));
  }
  void End() {
    m_view.reset();
    m_editor.reset();
  }

  [[nodiscard]] QString In(const QString &name) const { return m_root + u'/' + name; }
  void Put(const QString &name) const {
    QDir(m_root).mkpath(QFileInfo(In(name)).path());
    QFile file(In(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(ShortcutFile::Bytes(u"http://%1.test/"_s.arg(QFileInfo(name).completeBaseName())));
  }
  [[nodiscard]] QModelIndex Index(const QString &name) const {
    const QModelIndex index = m_view->Model().Nearest(In(name));
    return m_view->Model().At(index).path == In(name) ? index : QModelIndex();
  }
  // The rows from top to bottom, each with a blank for each level.
  [[nodiscard]] QStringList Rows() const {
    QStringList rows;
    for (QModelIndex index = m_view->model()->index(0, 0, m_view->rootIndex()); index.isValid();
         index = m_view->indexBelow(index)) {
      QString row = index.data().toString();
      for (QModelIndex above = index.parent(); above != m_view->rootIndex(); above = above.parent()) row.prepend(u' ');
      rows.append(row);
    }
    return rows;
  }
  // In the folder below the root, with their endings.
  [[nodiscard]] QStringList OnDisk(const QString &folder = {}) const {
    QStringList names;
    for (const TFavorite &one : FavoritesFolder::List(QDir::cleanPath(In(folder)))) {
      names.append(QFileInfo(one.path).fileName());
    }
    return names;
  }
  [[nodiscard]] QStringList Selected() const {
    QStringList names;
    for (const TFavorite &one : m_view->Selected()) names.append(one.caption);
    return names;
  }
  void Make(TFolderView::TLook look) {
    m_view = std::make_unique<TFolderView>(m_kind, *m_editor, m_language, look);
    m_view->resize(300, 300);
    m_view->SetRoot(m_root, u"All"_s);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    m_view->setFocus();
    QTRY_VERIFY(m_view->Model().IsIdle());
  }
  void Expand(const QString &name) {
    m_view->expand(Index(name));
    QTRY_VERIFY(m_view->Model().IsIdle());
  }
  void Choose(const QStringList &names) {
    QStringList paths;
    for (const QString &name : names) paths.append(In(name));
    m_view->Select(paths);
    QTRY_COMPARE(m_view->Selected().size(), names.size());
  }
  void Press(const QString &key) {
    QTest::keyClick(m_view.get(), QKeySequence(key)[0].key(), QKeySequence(key)[0].keyboardModifiers());
  }
  void Settle() { QTRY_VERIFY(m_view->Model().IsIdle()); }
  [[nodiscard]] QPoint At(const QString &name, double part) const {
    const QRect row = m_view->visualRect(Index(name));
    return {row.left() + 4, row.top() + int(row.height() * part)};
  }
  bool Drop(const QMimeData &data, const QPoint &place, Qt::KeyboardModifiers modifiers = {}) {
    QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, modifiers);
    QApplication::sendEvent(m_view->viewport(), &enter);
    QDragMoveEvent move(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, modifiers);
    QApplication::sendEvent(m_view->viewport(), &move);
    QDropEvent drop(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, modifiers);
    QApplication::sendEvent(m_view->viewport(), &drop);
    return enter.isAccepted() && move.isAccepted();
  }

  TLanguage m_language;
  TNotingKind m_kind;
  std::unique_ptr<TFolderEditor> m_editor;
  std::unique_ptr<QTemporaryDir> m_temporary;
  QString m_root;
  std::unique_ptr<TFolderView> m_view;
};
