#pragma once

#include <QString>

// Makes the folder `path` with its parents, private to the user (mode 0700). True also when it is there already; false
// when it cannot be made, or when something else has its name.
bool MakePrivateFolder(const QString &path);
