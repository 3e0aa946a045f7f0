#include "platform/product_info.h"

#include "platform/program_folders.h"
#include "store/ini_file.h"

TProductInfo TProductInfo::Load() {
  TIniFile file;
  const QString path = ProgramFolders::Find({}, "product.ini");
  if (!path.isEmpty()) file.Load(path);
  const auto address = [&file](const char *key) { return file.Value("Addresses", key); };
  return {address("DefaultHomePage"), address("StartupPage"), address("SearchPanelPage"), address("UpdateServer"),
          file.Value("Annotations", "Service")};
}
