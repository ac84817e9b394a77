#include "host/headless/progressline.h"

#include <algorithm>

namespace ffc::host {
namespace {

constexpr std::chrono::milliseconds PRINT_INTERVAL(100);

} // namespace

void CProgressLine::BeginStep(const std::string &strStep, uint32_t nFrames)
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_strStep = strStep;
  m_nFrames = nFrames;
  m_nDone = 0;
  Print();
}

void CProgressLine::CountFrame()
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  if (m_nDone >= m_nFrames) {
    return;
  }
  ++m_nDone;
  if (m_nDone == m_nFrames || std::chrono::steady_clock::now() - m_tPrinted >= PRINT_INTERVAL) {
    Print();
  }
}

void CProgressLine::Clear()
{
  const std::lock_guard<std::mutex> lock(m_mutex);
  m_nFrames = 0;
  if (m_pStream != nullptr && m_nPrinted > 0) {
    *m_pStream << '\r' << std::string(m_nPrinted, ' ') << '\r' << std::flush;
  }
  m_nPrinted = 0;
}

void CProgressLine::Print()
{
  if (m_pStream == nullptr) {
    return;
  }
  std::string strLine = m_strStep;
  if (m_nFrames > 0) {
    strLine += ": " + std::to_string(m_nDone) + " of " + std::to_string(m_nFrames) + " frames";
  }
  const std::size_t nLength = strLine.size();
  strLine.resize(std::max(nLength, m_nPrinted), ' ');
  *m_pStream << '\r' << strLine << std::flush;
  m_nPrinted = nLength;
  m_tPrinted = std::chrono::steady_clock::now();
}

} // namespace ffc::host
