#include "platform/file_sync.h"

#include <unistd.h>
#include <QFileDevice>

bool SyncToDisk(QFileDevice &file) {
  return file.flush() && fdatasync(file.handle()) == 0;
}
