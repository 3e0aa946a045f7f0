// Input: a file of the tool bar.

#include "chrome/toolbar/toolbar_definition.h"
#include "require.h"
#include "store/ini_file.h"

namespace {

constexpr int Security = 21;

TToolbarEntries Read(const QByteArray &bytes) {
  return ToolbarDefinition::FromFile(TIniFile::FromBytes(bytes));
}

// As they come back from the file: separators visible, and the last button at the end where it is missing.
TToolbarEntries Returned(TToolbarEntries entries) {
  bool hasSecurity = false;
  for (TToolbarEntry &entry : entries) {
    if (entry.index == TToolbarEntry::Separator) entry.visible = true;
    hasSecurity = hasSecurity || entry.index == Security;
  }
  if (!hasSecurity) entries.append({Security, true});
  return entries.last(std::min<qsizetype>(entries.size(), ToolbarDefinition::MostEntries));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size) {
  const TToolbarEntries entries = Read(Fuzz::Input(data, size));
  REQUIRE(entries.size() <= ToolbarDefinition::MostEntries);
  const QByteArray written = ToolbarDefinition::ToBytes(entries);
  const TToolbarEntries again = Read(written);
  REQUIRE(again == Returned(entries));
  // What was once written and read stays as it is.
  REQUIRE(Read(ToolbarDefinition::ToBytes(again)) == again);
  REQUIRE(TIniFile::FromBytes(written).Sections() == QStringList(QStringLiteral("Toolbar")));
  return 0;
}
