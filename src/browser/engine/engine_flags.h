#pragma once

struct TDesktopWishes;

// Tells the engine, before its first use, what it asks of nobody by itself: whether to keep the pages' contents in the
// accessibility tree, and that pages are to be told of reduced motion and of a dark desktop. What the user has set in
// the engine's own variables (QTWEBENGINE_...) stays and wins. Needs the application object.
void SetEngineFlags(const TDesktopWishes &wishes);
