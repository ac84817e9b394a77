/// \file
/// How long the event loop stands still.
#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

#include <QObject>
#include <QTimer>

namespace ffc::test {

/// Watches the event loop of the thread that makes it. What the machine itself takes from every thread, as one of its
/// own tells that does nothing else, is left out.
class CEventGaps {
public:
  CEventGaps() : m_thread([this] { WatchMachine(); })
  {
    QObject::connect(&m_timer, &QTimer::timeout, [this] { Note(); });
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.start(STEP_MS);
    m_tLast = Clock::now();
  }
  ~CEventGaps()
  {
    m_bEnd = true;
    m_thread.join();
  }
  CEventGaps(const CEventGaps &) = delete;
  CEventGaps &operator=(const CEventGaps &) = delete;

  /// The longest since the last call, in milliseconds.
  int64_t Take()
  {
    Note();
    const int64_t nMachine = m_nMachine.exchange(0);
    return std::max<int64_t>(0, std::exchange(m_nLongest, 0) - nMachine);
  }

private:
  using Clock = std::chrono::steady_clock;
  static constexpr int STEP_MS = 5;

  static int64_t GetMs(Clock::time_point tFrom)
  {
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - tFrom).count();
  }

  void Note()
  {
    m_nLongest = std::max(m_nLongest, GetMs(m_tLast));
    m_tLast = Clock::now();
  }

  void WatchMachine()
  {
    while (!m_bEnd) {
      const Clock::time_point tBegin = Clock::now();
      std::this_thread::sleep_for(std::chrono::milliseconds(STEP_MS));
      m_nMachine = std::max(m_nMachine.load(), GetMs(tBegin));
    }
  }

  QTimer m_timer;
  Clock::time_point m_tLast;
  int64_t m_nLongest = 0;
  std::atomic<int64_t> m_nMachine{0};
  std::atomic<bool> m_bEnd{false};
  std::thread m_thread; ///< last: it uses the others
};

} // namespace ffc::test
