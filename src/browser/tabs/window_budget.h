#pragma once

#include <QElapsedTimer>

// How many windows one tab's pages may ask for. A script can ask without end, and every window costs a process; what
// the user has just asked for by a click comes through unless the page turns one click into dozens.
class TWindowBudget final {
 public:
  static constexpr int Span = 10000;      // milliseconds
  static constexpr int MostByItself = 3;  // in a span, without the user
  static constexpr int MostByUser = 20;   // in a span
  static constexpr int MostUnasked = 20;  // altogether since the user did something, whatever pages came meanwhile

  explicit TWindowBudget(int span) : m_span(span) {}

  // True when there is one left, which is then taken.
  [[nodiscard]] bool Take(bool userActed);
  // The user has done something in the tab.
  void Renew() { m_unasked = 0; }

 private:
  int m_span;
  QElapsedTimer m_since;
  int m_byItself = 0;
  int m_byUser = 0;
  int m_unasked = 0;
};
