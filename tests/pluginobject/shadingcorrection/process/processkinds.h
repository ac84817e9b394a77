/// \file
/// The kinds of processes, for tests of what they have in common.
#pragma once

#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/devicerig.h"
#include "tests/pluginobject/shadingcorrection/process/hostrig.h"
#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

namespace ffc::test {

/// What a process answers to a poll when it wants no frame.
constexpr uint32_t NOT_REQUESTED = 258;

struct SHost {
  using Rig = CHostRig;
  static constexpr const char *NAME = "Host";
  static constexpr const char *CLASS = "CShadingCorrectionPro_PC";
  static constexpr bool BLACK_LEVEL_DEFAULT = true; ///< before the first acquisition
  static constexpr int SETTLING_FRAMES = 7;         ///< of a colour camera, behind those of its balance
  static bool IsDarkInForce(Rig &rig) { return rig.GetTableBytesPerPixel() == 4; }
};

struct SDevice {
  using Rig = CDeviceRig;
  static constexpr const char *NAME = "Device";
  static constexpr const char *CLASS = "CShadingCorrectionPro_Dev";
  static constexpr bool BLACK_LEVEL_DEFAULT = false;
  static constexpr int SETTLING_FRAMES = 0;
  static bool IsDarkInForce(Rig &rig) { return rig.IsDarkInForce(); }
};

struct SVignetting {
  using Rig = CVignettingRig;
  static constexpr const char *NAME = "Vignetting";
  static constexpr const char *CLASS = "CVignettingCorrectionPro_Dev";
  static constexpr bool BLACK_LEVEL_DEFAULT = true;
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

} // namespace ffc::test
