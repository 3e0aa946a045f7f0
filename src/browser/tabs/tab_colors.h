#pragma once

class TZVPageControl;
class TZVOptions;

// Sets the colours of the inactive tabs from the colour scheme: "std" takes the desktop's button colours, "rev" those
// of inactive title bars, any other text the user's own two colours.
void ApplyTabColors(TZVPageControl &pages, const TZVOptions &options);
