/// \file
/// Something to do at the end of a scope, on every path out of it.
#pragma once

#include <utility>

/// Runs its callable, which must not throw, when it is destroyed.
template <typename TAction>
class CScopeGuard {
public:
  explicit CScopeGuard(TAction fnAction) : m_fnAction(std::move(fnAction)) {}
  ~CScopeGuard() { m_fnAction(); }
  CScopeGuard(const CScopeGuard &) = delete;
  CScopeGuard &operator=(const CScopeGuard &) = delete;

private:
  TAction m_fnAction;
};
