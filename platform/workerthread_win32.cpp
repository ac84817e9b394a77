#include "platform/workerthread.h"

#include <process.h>
#include <windows.h>

#include "platform/moduleresidence.h"

namespace ffc::platform {

struct CWorkerThread::SSystem {
  static unsigned __stdcall Run(void *pThread)
  {
    const auto &thread = *static_cast<const CWorkerThread *>(pThread);
    thread.m_fnWork(thread.m_pContext);
    return 0;
  }
};

bool CWorkerThread::Start(FnWork fnWork, void *pContext) noexcept
{
  m_fnWork = fnWork;
  m_pContext = pContext;
  m_nHandle = _beginthreadex(nullptr, 0, SSystem::Run, this, 0, nullptr);
  return m_nHandle != 0;
}

void CWorkerThread::Join() noexcept
{
  const auto hThread = reinterpret_cast<HANDLE>(m_nHandle);
  WaitForSingleObject(hThread, INFINITE);
  CloseHandle(hThread);
}

uint32_t CountUsableProcessors() noexcept
{
  DWORD_PTR nProcess = 0;
  DWORD_PTR nSystem = 0;
  GetProcessAffinityMask(GetCurrentProcess(), &nProcess, &nSystem);
  uint32_t nProcessors = 0;
  for (; nProcess != 0; nProcess &= nProcess - 1) {
    ++nProcessors;
  }
  return nProcessors > 0 ? nProcessors : 1;
}

void PrepareForThreads(void (*)()) noexcept
{
  KeepModuleResident();
}

// Nor when the process ends: the system has stopped the threads by then, wherever they were.
void WaitAtUnload(void (*)()) noexcept {}

} // namespace ffc::platform
