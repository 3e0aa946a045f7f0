#pragma once

#include <QString>

class QMimeData;

// A page on its way to where a link to it is to be kept: a folder, the desktop, another program.
namespace PageShortcut {

// The caller's. As text/plain, UniformResourceLocator and a list of URLs: the address; as FileGroupDescriptor and
// FileContents: one internet shortcut, named by the title made safe as a file name; as text/x-moz-url, for other
// browsers: address and title.
[[nodiscard]] QMimeData *DataOf(const QString &title, const QString &address);
// The last of these alone, beside what is there.
void AddTitled(QMimeData &data, const QString &title, const QString &address);

}  // namespace PageShortcut
