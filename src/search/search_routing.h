#pragma once

#include <QString>

// Where a navigation of the search panel goes.
struct TSearchRoute {
  enum class TKind {
    Stays,         // it goes on where it is
    OpensInPanel,  // the panel opens `address` instead
    OpensInMain,   // the tabs open `address` instead
  };

  TKind kind = TKind::Stays;
  QString address{};
};

// Decides it for each navigation in turn.
class TSearchRouting final {
 public:
  // The next navigation is the panel's own and goes on untested, wherever it leads.
  void PassNext() { m_passNext = true; }
  // It did not set out after all.
  void ForgetPass() { m_passNext = false; }

  // `target` is the name of the frame or window that the navigation is for, `baseTarget` the target of the base element
  // in the document that the panel shows; both empty for none. Takes the pass, if there is one.
  [[nodiscard]] TSearchRoute BeforeNavigate(const QString &url, const QString &target, const QString &baseTarget);
  // The same of what would open a window of its own, which is no navigation of the panel: the pass stays, and a base
  // element counts for nothing but the name that it has given to the link.
  [[nodiscard]] static TSearchRoute BeforeWindow(const QString &url, const QString &target);

  // What stands behind the mark of an address that the panel is to open itself ("DEF:", in capitals or not).
  // A null text where there is no such mark.
  [[nodiscard]] static QString MarkedAddress(const QString &url);

 private:
  bool m_passNext = false;
};
