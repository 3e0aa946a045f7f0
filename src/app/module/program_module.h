#pragma once

class TInstanceLock;

// The one door of the module that holds the window and the engine. It is loaded only by a start that is going to run,
// so that a start that merely hands its address over need not wait for the engine's libraries.
extern "C" {
using TZarvelaRun = int(int argc, char **argv, TInstanceLock *lock, bool ask);
[[gnu::visibility("default")]] int ZarvelaRun(int argc, char **argv, TInstanceLock *lock, bool ask);
}
inline constexpr const char *ZarvelaRunName = "ZarvelaRun";
