/// \file
/// One line that shows how far the work is.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <ostream>
#include <string>

namespace ffc::host {

/// "bright field: 5 of 16 frames", rewritten in place. From any thread.
class CProgressLine {
public:
  /// \param pStream null: nothing is ever printed, as when nobody looks
  explicit CProgressLine(std::ostream *pStream) : m_pStream(pStream) {}
  ~CProgressLine() { Clear(); }
  CProgressLine(const CProgressLine &) = delete;
  CProgressLine &operator=(const CProgressLine &) = delete;

  /// \param nFrames frames that the step takes; 0 for a step without frames
  void BeginStep(const std::string &strStep, uint32_t nFrames = 0);
  /// A frame has come. Counts to the step's number and no further.
  void CountFrame();
  /// Wipes the line, so that something else can be printed.
  void Clear();

private:
  void Print();

  std::mutex m_mutex;
  std::ostream *m_pStream;
  std::string m_strStep;
  uint32_t m_nFrames = 0;
  uint32_t m_nDone = 0;
  std::size_t m_nPrinted = 0; ///< characters on the line
  std::chrono::steady_clock::time_point m_tPrinted;
};

} // namespace ffc::host
