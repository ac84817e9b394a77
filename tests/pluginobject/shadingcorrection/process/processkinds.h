/// \file
/// The kinds of processes, for tests of what they have in common.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

namespace ffc::test {

/// What a process answers to a poll when it wants no frame.
constexpr uint32_t NOT_REQUESTED = 258;

// Of each kind PutIntoForce makes coefficients, of a dark frame too where the kind has one, and GetInForce answers what
// is done to frames now, as bytes.

struct SHost {
  using Rig = CHostRig;
  static constexpr const char *NAME = "Host";
  static constexpr const char *CLASS = "CShadingCorrectionPro_PC";
  static constexpr bool BLACK_LEVEL_DEFAULT = true; ///< before the first acquisition
  static constexpr int SETTLING_FRAMES = 7;         ///< of a colour camera, behind those of its balance
  static constexpr const char *READ_FOR_FILE = "";  ///< what a file operation asks the camera before it asks the user
  static constexpr bool HAS_RECORD = false;         ///< the record stands behind the coefficients
  static bool IsDarkInForce(Rig &rig) { return rig.GetTableBytesPerPixel() == 4; }
  static void PutIntoForce(Rig &rig)
  {
    EXPECT_EQ(rig.Process().SetExpectGray(200), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.AcquireDark(10), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.AcquireBright(120), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  }
  static std::vector<uint8_t> GetInForce(Rig &rig)
  {
    std::vector<uint8_t> listCorrected;
    EXPECT_EQ(rig.Correct(rig.Camera().MakeFrame(73), listCorrected), PLUGIN_STATUS_SUCCESS);
    return listCorrected;
  }
};

struct SDevice {
  using Rig = CDeviceRig;
  static constexpr const char *NAME = "Device";
  static constexpr const char *CLASS = "CShadingCorrectionPro_Dev";
  static constexpr bool BLACK_LEVEL_DEFAULT = false;
  static constexpr int SETTLING_FRAMES = 0;
  static constexpr const char *READ_FOR_FILE = "";
  static constexpr bool HAS_RECORD = true;
  static bool IsDarkInForce(Rig &rig) { return rig.IsDarkInForce(); }
  static void PutIntoForce(Rig &rig) { EXPECT_EQ(rig.Correct(10, 120), PLUGIN_STATUS_SUCCESS); }
  static std::vector<uint8_t> GetInForce(Rig &rig) { return rig.Camera().Correction().GetWritten(); }
};

struct SVignetting {
  using Rig = CVignettingRig;
  static constexpr const char *NAME = "Vignetting";
  static constexpr const char *CLASS = "CVignettingCorrectionPro_Dev";
  static constexpr bool BLACK_LEVEL_DEFAULT = true;
  static constexpr const char *READ_FOR_FILE = "FFCCoefficientsSize";
  static constexpr bool HAS_RECORD = true;
  static void PutIntoForce(Rig &rig) { EXPECT_EQ(rig.Correct(100), PLUGIN_STATUS_SUCCESS); }
  static std::vector<uint8_t> GetInForce(Rig &rig) { return rig.GetWritten(); }
};

/// Names a suite by its kind.
struct SKindName {
  template <class TKind>
  static std::string GetName(int)
  {
    return TKind::NAME;
  }
};

inline void SetFrameCount(CProcessRig &rig, int nCount)
{
  EXPECT_EQ(rig.Process().SetFrameCount("FFCFrameCount_" + std::to_string(nCount)), PLUGIN_STATUS_SUCCESS);
}

/// A frame of 64 x 64 bytes, one block of 32 x 32 of another value.
inline std::vector<uint8_t> MakeUneven(uint8_t nGray, uint8_t nBlockGray)
{
  std::vector<uint8_t> listFrame(64 * 64, nGray);
  for (std::size_t y = 0; y < 32; ++y) {
    std::fill_n(listFrame.begin() + static_cast<std::ptrdiff_t>(y * 64), 32, nBlockGray);
  }
  return listFrame;
}

/// Takes a dark frame and a bright one, and tells whether the coefficients use the dark one.
template <class TKind>
bool IsDarkUsed(typename TKind::Rig &rig, CProcessRig::FnFrame fnDark)
{
  rig.Show(std::move(fnDark));
  EXPECT_EQ(rig.Process().AcquireDarkImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.AcquireBright(200), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  return TKind::IsDarkInForce(rig);
}

} // namespace ffc::test
