#pragma once

class QWidget;
class THistoryStore;
class TLanguage;

// Whether visited pages may be kept for only so many days, 0 for ever. The user is asked where that takes pages away
// that are there now; the question belongs to `window`. An event loop may have run when it returns.
[[nodiscard]] bool MayKeepOnly(int days, QWidget *window, const TLanguage &language, const THistoryStore &history);
