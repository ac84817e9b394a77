/// \file
/// A frame thread that keeps to no order.
#pragma once

#include <atomic>
#include <cstdint>
#include <thread>
#include <vector>

#include "pluginobject/shadingcorrection/process/ishadingcorrectionprocess.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"

namespace ffc::test {

/// Calls everything that a frame thread may call, without regard to the stream: frames are late, unasked,
/// long and short; those to correct, of 64 x 48 pixels of 8 bits, are of another format now and then.
class CFrameHammer {
public:
  /// \param nLongest bytes of a received frame at most
  CFrameHammer(IShadingCorrectionProcess &process, int32_t nLongest)
    : m_process(process), m_nLongest(nLongest), m_thread([this] { Run(); })
  {
  }
  ~CFrameHammer()
  {
    m_bStop = true;
    m_thread.join();
  }
  CFrameHammer(const CFrameHammer &) = delete;
  CFrameHammer &operator=(const CFrameHammer &) = delete;

  /// From now on all frames to correct are of the usual format.
  void KeepUsualFormat() { m_bUsualFormat = true; }
  int GetCorrectedCount() const { return m_nCorrected; }

private:
  void Run()
  {
    constexpr uint32_t MONO_8 = 0x01080001;
    constexpr uint32_t MONO_12 = 0x01100005;
    CTestRandom random(3);
    const std::vector<uint8_t> listSource(2 * 128 * 128, 50);
    std::vector<uint8_t> listCorrected(listSource.size());
    while (!m_bStop) {
      Hand(random);
      m_process.SetStopFlag(false);
      (void)m_process.IsColorCamera();
      const int nUnusual = m_bUsualFormat ? 0 : random.Between(0, 99);
      const int32_t nStatus = m_process.CorrectImage(listSource.data(), listCorrected.data(), nUnusual == 1 ? 96U : 64U,
                                                     48, nUnusual == 2 ? MONO_12 : MONO_8);
      m_nCorrected += nStatus == 0 ? 1 : 0;
    }
  }

  void Hand(CTestRandom &random)
  {
    const std::vector<uint8_t> listFrame(static_cast<std::size_t>(random.Between(0, m_nLongest)),
                                         static_cast<uint8_t>(random.Between(0, 255)));
    if (m_process.WaitImageRequest() == 0 || random.Between(0, 19) == 0) {
      m_process.ReceiveImage(listFrame.data(), static_cast<uint32_t>(listFrame.size()));
      m_process.SetImageReady();
    }
  }

  IShadingCorrectionProcess &m_process;
  const int32_t m_nLongest;
  std::atomic<bool> m_bStop{false};
  std::atomic<bool> m_bUsualFormat{false};
  std::atomic<int> m_nCorrected{0};
  std::thread m_thread;
};

} // namespace ffc::test
