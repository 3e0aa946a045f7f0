#pragma once

class QWidget;

// Puts a window that is not yet shown in the middle of the screen that its parent is on. Desktops that place windows
// themselves ignore this.
void CentreOnScreen(QWidget &window);
