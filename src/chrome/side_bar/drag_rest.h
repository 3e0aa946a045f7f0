#pragma once

#include <functional>

class QWidget;

// Calls `handler` each time something that is dragged has rested on the widget for a while, whether the widget would
// take it or not. The widget must accept drops.
void WhenDragRests(QWidget *widget, const std::function<void()> &handler);
