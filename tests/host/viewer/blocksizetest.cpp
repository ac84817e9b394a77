#include "host/viewer/blocksize.h"

#include <gtest/gtest.h>

#include "camera/software/simulated/simulatedcamera.h"

using namespace ffc::host;
using ffc::camera::CreateSimulatedCamera;
using ffc::camera::ECorrectionMode;
using ffc::camera::ICamera;
using ffc::camera::SSimulatedCameraOptions;

namespace {

std::unique_ptr<ICamera> MakeCamera(ECorrectionMode eMode)
{
  SSimulatedCameraOptions stOptions;
  stOptions.nWidth = 256;
  stOptions.nHeight = 256;
  stOptions.eMode = eMode;
  auto created = CreateSimulatedCamera(stOptions);
  EXPECT_EQ(created.GetError(), "");
  return std::move(created).GetValue();
}

} // namespace

TEST(BlockSize, SelectsAndReadsTheBlockSize)
{
  const std::pair<ECorrectionMode, std::vector<uint32_t>> SIZES[] = {
    {ECorrectionMode::FlatField, {16, 32}},
    {ECorrectionMode::Vignetting, {64, 128}},
  };
  for (const auto &[eMode, listSizes] : SIZES) {
    const auto pCamera = MakeCamera(eMode);
    ASSERT_NE(pCamera, nullptr);
    for (const uint32_t nSize : listSizes) {
      EXPECT_EQ(SelectBlockSize(*pCamera, nSize).GetError(), "");
      EXPECT_EQ(ReadBlockSize(*pCamera), nSize);
    }
    EXPECT_EQ(SelectBlockSize(*pCamera, 0).GetError(), "");
    EXPECT_EQ(ReadBlockSize(*pCamera), listSizes.back()) << "left alone";
  }
}

TEST(BlockSize, ABlockSizeThatTheCameraDoesNotHaveIsRefused)
{
  const auto pCamera = MakeCamera(ECorrectionMode::FlatField);
  ASSERT_NE(pCamera, nullptr);
  EXPECT_EQ(SelectBlockSize(*pCamera, 64).GetError().rfind("block size 64: ", 0), 0U);
  EXPECT_EQ(ReadBlockSize(*pCamera), 32U);
  const auto pPlain = MakeCamera(ECorrectionMode::None);
  ASSERT_NE(pPlain, nullptr);
  EXPECT_EQ(SelectBlockSize(*pPlain, 32).GetError(), "this camera has no coefficient blocks");
  EXPECT_EQ(SelectBlockSize(*pPlain, 0).GetError(), "");
  EXPECT_EQ(ReadBlockSize(*pPlain), 0U);
}
