#include "platform/workerthread.h"

#include <algorithm>
#include <csignal>
#include <thread>

#include <pthread.h>
#if defined(__linux__)
#include <sched.h>
#endif

namespace ffc::platform {

struct CWorkerThread::SSystem {
  static void *Run(void *pThread)
  {
    const auto &thread = *static_cast<const CWorkerThread *>(pThread);
    thread.m_fnWork(thread.m_pContext);
    return nullptr;
  }
};

bool CWorkerThread::Start(FnWork fnWork, void *pContext) noexcept
{
  m_fnWork = fnWork;
  m_pContext = pContext;
  // A thread starts with the signals of its maker.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before); // fails for an unknown first argument alone
  pthread_t handle = {};
  const bool bStarted = pthread_create(&handle, nullptr, SSystem::Run, this) == 0;
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  static_assert(sizeof handle <= sizeof m_nHandle);
  m_nHandle = (uintptr_t)handle; // a number or a pointer
  return bStarted;
}

void CWorkerThread::Join() noexcept
{
  pthread_join((pthread_t)m_nHandle, nullptr);
}

uint32_t CountUsableProcessors() noexcept
{
  uint32_t nProcessors = std::thread::hardware_concurrency(); // 0 when it is not known
#if defined(__linux__)
  cpu_set_t stSet;
  CPU_ZERO(&stSet);
  if (sched_getaffinity(0, sizeof stSet, &stSet) == 0) { // but on machines of more processors than the set has
    nProcessors = static_cast<uint32_t>(CPU_COUNT(&stSet));
  }
#endif
  return std::max(nProcessors, 1U);
}

void PrepareForThreads(void (*fnForked)()) noexcept
{
  pthread_atfork(nullptr, nullptr, fnForked);
}

void WaitAtUnload(void (*fnWait)()) noexcept
{
  fnWait();
}

} // namespace ffc::platform
