#pragma once

class TInstanceLock;

// The doors of the module that holds the window and the engine. It is loaded only by a start that is going to run,
// so that a start that merely hands its address over need not wait for the engine's libraries.
extern "C" {
using TZarvelaRun = int(int argc, char **argv, TInstanceLock *lock, bool ask);
using TZarvelaTell = void(int argc, char **argv);
[[gnu::visibility("default")]] int ZarvelaRun(int argc, char **argv, TInstanceLock *lock, bool ask);
// What is said on the terminal, without a window; see TellOnTerminal.
[[gnu::visibility("default")]] void ZarvelaTell(int argc, char **argv);
}
inline constexpr const char *ZarvelaRunName = "ZarvelaRun";
inline constexpr const char *ZarvelaTellName = "ZarvelaTell";
