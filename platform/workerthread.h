/// \file
/// Threads that a library keeps for itself.
#pragma once

#include <cstdint>

namespace ffc::platform {

/// A thread of the library's own. Receives none of the process's signals. Stays where it is while it runs.
class CWorkerThread {
public:
  using FnWork = void (*)(void *pContext);

  /// \param fnWork throws nothing
  /// \return false when the system has no more threads
  bool Start(FnWork fnWork, void *pContext) noexcept;
  /// Waits until the work has returned. Once for each start.
  void Join() noexcept;

private:
  struct SSystem;

  FnWork m_fnWork = nullptr;
  void *m_pContext = nullptr;
  uintptr_t m_nHandle = 0; ///< the system's
};

/// How many processors the process may use, as its owner limits it. At least 1.
uint32_t CountUsableProcessors() noexcept;

/// To be called before a library's first thread starts. Where threads cannot be waited for while a library is unloaded
/// (the system holds a lock then that an ending thread needs), the library stays loaded from then on.
/// \param fnForked called in each process that is forked from this one, where the threads are not
void PrepareForThreads(void (*fnForked)()) noexcept;

/// To be called while the library is unloaded or the process ends.
/// \param fnWait waits for threads; called where that can be done then
void WaitAtUnload(void (*fnWait)()) noexcept;

} // namespace ffc::platform
