#include "pluginobject/shadingcorrection/process/processfactory.h"

#include <gtest/gtest.h>

#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"

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

TEST(ProcessFactory, WithoutMemoryMakesNothingAndSaysSo)
{
  const CFeatureAccess features(nullptr);
  for (const EProcessKind eKind :
       {EProcessKind::HostFlatField, EProcessKind::DeviceFlatField, EProcessKind::DeviceVignetting}) {
    std::unique_ptr<IShadingCorrectionProcess> pProcess;
    int32_t nStatus = PLUGIN_STATUS_SUCCESS;
    {
      const CFailingThrowingNew failing;
      nStatus = CreateShadingCorrectionProcess(eKind, features, features, pProcess);
    }
    EXPECT_EQ(nStatus, PLUGIN_STATUS_OUT_OF_MEMORY);
    EXPECT_EQ(pProcess, nullptr);
  }
}
