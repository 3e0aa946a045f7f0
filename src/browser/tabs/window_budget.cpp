#include "browser/tabs/window_budget.h"

bool TWindowBudget::Take(bool userActed) {
  if (!m_since.isValid() || m_since.elapsed() >= m_span) {
    m_since.start();
    m_byItself = 0;
    m_byUser = 0;
  }
  if (userActed) return ++m_byUser <= MostByUser;
  return ++m_byItself <= MostByItself && ++m_unasked <= MostUnasked;
}
