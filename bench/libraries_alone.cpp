// Loads the libraries and ends: the part of a start that no program of this kind can save.
//   libraries_alone --versions     tells which ones they are, and the compiler

#include <QtCore/qglobal.h>
#include <QtWebEngineCore/qtwebenginecoreglobal.h>
#include <cstdio>
#include <cstring>

namespace {

#ifdef __clang__
constexpr char Compiler[] = "clang " __clang_version__;
#else
constexpr char Compiler[] = "g++ " __VERSION__;
#endif

}  // namespace

int main(int argc, char **argv) {
  if (argc == 2 && std::strcmp(argv[1], "--versions") == 0) {
    std::printf("%s, Qt %s, engine %s (%s, mended up to %s)\n", Compiler, qVersion(), qWebEngineVersion(),
                qWebEngineChromiumVersion(), qWebEngineChromiumSecurityPatchVersion());
  }
  return qWebEngineVersion() == nullptr;
}
