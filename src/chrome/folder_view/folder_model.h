#pragma once

#include <memory>
#include <optional>
#include <QAbstractItemModel>
#include <vector>

#include "chrome/folder_view/folder_reader.h"

class TFolderKind;

// A folder on the disk with all below it, for trees and lists. Its only row at the top is the folder itself. Each level
// is read when it is first wanted (fetchMore), on a thread, and again by Refresh; what is still there keeps its index.
// Where files hold parts (TFolderKind::Parts) those are rows below them, read in the same way; such a row has a path,
// too, though not on the disk.
class TFolderModel final : public QAbstractItemModel {
  Q_OBJECT

 public:
  enum class TShow { All, FoldersOnly };

  // `kind` must outlive this object.
  TFolderModel(const TFolderKind &kind, TShow show, QObject *parent = nullptr);
  ~TFolderModel() override;

  // Begins anew with that folder, which need not be there, and reads it.
  void SetRoot(const QString &path, const QString &caption);
  [[nodiscard]] QString Root() const;
  [[nodiscard]] QModelIndex RootIndex() const;
  // One without a path for an index that is none.
  [[nodiscard]] TFavorite At(const QModelIndex &index) const;
  [[nodiscard]] bool IsPart(const QModelIndex &index) const;
  // One without a file for an index that is none of a part.
  [[nodiscard]] TFilePartPlace PartAt(const QModelIndex &index) const;
  // The path that the first part of that line has in its file.
  [[nodiscard]] static QString PathOfPart(const QString &file, const QString &line);
  // That of the path or, as far as it has been read, of the nearest folder above it; none where it lies elsewhere.
  [[nodiscard]] QModelIndex Nearest(const QString &path) const;
  // Looks again at all that has been read, and at what the files lead to when they are next asked for.
  void Refresh();
  // Nothing is being read.
  [[nodiscard]] bool IsIdle() const { return m_reading == 0 && !m_readsAgain; }
  // What was called `from` is now `to`, in the same folder: it stays what it is.
  void Rename(const QString &from, const QString &to);
  // What that file leads to has changed.
  void ForgetTarget(const QString &path);

  [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
  [[nodiscard]] QModelIndex parent(const QModelIndex &child) const override;
  [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
  [[nodiscard]] bool hasChildren(const QModelIndex &parent = {}) const override;
  [[nodiscard]] bool canFetchMore(const QModelIndex &parent) const override;
  void fetchMore(const QModelIndex &parent) override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex &index) const override;
  [[nodiscard]] QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
  // A new caption is only told, by Renamed.
  bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;

 Q_SIGNALS:
  // Before and after rows come, go or change their places.
  void AboutToChange();
  void Changed();
  // A folder has been read; IsIdle says whether it was the last.
  void Read();
  void Renamed(const TFavorite &favorite, const QString &caption);

 private:
  struct TNode;

  [[nodiscard]] TNode *NodeAt(const QModelIndex &index) const;
  [[nodiscard]] static bool IsPart(const TNode &node);
  // A folder, or a file with parts.
  [[nodiscard]] bool Holds(const TNode &node) const;
  [[nodiscard]] QModelIndex IndexOf(const TNode &node) const;
  [[nodiscard]] QString PathOf(const TNode &node) const;
  // The node of that path, or null.
  [[nodiscard]] TNode *Find(const QString &path) const;
  void Want(TNode &folder);
  void WantAgain(TNode &folder);
  void OnFolderRead(const QString &folder, const TFavorites &favorites, quint64 stamp);
  void OnPartsRead(const QString &file, const QList<TFilePart> &parts, quint64 stamp);
  void OnTargetRead(const QString &path, const QString &target);
  void Finish();
  // With `parts` these are the parts of a file, in the same order.
  void Update(TNode &folder, const TFavorites &favorites, const QList<TFilePart> &parts = {});
  void RemoveMissing(TNode &folder, const QHash<QString, int> &places, const TFavorites &favorites);
  void Arrange(TNode &folder, const QHash<QString, int> &places);
  void AddNew(TNode &folder, const TFavorites &favorites, const QList<TFilePart> &parts);
  [[nodiscard]] QIcon IconOf(TNode &node) const;
  [[nodiscard]] QVariant DataOf(const TFilePart &part, int role) const;

  const TFolderKind &m_kind;
  TShow m_show;
  std::unique_ptr<TNode> m_root;
  TFolderReader m_reader;
  int m_reading = 0;  // questions that are open
  bool m_readsAgain = false;
};
