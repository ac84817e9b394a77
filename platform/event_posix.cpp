#include "platform/event.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <new>

namespace ffc::platform {

struct CEvent::SImpl {
  std::mutex m_mutex;
  std::condition_variable m_condition;
  bool m_bSignalled = false;
};

CEvent::CEvent() noexcept : m_pImpl(new (std::nothrow) SImpl) {}

CEvent::~CEvent() = default;

void CEvent::Set() noexcept
{
  if (m_pImpl == nullptr) {
    return;
  }
  // Notified under the lock: a waiter that destroys the event right after it wakes must not do so
  // while this thread is still about to notify.
  const std::lock_guard<std::mutex> lock(m_pImpl->m_mutex);
  m_pImpl->m_bSignalled = true;
  m_pImpl->m_condition.notify_one();
}

void CEvent::Reset() noexcept
{
  if (m_pImpl == nullptr) {
    return;
  }
  const std::lock_guard<std::mutex> lock(m_pImpl->m_mutex);
  m_pImpl->m_bSignalled = false;
}

uint32_t CEvent::Wait(uint32_t nMilliseconds) noexcept
{
  constexpr uint32_t FOR_EVER = 0xFFFFFFFF;
  if (m_pImpl == nullptr) {
    return WAIT_RESULT_FAILED;
  }
  std::unique_lock<std::mutex> lock(m_pImpl->m_mutex);
  const auto isSignalled = [this] { return m_pImpl->m_bSignalled; };
  if (nMilliseconds == FOR_EVER) {
    m_pImpl->m_condition.wait(lock, isSignalled);
  } else if (!isSignalled() && (nMilliseconds == 0 || !m_pImpl->m_condition.wait_for(
                                                        lock, std::chrono::milliseconds(nMilliseconds), isSignalled))) {
    return WAIT_RESULT_TIMEOUT;
  }
  m_pImpl->m_bSignalled = false;
  return WAIT_RESULT_SIGNALLED;
}

} // namespace ffc::platform
