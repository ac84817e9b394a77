#include "tests/camera/framecollector.h"

#include <chrono>
#include <cstring>
#include <utility>

namespace ffc::test {

std::vector<uint16_t> SKeptFrame::GetSamples() const
{
  if (listBytes.size() == std::size_t{stInfo.nWidth} * stInfo.nHeight) {
    return {listBytes.begin(), listBytes.end()};
  }
  std::vector<uint16_t> listSamples(listBytes.size() / 2);
  std::memcpy(listSamples.data(), listBytes.data(), listSamples.size() * 2);
  return listSamples;
}

CFrameCollector::CFrameCollector(camera::ICamera &camera)
{
  camera.SetFrameCallback([this](const camera::SCameraFrame &stFrame) { Receive(stFrame); });
}

std::vector<SKeptFrame> CFrameCollector::Take(std::size_t nCount)
{
  Expect(nCount);
  return Collect();
}

void CFrameCollector::Expect(std::size_t nCount)
{
  const std::lock_guard lock(m_mutex);
  m_listFrames.clear();
  m_nWanted = nCount;
}

std::vector<SKeptFrame> CFrameCollector::Collect()
{
  std::unique_lock lock(m_mutex);
  m_condition.wait_for(lock, std::chrono::seconds(10), [&] { return m_listFrames.size() >= m_nWanted; });
  m_nWanted = 0;
  return std::exchange(m_listFrames, {});
}

std::size_t CFrameCollector::GetCount() const
{
  const std::lock_guard lock(m_mutex);
  return m_nReceived;
}

void CFrameCollector::Receive(const camera::SCameraFrame &stFrame)
{
  const std::lock_guard lock(m_mutex);
  ++m_nReceived;
  if (m_listFrames.size() < m_nWanted) {
    const auto *pBytes = static_cast<const uint8_t *>(stFrame.pBuffer);
    m_listFrames.push_back({{pBytes, pBytes + stFrame.nSize}, stFrame});
    m_listFrames.back().stInfo.pBuffer = nullptr;
    m_condition.notify_one();
  }
}

} // namespace ffc::test
