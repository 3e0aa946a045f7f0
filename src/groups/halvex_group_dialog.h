#pragma once

#include <QString>

#include "ui/list_editor.h"

// Shows the pages of one group file and lets the user add, change, delete and reorder them. OK writes the file; when it
// cannot be written the user is told why and the dialog stays. Cancel leaves the file alone.
class TfrmHalvexGroup final : public TListEditor {
  Q_OBJECT

 public:
  // `fileName` is an existing group file.
  TfrmHalvexGroup(const TLanguage &language, const QString &fileName, QWidget *owner = nullptr);

  // Why the file could not be read; empty when it could. The dialog is not to be shown then.
  [[nodiscard]] const QString &ReadError() const { return m_readError; }

 private:
  // A page needs a location; its name may be empty.
  [[nodiscard]] bool Accepts(QStringList &page) const override;
  [[nodiscard]] bool Save() override;

  QString m_fileName;
  QString m_readError;
};
