#pragma once

// The program's name as message boxes and windows show it; a name, so the same in every language.
inline constexpr const char *ProgramTitle = "Zarvela";
