// Loads the libraries and ends: the part of a start that no program of this kind can save.

#include <QtWebEngineCore/qtwebenginecoreglobal.h>

int main() {
  return qWebEngineVersion() == nullptr;
}
