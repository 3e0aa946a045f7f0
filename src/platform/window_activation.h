#pragma once

class QWindow;

// Shows the window, out of the task bar if it was minimised, in front of all others and with the keyboard. The desktop
// has the last word and may only draw attention to it.
void BringToFront(QWindow &window);
