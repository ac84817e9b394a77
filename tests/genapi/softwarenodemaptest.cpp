#include <atomic>
#include <cmath>
#include <functional>
#include <limits>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/softwarenodemap.h"

using ffc::genapi::CSoftwareBoolean;
using ffc::genapi::CSoftwareCommand;
using ffc::genapi::CSoftwareEnumeration;
using ffc::genapi::CSoftwareFloat;
using ffc::genapi::CSoftwareInteger;
using ffc::genapi::CSoftwareNodeMap;
using ffc::genapi::CSoftwareRegister;
using ffc::genapi::CSoftwareString;
using GenICam::AccessException;
using GenICam::InvalidArgumentException;
using GenICam::OutOfRangeException;

namespace {

template <class TInterface>
TInterface &As(const CSoftwareNodeMap &map, const char *pName)
{
  return *dynamic_cast<TInterface *>(map.GetNode(pName));
}

// One node of every kind.
void AddOneOfEach(CSoftwareNodeMap &map)
{
  map.AddInteger("Integer", 4);
  map.AddFloat("Float", 1.5);
  map.AddBoolean("Boolean", true);
  map.AddEnumeration("Enumeration").Entry("Off", 0).Entry("On", 1);
  map.AddString("String", "text");
  map.AddRegister("Register", 4);
  map.AddCommand("Command");
}

// Every access that the node's kind has, one after the other; returns how many threw AccessException.
int CountRefusedAccesses(GenApi::INode *pNode, bool bVerify, int *pnTried)
{
  std::vector<std::function<void()>> listAccesses;
  if (auto *pInteger = dynamic_cast<GenApi::IInteger *>(pNode)) {
    listAccesses = {[=] { pInteger->GetValue(bVerify); }, [=] { pInteger->SetValue(4, bVerify); },
                    [=] { pInteger->GetMin(); }, [=] { pInteger->GetMax(); }, [=] { pInteger->GetInc(); }};
  } else if (auto *pFloat = dynamic_cast<GenApi::IFloat *>(pNode)) {
    listAccesses = {[=] { pFloat->GetValue(bVerify); }, [=] { pFloat->SetValue(4, bVerify); },
                    [=] { pFloat->GetMin(); }, [=] { pFloat->GetMax(); }, [=] { pFloat->HasInc(); }};
  } else if (auto *pBoolean = dynamic_cast<GenApi::IBoolean *>(pNode)) {
    listAccesses = {[=] { pBoolean->GetValue(bVerify); }, [=] { pBoolean->SetValue(true, bVerify); }};
  } else if (auto *pEnumeration = dynamic_cast<GenApi::IEnumeration *>(pNode)) {
    listAccesses = {[=] { pEnumeration->GetIntValue(bVerify); },
                    [=] { pEnumeration->SetIntValue(1, bVerify); },
                    [=] { pEnumeration->GetCurrentEntry(bVerify); },
                    [=] { pEnumeration->GetEntryByName("On"); },
                    [=] { pEnumeration->GetEntry(0); },
                    [=] {
                      GenApi::NodeList_t listEntries;
                      pEnumeration->GetEntries(listEntries);
                    }};
  } else if (auto *pString = dynamic_cast<GenApi::IString *>(pNode)) {
    listAccesses = {[=] { pString->GetValue(bVerify); }, [=] { pString->SetValue("x", bVerify); },
                    [=] { pString->GetMaxLength(); }};
  } else if (auto *pRegister = dynamic_cast<GenApi::IRegister *>(pNode)) {
    listAccesses = {[=] {
                      uint8_t anBytes[4];
                      pRegister->Get(anBytes, 4, bVerify);
                    },
                    [=] {
                      const uint8_t anBytes[4] = {};
                      pRegister->Set(anBytes, 4, bVerify);
                    },
                    [=] { pRegister->GetLength(); }, [=] { pRegister->GetAddress(); }};
  } else if (auto *pCommand = dynamic_cast<GenApi::ICommand *>(pNode)) {
    listAccesses = {[=] { pCommand->Execute(bVerify); }, [=] { pCommand->IsDone(bVerify); }};
  }
  int nRefused = 0;
  for (const auto &fnAccess : listAccesses) {
    try {
      fnAccess();
    } catch (const AccessException &) {
      ++nRefused;
    }
  }
  *pnTried = static_cast<int>(listAccesses.size());
  return nRefused;
}

} // namespace

TEST(SoftwareNodeMap, FindsNodesByNameAndListsThemInDeclarationOrder)
{
  CSoftwareNodeMap map;
  AddOneOfEach(map);
  EXPECT_EQ(map.GetNode("NoSuchNode"), nullptr);
  GenApi::NodeList_t listNodes;
  map.GetNodes(listNodes);
  ASSERT_EQ(listNodes.size(), 7U);
  EXPECT_TRUE(listNodes[0]->GetName() == "Integer");
  EXPECT_TRUE(listNodes[6]->GetName() == "Command");
  EXPECT_EQ(map.GetNode("String"), listNodes[4]);
}

TEST(SoftwareNodeMap, ANameCanBeDeclaredOnce)
{
  CSoftwareNodeMap map;
  map.AddInteger("Width");
  EXPECT_THROW(map.AddFloat("Width"), GenICam::LogicalErrorException);
  EXPECT_NE(map.Find<CSoftwareInteger>("Width"), nullptr);
}

TEST(SoftwareNodeMap, EachKindOffersItsOwnInterfaceOnly)
{
  CSoftwareNodeMap map;
  AddOneOfEach(map);
  GenApi::NodeList_t listNodes;
  map.GetNodes(listNodes);
  for (GenApi::INode *pNode : listNodes) {
    const int nInterfaces =
      (dynamic_cast<GenApi::IInteger *>(pNode) != nullptr) + (dynamic_cast<GenApi::IFloat *>(pNode) != nullptr) +
      (dynamic_cast<GenApi::IBoolean *>(pNode) != nullptr) + (dynamic_cast<GenApi::IEnumeration *>(pNode) != nullptr) +
      (dynamic_cast<GenApi::IString *>(pNode) != nullptr) + (dynamic_cast<GenApi::IRegister *>(pNode) != nullptr) +
      (dynamic_cast<GenApi::ICommand *>(pNode) != nullptr);
    EXPECT_EQ(nInterfaces, 1) << pNode->GetName();
    auto *pValue = dynamic_cast<GenApi::IValue *>(pNode);
    ASSERT_NE(pValue, nullptr);
    EXPECT_EQ(pValue->GetNode(), pNode);
  }
  EXPECT_NE(map.Find<CSoftwareRegister>("Register"), nullptr);
  EXPECT_EQ(map.Find<CSoftwareInteger>("Register"), nullptr);
}

TEST(SoftwareNodeMap, ANodeThatIsNotThereRefusesEveryAccessVerifiedOrNot)
{
  for (const GenApi::EAccessMode eMode : {GenApi::NI, GenApi::NA}) {
    CSoftwareNodeMap map;
    AddOneOfEach(map);
    map.Find<CSoftwareInteger>("Integer")->Access(eMode);
    map.Find<CSoftwareFloat>("Float")->Access(eMode);
    map.Find<CSoftwareBoolean>("Boolean")->Access(eMode);
    map.Find<CSoftwareEnumeration>("Enumeration")->Access(eMode);
    map.Find<CSoftwareString>("String")->Access(eMode);
    map.Find<CSoftwareRegister>("Register")->Access(eMode);
    map.Find<CSoftwareCommand>("Command")->Access(eMode);
    GenApi::NodeList_t listNodes;
    map.GetNodes(listNodes);
    for (GenApi::INode *pNode : listNodes) {
      EXPECT_EQ(pNode->GetAccessMode(), eMode);
      for (const bool bVerify : {false, true}) {
        int nTried = 0;
        const int nRefused = CountRefusedAccesses(pNode, bVerify, &nTried);
        EXPECT_GE(nTried, 2);
        EXPECT_EQ(nRefused, nTried) << pNode->GetName();
      }
      auto *pValue = dynamic_cast<GenApi::IValue *>(pNode);
      EXPECT_THROW(pValue->ToString(), AccessException) << pNode->GetName();
      EXPECT_THROW(pValue->FromString("no text of it", false), AccessException) << pNode->GetName();
    }
  }
}

TEST(SoftwareNodeMap, AccessModesFollowTheDeclaredPaths)
{
  CSoftwareNodeMap map;
  AddOneOfEach(map);
  EXPECT_EQ(map.GetNode("Integer")->GetAccessMode(), GenApi::RW);
  EXPECT_EQ(map.GetNode("Command")->GetAccessMode(), GenApi::WO);
  EXPECT_EQ(map.AddInteger("Computed").OnRead([] { return 3; }).GetAccessMode(), GenApi::RO);
  EXPECT_EQ(map.AddInteger("Both").OnRead([] { return 3; }).OnWrite([](int64_t) {}).GetAccessMode(), GenApi::RW);
}

TEST(SoftwareNodeMap, AVerifiedWriteOfAReadOnlyNodeIsRefusedAndAnUnverifiedOnePasses)
{
  CSoftwareNodeMap map;
  CSoftwareInteger &node = map.AddInteger("Value", 1).Access(GenApi::RO);
  EXPECT_THROW(node.SetValue(2), AccessException);
  EXPECT_THROW(node.FromString("2"), AccessException);
  EXPECT_EQ(node.GetValue(true), 1);
  node.SetValue(2, false);
  EXPECT_EQ(node.GetValue(true), 2);

  CSoftwareInteger &computed = map.AddInteger("Computed").OnRead([] { return 7; });
  EXPECT_THROW(computed.SetValue(2, false), AccessException) << "nothing takes the value";
}

TEST(SoftwareNodeMap, AVerifiedReadOfAWriteOnlyNodeIsRefused)
{
  CSoftwareNodeMap map;
  CSoftwareFloat &node = map.AddFloat("Value", 1.0).Access(GenApi::WO);
  EXPECT_THROW(node.GetValue(true), AccessException);
  EXPECT_THROW(node.ToString(true), AccessException);
  EXPECT_EQ(node.GetValue(false), 1.0);
  node.SetValue(2.0);
  EXPECT_EQ(node.Peek(), 2.0);
}

TEST(SoftwareNodeMap, ANodeCanBeLockedByAnotherOne)
{
  CSoftwareNodeMap map;
  CSoftwareInteger &locked = map.AddInteger("TLParamsLocked");
  CSoftwareInteger &width = map.AddInteger("Width", 640).LockedWhile(locked);
  width.SetValue(320);
  locked.Poke(1);
  EXPECT_EQ(width.GetAccessMode(), GenApi::RO);
  EXPECT_THROW(width.SetValue(640), AccessException);
  EXPECT_EQ(width.GetValue(true), 320);
  locked.Poke(0);
  width.SetValue(640);
  EXPECT_EQ(width.GetValue(), 640);
}

TEST(SoftwareNodeMap, IntegersKeepRangeAndIncrement)
{
  CSoftwareNodeMap map;
  CSoftwareInteger &node = map.AddInteger("Width", 4).Range(2, 11).Increment(4);
  EXPECT_EQ(node.GetMin(), 2);
  EXPECT_EQ(node.GetMax(), 11);
  EXPECT_EQ(node.GetInc(), 4);
  for (int64_t nValue = -3; nValue < 15; ++nValue) {
    if (nValue == 2 || nValue == 6 || nValue == 10) {
      EXPECT_NO_THROW(node.SetValue(nValue)) << nValue;
    } else {
      EXPECT_THROW(node.SetValue(nValue), OutOfRangeException) << nValue;
    }
  }
  EXPECT_EQ(node.GetValue(), 10) << "a refused value is not stored";
  node.SetValue(12345, false);
  EXPECT_EQ(node.GetValue(), 12345);
}

TEST(SoftwareNodeMap, IntegersReachTheEndsOfTheirType)
{
  constexpr int64_t MIN = std::numeric_limits<int64_t>::min();
  constexpr int64_t MAX = std::numeric_limits<int64_t>::max();
  CSoftwareNodeMap map;
  CSoftwareInteger &node = map.AddInteger("Any").Increment(2);
  node.SetValue(MIN);
  EXPECT_EQ(node.GetValue(), MIN);
  EXPECT_THROW(node.SetValue(MAX), OutOfRangeException) << "odd distance";
  node.SetValue(MAX - 1);
  EXPECT_EQ(node.GetMax(), MAX);
}

TEST(SoftwareNodeMap, AStrictNodeVerifiesWhateverTheCallerAsks)
{
  CSoftwareNodeMap map;
  CSoftwareInteger &number = map.AddInteger("Width", 4).Range(0, 8).Strict();
  EXPECT_THROW(number.SetValue(9, false), OutOfRangeException);
  number.SetValue(8, false);
  number.Access(GenApi::RO);
  EXPECT_THROW(number.SetValue(4, false), AccessException);
  EXPECT_EQ(number.GetValue(), 8);
  CSoftwareEnumeration &enumeration = map.AddEnumeration("Mode").Entry("Off", 0).Strict();
  EXPECT_THROW(enumeration.SetIntValue(9, false), InvalidArgumentException);
  EXPECT_THROW(map.AddString("Name").MaxLength(1).Strict().SetValue("ab", false), OutOfRangeException);
}

TEST(SoftwareNodeMap, RangesMayBeAskedForAtEveryUse)
{
  CSoftwareNodeMap map;
  int64_t nMax = 10;
  CSoftwareInteger &node = map.AddInteger("Offset").Range(0, [&nMax] { return nMax; });
  node.SetValue(10);
  nMax = 5;
  EXPECT_EQ(node.GetMax(), 5);
  EXPECT_THROW(node.SetValue(6), OutOfRangeException);
}

TEST(SoftwareNodeMap, FloatsRefuseValuesOutsideBetweenStepsAndNaN)
{
  CSoftwareNodeMap map;
  CSoftwareFloat &node = map.AddFloat("Gain", 0.0).Range(-1.0, 2.0);
  EXPECT_FALSE(node.HasInc());
  EXPECT_THROW(node.GetInc(), AccessException);
  node.SetValue(2.0);
  EXPECT_THROW(node.SetValue(2.0000001), OutOfRangeException);
  EXPECT_THROW(node.SetValue(-1.5), OutOfRangeException);
  EXPECT_THROW(node.SetValue(std::nan("")), OutOfRangeException);
  EXPECT_THROW(node.FromString("nan"), OutOfRangeException);
  EXPECT_EQ(node.GetValue(), 2.0);

  node.Increment(0.1);
  EXPECT_TRUE(node.HasInc());
  EXPECT_EQ(node.GetInc(), 0.1);
  node.SetValue(-1.0 + 13 * 0.1);
  EXPECT_THROW(node.SetValue(0.05), OutOfRangeException);
  EXPECT_THROW(map.AddFloat("Any").SetValue(std::numeric_limits<double>::infinity()), OutOfRangeException);
}

TEST(SoftwareNodeMap, EntriesComeInDeclarationOrderWithTheirOwnAccess)
{
  CSoftwareNodeMap map;
  bool bWithColor = false;
  CSoftwareEnumeration &node = map.AddEnumeration("PixelFormat")
                                 .Entry("Mono8", 8)
                                 .Entry("Mono12", 5, GenApi::NI)
                                 .Entry("BayerRG8", 9, [&bWithColor] { return bWithColor ? GenApi::RO : GenApi::NA; });
  GenApi::NodeList_t listEntries;
  node.GetEntries(listEntries);
  ASSERT_EQ(listEntries.size(), 3U);
  auto *pEntry = dynamic_cast<GenApi::IEnumEntry *>(listEntries[2]);
  ASSERT_NE(pEntry, nullptr);
  EXPECT_TRUE(pEntry->GetSymbolic() == "BayerRG8");
  EXPECT_TRUE(listEntries[2]->GetName() == "EnumEntry_PixelFormat_BayerRG8");
  EXPECT_EQ(pEntry->GetValue(), 9);
  EXPECT_EQ(listEntries[1]->GetAccessMode(), GenApi::NI);
  EXPECT_FALSE(GenApi::IsAvailable(pEntry));
  bWithColor = true;
  EXPECT_TRUE(GenApi::IsAvailable(pEntry));
  EXPECT_TRUE(pEntry->ToString(true) == "BayerRG8");
  EXPECT_THROW(pEntry->FromString("Mono8"), AccessException);
}

TEST(SoftwareNodeMap, TextsAndListsDoWhatViewersDoWithThem)
{
  GenICam::gcstring strText("Bayer");
  strText += "RG8";
  EXPECT_EQ(strText.size(), 8U);
  EXPECT_TRUE(strText != "Bayer" && strText != GenICam::gcstring("BayerRG9"));
  EXPECT_TRUE(strText < GenICam::gcstring("BayerRG9"));
  std::ostringstream stream;
  stream << strText << GenICam::gcstring(nullptr);
  EXPECT_EQ(stream.str(), "BayerRG8");
  CSoftwareNodeMap map;
  map.AddInteger("Width", 64);
  GenApi::NodeList_t listNodes;
  EXPECT_TRUE(listNodes.empty());
  map.GetNodes(listNodes);
  const GenApi::NodeList_t &listConst = listNodes;
  EXPECT_EQ(listConst.end() - listConst.begin(), 1);
  EXPECT_EQ(listConst[0], map.GetNode("Width"));
  listNodes.clear();
  EXPECT_TRUE(listNodes.empty());
  const GenICam::RuntimeException exception(nullptr, nullptr, 7);
  EXPECT_STREQ(exception.GetDescription(), "");
  EXPECT_STREQ(exception.GetSourceFileName(), "");
  EXPECT_EQ(exception.GetSourceLine(), 7U);
  EXPECT_FALSE(GenApi::IsImplemented(nullptr) || GenApi::IsAvailable(nullptr) || GenApi::IsWritable(nullptr));
}

TEST(SoftwareNodeMap, AnEnumerationTakesOnlyEntriesThatAreThere)
{
  CSoftwareNodeMap map;
  CSoftwareEnumeration &node = map.AddEnumeration("Mode").Entry("Off", 0).Entry("Once", 2).Entry("Odd", 3, GenApi::NA);
  EXPECT_TRUE(node.GetCurrentEntry()->GetSymbolic() == "Off") << "the first entry";
  node.FromString("Once");
  EXPECT_EQ(node.GetIntValue(), 2);
  EXPECT_TRUE(node.ToString() == "Once");
  EXPECT_THROW(node.FromString("once"), InvalidArgumentException);
  EXPECT_THROW(node.FromString("", false), InvalidArgumentException);
  EXPECT_THROW(node.SetIntValue(1), InvalidArgumentException);
  EXPECT_THROW(node.FromString("Odd"), AccessException);
  EXPECT_THROW(node.SetIntValue(3), AccessException);
  EXPECT_EQ(node.GetIntValue(), 2);
  EXPECT_EQ(node.GetEntryByName("Twice"), nullptr);
  EXPECT_EQ(node.GetEntry(1), nullptr);
  EXPECT_EQ(node.GetEntry(0), node.GetEntryByName("Off"));
  EXPECT_EQ(node.Select("Off").PeekSymbolic(), "Off");
  EXPECT_THROW(node.Select("Twice"), InvalidArgumentException);
}

TEST(SoftwareNodeMap, AValueOfNoEntryHasNoCurrentEntry)
{
  CSoftwareNodeMap map;
  CSoftwareEnumeration &node = map.AddEnumeration("Mode").Entry("Off", 0);
  node.SetIntValue(17, false);
  EXPECT_EQ(node.GetIntValue(), 17);
  EXPECT_EQ(node.GetCurrentEntry(), nullptr);
  EXPECT_EQ(node.PeekSymbolic(), "");
  EXPECT_THROW(node.ToString(), GenICam::RuntimeException);
  EXPECT_EQ(map.AddEnumeration("Empty").GetCurrentEntry(), nullptr);
}

TEST(SoftwareNodeMap, EveryKindReadsItsOwnText)
{
  CSoftwareNodeMap map;
  AddOneOfEach(map);
  const char *const aapTexts[][2] = {{"Integer", "-12"}, {"Float", "0.1"},           {"Boolean", "0"},
                                     {"String", "a b"},  {"Register", "0x0001feff"}, {"Enumeration", "On"}};
  for (const auto &apText : aapTexts) {
    auto &value = As<GenApi::IValue>(map, apText[0]);
    value.FromString(apText[1]);
    EXPECT_TRUE(value.ToString() == apText[1]) << apText[0] << " " << value.ToString();
  }
  As<GenApi::IValue>(map, "Integer").FromString("0xFF");
  EXPECT_EQ(As<GenApi::IInteger>(map, "Integer").GetValue(), 255);
  As<GenApi::IValue>(map, "Boolean").FromString("true");
  EXPECT_TRUE(As<GenApi::IBoolean>(map, "Boolean").GetValue());
  As<GenApi::IValue>(map, "Boolean").FromString("false");
  EXPECT_FALSE(As<GenApi::IBoolean>(map, "Boolean").GetValue());
}

TEST(SoftwareNodeMap, ABadTextIsAnInvalidArgumentAndChangesNothing)
{
  CSoftwareNodeMap map;
  AddOneOfEach(map);
  const char *const aapTexts[][2] = {
    {"Integer", ""},
    {"Integer", "4 "},
    {"Integer", "1.5"},
    {"Integer", "0x"},
    {"Integer", "0x1g"},
    {"Integer", "99999999999999999999"},
    {"Float", "1,5"},
    {"Float", ""},
    {"Boolean", "True"},
    {"Boolean", "2"},
    {"Register", "0x0"},
    {"Register", "00000000"},
    {"Register", "0x0000000z"},
    {"Command", "go"},
  };
  for (const auto &apText : aapTexts) {
    auto &value = As<GenApi::IValue>(map, apText[0]);
    const GenICam::gcstring strBefore = value.ToString();
    EXPECT_THROW(value.FromString(apText[1]), InvalidArgumentException) << apText[0] << " '" << apText[1] << "'";
    EXPECT_TRUE(value.ToString() == strBefore) << apText[0];
  }
}

TEST(SoftwareNodeMap, StringsKeepTheirGreatestLength)
{
  CSoftwareNodeMap map;
  CSoftwareString &node = map.AddString("DeviceUserID", "one").MaxLength(5);
  EXPECT_EQ(node.GetMaxLength(), 5);
  node.SetValue("three");
  EXPECT_THROW(node.SetValue("eleven"), OutOfRangeException);
  EXPECT_TRUE(node.GetValue() == "three");
}

TEST(SoftwareNodeMap, ARegisterMovesAsAWhole)
{
  CSoftwareNodeMap map;
  CSoftwareRegister &node = map.AddRegister("FFCValueAll", 3);
  EXPECT_EQ(node.GetLength(), 3);
  uint8_t anRead[4] = {9, 9, 9, 9};
  node.Get(anRead, 3);
  EXPECT_EQ(anRead[0] + anRead[1] + anRead[2], 0) << "an unwritten register reads as zeros";
  EXPECT_EQ(anRead[3], 9);
  const uint8_t anWritten[4] = {1, 2, 3, 4};
  node.Set(anWritten, 3);
  for (const int64_t nLength : {-1, 0, 2, 4}) {
    EXPECT_THROW(node.Set(anRead, nLength), OutOfRangeException) << nLength;
    EXPECT_THROW(node.Get(anRead, nLength), OutOfRangeException) << nLength;
  }
  EXPECT_THROW(node.Set(nullptr, 3), InvalidArgumentException);
  EXPECT_THROW(node.Get(nullptr, 3), InvalidArgumentException);
  EXPECT_TRUE(node.ToString() == "0x010203");
}

TEST(SoftwareNodeMap, ACommandRunsItsActionAndSaysWhenItIsDone)
{
  CSoftwareNodeMap map;
  int nRuns = 0;
  bool bDone = false;
  CSoftwareCommand &node = map.AddCommand("Save").OnExecute([&nRuns] { ++nRuns; }).Done([&bDone] { return bDone; });
  node.Execute();
  EXPECT_EQ(nRuns, 1);
  EXPECT_FALSE(node.IsDone());
  EXPECT_TRUE(node.ToString() == "0");
  bDone = true;
  EXPECT_TRUE(node.IsDone());
  node.FromString("1");
  node.FromString("0");
  EXPECT_EQ(nRuns, 2);
  node.Access(GenApi::RO);
  EXPECT_THROW(node.Execute(), AccessException);
  EXPECT_EQ(nRuns, 2);
}

TEST(SoftwareNodeMap, AThrowingWriteCallbackLeavesTheStoreAlone)
{
  CSoftwareNodeMap map;
  int64_t nSeen = 0;
  CSoftwareInteger &node = map.AddInteger("Value", 1).OnWrite([&nSeen](int64_t nValue) {
    if (nValue == 3) {
      throw GenICam::TimeoutException("no answer", __FILE__, __LINE__);
    }
    nSeen = nValue;
  });
  node.SetValue(2);
  EXPECT_EQ(nSeen, 2);
  EXPECT_THROW(node.SetValue(3), GenICam::TimeoutException);
  EXPECT_EQ(node.GetValue(), 2);
}

TEST(SoftwareNodeMap, CallbacksMayUseOtherNodesOfTheMap)
{
  CSoftwareNodeMap map;
  CSoftwareInteger &width = map.AddInteger("Width", 8);
  CSoftwareInteger &height = map.AddInteger("Height", 4);
  CSoftwareInteger &payload =
    map.AddInteger("PayloadSize").OnRead([&] { return width.GetValue() * height.GetValue(); });
  EXPECT_EQ(payload.GetValue(), 32);
  width.SetValue(2);
  EXPECT_EQ(payload.GetValue(), 8);
}

TEST(SoftwareNodeMap, ASnapshotIsConsistentWhileAnotherThreadWrites)
{
  CSoftwareNodeMap map;
  CSoftwareInteger &first = map.AddInteger("First");
  CSoftwareInteger &second = map.AddInteger("Second").OnWrite([&first](int64_t nValue) { first.Poke(nValue); });
  std::atomic<bool> bStop{false};
  std::thread writer([&] {
    for (int64_t nValue = 0; !bStop; ++nValue) {
      second.SetValue(nValue);
    }
  });
  int nTorn = 0;
  for (int n = 0; n < 2000; ++n) {
    const auto lock = map.Lock();
    nTorn += first.GetValue() != second.GetValue();
  }
  bStop = true;
  writer.join();
  EXPECT_EQ(nTorn, 0);
}
