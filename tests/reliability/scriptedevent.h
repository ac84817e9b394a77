/// \file
/// Time that passes only in waits, for tests of who waits for what.
#pragma once

#include <cstdint>
#include <functional>

/// What the events of this program wait for. On one thread.
class CScriptedTime {
public:
  /// Called at the beginning of each wait whose event is not signalled; may signal it.
  /// \return milliseconds that pass until then; the whole wait passes when nobody signals it
  using FnWait = std::function<uint32_t(uint32_t nMilliseconds)>;

  static void SetWait(FnWait fnWait);
  /// Milliseconds and waits since the last call. Polls are no waits.
  static uint64_t TakeElapsed();
  static int TakeWaits();
};
