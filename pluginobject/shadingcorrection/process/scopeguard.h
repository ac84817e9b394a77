/// \file
/// Something to do at the end of a scope, on every path out of it.
#pragma once

#include <utility>

/// Runs its callable when it is destroyed. What that throws ends there: the path out of the scope may be an
/// exception already.
template <typename TAction>
class CScopeGuard {
public:
  explicit CScopeGuard(TAction fnAction) : m_fnAction(std::move(fnAction)) {}
  ~CScopeGuard()
  {
    try {
      m_fnAction();
    } catch (...) { // NOLINT(bugprone-empty-catch): nobody is left to tell
    }
  }
  CScopeGuard(const CScopeGuard &) = delete;
  CScopeGuard &operator=(const CScopeGuard &) = delete;

private:
  TAction m_fnAction;
};
