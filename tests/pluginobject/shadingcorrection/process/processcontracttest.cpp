// What holds for all processes alike, and for all of their acquisitions.
#include <atomic>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/process/framehammer.h"
#include "tests/pluginobject/shadingcorrection/process/processkinds.h"

using namespace ffc::test;
using ffc::genapi::CSoftwareEnumeration;
using ffc::genapi::SNodeAccess;

namespace {

constexpr uint32_t DARK_GRAY = 10;
constexpr uint32_t BRIGHT_GRAY = 120;

// Their acquisitions.
template <class TKind>
struct SDark {
  using Kind = TKind;
  static constexpr uint32_t GRAY = DARK_GRAY;
  static std::string GetName() { return std::string(TKind::NAME) + "Dark"; }
  static int32_t Acquire(CProcessRig &rig) { return rig.Process().AcquireDarkImage(); }
};

template <class TKind>
struct SBright {
  using Kind = TKind;
  static constexpr uint32_t GRAY = BRIGHT_GRAY;
  static std::string GetName() { return std::string(TKind::NAME) + "Bright"; }
  static int32_t Acquire(CProcessRig &rig) { return rig.Process().AcquireBrightImage(); }
};

struct SAcquisitionName {
  template <class TAcquisition>
  static std::string GetName(int)
  {
    return TAcquisition::GetName();
  }
};

// Makes the payload a number of its own, whatever the geometry.
void FixPayload(CProcessRig &rig, int64_t nPayloadSize)
{
  rig.Camera().Integer("PayloadSize").OnRead([nPayloadSize] { return nPayloadSize; });
}

// Frames of nBytes bytes, all of one value.
void ShowBytes(CProcessRig &rig, std::size_t nBytes, uint8_t nValue)
{
  rig.Show([nBytes, nValue](int) { return std::vector<uint8_t>(nBytes, nValue); });
}

} // namespace

template <class TKind>
class Process : public testing::Test {
protected:
  using Rig = typename TKind::Rig;
};

using Kinds = testing::Types<SHost, SDevice, SVignetting>;
TYPED_TEST_SUITE(Process, Kinds, SKindName);

TYPED_TEST(Process, HasAMetaObjectOfItsOwnBelowTheInterfaces)
{
  typename TypeParam::Rig rig;
  const QMetaObject *pMetaObject = rig.Process().metaObject();
  EXPECT_STREQ(pMetaObject->className(), TypeParam::CLASS);
  EXPECT_STREQ(pMetaObject->superClass()->className(), "IShadingCorrectionProcess");
  EXPECT_STREQ(pMetaObject->superClass()->superClass()->className(), "QObject");
  EXPECT_GE(pMetaObject->indexOfSignal("SigAcquisitionStatusChanged(PLUGIN_MSG)"), 0);
  EXPECT_TRUE(rig.Process().inherits("IShadingCorrectionProcess"));
}

TYPED_TEST(Process, HasNeitherFrameNorGreyBeforeTheFirstAcquisition)
{
  typename TypeParam::Rig rig;
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 0.0);
  EXPECT_EQ(rig.Process().GetImageGrayDiff(), 0.0);
  EXPECT_EQ(rig.Process().IsBlackLevelDefault(), TypeParam::BLACK_LEVEL_DEFAULT);
  EXPECT_EQ(rig.Process().WaitImageRequest(), NOT_REQUESTED);
  EXPECT_NE(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nValid, 0U);
}

TYPED_TEST(Process, TakesACameraWithAColourFilterForAColourCamera)
{
  EXPECT_FALSE(typename TypeParam::Rig("Mono8").Process().IsColorCamera());
  typename TypeParam::Rig rig("BayerGB8");
  EXPECT_TRUE(rig.Process().IsColorCamera());
  rig.Camera().Enumeration("PixelColorFilter").Access(GenApi::NI);
  EXPECT_EQ(rig.Process().InitProcess(), PLUGIN_STATUS_SUCCESS);
  EXPECT_FALSE(rig.Process().IsColorCamera());
}

TYPED_TEST(Process, SupportsTheBayerFormatsOfAColourCamera)
{
  EXPECT_TRUE(typename TypeParam::Rig("Mono12").Process().IsPixelFormatSupported());
  typename TypeParam::Rig rig("BayerBG12");
  EXPECT_TRUE(rig.Process().IsPixelFormatSupported());
  rig.Camera().Enumeration("PixelFormat").Entry("RGB8", 0x02180014);
  EXPECT_TRUE(rig.Process().IsPixelFormatSupported());
  rig.Camera().Enumeration("PixelFormat").Select("RGB8");
  EXPECT_FALSE(rig.Process().IsPixelFormatSupported());
  rig.Camera().Enumeration("PixelFormat").Access(GenApi::NA);
  EXPECT_FALSE(rig.Process().IsPixelFormatSupported());
}

TYPED_TEST(Process, TakesFrameCountFramesOfAMonochromeCamera)
{
  typename TypeParam::Rig rig;
  for (const int nCount : {1, 2, 4, 8, 16}) {
    SetFrameCount(rig, nCount);
    EXPECT_EQ(rig.AcquireBright(BRIGHT_GRAY), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.GetFrameCount(), nCount);
    EXPECT_EQ(rig.Process().WaitImageRequest(), NOT_REQUESTED) << nCount;
  }
}

TYPED_TEST(Process, AsksForNoFrameAfterTheLastOne)
{
  typename TypeParam::Rig rig;
  SetFrameCount(rig, 1);
  bool bRequested = false;
  rig.SetHook([&](const SNodeAccess &) { // by the check of the frame a further request would stand
    bRequested = bRequested || (rig.GetFrameCount() == 1 && rig.Process().WaitImageRequest() != NOT_REQUESTED);
  });
  EXPECT_EQ(rig.AcquireBright(BRIGHT_GRAY), PLUGIN_STATUS_SUCCESS);
  EXPECT_FALSE(bRequested);
  EXPECT_EQ(rig.GetFrameCount(), 1);
}

TYPED_TEST(Process, JudgesABrightAcquisitionByItsFirstFrame)
{
  typename TypeParam::Rig rig;
  SetFrameCount(rig, 2);
  rig.Show([&rig](int nFrame) { return rig.Camera().MakeFrame(nFrame == 0 ? 90 : 200); });
  EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 90.0);
  EXPECT_EQ(rig.Process().GetImageGrayDiff(), 0.0);
}

TYPED_TEST(Process, UsesTheTruncatedAverageOfItsBrightFrames)
{
  typename TypeParam::Rig rig("Mono8", 192, 128);
  SetFrameCount(rig, 4);
  rig.Process().SetExpectGray(200);
  // Coefficients of four frames of which three have 101 in their left half; the right one is 200.
  const auto compute = [&rig](uint8_t nLeftOfTheLast) {
    rig.Show([nLeftOfTheLast](int nFrame) {
      std::vector<uint8_t> listFrame;
      for (int y = 0; y < 128; ++y) {
        listFrame.insert(listFrame.end(), 96, nFrame == 3 ? nLeftOfTheLast : uint8_t{101});
        listFrame.insert(listFrame.end(), 96, 200);
      }
      return listFrame;
    });
    EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
    return TypeParam::GetInForce(rig);
  };
  const std::vector<uint8_t> listInForce = compute(101);
  EXPECT_EQ(compute(104), listInForce); // 101.75
  EXPECT_NE(compute(105), listInForce); // 102
}

TYPED_TEST(Process, TimesOutWhenAnyOfItsBrightFramesIsLost)
{
  for (const int nLost : {0, 2, 3}) {
    typename TypeParam::Rig rig;
    SetFrameCount(rig, 4);
    rig.Camera().Float("ExposureTime").Poke(-900000.0); // 100 ms to wait
    rig.Show([&rig, nLost](int nFrame) {
      return nFrame == nLost ? std::vector<uint8_t>() : rig.Camera().MakeFrame(BRIGHT_GRAY);
    });
    EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_BUFFER_TIMEOUT) << nLost;
    EXPECT_EQ(rig.GetFrameCount(), nLost + 1);
    EXPECT_EQ(rig.Process().WaitImageRequest(), NOT_REQUESTED) << nLost;
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM) << nLost;
  }
}

TYPED_TEST(Process, IsStoppedAtAnyOfItsBrightFrames)
{
  for (const int nStopped : {0, 1, 2, 3}) {
    typename TypeParam::Rig rig;
    SetFrameCount(rig, 4);
    rig.Show([&rig, nStopped](int nFrame) {
      rig.Process().SetStopFlag(nFrame == nStopped);
      return rig.Camera().MakeFrame(BRIGHT_GRAY);
    });
    EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_NEED_BAYER_FORMAT) << nStopped;
    EXPECT_EQ(rig.GetFrameCount(), nStopped + 1);
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM) << nStopped;
  }
}

TYPED_TEST(Process, FailsWhenThePayloadChangesAtAnyOfItsBrightFrames)
{
  for (const int nChanged : {0, 1, 2, 3}) {
    typename TypeParam::Rig rig;
    SetFrameCount(rig, 4);
    const int64_t nUsual = rig.Camera().GetPayloadSize();
    std::atomic<int64_t> nPayloadSize{nUsual};
    rig.Camera().Integer("PayloadSize").OnRead([&nPayloadSize] { return nPayloadSize.load(); });
    rig.Show([&, nChanged](int nFrame) {
      nPayloadSize = nUsual + (nFrame < nChanged ? 0 : 1);
      return rig.Camera().MakeFrame(BRIGHT_GRAY);
    });
    EXPECT_EQ(rig.Process().AcquireBrightImage(), PLUGIN_STATUS_BUFFER_SIZE_ERROR) << nChanged;
    EXPECT_EQ(rig.GetFrameCount(), nChanged + 1);
    nPayloadSize = nUsual;
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_INVALID_PARAM) << nChanged;
  }
}

// Those whose camera keeps the settings of the correction.
template <class TKind>
class CorrectingProcess : public testing::Test {
};

using CorrectingKinds = testing::Types<SDevice, SVignetting>;
TYPED_TEST_SUITE(CorrectingProcess, CorrectingKinds, SKindName);

TYPED_TEST(CorrectingProcess, TakesEachFrameCountThatTheCameraTakesAndNoOther)
{
  typename TypeParam::Rig rig;
  CSoftwareEnumeration &frameCount = rig.Camera().Enumeration("FFCFrameCount");
  for (const uint32_t nCount : {1U, 2U, 4U, 8U, 16U}) {
    const std::string strEntry = "FFCFrameCount_" + std::to_string(nCount);
    EXPECT_EQ(rig.Process().SetFrameCount(strEntry), PLUGIN_STATUS_SUCCESS);
    EXPECT_EQ(rig.Process().GetCorrectionInfo().nFrameCount, nCount);
    EXPECT_EQ(frameCount.PeekSymbolic(), strEntry);
  }
  EXPECT_EQ(rig.Process().SetFrameCount("FFCFrameCount_3"), PLUGIN_STATUS_FEATURE_ERROR);
  frameCount.Access(GenApi::RO);
  EXPECT_EQ(rig.Process().SetFrameCount("FFCFrameCount_2"), PLUGIN_STATUS_FEATURE_ERROR);
  EXPECT_EQ(rig.Process().GetCorrectionInfo().nFrameCount, 16U);
  EXPECT_EQ(frameCount.PeekSymbolic(), "FFCFrameCount_16");
}

TYPED_TEST(CorrectingProcess, LoadsFromItsFlashWhatItSavedThereWithTheSameRecord)
{
  typename TypeParam::Rig rig;
  SetFrameCount(rig, 2);
  (void)rig.Process().SetExpectGray(0x91); // which a vignetting camera does not keep
  TypeParam::PutIntoForce(rig);
  const std::vector<uint8_t> listInForce = TypeParam::GetInForce(rig);
  const std::vector<uint32_t> listInfo = rig.GetInfo();
  EXPECT_EQ(rig.Process().SaveToFlash(), PLUGIN_STATUS_SUCCESS);
  SetFrameCount(rig, 16);
  (void)rig.Process().SetExpectGray(3);
  rig.Camera().Correction().SetWritten({});
  EXPECT_EQ(rig.Process().LoadFromFlash(), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetInfo(), listInfo);
  EXPECT_EQ(TypeParam::GetInForce(rig), listInForce);
}

template <class TAcquisition>
class Acquisition : public testing::Test {
protected:
  using Rig = typename TAcquisition::Kind::Rig;
};

using Acquisitions =
  testing::Types<SDark<SHost>, SBright<SHost>, SDark<SDevice>, SBright<SDevice>, SBright<SVignetting>>;
TYPED_TEST_SUITE(Acquisition, Acquisitions, SAcquisitionName);

TYPED_TEST(Acquisition, WithoutAFrameTimesOutAndWithdrawsItsRequest)
{
  typename TestFixture::Rig rig;
  rig.ShowNothing();
  EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_BUFFER_TIMEOUT);
  EXPECT_EQ(rig.Process().WaitImageRequest(), NOT_REQUESTED);
}

TYPED_TEST(Acquisition, WhoseFrameIsLostOnItsWayTimesOut)
{
  typename TestFixture::Rig rig;
  rig.Camera().Float("ExposureTime").Poke(-970000.0); // 30 ms to wait
  rig.Show([](int) { return std::vector<uint8_t>(); });
  EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_BUFFER_TIMEOUT);
  EXPECT_LE(rig.GetFrameCount(), 1);
  EXPECT_EQ(rig.Process().WaitImageRequest(), NOT_REQUESTED);
}

TYPED_TEST(Acquisition, IsStoppedAlsoWhenTheFrameCame)
{
  typename TestFixture::Rig rig;
  rig.Show([&rig](int) {
    rig.Process().SetStopFlag(true);
    return rig.Camera().MakeFrame(TypeParam::GRAY);
  });
  EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_NEED_BAYER_FORMAT);
  EXPECT_EQ(rig.GetFrameCount(), 1);
  rig.Process().SetStopFlag(false);
  rig.ShowGray(TypeParam::GRAY);
  EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_SUCCESS);
}

TYPED_TEST(Acquisition, IsStoppedAlsoWhenNoFrameCame)
{
  typename TestFixture::Rig rig;
  rig.ShowNothing();
  rig.Process().SetStopFlag(true);
  EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_NEED_BAYER_FORMAT);
}

TYPED_TEST(Acquisition, DoesNotTakeAFrameThatNobodyAskedFor)
{
  typename TestFixture::Rig rig;
  const std::vector<uint8_t> listFrame = rig.Camera().MakeFrame(255);
  rig.Process().ReceiveImage(listFrame.data(), static_cast<uint32_t>(listFrame.size()));
  rig.Process().SetImageReady(); // the early signal
  SetFrameCount(rig, 1);
  rig.ShowGray(TypeParam::GRAY);
  EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.GetFrameCount(), 1);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), TypeParam::GRAY);
}

TYPED_TEST(Acquisition, CutsALongFrame)
{
  typename TestFixture::Rig rig("Mono8", 128, 128);
  ShowBytes(rig, std::size_t{10} * 128 * 128, 18);
  EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 18.0);
  EXPECT_EQ(rig.Process().GetImageGrayDiff(), 0.0);
}

TYPED_TEST(Acquisition, HasZerosBehindAShortFrame)
{
  typename TestFixture::Rig rig("Mono8", 128, 128);
  ShowBytes(rig, std::size_t{128} * 128, 250); // nothing of it is left
  EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_SUCCESS);
  ShowBytes(rig, std::size_t{128} * 64, 18);
  EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), 18.0);
  EXPECT_EQ(rig.Process().GetImageGrayDiff(), 18.0);
}

TYPED_TEST(Acquisition, FailsWhenThePayloadChangesWhileItsFirstFrameIsTaken)
{
  if constexpr (!std::is_same_v<TypeParam, SDark<SHost>>) { // whose one frame is not checked
    typename TestFixture::Rig rig;
    const int64_t nUsual = rig.Camera().GetPayloadSize();
    std::atomic<int64_t> nPayloadSize{nUsual};
    rig.Camera().Integer("PayloadSize").OnRead([&nPayloadSize] { return nPayloadSize.load(); });
    rig.Show([&](int) {
      nPayloadSize = nUsual + 1;
      return rig.Camera().MakeFrame(TypeParam::GRAY);
    });
    EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
    EXPECT_EQ(rig.Process().GetImageMaxGray(), 0.0); // not even looked at
  }
}

TYPED_TEST(Acquisition, OfAPayloadThatCannotBeAllocatedIsOutOfMemoryAndLeavesTheCameraAsItWas)
{
  for (const int64_t nPayloadSize : {int64_t{1} << 62, INT64_MAX, int64_t{-1}, INT64_MIN}) {
    typename TestFixture::Rig rig;
    rig.ShowGray(TypeParam::GRAY);
    EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_SUCCESS);
    rig.TakeSignals();
    Settings mapBefore = rig.TakeSnapshot();
    const int64_t nUsual = rig.Camera().GetPayloadSize();
    FixPayload(rig, nPayloadSize);
    EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_OUT_OF_MEMORY) << nPayloadSize;
    EXPECT_EQ(rig.Process().WaitImageRequest(), NOT_REQUESTED) << nPayloadSize;
    if (!std::is_same_v<typename TypeParam::Kind, SVignetting>) { // whose frames come from a stream that runs
      EXPECT_EQ(rig.TakeSignals(), std::vector<int32_t>{PLUGIN_MSG_ACQUISITION_OFF}) << nPayloadSize;
    }
    if (TypeParam::GRAY == BRIGHT_GRAY) { // the one that was there is gone
      EXPECT_NE(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS) << nPayloadSize;
    }
    FixPayload(rig, nUsual);
    EXPECT_EQ(DescribeChanges(mapBefore, rig.TakeSnapshot()), "") << nPayloadSize;
    EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_SUCCESS) << nPayloadSize;
  }
}

TYPED_TEST(Acquisition, WithoutMemoryFailsAndLeavesTheCameraAsItWas)
{
  typename TestFixture::Rig rig;
  rig.Camera().Enumeration("TriggerMode").Select("On");
  const Settings mapBefore = rig.TakeSnapshot();
  int32_t nStatus = PLUGIN_STATUS_OUT_OF_MEMORY;
  int32_t nSuccesses = 0;
  for (; nStatus == PLUGIN_STATUS_OUT_OF_MEMORY && nSuccesses < 50; ++nSuccesses) {
    rig.ShowGray(TypeParam::GRAY);
    {
      const CFailingNew failing(nSuccesses);
      nStatus = TypeParam::Acquire(rig);
    }
    EXPECT_EQ(DescribeChanges(mapBefore, rig.TakeSnapshot()), "") << nSuccesses;
    EXPECT_EQ(rig.Process().WaitImageRequest(), NOT_REQUESTED) << nSuccesses;
  }
  EXPECT_EQ(nStatus, PLUGIN_STATUS_SUCCESS);
  EXPECT_GE(nSuccesses, 4) << "frame, buffer, block means and then all of them";
}

TYPED_TEST(Acquisition, OfAPayloadSmallerThanThePixelsIsRefused)
{
  typename TestFixture::Rig rig;
  const int64_t nUsual = rig.Camera().GetPayloadSize();
  for (const int64_t nPayloadSize : {int64_t{0}, int64_t{1}, nUsual - 1}) {
    FixPayload(rig, nPayloadSize);
    ShowBytes(rig, static_cast<std::size_t>(nUsual), TypeParam::GRAY);
    EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_BUFFER_SIZE_ERROR) << nPayloadSize;
  }
}

TYPED_TEST(Acquisition, OfALargerPayloadIsTaken)
{
  typename TestFixture::Rig rig;
  const int64_t nLarger = rig.Camera().GetPayloadSize() + 100;
  FixPayload(rig, nLarger);
  ShowBytes(rig, static_cast<std::size_t>(nLarger), TypeParam::GRAY);
  EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(rig.Process().GetImageMaxGray(), TypeParam::GRAY);
  if (TypeParam::GRAY == BRIGHT_GRAY) {
    EXPECT_EQ(rig.Process().ExecuteCorrection(), PLUGIN_STATUS_SUCCESS);
  }
}

TYPED_TEST(Acquisition, MayEndWithTheProcessRightAfterItsFrameThreadEnded)
{
  for (int i = 0; i < 20; ++i) {
    typename TestFixture::Rig rig("Mono8", 128, 128);
    rig.Show(nullptr); // the hammer delivers
    const CFrameHammer hammer(rig.Process(), 2 * 128 * 128);
    EXPECT_EQ(TypeParam::Acquire(rig), PLUGIN_STATUS_SUCCESS);
  }
}
