#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "camera/sensorformat.h"
#include "tests/camera/software/camerabench.h"

using ffc::camera::ECorrectionMode;
using ffc::camera::GetSensorFormats;
using ffc::camera::SSensorFormat;
using ffc::test::CCameraBench;
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
constexpr std::size_t FLAT_FIELD_ONLY = 12; ///< from here on a vignetting camera does not have them

using Names = std::vector<std::string>;

/// A register of the camera's length with these bytes, counting up.
std::vector<uint8_t> MakeRegister(CCameraBench &bench, uint8_t nFirst = 1)
{
  std::vector<uint8_t> listBytes(static_cast<std::size_t>(std::stoul(bench.Get("FFCCoefficientsSize"))));
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
  CCameraBench bench(SmallOptions("BayerRG8", ECorrectionMode::FlatField));
  EXPECT_EQ(bench.GetEntries("ShadingCorrectionMode"), Names{"FlatFieldCorrection"});
  EXPECT_EQ(bench.Get("ShadingCorrectionMode"), "FlatFieldCorrection");
  EXPECT_EQ(bench.GetEntries("FFCBlockSize"), (Names{"BlockSize_1024", "BlockSize_256"}));
  EXPECT_EQ(bench.Device<GenApi::IEnumeration>("FFCBlockSize").GetEntryByName("BlockSize_1024")->GetValue(), 0);
  EXPECT_EQ(bench.Device<GenApi::IEnumeration>("FFCBlockSize").GetEntryByName("BlockSize_256")->GetValue(), 1);
  EXPECT_EQ(bench.GetEntries("FFCFrameCount"),
            (Names{"FFCFrameCount_1", "FFCFrameCount_2", "FFCFrameCount_4", "FFCFrameCount_8", "FFCFrameCount_16"}));
  EXPECT_EQ(bench.GetEntries("UserSetSelector"), (Names{"Default", "UserSet0"}));
  EXPECT_EQ(bench.GetEntries("UserSetDefault"), (Names{"Default", "UserSet0"}));
  for (const char *pSwitch :
       {"FlatFieldCorrection", "FixedPatternNoiseCorrectMode", "DeadPixelCorrect", "RemoveParameterLimit"}) {
    EXPECT_EQ(bench.GetEntries(pSwitch), (Names{"Off", "On"})) << pSwitch;
    EXPECT_EQ(bench.Get(pSwitch), "Off") << pSwitch;
  }
  EXPECT_EQ(bench.Get("FFCBlockSize"), "BlockSize_1024");
  EXPECT_EQ(bench.Get("FFCFrameCount"), "FFCFrameCount_4");
  EXPECT_EQ(bench.Get("FFCExpectGray"), "128");
  EXPECT_EQ(bench.Device<GenApi::IInteger>("FFCExpectGray").GetMin(), 0);
  EXPECT_EQ(bench.Device<GenApi::IInteger>("FFCExpectGray").GetMax(), 255);
  EXPECT_EQ(bench.Get("DigitalShift"), "0");
  EXPECT_EQ(bench.Device<GenApi::IInteger>("DigitalShift").GetMin(), 0);
  EXPECT_EQ(bench.Device<GenApi::IInteger>("DigitalShift").GetMax(), 4);
  EXPECT_EQ(bench.Get("UserSetSelector"), "Default");
  EXPECT_EQ(bench.Get("UserSetDefault"), "Default");
  EXPECT_EQ(bench.Get("ExposureTime"), "10000");
  EXPECT_EQ(bench.Get("Gain"), "0");
  EXPECT_EQ(bench.Get("BlackLevel"), "0.55");
}

TEST(SelfCorrection, AVignettingCameraHasLargeBlocksAndNoDarkSide)
{
  CCameraBench bench(SmallOptions("Mono12", ECorrectionMode::Vignetting));
  EXPECT_EQ(bench.GetEntries("ShadingCorrectionMode"), Names{"TailorFlatFieldCorrection"});
  EXPECT_EQ(bench.GetEntries("FFCBlockSize"), (Names{"BlockSize_16384", "BlockSize_4096"}));
  EXPECT_EQ(bench.Device<GenApi::IEnumeration>("FFCBlockSize").GetEntryByName("BlockSize_16384")->GetValue(), 3);
  EXPECT_EQ(bench.Device<GenApi::IEnumeration>("FFCBlockSize").GetEntryByName("BlockSize_4096")->GetValue(), 2);
  EXPECT_EQ(bench.Get("FFCFrameCount"), "FFCFrameCount_4");
  EXPECT_EQ(bench.Get("FlatFieldCorrection"), "Off");
  for (std::size_t n = 0; n < std::size(ALL_FEATURES); ++n) {
    EXPECT_EQ(bench.Has(ALL_FEATURES[n]), n < FLAT_FIELD_ONLY) << ALL_FEATURES[n];
  }
}

TEST(SelfCorrection, AnUnknownCorrectionHasANameAndNothingElse)
{
  CCameraBench bench(SmallOptions("Mono16", ECorrectionMode::Unknown));
  EXPECT_EQ(bench.GetEntries("ShadingCorrectionMode"), Names{"ParallaxCorrection"});
  EXPECT_EQ(bench.Get("ShadingCorrectionMode"), "ParallaxCorrection");
  EXPECT_EQ(bench.Get("PixelFormat"), "Mono16");
  for (std::size_t n = 1; n < std::size(ALL_FEATURES); ++n) {
    EXPECT_FALSE(bench.Has(ALL_FEATURES[n])) << ALL_FEATURES[n];
  }
  ASSERT_EQ(bench.Camera().Start().GetError(), "");
  EXPECT_EQ(bench.Frames().Take(2).size(), 2U);
}

TEST(SelfCorrection, ACameraWithoutOneHasNoneOfItsFeatures)
{
  CCameraBench bench;
  for (const char *pName : ALL_FEATURES) {
    EXPECT_FALSE(bench.Has(pName)) << pName;
  }
}

TEST(SelfCorrection, FlatFieldOffersEveryFormatOfTheSensorAndVignettingThreeDepths)
{
  for (const SSensorFormat &stFormat : GetSensorFormats()) {
    CCameraBench flat(SmallOptions(stFormat.pName, ECorrectionMode::FlatField));
    EXPECT_EQ(flat.Get("PixelFormat"), stFormat.pName);
    EXPECT_EQ(flat.GetEntries("PixelFormat").size(), GetSensorFormats(stFormat.eLayout).size());
    const auto stOptions = SmallOptions(stFormat.pName, ECorrectionMode::Vignetting);
    if (stFormat.nBitDepth <= 12) {
      CCameraBench vignetting(stOptions);
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
    CCameraBench bench(SmallOptions(pFormat, ECorrectionMode::FlatField));
    const auto fnExpectSize = [&](int64_t nSize) {
      EXPECT_EQ(bench.Get("FFCCoefficientsSize"), std::to_string(nSize)) << pFormat;
      EXPECT_EQ(bench.Device<GenApi::IRegister>("FFCValueAll").GetLength(), nSize) << pFormat;
      EXPECT_EQ(bench.ReadRegister().size(), static_cast<std::size_t>(nSize)) << pFormat;
    };
    fnExpectSize(4 * 3 * 8 + 24); // 48 rows: a block, and half of one that does not count
    bench.Set("FFCBlockSize", "BlockSize_256");
    fnExpectSize(6 * 5 * 8 + 24);
    bench.Set("Width", "42");
    fnExpectSize(5 * 5 * 8 + 24);
    bench.Set("Width", "40");
    fnExpectSize(4 * 5 * 8 + 24);
    bench.Set("FFCBlockSize", "BlockSize_1024");
    bench.Set("Height", "30");
    fnExpectSize(24); // no block fits
    EXPECT_THROW(bench.Set("FFCCoefficientsSize", "24"), GenICam::AccessException);
  }
}

TEST(SelfCorrection, ARegisterOfAnotherLengthIsRefusedAndChangesNothing)
{
  CCameraBench bench(SmallOptions("Mono8", ECorrectionMode::FlatField));
  auto listBytes = MakeRegister(bench);
  bench.WriteRegister(listBytes);
  const auto listRead = bench.ReadRegister();
  auto listShort = MakeRegister(bench, 7);
  listShort.pop_back();
  EXPECT_THROW(bench.WriteRegister(listShort), GenICam::OutOfRangeException);
  listShort.resize(listShort.size() + 2);
  EXPECT_THROW(bench.WriteRegister(listShort), GenICam::OutOfRangeException);
  EXPECT_EQ(bench.ReadRegister(), listRead);
}

TEST(SelfCorrection, AFlatFieldRegisterReadsWithTheRecordsBytesExchanged)
{
  CCameraBench bench(SmallOptions("BayerGR8", ECorrectionMode::FlatField));
  EXPECT_TRUE(IsZero(bench.ReadRegister())) << "before anything was written";
  const auto listBytes = MakeRegister(bench);
  bench.WriteRegister(listBytes);
  EXPECT_EQ(bench.ReadRegister(), ExchangeRecord(listBytes));
  bench.WriteRegister(listBytes);
  EXPECT_EQ(bench.ReadRegister(), ExchangeRecord(listBytes)) << "the second time as the first";
}

TEST(SelfCorrection, AVignettingRegisterReadsAsWritten)
{
  auto stOptions = SmallOptions("BayerGR8", ECorrectionMode::Vignetting);
  stOptions.nWidth = 320;
  stOptions.nHeight = 256;
  CCameraBench bench(stOptions);
  EXPECT_EQ(bench.Get("FFCCoefficientsSize"), std::to_string(4 * 4 * 3 * 2 + 24)); // 320: half a block does not count
  EXPECT_TRUE(IsZero(bench.ReadRegister()));
  const auto listBytes = MakeRegister(bench);
  bench.WriteRegister(listBytes);
  EXPECT_EQ(bench.ReadRegister(), listBytes);
}

TEST(SelfCorrection, CoefficientsCountForTheirRegionAndBlocksOnly)
{
  CCameraBench bench(SmallOptions("Mono8", ECorrectionMode::FlatField));
  bench.Set("FFCBlockSize", "BlockSize_256");
  bench.Set("Width", "32");
  const auto listBytes = MakeRegister(bench);
  bench.WriteRegister(listBytes);
  const auto fnExpectLostWhile = [&](const char *pName, const char *pOther, const char *pBack) {
    bench.Set(pName, pOther);
    EXPECT_TRUE(IsZero(bench.ReadRegister())) << pName;
    bench.Set(pName, pBack);
    EXPECT_EQ(bench.ReadRegister(), ExchangeRecord(listBytes)) << pName;
  };
  fnExpectLostWhile("Width", "34", "32"); // of the same length
  fnExpectLostWhile("Height", "32", "48");
  fnExpectLostWhile("OffsetX", "2", "0");
  fnExpectLostWhile("FFCBlockSize", "BlockSize_1024", "BlockSize_256");
  bench.Set("FFCExpectGray", "99");
  bench.Set("PixelFormat", "Mono12");
  EXPECT_EQ(bench.ReadRegister(), ExchangeRecord(listBytes)) << "these do not matter";
}

TEST(SelfCorrection, RemovingTheLimitsLetsValuesGoFurtherAndSettingThemBringsThemBack)
{
  CCameraBench bench(SmallOptions("Mono8", ECorrectionMode::FlatField));
  for (const auto &[pName, dLimit] : {std::pair("ExposureTime", 1000000.0), {"Gain", 24.0}, {"BlackLevel", 10.0}}) {
    auto &node = bench.Device<GenApi::IFloat>(pName);
    EXPECT_EQ(node.GetMax(), dLimit);
    EXPECT_THROW(node.SetValue(dLimit * 1.25), GenICam::OutOfRangeException) << pName;
    bench.Set("RemoveParameterLimit", "On");
    EXPECT_GE(node.GetMax(), dLimit * 1.5);
    node.SetValue(dLimit * 1.25);
    bench.Set("RemoveParameterLimit", "On");
    EXPECT_EQ(node.GetValue(), dLimit * 1.25) << pName;
    bench.Set("RemoveParameterLimit", "Off");
    EXPECT_EQ(node.GetValue(), dLimit) << pName;
    node.SetValue(dLimit * 0.5);
    bench.Set("RemoveParameterLimit", "On");
    bench.Set("RemoveParameterLimit", "Off");
    EXPECT_EQ(node.GetValue(), dLimit * 0.5) << "was never beyond";
  }
}
