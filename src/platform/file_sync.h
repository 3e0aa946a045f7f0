#pragma once

class QFileDevice;

// Waits until what was written to the open file is on its disk. False when it could not be brought there: the disk was
// full after all, or is gone.
[[nodiscard]] bool SyncToDisk(QFileDevice &file);
