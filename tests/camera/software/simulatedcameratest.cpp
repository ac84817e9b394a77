#include <atomic>
#include <chrono>
#include <cmath>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "camera/iscenecontrol.h"
#include "camera/sensorformat.h"
#include "tests/camera/software/camerabench.h"

using ffc::camera::CreateSimulatedCamera;
using ffc::camera::FindSceneControl;
using ffc::camera::FindSensorFormat;
using ffc::camera::GetSensorFormats;
using ffc::camera::ICamera;
using ffc::camera::ISceneControl;
using ffc::camera::SCameraFrame;
using ffc::camera::SSensorFormat;
using ffc::camera::SSimulatedCameraOptions;
using ffc::genapi::COLOR_COUNT;
using ffc::genapi::GetPixelColor;
using ffc::test::CCameraBench;
using ffc::test::GetCreationError;
using ffc::test::SKeptFrame;
using ffc::test::SmallOptions;

namespace {

using namespace std::chrono_literals;

/// Means of red, green and blue over the black level.
std::vector<double> GetColorSignals(const SKeptFrame &stFrame)
{
  const SSensorFormat &stFormat = *FindSensorFormat(stFrame.stInfo.nPixelFormat);
  const std::vector<uint16_t> listSamples = stFrame.GetSamples();
  std::vector<double> listSums(COLOR_COUNT);
  std::vector<double> listCounts(COLOR_COUNT);
  for (uint32_t n = 0; n < listSamples.size(); ++n) {
    const auto nColor =
      static_cast<std::size_t>(GetPixelColor(stFormat.eLayout, n % stFrame.stInfo.nWidth, n / stFrame.stInfo.nWidth));
    listSums[nColor] += listSamples[n] - 0.004 * stFormat.GetMaxValue();
    listCounts[nColor] += 1.0;
  }
  for (std::size_t n = 0; n < listSums.size(); ++n) {
    listSums[n] /= listCounts[n];
  }
  return listSums;
}

} // namespace

TEST(SimulatedCamera, FramesCarryTheirGeometryAndCount)
{
  CCameraBench bench;
  ASSERT_EQ(bench.Camera().Start().GetError(), "");
  const auto listFrames = bench.Frames().Take(5);
  ASSERT_EQ(listFrames.size(), 5U);
  for (std::size_t n = 0; n < listFrames.size(); ++n) {
    const SCameraFrame &stInfo = listFrames[n].stInfo;
    EXPECT_EQ(stInfo.nWidth, 64U);
    EXPECT_EQ(stInfo.nHeight, 48U);
    EXPECT_EQ(stInfo.nPixelFormat, 0x01100005U);
    EXPECT_EQ(stInfo.nSize, 64U * 48U * 2U);
    EXPECT_EQ(stInfo.nFrameId, listFrames[0].stInfo.nFrameId + n);
  }
}

TEST(SimulatedCamera, TwoCamerasOfOneSeedDeliverTheSameBytes)
{
  CCameraBench first;
  CCameraBench second;
  first.Set("TriggerMode", "On"); // so that no frame is missed
  second.Set("TriggerMode", "On");
  ASSERT_EQ(first.Camera().Start().GetError(), "");
  ASSERT_EQ(second.Camera().Start().GetError(), "");
  for (int n = 0; n < 3; ++n) {
    for (CCameraBench *pBench : {&first, &second}) {
      pBench->Frames().Expect(1);
      pBench->Device<GenApi::ICommand>("TriggerSoftware").Execute();
    }
    const auto listA = first.Frames().Collect();
    const auto listB = second.Frames().Collect();
    ASSERT_EQ(listA.size() + listB.size(), 2U);
    EXPECT_EQ(listA[0].stInfo.nFrameId, static_cast<uint64_t>(n));
    EXPECT_EQ(listA[0].listBytes, listB[0].listBytes);
  }
}

TEST(SimulatedCamera, GeometryIsLockedWhileStreaming)
{
  CCameraBench bench;
  EXPECT_EQ(bench.Get("TLParamsLocked"), "0");
  bench.Set("Width", "32");
  bench.Set("PixelFormat", "Mono8");
  ASSERT_EQ(bench.Camera().Start().GetError(), "");
  EXPECT_EQ(bench.Get("TLParamsLocked"), "1");
  for (const char *pName : {"Width", "Height", "OffsetX", "OffsetY", "PixelFormat"}) {
    EXPECT_EQ(bench.Value(pName).GetAccessMode(), GenApi::RO) << pName;
    EXPECT_THROW(bench.Set(pName, bench.Get(pName).c_str()), GenICam::AccessException) << pName;
  }
  EXPECT_THROW(bench.Device<GenApi::IInteger>("Width").SetValue(64, false), GenICam::AccessException);
  const auto listFrames = bench.Frames().Take(1);
  ASSERT_EQ(listFrames.size(), 1U);
  EXPECT_EQ(listFrames[0].stInfo.nSize, 32U * 48U);
  bench.Set("ExposureTime", "5000");
  bench.Camera().Stop();
  EXPECT_EQ(bench.Get("TLParamsLocked"), "0");
  bench.Set("Width", "64");
}

TEST(SimulatedCamera, RegionsStayOnTheSensor)
{
  CCameraBench bench;
  EXPECT_THROW(bench.Set("Width", "66"), GenICam::OutOfRangeException);
  EXPECT_THROW(bench.Set("Width", "33"), GenICam::OutOfRangeException);
  EXPECT_THROW(bench.Set("OffsetX", "2"), GenICam::OutOfRangeException);
  bench.Set("Width", "32");
  bench.Set("OffsetX", "32");
  EXPECT_EQ(bench.Device<GenApi::IInteger>("Width").GetMax(), 32);
  EXPECT_THROW(bench.Device<GenApi::IInteger>("Width").SetValue(64, false), GenICam::OutOfRangeException);
}

TEST(SimulatedCamera, PayloadAndOutputFollowTheFormat)
{
  for (const SSensorFormat &stFormat : GetSensorFormats()) {
    CCameraBench bench(SmallOptions(stFormat.pName));
    const std::string strPayload = std::to_string(64 * 48 * (stFormat.nBitDepth == 8 ? 1 : 2));
    EXPECT_EQ(bench.Get("PixelFormat"), stFormat.pName);
    EXPECT_EQ(bench.Device<GenApi::IEnumeration>("PixelFormat").GetIntValue(), stFormat.nCode);
    EXPECT_EQ(bench.Get("PayloadSize"), strPayload);
    EXPECT_EQ(bench.GetOutput("OutPixelFormat"), stFormat.pName);
    EXPECT_EQ(bench.GetOutput("OutputPayloadSize"), strPayload);
    bench.Set("Height", "20");
    EXPECT_EQ(bench.GetOutput("OutputWidth"), "64");
    EXPECT_EQ(bench.GetOutput("OutputHeight"), "20");
    EXPECT_EQ(bench.GetOutput("OutputPayloadSize"), bench.Get("PayloadSize"));
    EXPECT_THROW(bench.Set("PayloadSize", "1"), GenICam::AccessException);
  }
}

TEST(SimulatedCamera, AColorCameraSaysSoAndAMonoCameraHasNoColorFeatures)
{
  CCameraBench mono;
  for (const char *pName : {"PixelColorFilter", "BalanceWhiteAuto", "BalanceRatio", "BalanceRatioSelector",
                            "AWBLampHouse", "ShadingCorrectionMode"}) {
    EXPECT_EQ(mono.Camera().GetDeviceNodeMap()->GetNode(pName), nullptr) << pName;
  }
  for (const char *pLayout : {"BayerGR", "BayerRG", "BayerGB", "BayerBG"}) {
    CCameraBench color(SmallOptions(std::string(pLayout) + "10"));
    EXPECT_EQ(color.Get("PixelColorFilter"), pLayout);
    EXPECT_EQ(color.Get("BalanceWhiteAuto"), "Off");
    EXPECT_EQ(color.Get("AWBLampHouse"), "Adaptive");
    EXPECT_EQ(color.Camera().GetDeviceNodeMap()->GetNode("ShadingCorrectionMode"), nullptr);
    GenApi::NodeList_t listEntries;
    color.Device<GenApi::IEnumeration>("PixelFormat").GetEntries(listEntries);
    EXPECT_EQ(listEntries.size(), 4U);
  }
}

TEST(SimulatedCamera, NamesItselfToViewers)
{
  CCameraBench bench;
  const std::string strName =
    bench.Get("DeviceVendorName") + " " + bench.Get("DeviceModelName") + " (" + bench.Get("DeviceSerialNumber") + ")";
  EXPECT_EQ(bench.Camera().GetDisplayName(), strName);
  EXPECT_EQ(bench.GetOutput("DeviceDisplayName"), strName);
  auto *pMode = bench.Camera().GetStreamNodeMap()->GetNode("StreamBufferHandlingMode");
  EXPECT_TRUE(dynamic_cast<GenApi::IValue *>(pMode)->ToString() == "OldestFirst");
  dynamic_cast<GenApi::IValue *>(pMode)->FromString("NewestOnly");
  ASSERT_EQ(bench.Camera().Start().GetError(), "");
  EXPECT_THROW(dynamic_cast<GenApi::IValue *>(pMode)->FromString("OldestFirst"), GenICam::AccessException);
  bench.Camera().Stop();
  dynamic_cast<GenApi::IValue *>(pMode)->FromString("OldestFirst");
}

TEST(SimulatedCamera, ATriggeredCameraDeliversOneFramePerSoftwareTrigger)
{
  CCameraBench bench;
  bench.Set("TriggerMode", "On");
  ASSERT_EQ(bench.Camera().Start().GetError(), "");
  std::this_thread::sleep_for(20ms);
  EXPECT_EQ(bench.Frames().GetCount(), 0U);
  auto &trigger = bench.Device<GenApi::ICommand>("TriggerSoftware");
  bench.Set("TriggerSource", "Line0");
  trigger.Execute();
  bench.Set("TriggerSource", "Software");
  std::this_thread::sleep_for(20ms);
  EXPECT_EQ(bench.Frames().GetCount(), 0U) << "no line is connected";
  trigger.Execute();
  trigger.Execute();
  const auto tEnd = std::chrono::steady_clock::now() + 10s;
  while (bench.Frames().GetCount() < 2 && std::chrono::steady_clock::now() < tEnd) {
    std::this_thread::sleep_for(1ms);
  }
  std::this_thread::sleep_for(20ms);
  EXPECT_EQ(bench.Frames().GetCount(), 2U);
  bench.Set("TriggerMode", "Off");
  EXPECT_EQ(bench.Frames().Take(3).size(), 3U) << "runs free again";
}

TEST(SimulatedCamera, TheLensCapMakesTheNextFrameDark)
{
  CCameraBench bench(SmallOptions("Mono8"));
  ISceneControl *pScene = FindSceneControl(bench.Camera());
  ASSERT_NE(pScene, nullptr);
  EXPECT_FALSE(pScene->IsLensCapOn());
  ASSERT_EQ(bench.Camera().Start().GetError(), "");
  EXPECT_GT(bench.Frames().Take(1)[0].GetSamples()[64 * 24 + 32], 150);
  pScene->SetLensCap(true);
  EXPECT_TRUE(pScene->IsLensCapOn());
  const auto listFrames = bench.Frames().Take(2); // the first may have been exposed before
  ASSERT_EQ(listFrames.size(), 2U);
  for (const uint16_t nSample : listFrames[1].GetSamples()) {
    ASSERT_LE(nSample, 5);
  }
}

TEST(SimulatedCamera, TheLampDimsAndBrightensTheTarget)
{
  CCameraBench bench(SmallOptions("Mono8"));
  ISceneControl *pScene = FindSceneControl(bench.Camera());
  EXPECT_TRUE(pScene->CanArrange());
  ASSERT_EQ(bench.Camera().Start().GetError(), "");
  const auto Centre = [&] { return int(bench.Frames().Take(2)[1].GetSamples()[64 * 24 + 32]); };
  const int nFull = Centre();
  pScene->SetIllumination(0.5);
  EXPECT_NEAR(Centre(), nFull / 2, 15);
  pScene->SetIllumination(7.0);
  // Saturated, but for the noise.
  EXPECT_GE(Centre(), 240) << "2 is as much as the lamp gives";
  pScene->SetIllumination(-1.0);
  EXPECT_LE(Centre(), 5);
}

TEST(SimulatedCamera, WhiteBalanceOnceTakesSomeFramesAndTurnsItselfOff)
{
  for (const char *pFormat : {"BayerRG8", "BayerGB12"}) {
    SSimulatedCameraOptions stOptions = SmallOptions(pFormat);
    stOptions.nWidth = 256;
    stOptions.nHeight = 256;
    CCameraBench bench(stOptions);
    bench.Set("TriggerMode", "On");
    bench.Set("BalanceWhiteAuto", "Once");
    ASSERT_EQ(bench.Camera().Start().GetError(), "");
    std::size_t nFrames = 0;
    while (bench.Get("BalanceWhiteAuto") != "Off" && nFrames < 20) {
      bench.Device<GenApi::ICommand>("TriggerSoftware").Execute();
      ++nFrames;
      const auto tEnd = std::chrono::steady_clock::now() + 10s;
      while (bench.Frames().GetCount() < nFrames && std::chrono::steady_clock::now() < tEnd) {
        std::this_thread::sleep_for(1ms);
      }
    }
    EXPECT_EQ(nFrames, 3U);
    bench.Set("TriggerMode", "Off");
    const auto listFrames = bench.Frames().Take(1);
    ASSERT_EQ(listFrames.size(), 1U);
    const auto listSignals = GetColorSignals(listFrames[0]);
    EXPECT_NEAR(listSignals[0] / listSignals[1], 1.0, 0.01) << pFormat;
    EXPECT_NEAR(listSignals[2] / listSignals[1], 1.0, 0.01) << pFormat;
    bench.Set("BalanceRatioSelector", "Red");
    EXPECT_NEAR(bench.Device<GenApi::IFloat>("BalanceRatio").GetValue(), 1.0 / 0.7, 0.03);
    bench.Set("BalanceRatioSelector", "Green");
    EXPECT_EQ(bench.Device<GenApi::IFloat>("BalanceRatio").GetValue(), 1.0);
    bench.Set("BalanceRatioSelector", "Blue");
    EXPECT_NEAR(bench.Device<GenApi::IFloat>("BalanceRatio").GetValue(), 1.0 / 0.55, 0.03);
  }
}

TEST(SimulatedCamera, WhiteBalanceInTheDarkLeavesTheRatiosAlone)
{
  CCameraBench bench(SmallOptions("BayerBG8"));
  FindSceneControl(bench.Camera())->SetLensCap(true);
  bench.Set("BalanceRatio", "1.5");
  bench.Set("BalanceWhiteAuto", "Once");
  ASSERT_EQ(bench.Camera().Start().GetError(), "");
  ASSERT_EQ(bench.Frames().Take(6).size(), 6U);
  EXPECT_EQ(bench.Get("BalanceWhiteAuto"), "Off");
  EXPECT_EQ(bench.Get("BalanceRatio"), "1.5");
}

TEST(SimulatedCamera, ContinuousWhiteBalanceStaysOnAndAKnownLampHasFixedRatios)
{
  CCameraBench bench(SmallOptions("BayerGR12"));
  bench.Set("AWBLampHouse", "D65");
  bench.Set("BalanceWhiteAuto", "Continuous");
  ASSERT_EQ(bench.Camera().Start().GetError(), "");
  ASSERT_EQ(bench.Frames().Take(6).size(), 6U);
  EXPECT_EQ(bench.Get("BalanceWhiteAuto"), "Continuous");
  EXPECT_EQ(bench.Get("BalanceRatio"), "1.45");
  EXPECT_THROW(bench.Set("BalanceRatio", "2"), GenICam::AccessException) << "the camera's, as long as it balances";
  bench.Set("BalanceWhiteAuto", "Off");
  bench.Set("BalanceRatio", "2");
  ASSERT_EQ(bench.Frames().Take(4).size(), 4U);
  EXPECT_EQ(bench.Get("BalanceRatio"), "2");
}

TEST(SimulatedCamera, NoFrameComesAfterStop)
{
  CCameraBench bench;
  for (int nRound = 0; nRound < 50; ++nRound) {
    ASSERT_EQ(bench.Camera().Start().GetError(), "");
    EXPECT_TRUE(bench.Camera().IsStreaming());
    if (nRound % 5 == 0) {
      ASSERT_EQ(bench.Frames().Take(1).size(), 1U);
    }
    bench.Camera().Stop();
    EXPECT_FALSE(bench.Camera().IsStreaming());
    const std::size_t nFrames = bench.Frames().GetCount();
    std::this_thread::yield();
    ASSERT_EQ(bench.Frames().GetCount(), nFrames);
  }
}

TEST(SimulatedCamera, FeaturesMayBeUsedFromTheFrameCallbackAndOtherThreads)
{
  const std::unique_ptr<ICamera> pCamera = CreateSimulatedCamera(SmallOptions("BayerRG8")).GetValue();
  auto *pExposure = dynamic_cast<GenApi::IFloat *>(pCamera->GetDeviceNodeMap()->GetNode("ExposureTime"));
  auto *pWidth = dynamic_cast<GenApi::IInteger *>(pCamera->GetOutputNodeMap()->GetNode("OutputWidth"));
  auto *pAuto = dynamic_cast<GenApi::IEnumeration *>(pCamera->GetDeviceNodeMap()->GetNode("BalanceWhiteAuto"));
  std::atomic<int> nFrames{0};
  pCamera->SetFrameCallback([&](const SCameraFrame &stFrame) {
    EXPECT_EQ(pWidth->GetValue(), stFrame.nWidth);
    pExposure->SetValue(pExposure->GetValue() + 1.0);
    ++nFrames;
  });
  ASSERT_EQ(pCamera->Start().GetError(), "");
  const auto tEnd = std::chrono::steady_clock::now() + 10s;
  while (nFrames < 50 && std::chrono::steady_clock::now() < tEnd) {
    pExposure->SetValue(10000.0);
    pAuto->FromString("Once");
    FindSceneControl(*pCamera)->SetLensCap(nFrames % 2 == 0);
  }
  pCamera->Stop();
  EXPECT_GE(nFrames, 50);
}

TEST(SimulatedCamera, OptionsThatMakeNoCameraGetAMessage)
{
  const auto fnGetError = [](auto fnChange) {
    SSimulatedCameraOptions stOptions = SmallOptions();
    fnChange(stOptions);
    return GetCreationError(stOptions);
  };
  EXPECT_NE(fnGetError([](auto &st) { st.strPixelFormat = "RGB8"; }).find("RGB8"), std::string::npos);
  EXPECT_NE(fnGetError([](auto &st) { st.nWidth = 65; }).find("65 x 48"), std::string::npos);
  EXPECT_NE(fnGetError([](auto &st) { st.nHeight = 0; }).find("64 x 0"), std::string::npos);
  EXPECT_NE(fnGetError([](auto &st) { st.nWidth = 20000; }).find("16384"), std::string::npos);
  EXPECT_NE(fnGetError([](auto &st) { st.dCornerFalloff = 0.0; }).find("fall-off"), std::string::npos);
  EXPECT_NE(fnGetError([](auto &st) { st.dFrameRate = std::nan(""); }).find("frame rate"), std::string::npos);
}
