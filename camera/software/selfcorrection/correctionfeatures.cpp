#include "camera/software/selfcorrection/correctionfeatures.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "camera/software/selfcorrection/onoff.h"
#include "genapi/framecounts.h"

namespace ffc::camera {

namespace {

struct SBlockSizeEntry {
  const char *pName; // ends with the pixels of a block
  int64_t nCode;
  ECorrectionMode eMode;
  uint32_t nSide; // pixels
};
// The first one of a mode is selected at first.
constexpr SBlockSizeEntry ALL_BLOCK_SIZES[] = {
  {"BlockSize_1024", 0, ECorrectionMode::FlatField, 32},
  {"BlockSize_256", 1, ECorrectionMode::FlatField, 16},
  {"BlockSize_16384", 3, ECorrectionMode::Vignetting, 128},
  {"BlockSize_4096", 2, ECorrectionMode::Vignetting, 64},
};
constexpr int64_t FACTORY_FRAME_COUNT = 4;
constexpr int64_t FACTORY_GRAY = 128;
constexpr int64_t FULL_GRAY = 255;

} // namespace

void AddShadingCorrectionMode(genapi::CSoftwareNodeMap &deviceMap, ECorrectionMode eMode)
{
  static const char *const ALL_NAMES[] = {nullptr, "FlatFieldCorrection", "TailorFlatFieldCorrection",
                                          "ParallaxCorrection"};
  deviceMap.AddEnumeration("ShadingCorrectionMode").Entry(ALL_NAMES[static_cast<int>(eMode)], 0).Access(GenApi::RO);
}

CCorrectionFeatures::CCorrectionFeatures(genapi::CSoftwareNodeMap &deviceMap, ECorrectionMode eMode)
{
  m_pCorrection = &AddOnOff(deviceMap, "FlatFieldCorrection");
  m_pBlockSize = &deviceMap.AddEnumeration("FFCBlockSize").Strict();
  for (const SBlockSizeEntry &stEntry : ALL_BLOCK_SIZES) {
    if (stEntry.eMode == eMode) {
      m_pBlockSize->Entry(stEntry.pName, stEntry.nCode);
    }
  }
  genapi::CSoftwareEnumeration &frameCount = deviceMap.AddEnumeration("FFCFrameCount").Strict();
  for (const int nCount : genapi::FRAME_COUNTS) {
    frameCount.Entry("FFCFrameCount_" + std::to_string(nCount), nCount);
  }
  frameCount.Poke(FACTORY_FRAME_COUNT);
  if (eMode == ECorrectionMode::FlatField) {
    m_pExpectGray = &deviceMap.AddInteger("FFCExpectGray", FACTORY_GRAY).Range(0, FULL_GRAY).Strict();
  }
}

bool CCorrectionFeatures::IsCorrectionOn() const
{
  return IsOn(*m_pCorrection);
}

uint32_t CCorrectionFeatures::GetBlockSide() const
{
  const int64_t nCode = m_pBlockSize->Peek();
  return std::find_if(std::begin(ALL_BLOCK_SIZES), std::end(ALL_BLOCK_SIZES),
                      [nCode](const SBlockSizeEntry &stEntry) { return stEntry.nCode == nCode; })
    ->nSide;
}

double CCorrectionFeatures::GetExpectGray() const
{
  return static_cast<double>(m_pExpectGray == nullptr ? FULL_GRAY : m_pExpectGray->Peek());
}

} // namespace ffc::camera
