#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/camera/software/camerabench.h"

using ffc::camera::ECorrectionMode;
using ffc::camera::SSimulatedCameraOptions;
using ffc::test::CCameraBench;
using ffc::test::SmallOptions;

namespace {

/// What user sets do not hold, although it can be written.
constexpr const char *NOT_IN_SETS[] = {"UserSetSelector", "UserSetDefault", "DeviceUserID", "FFCValueAll"};

SSimulatedCameraOptions Options(const char *pFormat, ECorrectionMode eMode)
{
  SSimulatedCameraOptions stOptions = SmallOptions(pFormat, eMode);
  stOptions.nWidth = 256;
  stOptions.nHeight = 256;
  return stOptions;
}

/// The camera's nodes as any program sees them.
class CSettings {
public:
  explicit CSettings(CCameraBench &bench) : m_bench(bench)
  {
    GenApi::NodeList_t listNodes;
    bench.Camera().GetDeviceNodeMap()->GetNodes(listNodes);
    for (GenApi::INode *pNode : listNodes) {
      const std::string strName = pNode->GetName().c_str();
      const bool bInSets = std::find(std::begin(NOT_IN_SETS), std::end(NOT_IN_SETS), strName) == std::end(NOT_IN_SETS);
      if (pNode->GetAccessMode() == GenApi::RW && bInSets) {
        m_listNodes.push_back(pNode);
      }
    }
  }

  /// By name; what depends on a selector for each of its entries.
  std::map<std::string, std::string> ReadAll()
  {
    std::map<std::string, std::string> mapValues;
    for (GenApi::INode *pNode : m_listNodes) {
      mapValues[pNode->GetName().c_str()] = dynamic_cast<GenApi::IValue *>(pNode)->ToString().c_str();
    }
    if (m_bench.Has("BalanceRatioSelector")) {
      const std::string strSelected = m_bench.Get("BalanceRatioSelector");
      for (const std::string &strColor : m_bench.GetEntries("BalanceRatioSelector")) {
        m_bench.Set("BalanceRatioSelector", strColor.c_str());
        mapValues["BalanceRatio " + strColor] = m_bench.Get("BalanceRatio");
      }
      m_bench.Set("BalanceRatioSelector", strSelected.c_str());
    }
    return mapValues;
  }

  /// Gives every setting another value. Twice, because some values open the way for others.
  void ChangeAll()
  {
    if (m_bench.Has("BalanceRatioSelector")) { // as long as BalanceWhiteAuto is "Off"
      double dRatio = 1.25;
      for (const char *pColor : {"Red", "Green", "Blue"}) {
        m_bench.Set("BalanceRatioSelector", pColor);
        m_bench.Device<GenApi::IFloat>("BalanceRatio").SetValue(dRatio += 0.25);
      }
    }
    ChangeEach();
    ChangeEach();
  }

  std::vector<GenApi::INode *> m_listNodes;

private:
  void ChangeEach()
  {
    for (GenApi::INode *pNode : m_listNodes) {
      if (!GenApi::IsWritable(pNode->GetAccessMode())) {
        continue; // locked by another setting
      }
      if (auto *pEnumeration = dynamic_cast<GenApi::IEnumeration *>(pNode)) {
        GenApi::NodeList_t listEntries;
        pEnumeration->GetEntries(listEntries);
        pEnumeration->SetIntValue(dynamic_cast<GenApi::IEnumEntry *>(listEntries[listEntries.size() - 1])->GetValue());
      } else if (auto *pInteger = dynamic_cast<GenApi::IInteger *>(pNode)) {
        pInteger->SetValue(pInteger->GetMin() + pInteger->GetInc());
      } else if (auto *pFloat = dynamic_cast<GenApi::IFloat *>(pNode)) {
        pFloat->SetValue(pFloat->GetMax());
      } else {
        ADD_FAILURE() << "an unknown kind of setting: " << pNode->GetName();
      }
    }
  }

  CCameraBench &m_bench;
};

} // namespace

TEST(UserSets, BringBackEverySetting)
{
  for (const auto &stOptions :
       {Options("Mono8", ECorrectionMode::FlatField), Options("BayerBG8", ECorrectionMode::FlatField),
        Options("Mono8", ECorrectionMode::Vignetting), Options("BayerGR8", ECorrectionMode::Vignetting)}) {
    CCameraBench bench(stOptions);
    CSettings settings(bench);
    const auto mapFactory = settings.ReadAll();
    settings.ChangeAll();
    const auto mapChanged = settings.ReadAll();
    for (const auto &[strName, strValue] : mapFactory) {
      EXPECT_NE(mapChanged.at(strName), strValue) << strName << " was not changed";
    }
    bench.SaveUserSet("UserSet0");
    EXPECT_EQ(settings.ReadAll(), mapChanged) << "saving changes nothing";
    bench.LoadUserSet("Default");
    EXPECT_EQ(settings.ReadAll(), mapFactory);
    bench.LoadUserSet("UserSet0");
    EXPECT_EQ(settings.ReadAll(), mapChanged);
    EXPECT_EQ(bench.Get("UserSetSelector"), "UserSet0") << "the selector is not part of a set";
  }
}

TEST(UserSets, HoldAllThatTheHostReliesOn)
{
  CCameraBench bench(Options("BayerBG8", ECorrectionMode::FlatField));
  const auto mapValues = CSettings(bench).ReadAll();
  for (const char *pName : {"Width",
                            "Height",
                            "OffsetX",
                            "OffsetY",
                            "PixelFormat",
                            "ExposureTime",
                            "Gain",
                            "BlackLevel",
                            "AcquisitionFrameRate",
                            "TriggerMode",
                            "TriggerSource",
                            "DigitalShift",
                            "FixedPatternNoiseCorrectMode",
                            "DeadPixelCorrect",
                            "RemoveParameterLimit",
                            "FlatFieldCorrection",
                            "FFCBlockSize",
                            "FFCFrameCount",
                            "FFCExpectGray",
                            "BalanceWhiteAuto",
                            "BalanceRatioSelector",
                            "AWBLampHouse",
                            "BalanceRatio Green"}) {
    EXPECT_EQ(mapValues.count(pName), 1U) << pName;
  }
}

TEST(UserSets, DefaultIsTheFactoryStateWhateverTheOptionsAskFor)
{
  CCameraBench bench(Options("BayerRG12", ECorrectionMode::FlatField));
  EXPECT_EQ(bench.Get("PixelFormat"), "BayerRG12");
  CSettings(bench).ChangeAll();
  bench.LoadUserSet("Default");
  EXPECT_EQ(bench.Get("PixelFormat"), "BayerRG8");
  EXPECT_EQ(bench.Get("Width"), "256");
  EXPECT_EQ(bench.Get("AcquisitionFrameRate"), "1000");
  EXPECT_EQ(bench.Get("BlackLevel"), "0.55");
  EXPECT_EQ(bench.Get("ExposureTime"), "10000");
  EXPECT_EQ(bench.Get("FFCExpectGray"), "128");
}

TEST(UserSets, AUserSetThatWasNeverSavedIsTheFactoryState)
{
  CCameraBench bench(Options("Mono12", ECorrectionMode::Vignetting));
  CSettings settings(bench);
  bench.LoadUserSet("Default");
  const auto mapFactory = settings.ReadAll();
  settings.ChangeAll();
  bench.LoadUserSet("UserSet0");
  EXPECT_EQ(settings.ReadAll(), mapFactory);
}

TEST(UserSets, LoadBetweenSmallRegionsAtOppositeCorners)
{
  CCameraBench bench(Options("Mono8", ECorrectionMode::FlatField));
  bench.Set("Width", "16");
  bench.Set("OffsetX", "240");
  bench.SaveUserSet("UserSet0");
  bench.LoadUserSet("Default");
  EXPECT_EQ(bench.Get("Width"), "256");
  EXPECT_EQ(bench.Get("OffsetX"), "0");
  bench.LoadUserSet("UserSet0");
  EXPECT_EQ(bench.Get("Width"), "16");
  EXPECT_EQ(bench.Get("OffsetX"), "240");
}

TEST(UserSets, TheDefaultSetCannotBeSavedInto)
{
  CCameraBench bench(Options("Mono8", ECorrectionMode::FlatField));
  bench.Set("Gain", "6");
  bench.Set("UserSetSelector", "Default");
  EXPECT_THROW(bench.Execute("UserSetSave"), GenICam::AccessException);
  EXPECT_THROW(bench.Device<GenApi::ICommand>("UserSetSave").Execute(false), GenICam::AccessException);
  bench.Execute("UserSetLoad");
  EXPECT_EQ(bench.Get("Gain"), "0");
  bench.SaveUserSet("UserSet0");
}

TEST(UserSets, AreLockedWhileTheCameraStreams)
{
  CCameraBench bench(Options("Mono8", ECorrectionMode::FlatField));
  bench.Set("UserSetSelector", "UserSet0");
  ASSERT_EQ(bench.Camera().Start().GetError(), "");
  bench.Set("Gain", "6");
  for (const char *pCommand : {"UserSetLoad", "UserSetSave"}) {
    EXPECT_THROW(bench.Execute(pCommand), GenICam::AccessException) << pCommand;
    EXPECT_THROW(bench.Device<GenApi::ICommand>(pCommand).Execute(false), GenICam::AccessException) << pCommand;
    EXPECT_EQ(bench.Value(pCommand).GetAccessMode(), GenApi::NA) << pCommand;
  }
  EXPECT_EQ(bench.Get("Gain"), "6");
  bench.Camera().Stop();
  bench.Execute("UserSetLoad");
  EXPECT_EQ(bench.Get("Gain"), "0") << "nothing was saved";
  bench.Execute("UserSetSave");
}

TEST(UserSets, LeaveCoefficientsAndSelectionAlone)
{
  CCameraBench bench(Options("Mono8", ECorrectionMode::FlatField));
  const auto nSize = bench.ReadRegister().size();
  bench.WriteRegister(std::vector<uint8_t>(nSize, 5));
  bench.Set("DeviceUserID", "left");
  bench.SaveUserSet("UserSet0");
  bench.WriteRegister(std::vector<uint8_t>(nSize, 6));
  bench.Set("UserSetDefault", "UserSet0");
  bench.Set("DeviceUserID", "right");
  bench.LoadUserSet("UserSet0");
  EXPECT_EQ(bench.ReadRegister(), std::vector<uint8_t>(nSize, 6));
  EXPECT_EQ(bench.Get("UserSetDefault"), "UserSet0");
  EXPECT_EQ(bench.Get("DeviceUserID"), "right");
}

TEST(UserSets, AWhiteBalanceThatIsLoadedStartsAfresh)
{
  CCameraBench bench(Options("BayerBG8", ECorrectionMode::FlatField));
  bench.Set("TriggerMode", "On");
  bench.Set("BalanceWhiteAuto", "Once");
  bench.SaveUserSet("UserSet0");
  bench.TakeTriggered();
  bench.TakeTriggered();
  EXPECT_EQ(bench.Get("BalanceWhiteAuto"), "Once") << "not yet settled";
  bench.Camera().Stop();
  bench.LoadUserSet("UserSet0");
  EXPECT_EQ(bench.Get("BalanceRatio"), "1");
  bench.TakeTriggered();
  bench.TakeTriggered();
  EXPECT_EQ(bench.Get("BalanceWhiteAuto"), "Once");
  bench.TakeTriggered();
  EXPECT_EQ(bench.Get("BalanceWhiteAuto"), "Off");
}
