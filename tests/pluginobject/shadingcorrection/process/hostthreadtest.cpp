#include <atomic>
#include <set>
#include <thread>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"

namespace {

constexpr int OPERATIONS = 300;
constexpr uint32_t MONO_8 = 0x01080001;
constexpr uint32_t MONO_12 = 0x01100005;

class COneFileChooser : public IFileChooser {
public:
  explicit COneFileChooser(QString strFile) : m_strFile(std::move(strFile)) {}
  QString ChooseFileToOpen(const SFileDialogTexts &) override { return m_strFile; }
  QString ChooseFileToSave(const SFileDialogTexts &) override { return m_strFile; }

private:
  QString m_strFile;
};

// Calls everything that a frame thread may call, without regard to the stream: frames are late, unasked,
// long, short and of another format.
class CHammer {
public:
  explicit CHammer(CShadingCorrectionPro_PC &process) : m_process(process), m_thread([this] { Run(); }) {}
  ~CHammer()
  {
    m_bStop = true;
    m_thread.join();
  }

  /// From now on all frames to correct are of the usual format.
  void BePolite() { m_bPolite = true; }
  int GetCorrectedCount() const { return m_nCorrected; }

private:
  void Run()
  {
    CTestRandom random(3);
    std::vector<uint8_t> listCorrected(2 * 128 * 128);
    while (!m_bStop) {
      const std::vector<uint8_t> listFrame(static_cast<std::size_t>(random.Between(0, 128 * 128)),
                                           static_cast<uint8_t>(random.Between(0, 255)));
      if (m_process.WaitImageRequest() == 0 || random.Between(0, 19) == 0) {
        m_process.ReceiveImage(listFrame.data(), static_cast<uint32_t>(listFrame.size()));
        m_process.SetImageReady();
      }
      m_process.SetStopFlag(false);
      (void)m_process.IsColorCamera();
      const std::vector<uint8_t> listSource(listCorrected.size(), 50);
      // Of another width or depth now and then.
      const int nRude = m_bPolite ? 0 : random.Between(0, 99);
      const int32_t nStatus = m_process.CorrectImage(listSource.data(), listCorrected.data(), nRude == 1 ? 96U : 64U,
                                                     48, nRude == 2 ? MONO_12 : MONO_8);
      m_nCorrected += nStatus == 0 ? 1 : 0;
    }
  }

  CShadingCorrectionPro_PC &m_process;
  std::atomic<bool> m_bStop{false};
  std::atomic<bool> m_bPolite{false};
  std::atomic<int> m_nCorrected{0};
  std::thread m_thread;
};

// One random operation of the user-interface thread.
int32_t OperateOnce(CHostRig &rig, CTestRandom &random)
{
  CShadingCorrectionPro_PC &process = rig.Process();
  switch (random.Between(0, 9)) {
  case 0: return process.AcquireDarkImage();
  case 1: return process.AcquireBrightImage();
  case 2:
  case 3: return process.ExecuteCorrection();
  case 4: return process.LoadFromFile();
  case 5: return process.SaveToFile();
  case 6: return process.SetExpectGray(random.Between(0, 255));
  case 7: return process.SetFrameCount(random.Between(0, 1) == 0 ? "FFCFrameCount_1" : "FFCFrameCount_2");
  case 8: {
    const double dGrays = process.GetImageMaxGray() + process.GetImageGrayDiff();
    return dGrays >= 0.0 && process.GetCorrectionInfo().nExpectGray < 256 ? 0 : -1;
  }
  default: rig.Camera().Integer("Width").Poke(random.Between(0, 4) == 0 ? 96 : 64); return 0;
  }
}

} // namespace

TEST(HostThreads, EverythingAtOnceIsSafe)
{
  const QTemporaryDir folder;
  CHostRig rig;
  rig.Show(nullptr); // the hammer delivers
  rig.Process().SetFileChooser(std::make_unique<COneFileChooser>(folder.filePath("a.ffc")));
  const std::set<int32_t> setExpected = {0, -3, -1004, -1007, -1009, -1012};
  CHammer hammer(rig.Process());
  CTestRandom random(17);
  for (int i = 0; i < OPERATIONS; ++i) {
    const int32_t nStatus = OperateOnce(rig, random);
    EXPECT_EQ(1U, setExpected.count(nStatus)) << nStatus;
  }
  // In the end there is a table, and frames are corrected with it.
  hammer.BePolite();
  rig.Camera().Integer("Width").Poke(64);
  int32_t nExecuted = -1;
  for (int i = 0; i < 100 && nExecuted != 0; ++i) { // the last rude frame may still drop the bright one
    EXPECT_EQ(0, rig.Process().AcquireBrightImage());
    nExecuted = rig.Process().ExecuteCorrection();
  }
  ASSERT_EQ(0, nExecuted);
  const int nCorrected = hammer.GetCorrectedCount();
  while (hammer.GetCorrectedCount() == nCorrected) {
    std::this_thread::yield();
  }
}

TEST(HostThreads, AProcessMayBeDestroyedRightAfterItsFrameThreadEnded)
{
  for (int i = 0; i < 20; ++i) {
    CHostRig rig;
    rig.Show(nullptr);
    const CHammer hammer(rig.Process());
    EXPECT_EQ(0, rig.Process().AcquireDarkImage());
  }
}
