#include "pluginobject/shadingcorrection/process/processfactory.h"

#include <gtest/gtest.h>

using namespace ffc::process;

namespace {

// Class name of the process of a kind.
std::string GetClassName(EProcessKind eKind)
{
  const CFeatureAccess features(nullptr);
  std::unique_ptr<IShadingCorrectionProcess> pProcess;
  EXPECT_EQ(0, CreateShadingCorrectionProcess(eKind, features, features, pProcess));
  return pProcess == nullptr ? std::string() : pProcess->metaObject()->className();
}

} // namespace

TEST(ProcessFactory, MakesTheProcessOfEachKind)
{
  EXPECT_EQ("CShadingCorrectionPro_PC", GetClassName(EProcessKind::HostFlatField));
  EXPECT_EQ("CShadingCorrectionPro_Dev", GetClassName(EProcessKind::DeviceFlatField));
  EXPECT_EQ("CVignettingCorrectionPro_Dev", GetClassName(EProcessKind::DeviceVignetting));
}

TEST(ProcessFactory, MakesNothingOfAKindThatThereIsNot)
{
  const CFeatureAccess features(nullptr);
  std::unique_ptr<IShadingCorrectionProcess> pProcess;
  EXPECT_EQ(0, CreateShadingCorrectionProcess(EProcessKind::HostFlatField, features, features, pProcess));
  EXPECT_EQ(-3, CreateShadingCorrectionProcess(static_cast<EProcessKind>(99), features, features, pProcess));
  EXPECT_EQ(nullptr, pProcess);
}

TEST(ProcessFactory, ReplacesAProcessThatWasThere)
{
  const CFeatureAccess features(nullptr);
  std::unique_ptr<IShadingCorrectionProcess> pProcess;
  EXPECT_EQ(0, CreateShadingCorrectionProcess(EProcessKind::HostFlatField, features, features, pProcess));
  EXPECT_EQ(0, CreateShadingCorrectionProcess(EProcessKind::DeviceFlatField, features, features, pProcess));
  EXPECT_STREQ("CShadingCorrectionPro_Dev", pProcess->metaObject()->className());
}
