#include "ui/dialog_gate.h"

namespace DialogGate {

namespace {
bool closed = false;
}  // namespace

void Close() {
  closed = true;
}

void Open() {
  closed = false;
}

bool IsClosed() {
  return closed;
}

}  // namespace DialogGate
