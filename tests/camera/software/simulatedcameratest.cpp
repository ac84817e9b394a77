#include <atomic>
#include <chrono>
#include <cmath>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "camera/iscenecontrol.h"
#include "genapi/sensorformat.h"
#include "tests/camera/software/camerarig.h"

using ffc::camera::CreateSimulatedCamera;
using ffc::camera::FindSceneControl;
using ffc::camera::ICamera;
using ffc::camera::ISceneControl;
using ffc::camera::SCameraFrame;
using ffc::camera::SSimulatedCameraOptions;
using ffc::genapi::COLOR_COUNT;
using ffc::genapi::FindSensorFormat;
using ffc::genapi::GetPixelColor;
using ffc::genapi::GetSensorFormats;
using ffc::genapi::SSensorFormat;
using ffc::test::CCameraRig;
using ffc::test::GetCreationError;
using ffc::test::SKeptFrame;
using ffc::test::SmallOptions;

namespace {

using namespace std::chrono_literals;

// Means of red, green and blue over the black level.
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
  CCameraRig rig;
  ASSERT_EQ(rig.Camera().Start().GetError(), "");
  const auto listFrames = rig.Frames().Take(5);
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
  CCameraRig first;
  CCameraRig second;
  first.Set("TriggerMode", "On"); // so that no frame is missed
  second.Set("TriggerMode", "On");
  ASSERT_EQ(first.Camera().Start().GetError(), "");
  ASSERT_EQ(second.Camera().Start().GetError(), "");
  for (int n = 0; n < 3; ++n) {
    for (CCameraRig *pRig : {&first, &second}) {
      pRig->Frames().Expect(1);
      pRig->Device<GenApi::ICommand>("TriggerSoftware").Execute();
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
  CCameraRig rig;
  EXPECT_EQ(rig.Get("TLParamsLocked"), "0");
  rig.Set("Width", "32");
  rig.Set("PixelFormat", "Mono8");
  ASSERT_EQ(rig.Camera().Start().GetError(), "");
  EXPECT_EQ(rig.Get("TLParamsLocked"), "1");
  for (const char *pName : {"Width", "Height", "OffsetX", "OffsetY", "PixelFormat"}) {
    EXPECT_EQ(rig.Value(pName).GetAccessMode(), GenApi::RO) << pName;
    EXPECT_THROW(rig.Set(pName, rig.Get(pName).c_str()), GenICam::AccessException) << pName;
  }
  EXPECT_THROW(rig.Device<GenApi::IInteger>("Width").SetValue(64, false), GenICam::AccessException);
  const auto listFrames = rig.Frames().Take(1);
  ASSERT_EQ(listFrames.size(), 1U);
  EXPECT_EQ(listFrames[0].stInfo.nSize, 32U * 48U);
  rig.Set("ExposureTime", "5000");
  rig.Camera().Stop();
  EXPECT_EQ(rig.Get("TLParamsLocked"), "0");
  rig.Set("Width", "64");
}

TEST(SimulatedCamera, RegionsStayOnTheSensor)
{
  CCameraRig rig;
  EXPECT_THROW(rig.Set("Width", "66"), GenICam::OutOfRangeException);
  EXPECT_THROW(rig.Set("Width", "33"), GenICam::OutOfRangeException);
  EXPECT_THROW(rig.Set("OffsetX", "2"), GenICam::OutOfRangeException);
  rig.Set("Width", "32");
  rig.Set("OffsetX", "32");
  EXPECT_EQ(rig.Device<GenApi::IInteger>("Width").GetMax(), 32);
  EXPECT_THROW(rig.Device<GenApi::IInteger>("Width").SetValue(64, false), GenICam::OutOfRangeException);
}

TEST(SimulatedCamera, PayloadAndOutputFollowTheFormat)
{
  for (const SSensorFormat &stFormat : GetSensorFormats()) {
    CCameraRig rig(SmallOptions(stFormat.pName));
    const std::string strPayload = std::to_string(64 * 48 * (stFormat.nBitDepth == 8 ? 1 : 2));
    EXPECT_EQ(rig.Get("PixelFormat"), stFormat.pName);
    EXPECT_EQ(rig.Device<GenApi::IEnumeration>("PixelFormat").GetIntValue(), stFormat.nCode);
    EXPECT_EQ(rig.Get("PayloadSize"), strPayload);
    EXPECT_EQ(rig.GetOutput("OutPixelFormat"), stFormat.pName);
    EXPECT_EQ(rig.GetOutput("OutputPayloadSize"), strPayload);
    rig.Set("Height", "20");
    EXPECT_EQ(rig.GetOutput("OutputWidth"), "64");
    EXPECT_EQ(rig.GetOutput("OutputHeight"), "20");
    EXPECT_EQ(rig.GetOutput("OutputPayloadSize"), rig.Get("PayloadSize"));
    EXPECT_THROW(rig.Set("PayloadSize", "1"), GenICam::AccessException);
  }
}

TEST(SimulatedCamera, AColorCameraSaysSoAndAMonoCameraHasNoColorFeatures)
{
  CCameraRig mono;
  for (const char *pName : {"PixelColorFilter", "BalanceWhiteAuto", "BalanceRatio", "BalanceRatioSelector",
                            "AWBLampHouse", "ShadingCorrectionMode"}) {
    EXPECT_EQ(mono.Camera().GetDeviceNodeMap()->GetNode(pName), nullptr) << pName;
  }
  for (const char *pLayout : {"BayerGR", "BayerRG", "BayerGB", "BayerBG"}) {
    CCameraRig color(SmallOptions(std::string(pLayout) + "10"));
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
  CCameraRig rig;
  const std::string strName =
    rig.Get("DeviceVendorName") + " " + rig.Get("DeviceModelName") + " (" + rig.Get("DeviceSerialNumber") + ")";
  EXPECT_EQ(rig.Camera().GetDisplayName(), strName);
  EXPECT_EQ(rig.GetOutput("DeviceDisplayName"), strName);
  auto *pMode = rig.Camera().GetStreamNodeMap()->GetNode("StreamBufferHandlingMode");
  EXPECT_TRUE(dynamic_cast<GenApi::IValue *>(pMode)->ToString() == "OldestFirst");
  dynamic_cast<GenApi::IValue *>(pMode)->FromString("NewestOnly");
  ASSERT_EQ(rig.Camera().Start().GetError(), "");
  EXPECT_THROW(dynamic_cast<GenApi::IValue *>(pMode)->FromString("OldestFirst"), GenICam::AccessException);
  rig.Camera().Stop();
  dynamic_cast<GenApi::IValue *>(pMode)->FromString("OldestFirst");
}

TEST(SimulatedCamera, ATriggeredCameraDeliversOneFramePerSoftwareTrigger)
{
  CCameraRig rig;
  rig.Set("TriggerMode", "On");
  ASSERT_EQ(rig.Camera().Start().GetError(), "");
  std::this_thread::sleep_for(20ms);
  EXPECT_EQ(rig.Frames().GetCount(), 0U);
  auto &trigger = rig.Device<GenApi::ICommand>("TriggerSoftware");
  rig.Set("TriggerSource", "Line0");
  trigger.Execute();
  rig.Set("TriggerSource", "Software");
  std::this_thread::sleep_for(20ms);
  EXPECT_EQ(rig.Frames().GetCount(), 0U) << "no line is connected";
  trigger.Execute();
  trigger.Execute();
  const auto tEnd = std::chrono::steady_clock::now() + 10s;
  while (rig.Frames().GetCount() < 2 && std::chrono::steady_clock::now() < tEnd) {
    std::this_thread::sleep_for(1ms);
  }
  std::this_thread::sleep_for(20ms);
  EXPECT_EQ(rig.Frames().GetCount(), 2U);
  rig.Set("TriggerMode", "Off");
  EXPECT_EQ(rig.Frames().Take(3).size(), 3U) << "runs free again";
}

TEST(SimulatedCamera, TheLensCapMakesTheNextFrameDark)
{
  CCameraRig rig(SmallOptions("Mono8"));
  ISceneControl *pScene = FindSceneControl(rig.Camera());
  ASSERT_NE(pScene, nullptr);
  EXPECT_FALSE(pScene->IsLensCapOn());
  ASSERT_EQ(rig.Camera().Start().GetError(), "");
  EXPECT_GT(rig.Frames().Take(1)[0].GetSamples()[64 * 24 + 32], 150);
  pScene->SetLensCap(true);
  EXPECT_TRUE(pScene->IsLensCapOn());
  const auto listFrames = rig.Frames().Take(2); // the first may have been exposed before
  ASSERT_EQ(listFrames.size(), 2U);
  for (const uint16_t nSample : listFrames[1].GetSamples()) {
    ASSERT_LE(nSample, 5);
  }
}

TEST(SimulatedCamera, TheLampDimsAndBrightensTheTarget)
{
  CCameraRig rig(SmallOptions("Mono8"));
  ISceneControl *pScene = FindSceneControl(rig.Camera());
  EXPECT_TRUE(pScene->CanArrange());
  ASSERT_EQ(rig.Camera().Start().GetError(), "");
  const auto getCentre = [&] { return static_cast<int>(rig.Frames().Take(2)[1].GetSamples()[64 * 24 + 32]); };
  const int nFull = getCentre();
  pScene->SetIllumination(0.5);
  EXPECT_NEAR(getCentre(), nFull / 2, 15);
  pScene->SetIllumination(7.0);
  // Saturated, but for the noise.
  EXPECT_GE(getCentre(), 240) << "2 is as much as the lamp gives";
  pScene->SetIllumination(-1.0);
  EXPECT_LE(getCentre(), 5);
}

TEST(SimulatedCamera, WhiteBalanceOnceTakesSomeFramesAndTurnsItselfOff)
{
  for (const char *pFormat : {"BayerRG8", "BayerGB12"}) {
    SSimulatedCameraOptions stOptions = SmallOptions(pFormat);
    stOptions.nWidth = 256;
    stOptions.nHeight = 256;
    CCameraRig rig(stOptions);
    rig.Set("TriggerMode", "On");
    rig.Set("BalanceWhiteAuto", "Once");
    ASSERT_EQ(rig.Camera().Start().GetError(), "");
    std::size_t nFrames = 0;
    while (rig.Get("BalanceWhiteAuto") != "Off" && nFrames < 20) {
      rig.Device<GenApi::ICommand>("TriggerSoftware").Execute();
      ++nFrames;
      const auto tEnd = std::chrono::steady_clock::now() + 10s;
      while (rig.Frames().GetCount() < nFrames && std::chrono::steady_clock::now() < tEnd) {
        std::this_thread::sleep_for(1ms);
      }
    }
    EXPECT_EQ(nFrames, 3U);
    rig.Set("TriggerMode", "Off");
    const auto listFrames = rig.Frames().Take(1);
    ASSERT_EQ(listFrames.size(), 1U);
    const auto listSignals = GetColorSignals(listFrames[0]);
    EXPECT_NEAR(listSignals[0] / listSignals[1], 1.0, 0.01) << pFormat;
    EXPECT_NEAR(listSignals[2] / listSignals[1], 1.0, 0.01) << pFormat;
    rig.Set("BalanceRatioSelector", "Red");
    EXPECT_NEAR(rig.Device<GenApi::IFloat>("BalanceRatio").GetValue(), 1.0 / 0.7, 0.03);
    rig.Set("BalanceRatioSelector", "Green");
    EXPECT_EQ(rig.Device<GenApi::IFloat>("BalanceRatio").GetValue(), 1.0);
    rig.Set("BalanceRatioSelector", "Blue");
    EXPECT_NEAR(rig.Device<GenApi::IFloat>("BalanceRatio").GetValue(), 1.0 / 0.55, 0.03);
  }
}

TEST(SimulatedCamera, WhiteBalanceInTheDarkLeavesTheRatiosAlone)
{
  CCameraRig rig(SmallOptions("BayerBG8"));
  FindSceneControl(rig.Camera())->SetLensCap(true);
  rig.Set("BalanceRatio", "1.5");
  rig.Set("BalanceWhiteAuto", "Once");
  ASSERT_EQ(rig.Camera().Start().GetError(), "");
  ASSERT_EQ(rig.Frames().Take(6).size(), 6U);
  EXPECT_EQ(rig.Get("BalanceWhiteAuto"), "Off");
  EXPECT_EQ(rig.Get("BalanceRatio"), "1.5");
}

TEST(SimulatedCamera, ContinuousWhiteBalanceStaysOnAndAKnownLampHasFixedRatios)
{
  CCameraRig rig(SmallOptions("BayerGR12"));
  rig.Set("AWBLampHouse", "D65");
  rig.Set("BalanceWhiteAuto", "Continuous");
  ASSERT_EQ(rig.Camera().Start().GetError(), "");
  ASSERT_EQ(rig.Frames().Take(6).size(), 6U);
  EXPECT_EQ(rig.Get("BalanceWhiteAuto"), "Continuous");
  EXPECT_EQ(rig.Get("BalanceRatio"), "1.45");
  EXPECT_THROW(rig.Set("BalanceRatio", "2"), GenICam::AccessException) << "the camera's, as long as it balances";
  rig.Set("BalanceWhiteAuto", "Off");
  rig.Set("BalanceRatio", "2");
  ASSERT_EQ(rig.Frames().Take(4).size(), 4U);
  EXPECT_EQ(rig.Get("BalanceRatio"), "2");
}

TEST(SimulatedCamera, NoFrameComesAfterStop)
{
  CCameraRig rig;
  for (int nRound = 0; nRound < 50; ++nRound) {
    ASSERT_EQ(rig.Camera().Start().GetError(), "");
    EXPECT_TRUE(rig.Camera().IsStreaming());
    if (nRound % 5 == 0) {
      ASSERT_EQ(rig.Frames().Take(1).size(), 1U);
    }
    rig.Camera().Stop();
    EXPECT_FALSE(rig.Camera().IsStreaming());
    const std::size_t nFrames = rig.Frames().GetCount();
    std::this_thread::yield();
    ASSERT_EQ(rig.Frames().GetCount(), nFrames);
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
  const auto getError = [](auto fnChange) {
    SSimulatedCameraOptions stOptions = SmallOptions();
    fnChange(stOptions);
    return GetCreationError(stOptions);
  };
  EXPECT_NE(getError([](auto &st) { st.strPixelFormat = "RGB8"; }).find("RGB8"), std::string::npos);
  EXPECT_NE(getError([](auto &st) { st.nWidth = 65; }).find("65 x 48"), std::string::npos);
  EXPECT_NE(getError([](auto &st) { st.nHeight = 0; }).find("64 x 0"), std::string::npos);
  EXPECT_NE(getError([](auto &st) { st.nWidth = 20000; }).find("16384"), std::string::npos);
  EXPECT_NE(getError([](auto &st) { st.dCornerFalloff = 0.0; }).find("fall-off"), std::string::npos);
  EXPECT_NE(getError([](auto &st) { st.dCornerFalloff = 1.01; }).find("fall-off"), std::string::npos);
  EXPECT_NE(getError([](auto &st) { st.dFrameRate = std::nan(""); }).find("frame rate"), std::string::npos);
  EXPECT_NE(getError([](auto &st) { st.dFrameRate = 1e9; }).find("frame rate"), std::string::npos);
}
