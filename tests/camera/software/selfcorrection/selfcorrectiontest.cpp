#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "genapi/sensorformat.h"
#include "tests/camera/software/camerarig.h"

using ffc::camera::ECorrectionMode;
using ffc::genapi::GetSensorFormats;
using ffc::genapi::SSensorFormat;
using ffc::test::CCameraRig;
using ffc::test::GetCreationError;
using ffc::test::SmallOptions;

namespace {

constexpr const char *ALL_FEATURES[] = {
  "ShadingCorrectionMode", "FlatFieldCorrection", "FFCBlockSize", "FFCFrameCount",
  "FFCCoefficientsSize",   "FFCValueAll",         "FFCFlashLoad", "FFCFlashSave",
  "UserSetSelector",       "UserSetDefault",      "UserSetLoad",  "UserSetSave",
  "FFCExpectGray",         "DeadPixelCorrect",    "DigitalShift", "FixedPatternNoiseCorrectMode",
  "RemoveParameterLimit",
};
constexpr std::size_t FLAT_FIELD_ONLY = 12; // from here on a vignetting camera does not have them

using Names = std::vector<std::string>;

// A register of the camera's length with these bytes, counting up.
std::vector<uint8_t> MakeRegister(CCameraRig &rig, uint8_t nFirst = 1)
{
  std::vector<uint8_t> listBytes(static_cast<std::size_t>(std::stoul(rig.Get("FFCCoefficientsSize"))));
  for (uint8_t &nByte : listBytes) {
    nByte = nFirst++;
  }
  return listBytes;
}

std::vector<uint8_t> ExchangeRecord(std::vector<uint8_t> listBytes)
{
  for (std::size_t n = listBytes.size() - 24; n < listBytes.size(); n += 2) {
    std::swap(listBytes[n], listBytes[n + 1]);
  }
  return listBytes;
}

bool IsZero(const std::vector<uint8_t> &listBytes)
{
  return listBytes == std::vector<uint8_t>(listBytes.size(), 0);
}

} // namespace

TEST(SelfCorrection, AFlatFieldCameraStartsInItsFactoryState)
{
  CCameraRig rig(SmallOptions("BayerRG8", ECorrectionMode::FlatField));
  EXPECT_EQ(rig.GetEntries("ShadingCorrectionMode"), Names{"FlatFieldCorrection"});
  EXPECT_EQ(rig.Get("ShadingCorrectionMode"), "FlatFieldCorrection");
  EXPECT_EQ(rig.GetEntries("FFCBlockSize"), (Names{"BlockSize_1024", "BlockSize_256"}));
  EXPECT_EQ(rig.Device<GenApi::IEnumeration>("FFCBlockSize").GetEntryByName("BlockSize_1024")->GetValue(), 0);
  EXPECT_EQ(rig.Device<GenApi::IEnumeration>("FFCBlockSize").GetEntryByName("BlockSize_256")->GetValue(), 1);
  EXPECT_EQ(rig.GetEntries("FFCFrameCount"),
            (Names{"FFCFrameCount_1", "FFCFrameCount_2", "FFCFrameCount_4", "FFCFrameCount_8", "FFCFrameCount_16"}));
  EXPECT_EQ(rig.GetEntries("UserSetSelector"), (Names{"Default", "UserSet0"}));
  EXPECT_EQ(rig.GetEntries("UserSetDefault"), (Names{"Default", "UserSet0"}));
  for (const char *pSwitch :
       {"FlatFieldCorrection", "FixedPatternNoiseCorrectMode", "DeadPixelCorrect", "RemoveParameterLimit"}) {
    EXPECT_EQ(rig.GetEntries(pSwitch), (Names{"Off", "On"})) << pSwitch;
    EXPECT_EQ(rig.Get(pSwitch), "Off") << pSwitch;
  }
  EXPECT_EQ(rig.Get("FFCBlockSize"), "BlockSize_1024");
  EXPECT_EQ(rig.Get("FFCFrameCount"), "FFCFrameCount_4");
  EXPECT_EQ(rig.Get("FFCExpectGray"), "128");
  EXPECT_EQ(rig.Device<GenApi::IInteger>("FFCExpectGray").GetMin(), 0);
  EXPECT_EQ(rig.Device<GenApi::IInteger>("FFCExpectGray").GetMax(), 255);
  EXPECT_EQ(rig.Get("DigitalShift"), "0");
  EXPECT_EQ(rig.Device<GenApi::IInteger>("DigitalShift").GetMin(), 0);
  EXPECT_EQ(rig.Device<GenApi::IInteger>("DigitalShift").GetMax(), 4);
  EXPECT_EQ(rig.Get("UserSetSelector"), "Default");
  EXPECT_EQ(rig.Get("UserSetDefault"), "Default");
  EXPECT_EQ(rig.Get("ExposureTime"), "10000");
  EXPECT_EQ(rig.Get("Gain"), "0");
  EXPECT_EQ(rig.Get("BlackLevel"), "0.55");
}

TEST(SelfCorrection, AVignettingCameraHasLargeBlocksAndNoDarkSide)
{
  CCameraRig rig(SmallOptions("Mono12", ECorrectionMode::Vignetting));
  EXPECT_EQ(rig.GetEntries("ShadingCorrectionMode"), Names{"TailorFlatFieldCorrection"});
  EXPECT_EQ(rig.GetEntries("FFCBlockSize"), (Names{"BlockSize_16384", "BlockSize_4096"}));
  EXPECT_EQ(rig.Device<GenApi::IEnumeration>("FFCBlockSize").GetEntryByName("BlockSize_16384")->GetValue(), 3);
  EXPECT_EQ(rig.Device<GenApi::IEnumeration>("FFCBlockSize").GetEntryByName("BlockSize_4096")->GetValue(), 2);
  EXPECT_EQ(rig.Get("FFCFrameCount"), "FFCFrameCount_4");
  EXPECT_EQ(rig.Get("FlatFieldCorrection"), "Off");
  for (std::size_t n = 0; n < std::size(ALL_FEATURES); ++n) {
    EXPECT_EQ(rig.Has(ALL_FEATURES[n]), n < FLAT_FIELD_ONLY) << ALL_FEATURES[n];
  }
}

TEST(SelfCorrection, AnUnknownCorrectionHasANameAndNothingElse)
{
  CCameraRig rig(SmallOptions("Mono16", ECorrectionMode::Unknown));
  EXPECT_EQ(rig.GetEntries("ShadingCorrectionMode"), Names{"ParallaxCorrection"});
  EXPECT_EQ(rig.Get("ShadingCorrectionMode"), "ParallaxCorrection");
  EXPECT_EQ(rig.Get("PixelFormat"), "Mono16");
  for (std::size_t n = 1; n < std::size(ALL_FEATURES); ++n) {
    EXPECT_FALSE(rig.Has(ALL_FEATURES[n])) << ALL_FEATURES[n];
  }
  ASSERT_EQ(rig.Camera().Start().GetError(), "");
  EXPECT_EQ(rig.Frames().Take(2).size(), 2U);
}

TEST(SelfCorrection, ACameraWithoutOneHasNoneOfItsFeatures)
{
  CCameraRig rig;
  for (const char *pName : ALL_FEATURES) {
    EXPECT_FALSE(rig.Has(pName)) << pName;
  }
}

TEST(SelfCorrection, FlatFieldOffersEveryFormatOfTheSensorAndVignettingThreeDepths)
{
  for (const SSensorFormat &stFormat : GetSensorFormats()) {
    CCameraRig flat(SmallOptions(stFormat.pName, ECorrectionMode::FlatField));
    EXPECT_EQ(flat.Get("PixelFormat"), stFormat.pName);
    EXPECT_EQ(flat.GetEntries("PixelFormat").size(), GetSensorFormats(stFormat.eLayout).size());
    const auto stOptions = SmallOptions(stFormat.pName, ECorrectionMode::Vignetting);
    if (stFormat.nBitDepth <= 12) {
      CCameraRig vignetting(stOptions);
      EXPECT_EQ(vignetting.Get("PixelFormat"), stFormat.pName);
      EXPECT_EQ(vignetting.GetEntries("PixelFormat").size(), 3U);
    } else {
      const std::string strError = GetCreationError(stOptions);
      EXPECT_NE(strError.find(stFormat.pName), std::string::npos) << strError;
      EXPECT_NE(strError.find("vignetting"), std::string::npos) << strError;
    }
  }
}

TEST(SelfCorrection, TheRegisterIsAsLongAsRegionAndBlocksSay)
{
  for (const char *pFormat : {"Mono8", "BayerGB8"}) {
    CCameraRig rig(SmallOptions(pFormat, ECorrectionMode::FlatField));
    const auto expectSize = [&](int64_t nSize) {
      EXPECT_EQ(rig.Get("FFCCoefficientsSize"), std::to_string(nSize)) << pFormat;
      EXPECT_EQ(rig.Device<GenApi::IRegister>("FFCValueAll").GetLength(), nSize) << pFormat;
      EXPECT_EQ(rig.ReadRegister().size(), static_cast<std::size_t>(nSize)) << pFormat;
    };
    expectSize(4 * 3 * 8 + 24); // 48 rows: a block, and half of one that does not count
    rig.Set("FFCBlockSize", "BlockSize_256");
    expectSize(6 * 5 * 8 + 24);
    rig.Set("Width", "42");
    expectSize(5 * 5 * 8 + 24);
    rig.Set("Width", "40");
    expectSize(4 * 5 * 8 + 24);
    rig.Set("FFCBlockSize", "BlockSize_1024");
    rig.Set("Height", "30");
    expectSize(24); // no block fits
    EXPECT_THROW(rig.Set("FFCCoefficientsSize", "24"), GenICam::AccessException);
  }
}

TEST(SelfCorrection, ARegisterOfAnotherLengthIsRefusedAndChangesNothing)
{
  CCameraRig rig(SmallOptions("Mono8", ECorrectionMode::FlatField));
  auto listBytes = MakeRegister(rig);
  rig.WriteRegister(listBytes);
  const auto listRead = rig.ReadRegister();
  auto listShort = MakeRegister(rig, 7);
  listShort.pop_back();
  EXPECT_THROW(rig.WriteRegister(listShort), GenICam::OutOfRangeException);
  listShort.resize(listShort.size() + 2);
  EXPECT_THROW(rig.WriteRegister(listShort), GenICam::OutOfRangeException);
  EXPECT_EQ(rig.ReadRegister(), listRead);
}

TEST(SelfCorrection, AFlatFieldRegisterReadsWithTheRecordsBytesExchanged)
{
  CCameraRig rig(SmallOptions("BayerGR8", ECorrectionMode::FlatField));
  EXPECT_TRUE(IsZero(rig.ReadRegister())) << "before anything was written";
  const auto listBytes = MakeRegister(rig);
  rig.WriteRegister(listBytes);
  EXPECT_EQ(rig.ReadRegister(), ExchangeRecord(listBytes));
  rig.WriteRegister(listBytes);
  EXPECT_EQ(rig.ReadRegister(), ExchangeRecord(listBytes)) << "the second time as the first";
}

TEST(SelfCorrection, AVignettingRegisterReadsAsWritten)
{
  auto stOptions = SmallOptions("BayerGR8", ECorrectionMode::Vignetting);
  stOptions.nWidth = 320;
  stOptions.nHeight = 256;
  CCameraRig rig(stOptions);
  EXPECT_EQ(rig.Get("FFCCoefficientsSize"), std::to_string(4 * 4 * 3 * 2 + 24)); // 320: half a block does not count
  EXPECT_TRUE(IsZero(rig.ReadRegister()));
  const auto listBytes = MakeRegister(rig);
  rig.WriteRegister(listBytes);
  EXPECT_EQ(rig.ReadRegister(), listBytes);
}

TEST(SelfCorrection, CoefficientsCountForTheirRegionAndBlocksOnly)
{
  CCameraRig rig(SmallOptions("Mono8", ECorrectionMode::FlatField));
  rig.Set("FFCBlockSize", "BlockSize_256");
  rig.Set("Width", "32");
  const auto listBytes = MakeRegister(rig);
  rig.WriteRegister(listBytes);
  const auto expectLostWhile = [&](const char *pName, const char *pOther, const char *pBack) {
    rig.Set(pName, pOther);
    EXPECT_TRUE(IsZero(rig.ReadRegister())) << pName;
    rig.Set(pName, pBack);
    EXPECT_EQ(rig.ReadRegister(), ExchangeRecord(listBytes)) << pName;
  };
  expectLostWhile("Width", "34", "32"); // of the same length
  expectLostWhile("Height", "32", "48");
  expectLostWhile("OffsetX", "2", "0");
  expectLostWhile("FFCBlockSize", "BlockSize_1024", "BlockSize_256");
  rig.Set("FFCExpectGray", "99");
  rig.Set("PixelFormat", "Mono12");
  EXPECT_EQ(rig.ReadRegister(), ExchangeRecord(listBytes)) << "these do not matter";
}

TEST(SelfCorrection, RemovingTheLimitsLetsValuesGoFurtherAndSettingThemBringsThemBack)
{
  CCameraRig rig(SmallOptions("Mono8", ECorrectionMode::FlatField));
  for (const auto &[pName, dLimit] : {std::pair("ExposureTime", 1000000.0), {"Gain", 24.0}, {"BlackLevel", 10.0}}) {
    auto &node = rig.Device<GenApi::IFloat>(pName);
    EXPECT_EQ(node.GetMax(), dLimit);
    EXPECT_THROW(node.SetValue(dLimit * 1.25), GenICam::OutOfRangeException) << pName;
    rig.Set("RemoveParameterLimit", "On");
    EXPECT_GE(node.GetMax(), dLimit * 1.5);
    node.SetValue(dLimit * 1.25);
    rig.Set("RemoveParameterLimit", "On");
    EXPECT_EQ(node.GetValue(), dLimit * 1.25) << pName;
    rig.Set("RemoveParameterLimit", "Off");
    EXPECT_EQ(node.GetValue(), dLimit) << pName;
    node.SetValue(dLimit * 0.5);
    rig.Set("RemoveParameterLimit", "On");
    rig.Set("RemoveParameterLimit", "Off");
    EXPECT_EQ(node.GetValue(), dLimit * 0.5) << "was never beyond";
  }
}
