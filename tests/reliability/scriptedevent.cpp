#include "tests/reliability/scriptedevent.h"

#include <algorithm>
#include <atomic>
#include <new>
#include <utility>

#include "platform/event.h"

using ffc::platform::CEvent;
using ffc::platform::WAIT_RESULT_SIGNALLED;
using ffc::platform::WAIT_RESULT_TIMEOUT;

namespace {

CScriptedTime::FnWait s_fnWait;
uint64_t s_nElapsed = 0;
int s_nWaits = 0;

} // namespace

void CScriptedTime::SetWait(FnWait fnWait)
{
  s_fnWait = std::move(fnWait);
}

uint64_t CScriptedTime::TakeElapsed()
{
  return std::exchange(s_nElapsed, 0);
}

int CScriptedTime::TakeWaits()
{
  return std::exchange(s_nWaits, 0);
}

// In place of the platform's event, which the linker then leaves out.

struct CEvent::SImpl {
  std::atomic<bool> m_bSignalled{false};
};

CEvent::CEvent() noexcept : m_pImpl(new (std::nothrow) SImpl) {}

CEvent::~CEvent() = default;

void CEvent::Set() noexcept
{
  m_pImpl->m_bSignalled = true;
}

void CEvent::Reset() noexcept
{
  m_pImpl->m_bSignalled = false;
}

uint32_t CEvent::Wait(uint32_t nMilliseconds) noexcept
{
  if (nMilliseconds > 0 && !m_pImpl->m_bSignalled) {
    ++s_nWaits;
    const uint32_t nPassed = s_fnWait ? s_fnWait(nMilliseconds) : nMilliseconds;
    s_nElapsed += m_pImpl->m_bSignalled ? std::min(nPassed, nMilliseconds) : nMilliseconds;
  }
  return m_pImpl->m_bSignalled.exchange(false) ? WAIT_RESULT_SIGNALLED : WAIT_RESULT_TIMEOUT;
}
