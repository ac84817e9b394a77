#include <cmath>
#include <cstring>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"

using namespace ffc::test;

namespace {

constexpr int32_t WIDTH = 96;
constexpr int32_t HEIGHT = 64;
constexpr int32_t EXPECTED_GRAY = 200;

// A lens that darkens the corners, over colour filters that let through differently, on a sensor with an
// uneven black level. Values at full depth.
class CShadedScene {
public:
  CShadedScene(int32_t nBitDepth, bool bColour) : m_nBitDepth(nBitDepth), m_bColour(bColour) {}

  uint32_t GetDark(int32_t nX, int32_t nY) const { return ToSample(4.0 + (nX * 7 + nY * 3) % 5 * 0.25); }

  // \param dLight 1.0: as for the bright frames
  uint32_t GetLit(int32_t nX, int32_t nY, double dLight) const
  {
    const double dX = (nX - 0.45 * WIDTH) / WIDTH;
    const double dY = (nY - 0.55 * HEIGHT) / HEIGHT;
    const double dFallOff = 1.0 - 0.8 * (dX * dX + dY * dY);
    const double adFilter[] = {0.8, 1.0, 1.0, 0.7};
    const double dFilter = m_bColour ? adFilter[nY % 2 * 2 + nX % 2] : 1.0;
    return GetDark(nX, nY) + ToSample(170.0 * dLight * dFallOff * dFilter);
  }

  template <class TValue>
  std::vector<uint8_t> Draw(TValue fnValue) const
  {
    std::vector<uint8_t> listBytes;
    for (int32_t y = 0; y < HEIGHT; ++y) {
      for (int32_t x = 0; x < WIDTH; ++x) {
        const uint32_t nValue = fnValue(x, y);
        listBytes.push_back(static_cast<uint8_t>(nValue));
        if (m_nBitDepth > 8) {
          listBytes.push_back(static_cast<uint8_t>(nValue >> 8));
        }
      }
    }
    return listBytes;
  }

  std::vector<uint8_t> DrawDark() const
  {
    return Draw([this](int32_t nX, int32_t nY) { return GetDark(nX, nY); });
  }
  std::vector<uint8_t> DrawLit(double dLight) const
  {
    return Draw([this, dLight](int32_t nX, int32_t nY) { return GetLit(nX, nY, dLight); });
  }

  double ReadSample(const std::vector<uint8_t> &listBytes, int32_t nX, int32_t nY) const
  {
    const auto nIndex = static_cast<std::size_t>(nY * WIDTH + nX);
    return m_nBitDepth == 8 ? listBytes[nIndex] : listBytes[2 * nIndex] + 256.0 * listBytes[2 * nIndex + 1];
  }

private:
  uint32_t ToSample(double dGray) const
  {
    return static_cast<uint32_t>(std::lround(std::ldexp(dGray, m_nBitDepth - 8)));
  }

  int32_t m_nBitDepth;
  bool m_bColour;
};

// The largest distance from what an ideal correction gives, in units of what the 12 fraction bits of a gain
// and the rounding of the output allow.
double MeasureWorst(const CShadedScene &scene, const std::vector<uint8_t> &listCorrected, int32_t nBitDepth,
                    double dLight)
{
  const double dTarget = std::ldexp(EXPECTED_GRAY, nBitDepth - 8);
  double dWorst = 0.0;
  for (int32_t y = 0; y < HEIGHT; ++y) {
    for (int32_t x = 0; x < WIDTH; ++x) {
      const double dSignal = scene.GetLit(x, y, dLight) - scene.GetDark(x, y);
      const double dBright = scene.GetLit(x, y, 1.0) - scene.GetDark(x, y);
      const double dIdeal = dTarget * dSignal / dBright;
      const double dAllowed = 0.5 + dSignal / 8192.0;
      dWorst = std::max(dWorst, std::abs(scene.ReadSample(listCorrected, x, y) - dIdeal) / dAllowed);
    }
  }
  return dWorst;
}

struct SFormat {
  const char *pName;
  int32_t nBitDepth;
};

constexpr SFormat FORMATS[] = {
  {"Mono8", 8},      {"Mono10", 10},    {"Mono12", 12},    {"Mono14", 14},    {"Mono16", 16},    {"BayerRG8", 8},
  {"BayerRG10", 10}, {"BayerRG12", 12}, {"BayerRG16", 16}, {"BayerGB8", 8},   {"BayerGB10", 10}, {"BayerGB12", 12},
  {"BayerGB16", 16}, {"BayerGR8", 8},   {"BayerGR10", 10}, {"BayerGR12", 12}, {"BayerGR16", 16}, {"BayerBG8", 8},
  {"BayerBG10", 10}, {"BayerBG12", 12}, {"BayerBG16", 16},
};

class HostFlatness : public testing::TestWithParam<SFormat> {};

} // namespace

TEST_P(HostFlatness, ShadedFramesBecomeFlat)
{
  const auto [pName, nBitDepth] = GetParam();
  CHostRig rig(pName, WIDTH, HEIGHT);
  const CShadedScene scene(nBitDepth, rig.Process().IsColorCamera());
  rig.Process().SetExpectGray(EXPECTED_GRAY);
  rig.Show([&scene](int) { return scene.DrawDark(); });
  ASSERT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  rig.Show([&scene](int) { return scene.DrawLit(1.0); });
  ASSERT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  ASSERT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  ASSERT_EQ(rig.GetTableBytesPerPixel(), 4U);
  for (const double dLight : {1.0, 0.5, 0.1}) {
    std::vector<uint8_t> listCorrected;
    EXPECT_EQ(rig.Correct(scene.DrawLit(dLight), listCorrected), PLUGIN_STATUS_SUCCESS);
    EXPECT_LE(MeasureWorst(scene, listCorrected, nBitDepth, dLight), 1.0 + 1e-9) << dLight;
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, HostFlatness, testing::ValuesIn(FORMATS),
                         [](const testing::TestParamInfo<SFormat> &stInfo) { return stInfo.param.pName; });
