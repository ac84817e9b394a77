#include "host/headless/featuresnapshot.h"

#include <array>

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/softwarenodemap.h"
#include "host/viewer/featuretext.h"

using namespace ffc::host;
using ffc::genapi::CSoftwareBoolean;
using ffc::genapi::CSoftwareEnumeration;
using ffc::genapi::CSoftwareFloat;
using ffc::genapi::CSoftwareInteger;
using ffc::genapi::CSoftwareNodeMap;
using ffc::genapi::CSoftwareRegister;
using ffc::genapi::CSoftwareString;

namespace {

/// A map with a feature of each kind.
class FeatureSnapshot : public testing::Test {
protected:
  FeatureSnapshot()
  {
    m_map.AddInteger("Width", 640);
    m_map.AddFloat("Gain", 1.5);
    m_map.AddBoolean("ReverseX");
    m_map.AddEnumeration("TriggerMode").Entry("Off", 0).Entry("On", 1);
    m_map.AddString("DeviceUserID", "mine");
    m_map.AddRegister("FFCValueAll", 3).Length(3);
    m_map.AddCommand("UserSetLoad").OnExecute([this] { ++m_nExecuted; });
    m_map.AddInteger("Hidden", 1).Access(GenApi::WO);
  }

  QStringList GetChanges(const CFeatureSnapshot &before) { return CFeatureSnapshot(m_map).GetDifferences(before); }

  CSoftwareNodeMap m_map;
  int m_nExecuted = 0;
};

} // namespace

TEST_F(FeatureSnapshot, SeesAChangeOfEveryKindOfFeature)
{
  const CFeatureSnapshot before(m_map);
  EXPECT_TRUE(GetChanges(before).isEmpty());
  m_map.Find<CSoftwareInteger>("Width")->SetValue(641);
  m_map.Find<CSoftwareFloat>("Gain")->SetValue(1.25);
  m_map.Find<CSoftwareBoolean>("ReverseX")->SetValue(true);
  m_map.Find<CSoftwareEnumeration>("TriggerMode")->FromString("On");
  m_map.Find<CSoftwareString>("DeviceUserID")->SetValue("yours");
  const uint8_t anBytes[] = {0, 0, 1};
  m_map.Find<CSoftwareRegister>("FFCValueAll")->Set(anBytes, 3);
  EXPECT_EQ(GetChanges(before),
            QStringList({"DeviceUserID", "FFCValueAll", "Gain", "ReverseX", "TriggerMode", "Width"}));
}

TEST_F(FeatureSnapshot, ExecutesNoCommandAndReadsNothingThatCannotBeRead)
{
  const CFeatureSnapshot before(m_map);
  m_map.Find<CSoftwareInteger>("Hidden")->Poke(2);
  EXPECT_TRUE(GetChanges(before).isEmpty());
  EXPECT_EQ(m_nExecuted, 0);
}

TEST_F(FeatureSnapshot, AFeatureThatComesOrGoesIsADifference)
{
  const CFeatureSnapshot before(m_map);
  m_map.Find<CSoftwareInteger>("Width")->Access(GenApi::NA);
  EXPECT_EQ(GetChanges(before), QStringList("Width"));
  EXPECT_EQ(before.GetDifferences(CFeatureSnapshot(m_map)), QStringList("Width"));
}

TEST_F(FeatureSnapshot, AFeatureThatCannotTellItsValueIsComparedByItsReason)
{
  bool bThrows = true;
  m_map.AddInteger("Moody").OnRead([&bThrows]() -> int64_t {
    if (bThrows) {
      throw GenICam::RuntimeException("not today", __FILE__, __LINE__);
    }
    return 0;
  });
  const CFeatureSnapshot before(m_map);
  EXPECT_TRUE(GetChanges(before).isEmpty());
  bThrows = false;
  EXPECT_EQ(GetChanges(before), QStringList("Moody"));
}

TEST_F(FeatureSnapshot, ReadsTheRatioOfEveryColourAndPutsTheSelectorBack)
{
  std::array<double, 3> adRatios = {1.0, 2.0, 3.0};
  CSoftwareEnumeration &selector =
    m_map.AddEnumeration("BalanceRatioSelector").Entry("Red", 0).Entry("Green", 1).Entry("Blue", 2).Select("Green");
  m_map.AddFloat("BalanceRatio").OnRead([&] { return adRatios[static_cast<std::size_t>(selector.Peek())]; });
  const CFeatureSnapshot before(m_map);
  EXPECT_EQ(selector.PeekSymbolic(), "Green");
  adRatios[2] = 3.5;
  EXPECT_EQ(GetChanges(before), QStringList("BalanceRatio[Blue]"));
}

TEST_F(FeatureSnapshot, ASelectorThatRefusesIsADifferenceAndNoFailure)
{
  bool bRefuses = false;
  m_map.AddEnumeration("BalanceRatioSelector").Entry("Red", 0).OnWrite([&](int64_t) {
    if (bRefuses) {
      throw GenICam::RuntimeException("stuck", __FILE__, __LINE__);
    }
  });
  m_map.AddFloat("BalanceRatio", 1.0);
  const CFeatureSnapshot before(m_map);
  bRefuses = true;
  EXPECT_EQ(GetChanges(before), QStringList({"BalanceRatio", "BalanceRatio[Red]"}));
}

TEST_F(FeatureSnapshot, OneFeatureReadsAsItsText)
{
  EXPECT_EQ(ReadFeature(m_map, "TriggerMode"), "Off");
  EXPECT_EQ(ReadFeature(m_map, "Width"), "640");
  EXPECT_EQ(ReadFeature(m_map, "NoSuchFeature"), "");
  m_map.AddInteger("Broken").OnRead(
    []() -> int64_t { throw GenICam::RuntimeException("out of order", __FILE__, __LINE__); });
  EXPECT_NE(ReadFeature(m_map, "Broken").find("out of order"), std::string::npos);
}
