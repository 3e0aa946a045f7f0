#pragma once

// Whether the desktop reports a connection to the Internet. True as well where nobody can tell: whoever tries then
// finds out. Looked up at the first call, which may take a few milliseconds.
[[nodiscard]] bool HasInternetConnection();
