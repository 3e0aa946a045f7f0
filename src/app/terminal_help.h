#pragma once

// Says on the terminal what the command line asks for: how the program is called, its version, or that a switch is
// unknown. In the user's language, and without a screen.
void TellOnTerminal(int argc, char **argv);
