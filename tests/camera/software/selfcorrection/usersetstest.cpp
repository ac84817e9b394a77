#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/camera/software/camerarig.h"

using ffc::camera::ECorrectionMode;
using ffc::camera::SSimulatedCameraOptions;
using ffc::test::CCameraRig;
using ffc::test::SmallOptions;

namespace {

// What user sets do not hold, although it can be written.
constexpr const char *NOT_IN_SETS[] = {"UserSetSelector", "UserSetDefault", "DeviceUserID", "FFCValueAll"};

SSimulatedCameraOptions Options(const char *pFormat, ECorrectionMode eMode)
{
  SSimulatedCameraOptions stOptions = SmallOptions(pFormat, eMode);
  stOptions.nWidth = 256;
  stOptions.nHeight = 256;
  return stOptions;
}

// The camera's nodes as any program sees them.
class CSettings {
public:
  explicit CSettings(CCameraRig &rig) : m_rig(rig)
  {
    GenApi::NodeList_t listNodes;
    rig.Camera().GetDeviceNodeMap()->GetNodes(listNodes);
    for (GenApi::INode *pNode : listNodes) {
      const std::string strName = pNode->GetName().c_str();
      const bool bInSets = std::find(std::begin(NOT_IN_SETS), std::end(NOT_IN_SETS), strName) == std::end(NOT_IN_SETS);
      if (pNode->GetAccessMode() == GenApi::RW && bInSets) {
        m_listNodes.push_back(pNode);
      }
    }
  }

  // By name; what depends on a selector for each of its entries.
  std::map<std::string, std::string> ReadAll()
  {
    std::map<std::string, std::string> mapValues;
    for (GenApi::INode *pNode : m_listNodes) {
      mapValues[pNode->GetName().c_str()] = dynamic_cast<GenApi::IValue *>(pNode)->ToString().c_str();
    }
    if (m_rig.Has("BalanceRatioSelector")) {
      const std::string strSelected = m_rig.Get("BalanceRatioSelector");
      for (const std::string &strColor : m_rig.GetEntries("BalanceRatioSelector")) {
        m_rig.Set("BalanceRatioSelector", strColor.c_str());
        mapValues["BalanceRatio " + strColor] = m_rig.Get("BalanceRatio");
      }
      m_rig.Set("BalanceRatioSelector", strSelected.c_str());
    }
    return mapValues;
  }

  // Gives every setting another value. Twice, because some values open the way for others.
  void ChangeAll()
  {
    if (m_rig.Has("BalanceRatioSelector")) { // as long as BalanceWhiteAuto is "Off"
      double dRatio = 1.25;
      for (const char *pColor : {"Red", "Green", "Blue"}) {
        m_rig.Set("BalanceRatioSelector", pColor);
        m_rig.Device<GenApi::IFloat>("BalanceRatio").SetValue(dRatio += 0.25);
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

  CCameraRig &m_rig;
};

} // namespace

TEST(UserSets, BringBackEverySetting)
{
  for (const auto &stOptions :
       {Options("Mono8", ECorrectionMode::FlatField), Options("BayerBG8", ECorrectionMode::FlatField),
        Options("Mono8", ECorrectionMode::Vignetting), Options("BayerGR8", ECorrectionMode::Vignetting)}) {
    CCameraRig rig(stOptions);
    CSettings settings(rig);
    const auto mapFactory = settings.ReadAll();
    settings.ChangeAll();
    const auto mapChanged = settings.ReadAll();
    for (const auto &[strName, strValue] : mapFactory) {
      EXPECT_NE(mapChanged.at(strName), strValue) << strName << " was not changed";
    }
    rig.SaveUserSet("UserSet0");
    EXPECT_EQ(settings.ReadAll(), mapChanged) << "saving changes nothing";
    rig.LoadUserSet("Default");
    EXPECT_EQ(settings.ReadAll(), mapFactory);
    rig.LoadUserSet("UserSet0");
    EXPECT_EQ(settings.ReadAll(), mapChanged);
    EXPECT_EQ(rig.Get("UserSetSelector"), "UserSet0") << "the selector is not part of a set";
  }
}

TEST(UserSets, HoldAllThatTheHostReliesOn)
{
  CCameraRig rig(Options("BayerBG8", ECorrectionMode::FlatField));
  const auto mapValues = CSettings(rig).ReadAll();
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
  CCameraRig rig(Options("BayerRG12", ECorrectionMode::FlatField));
  EXPECT_EQ(rig.Get("PixelFormat"), "BayerRG12");
  CSettings(rig).ChangeAll();
  rig.LoadUserSet("Default");
  EXPECT_EQ(rig.Get("PixelFormat"), "BayerRG8");
  EXPECT_EQ(rig.Get("Width"), "256");
  EXPECT_EQ(rig.Get("AcquisitionFrameRate"), "1000");
  EXPECT_EQ(rig.Get("BlackLevel"), "0.55");
  EXPECT_EQ(rig.Get("ExposureTime"), "10000");
  EXPECT_EQ(rig.Get("FFCExpectGray"), "128");
}

TEST(UserSets, AUserSetThatWasNeverSavedIsTheFactoryState)
{
  CCameraRig rig(Options("Mono12", ECorrectionMode::Vignetting));
  CSettings settings(rig);
  rig.LoadUserSet("Default");
  const auto mapFactory = settings.ReadAll();
  settings.ChangeAll();
  rig.LoadUserSet("UserSet0");
  EXPECT_EQ(settings.ReadAll(), mapFactory);
}

TEST(UserSets, LoadBetweenSmallRegionsAtOppositeCorners)
{
  CCameraRig rig(Options("Mono8", ECorrectionMode::FlatField));
  rig.Set("Width", "16");
  rig.Set("OffsetX", "240");
  rig.SaveUserSet("UserSet0");
  rig.LoadUserSet("Default");
  EXPECT_EQ(rig.Get("Width"), "256");
  EXPECT_EQ(rig.Get("OffsetX"), "0");
  rig.LoadUserSet("UserSet0");
  EXPECT_EQ(rig.Get("Width"), "16");
  EXPECT_EQ(rig.Get("OffsetX"), "240");
}

TEST(UserSets, TheDefaultSetCannotBeSavedInto)
{
  CCameraRig rig(Options("Mono8", ECorrectionMode::FlatField));
  rig.Set("Gain", "6");
  rig.Set("UserSetSelector", "Default");
  EXPECT_THROW(rig.Execute("UserSetSave"), GenICam::AccessException);
  EXPECT_THROW(rig.Device<GenApi::ICommand>("UserSetSave").Execute(false), GenICam::AccessException);
  rig.Execute("UserSetLoad");
  EXPECT_EQ(rig.Get("Gain"), "0");
  rig.SaveUserSet("UserSet0");
}

TEST(UserSets, AreLockedWhileTheCameraStreams)
{
  CCameraRig rig(Options("Mono8", ECorrectionMode::FlatField));
  rig.Set("UserSetSelector", "UserSet0");
  ASSERT_EQ(rig.Camera().Start().GetError(), "");
  rig.Set("Gain", "6");
  for (const char *pCommand : {"UserSetLoad", "UserSetSave"}) {
    EXPECT_THROW(rig.Execute(pCommand), GenICam::AccessException) << pCommand;
    EXPECT_THROW(rig.Device<GenApi::ICommand>(pCommand).Execute(false), GenICam::AccessException) << pCommand;
    EXPECT_EQ(rig.Value(pCommand).GetAccessMode(), GenApi::NA) << pCommand;
  }
  EXPECT_EQ(rig.Get("Gain"), "6");
  rig.Camera().Stop();
  rig.Execute("UserSetLoad");
  EXPECT_EQ(rig.Get("Gain"), "0") << "nothing was saved";
  rig.Execute("UserSetSave");
}

TEST(UserSets, LeaveCoefficientsAndSelectionAlone)
{
  CCameraRig rig(Options("Mono8", ECorrectionMode::FlatField));
  const auto nSize = rig.ReadRegister().size();
  rig.WriteRegister(std::vector<uint8_t>(nSize, 5));
  rig.Set("DeviceUserID", "left");
  rig.SaveUserSet("UserSet0");
  rig.WriteRegister(std::vector<uint8_t>(nSize, 6));
  rig.Set("UserSetDefault", "UserSet0");
  rig.Set("DeviceUserID", "right");
  rig.LoadUserSet("UserSet0");
  EXPECT_EQ(rig.ReadRegister(), std::vector<uint8_t>(nSize, 6));
  EXPECT_EQ(rig.Get("UserSetDefault"), "UserSet0");
  EXPECT_EQ(rig.Get("DeviceUserID"), "right");
}

TEST(UserSets, AWhiteBalanceThatIsLoadedStartsAfresh)
{
  CCameraRig rig(Options("BayerBG8", ECorrectionMode::FlatField));
  rig.Set("TriggerMode", "On");
  rig.Set("BalanceWhiteAuto", "Once");
  rig.SaveUserSet("UserSet0");
  rig.TakeTriggered();
  rig.TakeTriggered();
  EXPECT_EQ(rig.Get("BalanceWhiteAuto"), "Once") << "not yet settled";
  rig.Camera().Stop();
  rig.LoadUserSet("UserSet0");
  EXPECT_EQ(rig.Get("BalanceRatio"), "1");
  rig.TakeTriggered();
  rig.TakeTriggered();
  EXPECT_EQ(rig.Get("BalanceWhiteAuto"), "Once");
  rig.TakeTriggered();
  EXPECT_EQ(rig.Get("BalanceWhiteAuto"), "Off");
}
