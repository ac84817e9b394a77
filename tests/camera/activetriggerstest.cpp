#include "camera/activetriggers.h"

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/softwarenodemap.h"

using ffc::camera::ListActiveTriggers;
using ffc::camera::SActiveTrigger;
using ffc::genapi::CSoftwareEnumeration;
using ffc::genapi::CSoftwareNodeMap;

namespace {

// A camera with a mode and a source for each of three triggers.
class ActiveTriggers : public testing::Test {
protected:
  ActiveTriggers()
  {
    m_map.AddEnumeration("TriggerSelector")
      .Entry("AcquisitionStart", 0)
      .Entry("FrameStart", 1)
      .Entry("LineStart", 2, GenApi::NA)
      .Entry("FrameBurstStart", 3)
      .Select("FrameStart");
    m_map.AddEnumeration("TriggerMode").Entry("Off", 0).Entry("On", 1).OnRead([this] { return m_anModes[Selected()]; });
    m_map.AddEnumeration("TriggerSource").Entry("Software", 0).Entry("Line1", 1).OnRead([this] {
      return Selected() == 3 ? 1 : 0;
    });
  }

  std::size_t Selected() const { return static_cast<std::size_t>(Selector().Peek()); }
  CSoftwareEnumeration &Selector() const { return *m_map.Find<CSoftwareEnumeration>("TriggerSelector"); }

  // "Selector (Source)" of each.
  std::string List()
  {
    std::string strText;
    for (const SActiveTrigger &stTrigger : ListActiveTriggers(m_map)) {
      strText += stTrigger.strSelector + " (" + stTrigger.strSource + ") ";
    }
    return strText;
  }

  int64_t m_anModes[4] = {0, 0, 1, 0};
  CSoftwareNodeMap m_map;
};

} // namespace

TEST_F(ActiveTriggers, EverySelectorIsAskedAndTheUsersIsSelectedAgain)
{
  EXPECT_EQ(List(), "") << "one that is not available does not count";
  m_anModes[0] = 1;
  m_anModes[3] = 1;
  EXPECT_EQ(List(), "AcquisitionStart (Software) FrameBurstStart (Line1) ");
  EXPECT_EQ(Selector().PeekSymbolic(), "FrameStart");
}

TEST_F(ActiveTriggers, ASelectorThatCannotBeWrittenIsAskedAsItStands)
{
  m_anModes[0] = 1;
  m_anModes[1] = 1;
  Selector().Access(GenApi::RO);
  EXPECT_EQ(List(), "FrameStart (Software) ");
}

TEST_F(ActiveTriggers, AnEntryThatIsRefusedIsLeftOut)
{
  m_anModes[1] = 1;
  m_anModes[3] = 1;
  Selector().OnWrite([](const int64_t &nValue) {
    if (nValue == 3) {
      throw GenICam::RuntimeException("refused", __FILE__, __LINE__);
    }
  });
  EXPECT_EQ(List(), "FrameStart (Software) ");
  EXPECT_EQ(Selector().PeekSymbolic(), "FrameStart");
}

TEST(ActiveTriggersOfOtherCameras, ACameraWithOneTriggerHasNoSelectorAndOneWithoutHasNone)
{
  CSoftwareNodeMap map;
  EXPECT_TRUE(ListActiveTriggers(map).empty());
  map.AddEnumeration("TriggerMode").Entry("Off", 0).Entry("On", 1).Select("On");
  ASSERT_EQ(ListActiveTriggers(map).size(), 1U);
  EXPECT_EQ(ListActiveTriggers(map)[0].strSelector, "");
  EXPECT_EQ(ListActiveTriggers(map)[0].strSource, "");
}
