#include "platform/event.h"

#include <new>

#include <windows.h>

namespace ffc::platform {

static_assert(WAIT_RESULT_SIGNALLED == WAIT_OBJECT_0);
static_assert(static_cast<DWORD>(WAIT_RESULT_TIMEOUT) == WAIT_TIMEOUT);
static_assert(static_cast<DWORD>(WAIT_RESULT_FAILED) == WAIT_FAILED);

struct CEvent::SImpl {
  HANDLE m_hEvent = CreateEventW(nullptr, FALSE, FALSE, nullptr);

  ~SImpl()
  {
    if (m_hEvent != nullptr) {
      CloseHandle(m_hEvent);
    }
  }
};

CEvent::CEvent() noexcept : m_pImpl(new (std::nothrow) SImpl) {}

CEvent::~CEvent() = default;

void CEvent::Set() noexcept
{
  if (m_pImpl != nullptr) {
    SetEvent(m_pImpl->m_hEvent);
  }
}

void CEvent::Reset() noexcept
{
  if (m_pImpl != nullptr) {
    ResetEvent(m_pImpl->m_hEvent);
  }
}

uint32_t CEvent::Wait(uint32_t nMilliseconds) noexcept
{
  return m_pImpl == nullptr ? uint32_t{WAIT_RESULT_FAILED} : WaitForSingleObject(m_pImpl->m_hEvent, nMilliseconds);
}

} // namespace ffc::platform
