// Coefficient files of the host-side correction: whatever is loaded, the coefficients in force are whole, and a frame
// of the kept format is corrected within its bounds.

#include "pluginobject/shadingcorrection/process/shadingcorrectionpro_pc.h"
#include "tests/fuzz/fuzzedfile.h"
#include "tests/fuzz/fuzztargets.h"
#include "tests/fuzz/require.h"
#include "tests/pluginobject/shadingcorrection/process/scriptedchooser.h"
#include "tests/support/testcamera.h"

using ffc::pluginobject::CFeatureAccess;
using namespace ffc::test;

namespace {

constexpr int32_t LARGEST_SIDE = 24;
constexpr int64_t LARGEST_FILE = 1 << 16;

// Depths of 8 to 16 bits, packed and unknown formats; the camera has them all.
constexpr uint32_t FORMATS[] = {0x01080001, 0x01100003, 0x01100005, 0x01100025, 0x01100007,
                                0x010C0004, 0x010C0006, 0x02200016, 0x0110000D};

CTestCamera &GetCamera()
{
  static CTestCamera s_camera("Mono8", LARGEST_SIDE, LARGEST_SIDE);
  static const bool IS_COMPLETE = [] {
    auto &format = s_camera.Enumeration("PixelFormat");
    for (const uint32_t nFormat : {0x010C0004U, 0x010C0006U, 0x02200016U, 0x0110000DU}) {
      format.Entry("Format" + std::to_string(nFormat), nFormat);
    }
    return true;
  }();
  (void)IS_COMPLETE;
  return s_camera;
}

struct SShape {
  int64_t nWidth;
  int64_t nHeight;
  uint32_t nFormat;

  bool IsHeld() const
  {
    return nWidth > 0 && nHeight > 0 && nWidth <= LARGEST_FILE && nHeight <= LARGEST_FILE &&
           nWidth * nHeight <= LARGEST_FILE / 4;
  }
  std::size_t CountPixels() const { return IsHeld() ? static_cast<std::size_t>(nWidth * nHeight) : 0; }
};

class CHostFileRun {
public:
  explicit CHostFileRun(CFuzzInput &input)
    : m_input(input), m_process(CFeatureAccess(&GetCamera().Device()), CFeatureAccess(&GetCamera().Stream())),
      m_chooser(InstallChooser(m_process))
  {
    Require(m_process.InitProcess() == PLUGIN_STATUS_SUCCESS, "the camera is one");
  }

  void Load()
  {
    const SShape stShape = TakeShape();
    const std::size_t nFitting = stShape.CountPixels() * (m_input.TakeBool() ? 4 : 2);
    const CExactBuffer content = m_input.TakeBuffer(CFuzzedFile::TakeSizeAround(m_input, nFitting));
    CFuzzedFile::Write(content);
    const QString strName = CFuzzedFile::TakeName(m_input);
    m_chooser.Choose(strName);
    const uint32_t nBefore = m_process.GetCorrectionInfo().nCoefficientsSize;
    const int32_t nStatus = m_process.LoadFromFile();
    const uint32_t nAfter = m_process.GetCorrectionInfo().nCoefficientsSize;
    if (nStatus == PLUGIN_STATUS_SUCCESS) {
      const std::size_t nGains = 2 * stShape.CountPixels();
      Require(nGains > 0 && (nAfter == nGains || nAfter == 2 * nGains), "a table fits the camera's frames");
      Require(nAfter == content.GetSize() && strName == CFuzzedFile::GetFileName(), "the whole file is the table");
      m_stInForce = stShape;
    } else {
      Require(nStatus == PLUGIN_STATUS_READ_FILE_ERROR || nStatus == PLUGIN_STATUS_OPEN_FILE_ERROR ||
                nStatus == PLUGIN_STATUS_SILENT,
              "a file that is refused has one of three reasons");
      Require(nAfter == nBefore, "a table stays in force when a load fails");
    }
  }

  // A frame as a host hands it over: as large as its format says.
  void Correct()
  {
    const uint32_t nFormat = m_input.TakeBool() ? m_input.Pick(FORMATS) : m_stInForce.nFormat;
    const SShape stFrame = m_input.TakeBool() ? TakeShape() : m_stInForce;
    if (!stFrame.IsHeld()) {
      return;
    }
    const std::size_t nBytes = stFrame.CountPixels() * (ffc::genapi::GetBitsPerPixel(nFormat) > 8 ? 2 : 1);
    const CExactBuffer source = m_input.TakeBuffer(nBytes);
    CExactBuffer destination(nBytes);
    const int32_t nStatus =
      m_process.CorrectImage(source.GetData(), destination.GetData(), static_cast<uint32_t>(stFrame.nWidth),
                             static_cast<int32_t>(stFrame.nHeight), nFormat);
    const bool bOfKeptSize = stFrame.nWidth == m_stInForce.nWidth && stFrame.nHeight == m_stInForce.nHeight;
    Require(nStatus != PLUGIN_STATUS_SUCCESS || bOfKeptSize, "only frames of the kept size are corrected");
    if (m_stInForce.IsHeld() && bOfKeptSize && nFormat == m_stInForce.nFormat && IsDeliveredAsItIs(nFormat)) {
      Require(nStatus == PLUGIN_STATUS_SUCCESS, "the coefficients in force correct");
    }
  }

private:
  // Known, and not packed.
  static bool IsDeliveredAsItIs(uint32_t nFormat) { return nFormat >> 16U == 0x0108 || nFormat >> 16U == 0x0110; }

  // Sets the camera to it.
  SShape TakeShape()
  {
    const SShape stShape = {m_input.TakeSide(LARGEST_SIDE), m_input.TakeSide(LARGEST_SIDE), m_input.Pick(FORMATS)};
    GetCamera().Integer("Width").Poke(stShape.nWidth);
    GetCamera().Integer("Height").Poke(stShape.nHeight);
    GetCamera().Enumeration("PixelFormat").Poke(stShape.nFormat);
    return stShape;
  }

  CFuzzInput &m_input;
  CShadingCorrectionPro_PC m_process;
  CScriptedChooser &m_chooser;
  SShape m_stInForce = {0, 0, 0};
};

} // namespace

void FuzzHostFile(const uint8_t *pData, std::size_t nSize)
{
  CFuzzInput input(pData, nSize);
  CHostFileRun run(input);
  run.Load();
  run.Correct();
  run.Load();
  run.Correct();
}
