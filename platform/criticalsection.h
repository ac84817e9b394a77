/// \file
/// A lock for short sections.
#pragma once

#include <memory>

namespace ffc::platform {

/// A recursive lock between the threads of this process, for use with std::lock_guard.
class CCriticalSection {
public:
  CCriticalSection();
  ~CCriticalSection();
  CCriticalSection(const CCriticalSection &) = delete;
  CCriticalSection &operator=(const CCriticalSection &) = delete;

  void lock();
  void unlock();
  /// \return false when another thread holds the lock
  bool try_lock();

private:
  struct SImpl;
  std::unique_ptr<SImpl> m_pImpl;
};

} // namespace ffc::platform
