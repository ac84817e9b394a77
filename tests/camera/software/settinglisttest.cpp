#include <string>

#include <gtest/gtest.h>

#include "camera/software/settinglist.h"

using ffc::camera::CSettingList;
using ffc::camera::SettingSnapshot;
using ffc::camera::SettingValue;
using ffc::genapi::CSoftwareEnumeration;
using ffc::genapi::CSoftwareFloat;
using ffc::genapi::CSoftwareInteger;
using ffc::genapi::CSoftwareNodeMap;

namespace {

// Every kind of node that there is.
class SettingList : public testing::Test {
protected:
  SettingList()
  {
    m_map.AddInteger("Size", 100).Range(10, [this] { return 200 - m_map.Find<CSoftwareInteger>("Offset")->Peek(); });
    m_map.AddInteger("Offset")
      .Range(0, [this] { return 200 - m_map.Find<CSoftwareInteger>("Size")->Peek(); })
      .Increment(4);
    m_map.AddFloat("Gain", 1.5).Range(0.0, 10.0);
    m_map.AddEnumeration("Mode").Entry("Off", 0).Entry("On", 1);
    m_map.AddInteger("Payload").OnRead([] { return 7; });
    m_map.AddInteger("Serial", 5).Access(GenApi::RO);
    m_map.AddInteger("Selector", 5);
    m_map.AddString("Name", "camera");
    m_map.AddRegister("Table", 4);
    m_map.AddCommand("Go");
    m_list.Exclude("Selector");
    m_list.AddNodes(m_map);
  }

  void SetAll(int64_t nSize, int64_t nOffset, double dGain, const char *pMode)
  {
    m_map.Find<CSoftwareInteger>("Size")->Poke(nSize);
    m_map.Find<CSoftwareInteger>("Offset")->Poke(nOffset);
    m_map.Find<CSoftwareFloat>("Gain")->Poke(dGain);
    m_map.Find<CSoftwareEnumeration>("Mode")->Select(pMode);
  }

  CSoftwareNodeMap m_map;
  CSettingList m_list;
};

} // namespace

TEST_F(SettingList, TakesWhatCanBeWrittenAndIsANumberOrAChoice)
{
  const SettingSnapshot mapExpected = {
    {"Gain", 1.5}, {"Mode", int64_t{0}}, {"Offset", int64_t{0}}, {"Size", int64_t{100}}};
  EXPECT_EQ(m_list.Save(), mapExpected);
}

TEST_F(SettingList, BringsBackValuesThatNoOrderOfWritesCouldReachAlone)
{
  SetAll(40, 160, 2.5, "On");
  const SettingSnapshot mapSmall = m_list.Save();
  SetAll(200, 0, 0.0, "Off");
  const SettingSnapshot mapLarge = m_list.Save();
  EXPECT_TRUE(m_list.Load(mapSmall));
  EXPECT_EQ(m_list.Save(), mapSmall);
  EXPECT_TRUE(m_list.Load(mapLarge));
  EXPECT_EQ(m_list.Save(), mapLarge);
}

TEST_F(SettingList, ChangesNothingWhenOneValueDoesNotFit)
{
  SetAll(40, 160, 2.5, "On");
  const SettingSnapshot mapBefore = m_list.Save();
  const auto refuses = [&](const std::string &strName, const SettingValue &value) {
    SettingSnapshot mapBad = mapBefore;
    mapBad["Mode"] = int64_t{0};
    mapBad[strName] = value;
    const bool bLoaded = m_list.Load(mapBad);
    return !bLoaded && m_list.Save() == mapBefore;
  };
  EXPECT_TRUE(refuses("Size", int64_t{42})) << "beyond the offset's share";
  EXPECT_TRUE(refuses("Size", int64_t{9}));
  EXPECT_TRUE(refuses("Offset", int64_t{158})) << "between two steps";
  EXPECT_TRUE(refuses("Gain", 10.5));
  EXPECT_TRUE(refuses("Gain", -0.5));
  EXPECT_TRUE(refuses("Mode", int64_t{2}));
  EXPECT_TRUE(refuses("Gain", int64_t{2})) << "of another kind";
  EXPECT_TRUE(refuses("Size", 40.0));
  EXPECT_TRUE(refuses("Serial", int64_t{5})) << "no setting";
  EXPECT_FALSE(m_list.Load({})) << "settings are missing";
  EXPECT_EQ(m_list.Save(), mapBefore);
}

TEST_F(SettingList, ASettingOfItsOwnTakesTheNodesPlace)
{
  double dHidden = 3.0;
  CSettingList list;
  list.Exclude("Mode");
  list.Add("Gain", {[&] { return SettingValue(dHidden); },
                    [&](const SettingValue &value) { dHidden = std::get<double>(value); },
                    [](const SettingValue &value) { return std::get<double>(value) < 100.0; }});
  list.AddNodes(m_map);
  SettingSnapshot mapSnapshot = list.Save();
  EXPECT_EQ(mapSnapshot.count("Mode"), 0U);
  EXPECT_EQ(std::get<double>(mapSnapshot["Gain"]), 3.0);
  mapSnapshot["Gain"] = 50.0;
  EXPECT_TRUE(list.Load(mapSnapshot));
  EXPECT_EQ(dHidden, 50.0);
  EXPECT_EQ(m_map.Find<CSoftwareFloat>("Gain")->Peek(), 1.5);
  mapSnapshot["Gain"] = 100.0;
  EXPECT_FALSE(list.Load(mapSnapshot));
  EXPECT_EQ(dHidden, 50.0);
}
