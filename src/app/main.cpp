#include "app/program_entry.h"

int main(int argc, char **argv) { return RunProgram(argc, argv); }
