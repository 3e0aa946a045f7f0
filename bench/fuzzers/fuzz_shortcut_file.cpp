// Input: a byte that says which kind of file it is, and the file; or, read as text, an address and names of an order.

#include "favorites/favorites_order.h"
#include "favorites/shortcut_file.h"
#include "platform/native_path.h"
#include "require.h"

using ShortcutFile::TKind;

namespace {

void RequireLine(const QString &address) {
  for (const QChar character : address) {
    REQUIRE(character.category() != QChar::Other_Control && character != QChar::LineSeparator);
  }
  REQUIRE(ShortcutFile::OneLine(address) == address);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size) {
  const QByteArray input = Fuzz::Input(data, size);
  if (input.isEmpty()) return 0;
  static constexpr TKind Kinds[] = {TKind::Url, TKind::Desktop, TKind::Webloc, TKind::None};
  // In memory of its own, so that reading past the end is seen.
  const QByteArray file(input.constData() + 1, input.size() - 1);
  const QString address = ShortcutFile::AddressIn(file, Kinds[uchar(input.at(0)) % 4]);
  RequireLine(address);
  REQUIRE(ShortcutFile::AddressIn(ShortcutFile::Bytes(address), TKind::Url) == address);

  const QString line = ShortcutFile::OneLine(Fuzz::Text(file));
  RequireLine(line);
  REQUIRE(ShortcutFile::AddressIn(ShortcutFile::Bytes(line), TKind::Url) == line);

  QStringList names;
  for (const QByteArray &name : file.split(Fuzz::Part)) {
    const QString text = NativePath::ToText(name);
    REQUIRE(NativePath::ToBytes(text) == name);
    REQUIRE(NativePath::IsPlain(text) == name.isValidUtf8());
    if (!name.isEmpty()) names.append(text);
  }
  const QByteArray order = FavoritesOrder::Bytes(names);
  REQUIRE(order.isValidUtf8() && FavoritesOrder::NamesIn(order) == names);
  (void)FavoritesOrder::NamesIn(file);
  return 0;
}
