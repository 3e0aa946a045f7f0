#pragma once

class TLanguage;

// Says that the instance which is running does not answer, and asks whether to open a window of this process's own.
[[nodiscard]] bool AskRunBeside(const TLanguage &language);
