#include "platform/criticalsection.h"

#include <windows.h>

namespace ffc::platform {

struct CCriticalSection::SImpl {
  CRITICAL_SECTION m_stSection;

  SImpl() { InitializeCriticalSection(&m_stSection); }
  ~SImpl() { DeleteCriticalSection(&m_stSection); }
};

CCriticalSection::CCriticalSection() : m_pImpl(std::make_unique<SImpl>()) {}

CCriticalSection::~CCriticalSection() = default;

void CCriticalSection::lock()
{
  EnterCriticalSection(&m_pImpl->m_stSection);
}

void CCriticalSection::unlock()
{
  LeaveCriticalSection(&m_pImpl->m_stSection);
}

bool CCriticalSection::try_lock()
{
  return TryEnterCriticalSection(&m_pImpl->m_stSection) != FALSE;
}

} // namespace ffc::platform
