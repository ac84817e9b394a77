#include "host/options/cameraopening.h"

#include <gtest/gtest.h>

#include "host/viewer/featuretext.h"

using namespace ffc::host;
using ffc::camera::ECorrectionMode;
using ffc::camera::ICamera;

namespace {

SCameraOptions MakeOptions(ECorrectionMode eMode)
{
  SCameraOptions stOptions;
  stOptions.nWidth = 256;
  stOptions.nHeight = 256;
  stOptions.eMode = eMode;
  return stOptions;
}

std::string GetMode(ICamera &camera)
{
  return ReadFeature(*camera.GetDeviceNodeMap(), "ShadingCorrectionMode");
}

} // namespace

TEST(CameraOpening, TheModeIsTheCameras)
{
  const std::pair<ECorrectionMode, const char *> MODES[] = {
    {ECorrectionMode::None, ""},
    {ECorrectionMode::FlatField, "FlatFieldCorrection"},
    {ECorrectionMode::Vignetting, "TailorFlatFieldCorrection"},
  };
  for (const auto &[eMode, pName] : MODES) {
    const OpenedCamera opened = OpenCamera(MakeOptions(eMode));
    ASSERT_EQ(opened.GetError(), "");
    EXPECT_EQ(GetMode(*opened.GetValue()), pName);
  }
  const OpenedCamera unknown = OpenCamera(MakeOptions(ECorrectionMode::Unknown));
  ASSERT_EQ(unknown.GetError(), "");
  const std::string strMode = GetMode(*unknown.GetValue());
  EXPECT_NE(strMode, "");
  EXPECT_NE(strMode, "FlatFieldCorrection");
  EXPECT_NE(strMode, "TailorFlatFieldCorrection");
}

TEST(CameraOpening, AFlashThatIsNoneIsToldInOneLine)
{
  SCameraOptions stOptions = MakeOptions(ECorrectionMode::FlatField);
  stOptions.strFlashFile = PLUGIN_MODULE;
  const OpenedCamera opened = OpenCamera(stOptions);
  EXPECT_FALSE(opened.IsOk());
  EXPECT_EQ(opened.GetError().rfind("camera: ", 0), 0U) << opened.GetError();
  EXPECT_NE(opened.GetError().find(PLUGIN_MODULE), std::string::npos);
}
