/// \file
/// An auto-reset event.
#pragma once

#include <cstdint>
#include <memory>

namespace ffc::platform {

/// Results of CEvent::Wait, with the values that Windows gives them.
enum EWaitResult : uint32_t {
  WAIT_RESULT_SIGNALLED = 0,
  WAIT_RESULT_TIMEOUT = 258,
  WAIT_RESULT_FAILED = 0xFFFFFFFF,
};

/// An unnamed auto-reset event, initially not signalled: one Set lets one Wait pass, and that Wait
/// resets it. Setting a signalled event changes nothing.
///
/// All operations may be called from any thread. None throws.
class CEvent {
public:
  /// When the system has no event to give, every Wait answers WAIT_RESULT_FAILED.
  CEvent() noexcept;
  ~CEvent();
  CEvent(const CEvent &) = delete;
  CEvent &operator=(const CEvent &) = delete;

  void Set() noexcept;
  void Reset() noexcept;
  /// \param nMilliseconds longest wait; 0 polls, 0xFFFFFFFF waits for ever
  /// \return an EWaitResult
  uint32_t Wait(uint32_t nMilliseconds) noexcept;

private:
  struct SImpl;
  std::unique_ptr<SImpl> m_pImpl;
};

} // namespace ffc::platform
