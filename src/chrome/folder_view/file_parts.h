#pragma once

#include <functional>
#include <QIcon>
#include <QList>
#include <QString>
#include <QStringList>

class QMimeData;
enum class TOpenPlace;

// One of the things that a file holds, for a row below it.
struct TFilePart {
  QString caption{};  // fit for the screen
  QString address{};  // where it leads
  QString line{};     // as the file has it: what it is known by when the file is read again
  bool isLocked = false;
};

// Such a row in its file.
struct TFilePartPlace {
  QString file{};
  int position = -1;  // from 0, as it was seen; none where it is -1
  TFilePart part{};
};

// What was done to parts.
struct TFilePartsChange {
  // Takes it back; answers with the reason why not, or with nothing. None where nothing was done.
  std::function<QString()> undo{};
  QString error{};  // of what could not be done
  // The parts that were added or moved, where they are now.
  QString file{};
  QStringList lines{};
};

// What files of one kind hold, and what can be done with it. Whoever changes a file looks at it as it is then: what is
// shown may be older.
class TFileParts {
 public:
  virtual ~TFileParts() = default;

  // What the file holds, in its order. Called on the thread of the folder's reader.
  using TRead = QList<TFilePart> (*)(const QString &file);
  [[nodiscard]] virtual TRead Reader() const = 0;
  [[nodiscard]] virtual QIcon IconOf(const TFilePart &part) const = 0;
  // What is to be said of its state, for hints and screen readers; may be empty.
  [[nodiscard]] virtual QString NoteOf(const TFilePart &part) const = 0;
  virtual void Open(const TFilePart &part, TOpenPlace place) = 0;

  virtual TFilePartsChange Remove(const QList<TFilePartPlace> &parts) = 0;
  // To another place in their file: before `before`, or to its end where that is none.
  virtual TFilePartsChange Move(const QList<TFilePartPlace> &parts, const TFilePartPlace &before) = 0;

  // What a drag of these, or a clipboard, carries. The caller's.
  [[nodiscard]] virtual QMimeData *DataOf(const QList<TFilePartPlace> &parts) const = 0;
  // Parts of this kind of file; where Take is not told to copy them they go from where they are.
  [[nodiscard]] virtual bool AreParts(const QMimeData &data) const = 0;
  // Whether Take can put anything of it into a file; asked when a drag comes.
  [[nodiscard]] virtual bool CanTake(const QMimeData &data) const = 0;
  virtual TFilePartsChange Take(const QMimeData &data, const QString &file, const TFilePartPlace &before,
                                bool isCopied) = 0;
};
