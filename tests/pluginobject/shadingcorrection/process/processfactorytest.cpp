#include "pluginobject/shadingcorrection/process/processfactory.h"

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"

using ffc::pluginobject::CFeatureAccess;
using namespace ffc::process;

namespace {

// Class name of the process of a kind.
std::string GetClassName(EProcessKind eKind)
{
  const CFeatureAccess features(nullptr);
  std::unique_ptr<IShadingCorrectionProcess> pProcess;
  EXPECT_EQ(CreateShadingCorrectionProcess(eKind, features, features, pProcess), PLUGIN_STATUS_SUCCESS);
  return pProcess == nullptr ? std::string() : pProcess->metaObject()->className();
}

} // namespace

TEST(ProcessFactory, MakesTheProcessOfEachKind)
{
  EXPECT_EQ(GetClassName(EProcessKind::HostFlatField), "CShadingCorrectionPro_PC");
  EXPECT_EQ(GetClassName(EProcessKind::DeviceFlatField), "CShadingCorrectionPro_Dev");
  EXPECT_EQ(GetClassName(EProcessKind::DeviceVignetting), "CVignettingCorrectionPro_Dev");
}

TEST(ProcessFactory, MakesNothingOfAKindThatThereIsNot)
{
  const CFeatureAccess features(nullptr);
  std::unique_ptr<IShadingCorrectionProcess> pProcess;
  EXPECT_EQ(CreateShadingCorrectionProcess(EProcessKind::HostFlatField, features, features, pProcess),
            PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(CreateShadingCorrectionProcess(static_cast<EProcessKind>(99), features, features, pProcess),
            PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(pProcess, nullptr);
}

TEST(ProcessFactory, ReplacesAProcessThatWasThere)
{
  const CFeatureAccess features(nullptr);
  std::unique_ptr<IShadingCorrectionProcess> pProcess;
  EXPECT_EQ(CreateShadingCorrectionProcess(EProcessKind::HostFlatField, features, features, pProcess),
            PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(CreateShadingCorrectionProcess(EProcessKind::DeviceFlatField, features, features, pProcess),
            PLUGIN_STATUS_SUCCESS);
  EXPECT_STREQ(pProcess->metaObject()->className(), "CShadingCorrectionPro_Dev");
}
