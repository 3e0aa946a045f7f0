#pragma once

class QWidget;
class TDownloadList;
class TLanguage;
class TSettings;

// Asks whether the program is to end, as the setting ConfirmShutdown says; where downloads run, always. True to end it.
// "Don't ask again" counts whichever button was pressed.
[[nodiscard]] bool AskShutdown(QWidget *window, const TLanguage &language, TSettings &settings,
                               const TDownloadList &downloads);
