#include "platform/criticalsection.h"

#include <mutex>

namespace ffc::platform {

struct CCriticalSection::SImpl {
  std::recursive_mutex m_mutex;
};

CCriticalSection::CCriticalSection() : m_pImpl(std::make_unique<SImpl>()) {}

CCriticalSection::~CCriticalSection() = default;

void CCriticalSection::lock()
{
  m_pImpl->m_mutex.lock();
}

void CCriticalSection::unlock()
{
  m_pImpl->m_mutex.unlock();
}

bool CCriticalSection::try_lock()
{
  return m_pImpl->m_mutex.try_lock();
}

} // namespace ffc::platform
