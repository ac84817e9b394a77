/// \file
/// Takes the frames of a camera under test.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <vector>

#include "camera/icamera.h"

namespace ffc::test {

/// A frame that outlives its callback.
struct SKeptFrame {
  std::vector<uint8_t> listBytes;
  camera::SCameraFrame stInfo; ///< its buffer pointer is null

  /// Samples as 16 bit, whatever the format.
  std::vector<uint16_t> GetSamples() const;
};

/// Sets itself as the camera's frame callback; must outlive the camera's stream.
class CFrameCollector {
public:
  explicit CFrameCollector(camera::ICamera &camera);

  /// The next nCount frames, or fewer when they do not come within ten seconds.
  std::vector<SKeptFrame> Take(std::size_t nCount);
  /// The two halves of Take(), with something in between that makes the frames come.
  void Expect(std::size_t nCount);
  std::vector<SKeptFrame> Collect();
  /// Frames so far, taken or not.
  std::size_t GetCount() const;

private:
  void Receive(const camera::SCameraFrame &stFrame);

  mutable std::mutex m_mutex;
  std::condition_variable m_condition;
  std::vector<SKeptFrame> m_listFrames;
  std::size_t m_nWanted = 0;
  std::size_t m_nReceived = 0;
};

} // namespace ffc::test
