#pragma once

class QWindow;

// Shows the window, in the state that it has, in front of all others and with the keyboard. The desktop has the last
// word and may only draw attention to it.
void BringToFront(QWindow &window);
