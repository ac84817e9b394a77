#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/observednodemap.h"
#include "genapi/softwarenodemap/softwarenodemap.h"
#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/process/testframe.h"
#include "tests/support/failnthaccess.h"

using ffc::genapi::CObservedNodeMap;
using ffc::genapi::CSoftwareEnumeration;
using ffc::genapi::CSoftwareInteger;
using ffc::genapi::CSoftwareNodeMap;
using ffc::pluginobject::CFeatureAccess;
using namespace ffc::process;
using namespace ffc::test;

namespace {

constexpr int64_t SIDE_31 = int64_t{1} << 31;
constexpr int64_t SIDE_62 = int64_t{1} << 62;

// The four features of a frame's size.
class CFormatMap {
public:
  CFormatMap(uint32_t nPixelFormat, int64_t nWidth, int64_t nHeight, int64_t nPayloadSize)
  {
    m_map.AddInteger("Width", nWidth);
    m_map.AddInteger("Height", nHeight);
    m_map.AddInteger("PayloadSize", nPayloadSize);
    m_map.AddEnumeration("PixelFormat").Entry("Current", nPixelFormat);
  }

  CSoftwareInteger &Integer(const char *pName) { return *m_map.Find<CSoftwareInteger>(pName); }
  CSoftwareEnumeration &PixelFormat() { return *m_map.Find<CSoftwareEnumeration>("PixelFormat"); }
  CFeatureAccess Features() { return CFeatureAccess(&m_map); }
  int32_t Check(const SFrameFormat &stKept) { return CheckFrameSize(Features(), stKept); }

private:
  CSoftwareNodeMap m_map;
};

} // namespace

TEST(FrameFormat, KnowsTheBitDepthOfItsPixelFormat)
{
  EXPECT_EQ(MakeFormat(MONO_8, 64, 48).GetBitDepth(), 8);
  EXPECT_EQ(MakeFormat(MONO_12_PACKED, 64, 48).GetBitDepth(), 12);
  EXPECT_EQ(MakeFormat(UNKNOWN_FORMAT, 64, 48).GetBitDepth(), -1);
}

TEST(FrameFormat, CountsThePixelsOfASaneGeometryOnly)
{
  EXPECT_EQ(MakeFormat(MONO_8, 64, 48).GetPixelCount(), 64U * 48U);
  EXPECT_EQ(MakeFormat(MONO_8, INT32_MAX, INT32_MAX).GetPixelCount(), uint64_t{INT32_MAX} * INT32_MAX);
  for (const int64_t nSide : {int64_t{0}, int64_t{-1}, -SIDE_31, SIDE_31, SIDE_62, INT64_MIN, INT64_MAX}) {
    EXPECT_EQ(MakeFormat(MONO_8, nSide, 48).GetPixelCount(), 0U) << nSide;
    EXPECT_EQ(MakeFormat(MONO_8, 64, nSide).GetPixelCount(), 0U) << nSide;
    EXPECT_EQ(MakeFormat(MONO_8, nSide, nSide).GetPixelCount(), 0U) << nSide;
  }
}

TEST(FrameFormat, FitsIntoABufferThatHoldsEveryPixel)
{
  EXPECT_TRUE(MakeFormat(MONO_8, 64, 48).FitsInto(64 * 48));
  EXPECT_FALSE(MakeFormat(MONO_8, 64, 48).FitsInto(64 * 48 - 1));
  EXPECT_TRUE(MakeFormat(MONO_8, 1, 1).FitsInto(1));
  for (const uint32_t nPixelFormat : {MONO_10, MONO_12, MONO_16, MONO_10_PACKED, UNKNOWN_FORMAT}) {
    EXPECT_TRUE(MakeFormat(nPixelFormat, 64, 48).FitsInto(2 * 64 * 48)) << nPixelFormat;
    EXPECT_FALSE(MakeFormat(nPixelFormat, 64, 48).FitsInto(2 * 64 * 48 - 1)) << nPixelFormat;
  }
}

TEST(FrameFormat, WithAHostileGeometryFitsIntoNothing)
{
  for (const int64_t nSide : {int64_t{0}, int64_t{-1}, SIDE_31, SIDE_62, INT64_MIN}) {
    EXPECT_FALSE(MakeFormat(MONO_8, nSide, 2).FitsInto(UINT64_MAX)) << nSide;
    EXPECT_FALSE(MakeFormat(MONO_16, nSide, nSide).FitsInto(UINT64_MAX)) << nSide;
  }
  EXPECT_FALSE(MakeFormat(MONO_16, INT32_MAX, INT32_MAX).FitsInto(uint64_t{1} << 62));
}

TEST(FrameFormat, OfAPackedFormatHasTheUnpackedSize)
{
  SFrameFormat stFormat = MakeFormat(MONO_12_PACKED, 64, 48);
  stFormat.nFrameSize = 64 * 48 * 3 / 2;
  stFormat.ApplyUnpackedSize();
  EXPECT_EQ(stFormat.nFrameSize, 64U * 48U * 2U);
}

TEST(FrameFormat, OfAnotherFormatKeepsTheCamerasSize)
{
  SFrameFormat stFormat = MakeFormat(MONO_12, 64, 48);
  stFormat.nFrameSize = 12345;
  stFormat.ApplyUnpackedSize();
  EXPECT_EQ(stFormat.nFrameSize, 12345U);
}

TEST(FrameFormat, OfAPackedFormatWithAHostileGeometryKeepsTheCamerasSize)
{
  for (const int64_t nSide : {int64_t{0}, int64_t{-1}, SIDE_62, INT64_MIN}) {
    SFrameFormat stFormat = MakeFormat(MONO_12_PACKED, nSide, 4);
    stFormat.nFrameSize = 12345;
    stFormat.ApplyUnpackedSize();
    EXPECT_EQ(stFormat.nFrameSize, 12345U) << nSide;
  }
}

TEST(FrameFormat, IsReadFeatureByFeature)
{
  CFormatMap map(MONO_12, 64, 48, 6144);
  SFrameFormat stFormat;
  EXPECT_EQ(ReadPayloadSize(map.Features(), stFormat), 0);
  EXPECT_EQ(ReadWidth(map.Features(), stFormat), 0);
  EXPECT_EQ(ReadHeight(map.Features(), stFormat), 0);
  EXPECT_EQ(ReadPixelFormat(map.Features(), stFormat), 0);
  EXPECT_EQ(stFormat.nFrameSize, 6144U);
  EXPECT_EQ(stFormat.nWidth, 64);
  EXPECT_EQ(stFormat.nHeight, 48);
  EXPECT_EQ(stFormat.nPixelFormat, MONO_12);
}

TEST(FrameFormat, StaysAsItWasWhenAReadFails)
{
  CFormatMap map(MONO_12, 64, 48, 6144);
  for (const char *pName : {"Width", "Height", "PayloadSize"}) {
    map.Integer(pName).Access(GenApi::NA);
  }
  map.PixelFormat().Access(GenApi::NA);
  SFrameFormat stFormat = MakeFormat(MONO_8, 10, 20);
  EXPECT_EQ(ReadPayloadSize(map.Features(), stFormat), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(ReadWidth(map.Features(), stFormat), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(ReadHeight(map.Features(), stFormat), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(ReadPixelFormat(map.Features(), stFormat), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(stFormat.nFrameSize, 200U);
  EXPECT_EQ(stFormat.nWidth, 10);
  EXPECT_EQ(stFormat.nHeight, 20);
  EXPECT_EQ(stFormat.nPixelFormat, MONO_8);
}

TEST(FrameFormat, HasTheShapeOfAnotherOfTheSameGeometryAndDepth)
{
  const SFrameFormat stFormat = MakeFormat(MONO_12, 64, 48);
  EXPECT_TRUE(stFormat.HasSameShape(MakeFormat(MONO_12, 64, 48)));
  EXPECT_TRUE(stFormat.HasSameShape(MakeFormat(MONO_12_PACKED, 64, 48)));
  EXPECT_FALSE(stFormat.HasSameShape(MakeFormat(MONO_12, 48, 64)));
  EXPECT_FALSE(stFormat.HasSameShape(MakeFormat(MONO_12, 64, 49)));
  EXPECT_FALSE(stFormat.HasSameShape(MakeFormat(MONO_10, 64, 48)));
}

namespace {

constexpr const char *DEVICE_NAMES[] = {"PixelFormat", "PayloadSize", "Width", "Height"};
constexpr const char *OUTPUT_NAMES[] = {"OutPixelFormat", "OutputPayloadSize", "OutputWidth", "OutputHeight"};

// Without the feature of number nLeftOut, and with another value of number nChanged.
void AddImage(CSoftwareNodeMap &map, const char *const (&apNames)[4], int nLeftOut, int nChanged)
{
  for (int n = 0; n < 4; ++n) {
    if (n == nLeftOut) {
      continue;
    }
    if (n > 0) {
      map.AddInteger(apNames[n], n == nChanged ? 101 : 100);
      continue;
    }
    CSoftwareEnumeration &format = map.AddEnumeration(apNames[n]);
    format.Entry("Mono8", 0);
    format.Entry("Mono12", 1);
    format.Select(n == nChanged ? "Mono12" : "Mono8");
  }
}

} // namespace

TEST(DeliveredImage, IsTheCamerasInAllThatBothTell)
{
  for (int nChanged = -1; nChanged < 4; ++nChanged) {
    for (int nMissing = -1; nMissing < 4; ++nMissing) {
      const bool bTold = nChanged >= 0 && nChanged != nMissing;
      const int32_t nExpected = bTold ? PLUGIN_STATUS_DEVICE_PARAMS_MODIFIED : PLUGIN_STATUS_SUCCESS;
      for (const bool bMissingAtDevice : {false, true}) {
        CSoftwareNodeMap output;
        CSoftwareNodeMap device;
        AddImage(output, OUTPUT_NAMES, bMissingAtDevice ? -1 : nMissing, nChanged);
        AddImage(device, DEVICE_NAMES, bMissingAtDevice ? nMissing : -1, -1);
        EXPECT_EQ(CheckDeliveredImage(CFeatureAccess(&output), CFeatureAccess(&device)), nExpected)
          << nChanged << nMissing << bMissingAtDevice;
      }
    }
  }
}

TEST(DeliveredImage, OfWhichAnyReadFailsIsNotTakenForTheCameras)
{
  CSoftwareNodeMap output;
  CSoftwareNodeMap device;
  AddImage(output, OUTPUT_NAMES, -1, -1);
  AddImage(device, DEVICE_NAMES, -1, -1);
  uint64_t nFail = 0;
  for (;;) {
    CFailNthAccess failNth(++nFail, EAccessFailure::Timeout);
    CObservedNodeMap observedOutput(output);
    CObservedNodeMap observedDevice(device);
    observedOutput.AddHook(std::ref(failNth));
    observedDevice.AddHook(std::ref(failNth));
    const int32_t nStatus = CheckDeliveredImage(CFeatureAccess(&observedOutput), CFeatureAccess(&observedDevice));
    if (failNth.GetCount() < nFail) {
      break;
    }
    EXPECT_NE(nStatus, PLUGIN_STATUS_SUCCESS) << nFail;
  }
  EXPECT_GT(nFail, 16U) << "each of eight features is looked for and read";
}

TEST(FrameSizeCheck, SucceedsWhileTheSizeIsTheKeptOne)
{
  EXPECT_EQ(CFormatMap(MONO_12, 64, 48, 6144).Check(MakeFormat(MONO_12, 64, 48)), 0);
}

TEST(FrameSizeCheck, ComparesTheUnpackedSizeOfAPackedFormat)
{
  CFormatMap map(MONO_12_PACKED, 64, 48, 4608);
  EXPECT_EQ(map.Check(MakeFormat(MONO_12, 64, 48)), 0);
  map.Integer("PayloadSize").Poke(1);
  EXPECT_EQ(map.Check(MakeFormat(MONO_12, 64, 48)), 0);
  map.Integer("Width").Poke(62);
  EXPECT_EQ(map.Check(MakeFormat(MONO_12, 64, 48)), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
}

TEST(FrameSizeCheck, ComparesNothingButTheSize)
{
  CFormatMap map(MONO_12, 48, 64, 6144);
  EXPECT_EQ(map.Check(MakeFormat(MONO_16, 64, 48)), 0);
}

TEST(FrameSizeCheck, RefusesAnotherSize)
{
  for (const int64_t nPayloadSize : {int64_t{6143}, int64_t{6145}, int64_t{0}, int64_t{-1}, SIDE_62}) {
    EXPECT_EQ(CFormatMap(MONO_12, 64, 48, nPayloadSize).Check(MakeFormat(MONO_12, 64, 48)),
              PLUGIN_STATUS_BUFFER_SIZE_ERROR)
      << nPayloadSize;
  }
}

TEST(FrameSizeCheck, TellsTheCodeOfAFailingRead)
{
  for (const char *pName : {"PayloadSize", "Width", "Height"}) {
    CFormatMap map(MONO_12, 64, 48, 6144);
    map.Integer(pName).Access(GenApi::NI);
    EXPECT_EQ(map.Check(MakeFormat(MONO_12, 64, 48)), PLUGIN_STATUS_FEATURE_ERROR) << pName;
  }
  CFormatMap map(MONO_12, 64, 48, 6144);
  map.PixelFormat().Poke(0);
  EXPECT_EQ(map.Check(MakeFormat(MONO_12, 64, 48)), PLUGIN_STATUS_FEATURE_ERROR);
}

TEST(FrameSizeCheck, WithoutNodeMapOrFeaturesIsInvalid)
{
  EXPECT_EQ(CheckFrameSize(CFeatureAccess(nullptr), SFrameFormat()), PLUGIN_STATUS_INVALID_PARAM);
  CSoftwareNodeMap mapEmpty;
  EXPECT_EQ(CheckFrameSize(CFeatureAccess(&mapEmpty), SFrameFormat()), PLUGIN_STATUS_INVALID_PARAM);
}

namespace {

// A camera with the given formats, set to the first one.
bool IsSelected(const std::vector<const char *> &listFormats, bool bColorCamera = true)
{
  CSoftwareNodeMap map;
  CSoftwareEnumeration &pixelFormat = map.AddEnumeration("PixelFormat");
  int64_t nValue = 0;
  for (const char *pFormat : listFormats) {
    pixelFormat.Entry(pFormat, nValue++);
  }
  return IsBayerFormatSelected(CFeatureAccess(&map), bColorCamera);
}

} // namespace

TEST(BayerFormatSelected, IsTrueForAMonochromeCameraWhateverItsFormats)
{
  EXPECT_TRUE(IsBayerFormatSelected(CFeatureAccess(nullptr), false));
  EXPECT_TRUE(IsSelected({"RGB8"}, false));
}

TEST(BayerFormatSelected, IsTrueForAColourCameraWithBayerFormatsOnly)
{
  EXPECT_TRUE(IsSelected({"BayerRG8"}));
  EXPECT_TRUE(IsSelected({"BayerRG8", "BayerRG12", "BayerRG12Packed"}));
}

TEST(BayerFormatSelected, DependsOnTheCurrentFormatOfAColourCameraWithOtherFormats)
{
  EXPECT_TRUE(IsSelected({"BayerGB10", "Mono8", "RGB8"}));
  EXPECT_FALSE(IsSelected({"Mono8", "BayerGB10", "RGB8"}));
  EXPECT_FALSE(IsSelected({"RGB8", "BayerGB10"}));
  EXPECT_FALSE(IsSelected({"bayer", "BayerGB10"}));
}

TEST(BayerFormatSelected, LooksAtAvailableFormatsOnly)
{
  CSoftwareNodeMap map;
  map.AddEnumeration("PixelFormat").Entry("BayerRG8", 0).Entry("RGB8", 1, GenApi::NA).Entry("Mono8", 2, GenApi::NI);
  EXPECT_TRUE(IsBayerFormatSelected(CFeatureAccess(&map), true));
}

TEST(BayerFormatSelected, IsFalseWhenAColourCameraDoesNotTell)
{
  EXPECT_FALSE(IsBayerFormatSelected(CFeatureAccess(nullptr), true));
  CSoftwareNodeMap map;
  EXPECT_FALSE(IsBayerFormatSelected(CFeatureAccess(&map), true));
  CSoftwareEnumeration &pixelFormat = map.AddEnumeration("PixelFormat").Entry("BayerRG8", 0);
  EXPECT_TRUE(IsBayerFormatSelected(CFeatureAccess(&map), true));
  pixelFormat.Poke(7); // a value without an entry
  EXPECT_FALSE(IsBayerFormatSelected(CFeatureAccess(&map), true));
  pixelFormat.Poke(0).Access(GenApi::NA);
  EXPECT_FALSE(IsBayerFormatSelected(CFeatureAccess(&map), true));
}

TEST(BayerType, EachColourFilterGivesItsBayerType)
{
  EXPECT_EQ(GetBayerType("BayerRG"), 1);
  EXPECT_EQ(GetBayerType("BayerGB"), 2);
  EXPECT_EQ(GetBayerType("BayerGR"), 3);
  EXPECT_EQ(GetBayerType("BayerBG"), 4);
}

TEST(BayerType, AnyOtherColourFilterIsMono)
{
  for (const char *pName : {"", "None", "BayerRG8", "bayerrg", "Bayer", "BayerRGGB"}) {
    EXPECT_EQ(GetBayerType(pName), 0) << pName;
  }
}
