// The tool makes and applies coefficients byte for byte as the built module does.
#include <cstring>

#include <gtest/gtest.h>

#include "frames/ifilekind.h"
#include "tests/reliability/modulerig.h"
#include "tests/tools/ffc/toolrun.h"

using namespace ffc::test;

namespace {

struct SFormat {
  std::string strName;
  uint32_t nBitDepth;
};

std::vector<SFormat> ListFormats()
{
  std::vector<SFormat> listFormats;
  for (const char *pColors : {"Mono", "BayerRG", "BayerGB", "BayerGR", "BayerBG"}) {
    for (const uint32_t nBitDepth : {8U, 10U, 12U, 16U}) {
      listFormats.push_back({pColors + std::to_string(nBitDepth), nBitDepth});
    }
  }
  return listFormats;
}

constexpr uint32_t SIDE = 64; ///< of the rig's camera

ffc::frames::SLayout GetLayout(const SFormat &stFormat)
{
  return {SIDE, SIDE, stFormat.nBitDepth > 8 ? 2U : 1U};
}

class Identity : public testing::TestWithParam<SFormat> {
protected:
  Identity() : m_recording(3, GetLayout(GetParam()), GetParam().nBitDepth) {}

  /// What the dialog saves after acquiring the recording's first frames.
  QByteArray SaveWithDialog(CModuleRig &rig, bool bDark)
  {
    const auto listDark = m_recording.MakeDark(0);
    const auto listBright = m_recording.MakeBright(0);
    rig.SetFrame(
      [listDark, listBright](const CTestCamera &, uint32_t nGray) { return nGray < 50 ? listDark : listBright; });
    EXPECT_EQ(rig.Open(), 0);
    using E = EOperation;
    const std::vector<E> listSteps = bDark ? std::vector<E>{E::Dark, E::Bright, E::Execute, E::SaveFile}
                                           : std::vector<E>{E::Bright, E::Execute, E::SaveFile};
    for (const E eStep : listSteps) {
      const SOutcome stOutcome = rig.Do(eStep);
      EXPECT_TRUE(stOutcome.listBoxes.empty()) << GetName(eStep) << ": " << stOutcome.Describe();
    }
    return ReadBytes(rig.Path("table.ffc"));
  }

  void MakeWithTool(bool bDark)
  {
    const auto &stLayout = m_recording.GetLayout();
    ASSERT_TRUE(ffc::frames::SaveFrame(m_recording.Path("d.png"), stLayout, m_recording.MakeDark(0).data()));
    for (int n = 0; n < 4; ++n) {
      ASSERT_TRUE(ffc::frames::SaveFrame(m_recording.Path(QStringLiteral("b%1.png").arg(n)), stLayout,
                                         m_recording.MakeBright(0).data()));
    }
    QStringList listArguments{"make",
                              "--bright",
                              m_recording.Path("b?.png"),
                              "--pixel-format",
                              QString::fromStdString(GetParam().strName),
                              "--method",
                              "average",
                              "-o",
                              m_recording.Path("flat.ffc")};
    if (bDark) {
      listArguments << "--dark" << m_recording.Path("d.png");
    }
    const SToolResult stResult = RunTool(listArguments);
    ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
  }

  std::vector<uint8_t> CorrectWithModule(CModuleRig &rig, std::vector<uint8_t> listFrame)
  {
    rig.SetStreaming(false);
    std::vector<uint8_t> listCorrected(listFrame.size());
    PLUGIN_IMAGE_INFO stInput;
    stInput.nPixelFormat = static_cast<int32_t>(rig.Camera().GetPixelFormat());
    stInput.nWidth = SIDE;
    stInput.nHeight = SIDE;
    stInput.nPayloadSize = static_cast<int32_t>(listFrame.size());
    stInput.pBuffer = listFrame.data();
    PLUGIN_IMAGE_INFO stOutput = stInput;
    stOutput.pBuffer = listCorrected.data();
    PLUGIN_PROCESS_RESULT stResult;
    EXPECT_EQ(rig.Plugin().ProcessImage(&stInput, &stOutput, PLUGIN_PROCESS_MODE_FRAME, &stResult), 0);
    EXPECT_EQ(stResult.bCorrected, 1);
    return listCorrected;
  }

  CRecording m_recording;
};

} // namespace

TEST_P(Identity, CoefficientsAndCorrectedFramesAreTheModules)
{
  for (const bool bDark : {true, false}) {
    CModuleRig rig(EMode::Host, GetParam().strName.c_str());
    const QByteArray byteModule = SaveWithDialog(rig, bDark);
    MakeWithTool(bDark);
    EXPECT_EQ(byteModule.size(), static_cast<int>(SIDE * SIDE * (bDark ? 4 : 2)));
    EXPECT_TRUE(ReadBytes(m_recording.Path("flat.ffc")) == byteModule) << GetParam().strName << bDark;

    const auto listFrame = m_recording.MakeBright(9);
    ASSERT_TRUE(ffc::frames::SaveFrame(m_recording.Path("frame.png"), m_recording.GetLayout(), listFrame.data()));
    const SToolResult stResult = RunTool(
      {"apply", m_recording.Path("flat.ffc"), m_recording.Path("frame.png"), "-o", m_recording.Path("out"), "--force"});
    ASSERT_EQ(stResult.nExitCode, 0) << stResult.byteErrors.constData();
    EXPECT_TRUE(ReadFrame(m_recording.Path("out/frame.png")) == CorrectWithModule(rig, listFrame))
      << GetParam().strName << bDark;
    ASSERT_TRUE(QFile::remove(m_recording.Path("flat.ffc")));
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, Identity, testing::ValuesIn(ListFormats()),
                         [](const auto &stInfo) { return stInfo.param.strName; });
