#include "chrome/favorites/favorite_dialog.h"

#include "config/language.h"
#include "favorites/favorites_folder.h"
#include "favorites/shortcut_file.h"
#include "platform/native_path.h"
#include "ui_favorite_dialog.h"

namespace {

constexpr int WidthInCharacters = 60;

}  // namespace

TfrmFavorite::TfrmFavorite(const TLanguage &language, const TFavorite &favorite, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::TfrmFavorite>()) {
  m_ui->setupUi(this);
  language.TranslateForm(this, "FAVORITES");
  m_ui->edtName->setText(favorite.caption);
  m_ui->edtName->setMinimumWidth(fontMetrics().averageCharWidth() * WidthInCharacters);
  m_firstName = Name();
  m_ui->lblPath->setText(NativePath::Shown(favorite.path));
  const bool hasAddress = ShortcutFile::KindOf(favorite.path) != ShortcutFile::TKind::None && !favorite.isFolder;
  m_ui->lblAddress->setVisible(hasAddress);
  m_ui->edtAddress->setVisible(hasAddress);
  m_ui->edtAddress->setMaxLength(int(ShortcutFile::LongestAddress));
  if (hasAddress) m_ui->edtAddress->setText(ShortcutFile::Read(favorite.path));
  m_ui->edtAddress->setCursorPosition(0);
  m_ui->edtAddress->setModified(false);
  const auto update = [this, hasAddress] {
    m_ui->cmdOK->setEnabled(!Name().isEmpty() && (!hasAddress || !IsAddressChanged() || !Address().isEmpty()));
  };
  connect(m_ui->edtName, &QLineEdit::textChanged, this, update);
  connect(m_ui->edtAddress, &QLineEdit::textEdited, this, update);
}

TfrmFavorite::~TfrmFavorite() = default;

QString TfrmFavorite::Name() const {
  return m_ui->edtName->text().trimmed();
}

QString TfrmFavorite::Address() const {
  return m_ui->edtAddress->text().trimmed();
}

bool TfrmFavorite::IsNameChanged() const {
  return Name() != m_firstName;
}

bool TfrmFavorite::IsAddressChanged() const {
  return m_ui->edtAddress->isModified();
}
