#pragma once

class QString;
class TLanguage;

// What the security zone with this number is called; empty for one that there is none of.
[[nodiscard]] QString ZoneName(int zone, const TLanguage &language);
