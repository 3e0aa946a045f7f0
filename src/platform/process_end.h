#pragma once

#include <QtGlobal>

// Ends a process of this user at once, whatever it is doing. Nothing happens when there is none of this number.
void EndProcess(qint64 process);
