#include "host/options/cameraopening.h"

#include <gtest/gtest.h>

#include "host/viewer/featuretext.h"

using namespace ffc::host;

namespace {

SHostOptions MakeOptions(ECorrectionMode eMode)
{
  SHostOptions stOptions;
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
    const SOpenedCamera stOpened = OpenCamera(MakeOptions(eMode));
    ASSERT_NE(stOpened.pCamera, nullptr) << stOpened.strError.toStdString();
    EXPECT_EQ(GetMode(*stOpened.pCamera), pName);
  }
  const SOpenedCamera stUnknown = OpenCamera(MakeOptions(ECorrectionMode::Unknown));
  ASSERT_NE(stUnknown.pCamera, nullptr) << stUnknown.strError.toStdString();
  const std::string strMode = GetMode(*stUnknown.pCamera);
  EXPECT_NE(strMode, "");
  EXPECT_NE(strMode, "FlatFieldCorrection");
  EXPECT_NE(strMode, "TailorFlatFieldCorrection");
}

TEST(CameraOpening, AFlashThatIsNoneIsToldInOneLine)
{
  SHostOptions stOptions = MakeOptions(ECorrectionMode::FlatField);
  stOptions.strFlashFile = PLUGIN_MODULE;
  const SOpenedCamera stOpened = OpenCamera(stOptions);
  EXPECT_EQ(stOpened.pCamera, nullptr);
  EXPECT_TRUE(stOpened.strError.startsWith("camera: ")) << stOpened.strError.toStdString();
  EXPECT_TRUE(stOpened.strError.contains(PLUGIN_MODULE));
}

TEST(CameraOpening, SelectsAndReadsTheBlockSize)
{
  const std::pair<ECorrectionMode, std::vector<uint32_t>> SIZES[] = {
    {ECorrectionMode::FlatField, {16, 32}},
    {ECorrectionMode::Vignetting, {64, 128}},
  };
  for (const auto &[eMode, listSizes] : SIZES) {
    const SOpenedCamera stOpened = OpenCamera(MakeOptions(eMode));
    ASSERT_NE(stOpened.pCamera, nullptr);
    for (const uint32_t nSize : listSizes) {
      EXPECT_EQ(SelectBlockSize(*stOpened.pCamera, nSize).toStdString(), "");
      EXPECT_EQ(ReadBlockSize(*stOpened.pCamera), nSize);
    }
    EXPECT_EQ(SelectBlockSize(*stOpened.pCamera, 0).toStdString(), "");
    EXPECT_EQ(ReadBlockSize(*stOpened.pCamera), listSizes.back()) << "left alone";
  }
}

TEST(CameraOpening, ABlockSizeThatTheCameraDoesNotHaveIsRefused)
{
  const SOpenedCamera stOpened = OpenCamera(MakeOptions(ECorrectionMode::FlatField));
  ASSERT_NE(stOpened.pCamera, nullptr);
  EXPECT_TRUE(SelectBlockSize(*stOpened.pCamera, 64).startsWith("block size 64: "));
  EXPECT_EQ(ReadBlockSize(*stOpened.pCamera), 32U);
  const SOpenedCamera stPlain = OpenCamera(MakeOptions(ECorrectionMode::None));
  ASSERT_NE(stPlain.pCamera, nullptr);
  EXPECT_EQ(SelectBlockSize(*stPlain.pCamera, 32).toStdString(), "this camera has no coefficient blocks");
  EXPECT_EQ(SelectBlockSize(*stPlain.pCamera, 0).toStdString(), "");
  EXPECT_EQ(ReadBlockSize(*stPlain.pCamera), 0U);
}
