#include "ui/motion.h"

namespace {

bool isReduced = false;

}  // namespace

void Motion::SetReduced(bool reduced) {
  isReduced = reduced;
}

bool Motion::IsReduced() {
  return isReduced;
}
