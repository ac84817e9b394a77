#include "pluginobject/shadingcorrection/process/processfactory.h"

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/shadingcorrectionpro_pc.h"
#include "pluginobject/statuscode.h"

TEST(ProcessFactory, MakesTheHostSideProcess)
{
  const CFeatureAccess features(nullptr);
  std::unique_ptr<IShadingCorrectionProcess> pProcess;
  EXPECT_EQ(CreateShadingCorrectionProcess(EProcessKind::HostFlatField, features, features, pProcess), 0);
  EXPECT_NE(dynamic_cast<CShadingCorrectionPro_PC *>(pProcess.get()), nullptr);
}

TEST(ProcessFactory, RefusesKindsThatAreNotAvailable)
{
  const CFeatureAccess features(nullptr);
  for (const EProcessKind eKind : {EProcessKind::DeviceFlatField, EProcessKind::DeviceVignetting}) {
    std::unique_ptr<IShadingCorrectionProcess> pProcess;
    EXPECT_EQ(CreateShadingCorrectionProcess(eKind, features, features, pProcess),
              PLUGIN_STATUS_CAMERA_NOT_SUPPORTED);
    EXPECT_EQ(pProcess, nullptr);
  }
}
