#include <functional>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/observednodemap.h"
#include "genapi/softwarenodemap/softwarenodemap.h"
#include "tests/support/accessrecorder.h"
#include "tests/support/failnthaccess.h"

using ffc::genapi::CObservedNodeMap;
using ffc::genapi::CSoftwareInteger;
using ffc::genapi::CSoftwareNodeMap;
using ffc::test::ALL_ACCESS_FAILURES;
using ffc::test::CAccessRecorder;
using ffc::test::CFailNthAccess;
using ffc::test::EAccessFailure;

namespace {

// A software map with one node of each kind, and the map that watches it.
class ObservedNodeMap : public testing::Test {
protected:
  ObservedNodeMap() : m_observed(m_map)
  {
    m_map.AddInteger("Integer", 4).Range(0, 8);
    m_map.AddFloat("Float", 1.5).Range(0.0, 100.0).Increment(0.5);
    m_map.AddBoolean("Boolean", true);
    m_map.AddEnumeration("Enumeration").Entry("Off", 0).Entry("On", 1);
    m_map.AddString("String", "text");
    m_map.AddRegister("Register", 4);
    m_map.AddCommand("Command").OnExecute([this] { ++m_nExecuted; });
  }

  template <class TInterface>
  TInterface &As(const char *pName) const
  {
    return *dynamic_cast<TInterface *>(m_observed.GetNode(pName));
  }

  CSoftwareNodeMap m_map;
  CObservedNodeMap m_observed;
  int m_nExecuted = 0;
};

// One bit per interface that the node offers.
unsigned GetInterfaces(GenApi::INode *pNode)
{
  unsigned nBits = 0;
  nBits |= dynamic_cast<GenApi::IInteger *>(pNode) != nullptr ? 1U : 0U;
  nBits |= dynamic_cast<GenApi::IFloat *>(pNode) != nullptr ? 2U : 0U;
  nBits |= dynamic_cast<GenApi::IBoolean *>(pNode) != nullptr ? 4U : 0U;
  nBits |= dynamic_cast<GenApi::IEnumeration *>(pNode) != nullptr ? 8U : 0U;
  nBits |= dynamic_cast<GenApi::IString *>(pNode) != nullptr ? 16U : 0U;
  nBits |= dynamic_cast<GenApi::IRegister *>(pNode) != nullptr ? 32U : 0U;
  nBits |= dynamic_cast<GenApi::ICommand *>(pNode) != nullptr ? 64U : 0U;
  nBits |= dynamic_cast<GenApi::IEnumEntry *>(pNode) != nullptr ? 128U : 0U;
  nBits |= dynamic_cast<GenApi::IValue *>(pNode) != nullptr ? 256U : 0U;
  return nBits;
}

// Name of the exception that the work throws.
std::string CatchName(const std::function<void()> &fnWork)
{
  try {
    fnWork();
  } catch (const GenICam::GenericException &e) {
    const std::string strWhat = e.what();
    const auto nEnd = strWhat.find(" thrown");
    const auto nBegin = strWhat.rfind(' ', nEnd - 1) + 1;
    return strWhat.substr(nBegin, nEnd - nBegin);
  } catch (const std::bad_alloc &) {
    return "std::bad_alloc";
  } catch (int) {
    return "int";
  }
  return "";
}

class CPlainNode final : public GenApi::INode {
public:
  GenICam::gcstring GetName(bool = false) const override { return "Root"; }
  GenApi::EAccessMode GetAccessMode() const override { return GenApi::RO; }
};

class CPlainNodeMap final : public GenApi::INodeMap {
public:
  GenApi::INode *GetNode(const GenICam::gcstring &) const override { return &m_node; }
  void GetNodes(GenApi::NodeList_t &listNodes) const override { listNodes.push_back(&m_node); }

private:
  mutable CPlainNode m_node;
};

} // namespace

TEST_F(ObservedNodeMap, StandInsOfferTheInterfacesOfTheirNodes)
{
  GenApi::NodeList_t listInner;
  GenApi::NodeList_t listObserved;
  m_map.GetNodes(listInner);
  m_observed.GetNodes(listObserved);
  ASSERT_EQ(listObserved.size(), listInner.size());
  for (std::size_t n = 0; n < listInner.size(); ++n) {
    EXPECT_NE(listObserved[n], listInner[n]);
    EXPECT_TRUE(listObserved[n]->GetName() == listInner[n]->GetName());
    EXPECT_EQ(GetInterfaces(listObserved[n]), GetInterfaces(listInner[n])) << listInner[n]->GetName();
    EXPECT_EQ(dynamic_cast<GenApi::IValue *>(listObserved[n])->GetNode(), listObserved[n]);
    EXPECT_EQ(m_observed.GetNode(listInner[n]->GetName()), listObserved[n]) << "the same at every look-up";
  }
  EXPECT_EQ(m_observed.GetNode("NoSuchNode"), nullptr);
}

TEST_F(ObservedNodeMap, AccessesReachTheNodesAndBringTheirResults)
{
  As<GenApi::IInteger>("Integer").SetValue(7);
  EXPECT_EQ(As<GenApi::IInteger>("Integer").GetValue(), 7);
  EXPECT_EQ(As<GenApi::IInteger>("Integer").GetMin(), m_map.Find<CSoftwareInteger>("Integer")->GetMin());
  EXPECT_EQ(As<GenApi::IInteger>("Integer").GetMax(), 8);
  EXPECT_EQ(As<GenApi::IInteger>("Integer").GetInc(), 1);
  EXPECT_THROW(As<GenApi::IInteger>("Integer").SetValue(9), GenICam::OutOfRangeException);
  As<GenApi::IInteger>("Integer").SetValue(9, false);
  EXPECT_EQ(m_map.Find<CSoftwareInteger>("Integer")->Peek(), 9) << "the verify flag is handed on";
  As<GenApi::IFloat>("Float").FromString("2.5");
  EXPECT_TRUE(As<GenApi::IFloat>("Float").ToString() == "2.5");
  EXPECT_TRUE(As<GenApi::IFloat>("Float").HasInc());
  As<GenApi::IBoolean>("Boolean").SetValue(false);
  EXPECT_FALSE(As<GenApi::IBoolean>("Boolean").GetValue());
  As<GenApi::IString>("String").SetValue("new");
  EXPECT_TRUE(As<GenApi::IString>("String").GetValue() == "new");
  EXPECT_GE(As<GenApi::IString>("String").GetMaxLength(), 3);
  const uint8_t anWritten[4] = {1, 2, 3, 4};
  uint8_t anRead[4] = {};
  As<GenApi::IRegister>("Register").Set(anWritten, 4);
  As<GenApi::IRegister>("Register").Get(anRead, 4);
  EXPECT_EQ(anRead[3], 4);
  EXPECT_EQ(As<GenApi::IRegister>("Register").GetLength(), 4);
  EXPECT_EQ(As<GenApi::IRegister>("Register").GetAddress(),
            dynamic_cast<GenApi::IRegister &>(*m_map.GetNode("Register")).GetAddress());
  As<GenApi::ICommand>("Command").Execute();
  EXPECT_TRUE(As<GenApi::ICommand>("Command").IsDone());
  EXPECT_EQ(m_nExecuted, 1);
}

TEST_F(ObservedNodeMap, EntriesAreStandInsToo)
{
  auto &node = As<GenApi::IEnumeration>("Enumeration");
  GenApi::NodeList_t listEntries;
  node.GetEntries(listEntries);
  ASSERT_EQ(listEntries.size(), 2U);
  EXPECT_EQ(GetInterfaces(listEntries[1]), 128U + 256U);
  GenApi::IEnumEntry *pOn = node.GetEntryByName("On");
  EXPECT_EQ(dynamic_cast<GenApi::INode *>(pOn), listEntries[1]);
  EXPECT_EQ(node.GetEntry(1), pOn);
  EXPECT_EQ(pOn->GetValue(), 1);
  EXPECT_TRUE(pOn->GetSymbolic() == "On");
  node.FromString("On");
  EXPECT_EQ(node.GetCurrentEntry(), pOn);
  node.SetIntValue(5, false);
  EXPECT_EQ(node.GetCurrentEntry(), nullptr);
  EXPECT_EQ(node.GetIntValue(), 5);
  EXPECT_EQ(node.GetEntryByName("Never"), nullptr);
}

TEST_F(ObservedNodeMap, TheRecorderWritesOneLinePerAccess)
{
  CAccessRecorder recorder;
  m_observed.AddHook(std::ref(recorder));
  uint8_t anBytes[4] = {};
  GenApi::IsImplemented(m_observed.GetNode("Float"));
  As<GenApi::IFloat>("Float").GetValue();
  As<GenApi::IFloat>("Float").SetValue(0.5);
  As<GenApi::IEnumeration>("Enumeration").FromString("On");
  As<GenApi::IEnumeration>("Enumeration").GetCurrentEntry();
  As<GenApi::ICommand>("Command").Execute();
  As<GenApi::IRegister>("Register").GetLength();
  As<GenApi::IRegister>("Register").Get(anBytes, 4);
  As<GenApi::IRegister>("Register").Set(anBytes, 4);
  const std::vector<std::string> listExpected = {"implemented? Float",   "get Float",       "set Float = 0.5",
                                                 "set Enumeration = On", "get Enumeration", "execute Command",
                                                 "read Register 4",      "write Register 4"};
  EXPECT_EQ(recorder.GetLog(), listExpected);
  recorder.Clear();
  EXPECT_TRUE(recorder.GetLog().empty());
}

TEST_F(ObservedNodeMap, TheDetailedRecorderLeavesNothingOut)
{
  CAccessRecorder recorder(CAccessRecorder::EDetail::All);
  m_observed.AddHook(std::ref(recorder));
  GenApi::NodeList_t listEntries;
  As<GenApi::IEnumeration>("Enumeration").GetEntries(listEntries);
  listEntries[0]->GetAccessMode();
  m_observed.GetNode("NoSuchNode");
  As<GenApi::IInteger>("Integer").GetMax();
  const std::vector<std::string> listExpected = {
    "find Enumeration", "entries Enumeration", "implemented? Enumeration.Off",
    "find NoSuchNode",  "find Integer",        "limit Integer"};
  EXPECT_EQ(recorder.GetLog(), listExpected);
}

TEST_F(ObservedNodeMap, ExactlyTheNthAccessFailsAndDoesNotHappen)
{
  CFailNthAccess fail(4, EAccessFailure::Timeout);
  CAccessRecorder recorder;
  m_observed.AddHook(std::ref(recorder)).AddHook(std::ref(fail));
  As<GenApi::IInteger>("Integer").SetValue(1); // a look-up and a write
  EXPECT_THROW(As<GenApi::IInteger>("Integer").SetValue(2), GenICam::TimeoutException);
  EXPECT_EQ(m_map.Find<CSoftwareInteger>("Integer")->Peek(), 1);
  As<GenApi::IInteger>("Integer").SetValue(3);
  EXPECT_EQ(m_map.Find<CSoftwareInteger>("Integer")->Peek(), 3);
  EXPECT_EQ(fail.GetCount(), 6U);
  EXPECT_EQ(recorder.GetLog().size(), 3U) << "the failing access is in the log";
}

TEST_F(ObservedNodeMap, ZeroNeverFails)
{
  CFailNthAccess fail(0, EAccessFailure::Foreign);
  m_observed.AddHook(std::ref(fail));
  EXPECT_EQ(As<GenApi::IInteger>("Integer").GetValue(), 4);
  EXPECT_EQ(fail.GetCount(), 2U);
}

TEST_F(ObservedNodeMap, EveryKindOfFailureThrowsItsOwnType)
{
  const char *const apNames[] = {"GenericException",      "BadAllocException", "InvalidArgumentException",
                                 "OutOfRangeException",   "PropertyException", "RuntimeException",
                                 "LogicalErrorException", "AccessException",   "TimeoutException",
                                 "DynamicCastException",  "std::bad_alloc",    "int"};
  for (std::size_t n = 0; n < std::size(ALL_ACCESS_FAILURES); ++n) {
    CFailNthAccess fail(1, ALL_ACCESS_FAILURES[n]);
    CObservedNodeMap observed(m_map);
    observed.AddHook(std::ref(fail));
    EXPECT_EQ(CatchName([&observed] { observed.GetNode("Integer"); }), apNames[n]);
  }
}

TEST(ObservedPlainNode, ANodeWithoutAValueStaysOne)
{
  CPlainNodeMap map;
  CAccessRecorder recorder;
  CObservedNodeMap observed(map);
  observed.AddHook(std::ref(recorder));
  GenApi::INode *pNode = observed.GetNode("Root");
  EXPECT_EQ(GetInterfaces(pNode), 0U);
  EXPECT_EQ(pNode->GetAccessMode(), GenApi::RO);
  EXPECT_EQ(recorder.GetLog(), std::vector<std::string>{"implemented? Root"});
}
