#pragma once

// Once the program has begun to end without asking (a log-out, a signal), no dialog opens any more: nobody is there to
// answer, and a page that asks in a loop would keep the process alive. A question that is asked then is answered as
// Escape would.
namespace DialogGate {

void Close();
void Open();
[[nodiscard]] bool IsClosed();

}  // namespace DialogGate
