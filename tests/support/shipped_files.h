#pragma once

#include <QString>

// A file or folder of the source tree, by its path from the tree's top.
QString SourceFile(const QString &path);

// What was built, by its path from the folder of the build.
QString BuiltFile(const QString &path);

// Makes the shipped language files visible to a test program, which does not lie beside them as the browser does: links
// them into the user's half of the program's folder.
void UseShippedLanguages();
