#pragma once

#include "app/command_line.h"

class TInstanceLock;

// Runs the program from its command line to its end; returns the exit code of the process. `lock` is held when this is
// the first instance; a process that may run beside the first one takes it over when the first one ends. With `ask` the
// first one does not answer, and the user is asked whether to run beside it.
int RunProgram(int argc, char **argv, TInstanceLock &lock, bool ask);
