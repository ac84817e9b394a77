#include "pluginobject/featureaccess.h"

#include <functional>
#include <limits>
#include <map>
#include <new>
#include <stdexcept>

#include <gtest/gtest.h>

#include "genapi/softwarenodemap/softwarenodemap.h"

namespace {

using ByteList = std::vector<uint8_t>;

constexpr int32_t SUCCESS = 0;
constexpr int32_t INVALID_PARAM = -3;
constexpr int32_t FEATURE_ERROR = -1002;
constexpr int32_t ROI_MISMATCH = -1015;
constexpr int64_t REGISTER_LENGTH = 4;

// One operation, called so that a failure which touches an output is noticed.
struct SOperation {
  const char *pOperation;
  const char *pFeature; ///< a feature of the right type
  std::function<int32_t(const CFeatureAccess &, const char *)> fnCall;
};

std::ostream &operator<<(std::ostream &out, const SOperation &stOperation)
{
  return out << stOperation.pOperation;
}

template <typename TValue>
auto MakeGetter(int32_t (CFeatureAccess::*fnGet)(const char *, TValue &) const, TValue sentinel)
{
  return [fnGet, sentinel](const CFeatureAccess &features, const char *pName) {
    TValue value = sentinel;
    const int32_t nStatus = (features.*fnGet)(pName, value);
    EXPECT_EQ(value == sentinel, nStatus != SUCCESS);
    return nStatus;
  };
}

template <typename TValue>
auto MakeSetter(int32_t (CFeatureAccess::*fnSet)(const char *, TValue) const, TValue value)
{
  return [fnSet, value](const CFeatureAccess &features, const char *pName) { return (features.*fnSet)(pName, value); };
}

int32_t ReadRegister(const CFeatureAccess &features, const char *pName)
{
  const ByteList listSentinel(REGISTER_LENGTH, 0xEE);
  ByteList listBytes = listSentinel;
  const int32_t nStatus = features.ReadRegisterFeature(pName, listBytes.data(), REGISTER_LENGTH);
  EXPECT_EQ(listBytes == listSentinel, nStatus != SUCCESS);
  return nStatus;
}

int32_t WriteRegister(const CFeatureAccess &features, const char *pName)
{
  const ByteList listBytes = {9, 8, 7, 6};
  return features.WriteRegisterFeature(pName, listBytes.data(), REGISTER_LENGTH);
}

// Every typed operation. The sentinels differ from the values of the fixture's features.
const std::vector<SOperation> &GetOperations()
{
  using Access = CFeatureAccess;
  static const std::vector<SOperation> OPERATIONS = {
    {"GetIntFeature", "Integer", MakeGetter<int64_t>(&Access::GetIntFeature, -99)},
    {"SetIntFeature", "Integer", MakeSetter<int64_t>(&Access::SetIntFeature, 20)},
    {"GetFloatFeature", "Float", MakeGetter<float>(&Access::GetFloatFeature, -99.0F)},
    {"SetFloatFeature", "Float", MakeSetter<float>(&Access::SetFloatFeature, 2.25F)},
    {"GetBoolFeature", "Boolean", MakeGetter<bool>(&Access::GetBoolFeature, false)},
    {"SetBoolFeature", "Boolean", MakeSetter<bool>(&Access::SetBoolFeature, false)},
    {"GetEnumFeature", "Enumeration", MakeGetter<std::string>(&Access::GetEnumFeature, "sentinel")},
    {"GetEnumIntFeature", "Enumeration", MakeGetter<int64_t>(&Access::GetEnumIntFeature, -99)},
    {"SetEnumFeature", "Enumeration", MakeSetter<std::string>(&Access::SetEnumFeature, "Second")},
    {"GetEnumEntries", "Enumeration", MakeGetter<std::vector<std::string>>(&Access::GetEnumEntries, {"sentinel"})},
    {"GetStringFeature", "String", MakeGetter<std::string>(&Access::GetStringFeature, "sentinel")},
    {"SetStringFeature", "String", MakeSetter<std::string>(&Access::SetStringFeature, "other")},
    {"GetRegisterLength", "Register", MakeGetter<int64_t>(&Access::GetRegisterLength, -99)},
    {"ReadRegisterFeature", "Register", ReadRegister},
    {"WriteRegisterFeature", "Register", WriteRegister},
    {"ExecuteCommand", "Command",
     [](const Access &features, const char *pName) { return features.ExecuteCommand(pName); }},
  };
  return OPERATIONS;
}

// Everything that a node map may throw.
const std::map<std::string, std::function<void()>> &GetThrowers()
{
  static const std::map<std::string, std::function<void()>> THROWERS = {
    {"generic", [] { throw GenICam::GenericException("text", __FILE__, __LINE__); }},
    {"bad alloc", [] { throw GenICam::BadAllocException("text", __FILE__, __LINE__); }},
    {"invalid argument", [] { throw GenICam::InvalidArgumentException("text", __FILE__, __LINE__); }},
    {"out of range", [] { throw GenICam::OutOfRangeException("text", __FILE__, __LINE__); }},
    {"property", [] { throw GenICam::PropertyException("text", __FILE__, __LINE__); }},
    {"runtime", [] { throw GenICam::RuntimeException("text", __FILE__, __LINE__); }},
    {"logical error", [] { throw GenICam::LogicalErrorException("text", __FILE__, __LINE__); }},
    {"access", [] { throw GenICam::AccessException("text", __FILE__, __LINE__); }},
    {"timeout", [] { throw GenICam::TimeoutException("text", __FILE__, __LINE__); }},
    {"dynamic cast", [] { throw GenICam::DynamicCastException("text", __FILE__, __LINE__); }},
    {"std::bad_alloc", [] { throw std::bad_alloc(); }},
    {"std::runtime_error", [] { throw std::runtime_error("text"); }},
    {"of no class", [] { throw 42; }},
  };
  return THROWERS;
}

// A node map that fails to look anything up.
class CThrowingNodeMap : public GenApi::INodeMap {
public:
  GenApi::INode *GetNode(const GenICam::gcstring &) const override
  {
    m_fnThrow();
    return nullptr;
  }
  void GetNodes(GenApi::NodeList_t &) const override {}

  std::function<void()> m_fnThrow;
};

class FeatureAccess : public testing::Test {
protected:
  FeatureAccess()
  {
    m_integer.Range(0, 100).Increment(10);
    m_float.Range(0.0, 10.0);
    m_enumeration.Entry("First", 1).Entry("Second", 2).Entry("Third", 3);
    m_string.MaxLength(8);
    m_register.Length(REGISTER_LENGTH).Poke({1, 2, 3, 4});
    m_command.OnExecute([this] { ++m_nExecuted; });
  }

  // Calls fnDo before every use of every node.
  void InterceptEverything(const std::function<void()> &fnDo)
  {
    const auto fnAccess = [fnDo] {
      fnDo();
      return GenApi::RW;
    };
    m_integer.Access(fnAccess);
    m_float.Access(fnAccess);
    m_boolean.Access(fnAccess);
    m_enumeration.Access(fnAccess);
    m_string.Access(fnAccess);
    m_register.Access(fnAccess);
    m_command.Access(fnAccess);
  }

  void SetAccess(GenApi::EAccessMode eMode)
  {
    InterceptEverything([] {});
    m_integer.Access(eMode);
    m_float.Access(eMode);
    m_boolean.Access(eMode);
    m_enumeration.Access(eMode);
    m_string.Access(eMode);
    m_register.Access(eMode);
    m_command.Access(eMode);
  }

  void ExpectNothingChanged()
  {
    EXPECT_EQ(m_integer.Peek(), 10);
    EXPECT_EQ(m_float.Peek(), 1.5);
    EXPECT_TRUE(m_boolean.Peek());
    EXPECT_EQ(m_enumeration.Peek(), 1);
    EXPECT_EQ(m_string.Peek(), "text");
    EXPECT_EQ(m_register.Peek(), (ByteList{1, 2, 3, 4}));
    EXPECT_EQ(m_nExecuted, 0);
  }

  CSoftwareNodeMap m_map;
  CSoftwareInteger &m_integer = m_map.AddInteger("Integer", 10);
  CSoftwareFloat &m_float = m_map.AddFloat("Float", 1.5);
  CSoftwareBoolean &m_boolean = m_map.AddBoolean("Boolean", true);
  CSoftwareEnumeration &m_enumeration = m_map.AddEnumeration("Enumeration");
  CSoftwareString &m_string = m_map.AddString("String", "text");
  CSoftwareRegister &m_register = m_map.AddRegister("Register");
  CSoftwareCommand &m_command = m_map.AddCommand("Command");
  int m_nExecuted = 0;
  CFeatureAccess m_features{&m_map};
};

} // namespace

TEST_F(FeatureAccess, EveryOperationSucceedsOnAFeatureOfItsType)
{
  for (const SOperation &stOperation : GetOperations()) {
    EXPECT_EQ(stOperation.fnCall(m_features, stOperation.pFeature), SUCCESS) << stOperation;
  }
}

TEST_F(FeatureAccess, AMissingFeatureIsAnInvalidParameter)
{
  for (const SOperation &stOperation : GetOperations()) {
    EXPECT_EQ(stOperation.fnCall(m_features, "Missing"), INVALID_PARAM) << stOperation;
    EXPECT_EQ(stOperation.fnCall(m_features, ""), INVALID_PARAM) << stOperation;
  }
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, ANullNameIsAnInvalidParameter)
{
  for (const SOperation &stOperation : GetOperations()) {
    EXPECT_EQ(stOperation.fnCall(m_features, nullptr), INVALID_PARAM) << stOperation;
  }
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, WithoutANodeMapThereIsNoFeature)
{
  const CFeatureAccess features(nullptr);
  EXPECT_FALSE(features.HasNodeMap());
  EXPECT_TRUE(m_features.HasNodeMap());
  for (const SOperation &stOperation : GetOperations()) {
    EXPECT_EQ(stOperation.fnCall(features, stOperation.pFeature), INVALID_PARAM) << stOperation;
  }
}

TEST_F(FeatureAccess, AFeatureOfAnotherTypeIsAFeatureError)
{
  for (const SOperation &stOperation : GetOperations()) {
    for (const char *pFeature : {"Integer", "Float", "Boolean", "Enumeration", "String", "Register", "Command"}) {
      if (std::string(pFeature) != stOperation.pFeature) {
        EXPECT_EQ(stOperation.fnCall(m_features, pFeature), FEATURE_ERROR) << stOperation << ' ' << pFeature;
      }
    }
  }
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, WhateverAnAccessThrowsIsAFeatureError)
{
  for (const auto &[strKind, fnThrow] : GetThrowers()) {
    InterceptEverything(fnThrow);
    for (const SOperation &stOperation : GetOperations()) {
      EXPECT_EQ(stOperation.fnCall(m_features, stOperation.pFeature), FEATURE_ERROR) << stOperation << ' ' << strKind;
    }
  }
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, WhateverTheLookUpThrowsIsAFeatureError)
{
  CThrowingNodeMap map;
  const CFeatureAccess features(&map);
  for (const auto &[strKind, fnThrow] : GetThrowers()) {
    map.m_fnThrow = fnThrow;
    for (const SOperation &stOperation : GetOperations()) {
      EXPECT_EQ(stOperation.fnCall(features, "Any"), FEATURE_ERROR) << stOperation << ' ' << strKind;
    }
  }
}

TEST_F(FeatureAccess, WhatACameraThrowsAtAWriteLeavesTheValue)
{
  for (const auto &stThrower : GetThrowers()) {
    const std::function<void()> &fnThrow = stThrower.second;
    m_integer.OnWrite([&](int64_t) { fnThrow(); });
    m_float.OnWrite([&](double) { fnThrow(); });
    m_string.OnWrite([&](const std::string &) { fnThrow(); });
    m_register.OnWrite([&](const ByteList &) { fnThrow(); });
    EXPECT_EQ(m_features.SetIntFeature("Integer", 20), FEATURE_ERROR);
    EXPECT_EQ(m_features.SetFloatFeature("Float", 2.0F), FEATURE_ERROR);
    EXPECT_EQ(m_features.SetStringFeature("String", "other"), FEATURE_ERROR);
    EXPECT_EQ(WriteRegister(m_features, "Register"), FEATURE_ERROR);
  }
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, UnavailableFeaturesAreFeatureErrors)
{
  for (const GenApi::EAccessMode eMode : {GenApi::NI, GenApi::NA}) {
    SetAccess(eMode);
    for (const SOperation &stOperation : GetOperations()) {
      EXPECT_EQ(stOperation.fnCall(m_features, stOperation.pFeature), FEATURE_ERROR) << stOperation << ' ' << eMode;
    }
  }
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, SettersVerifyTheAccessModeAndGettersDoNot)
{
  SetAccess(GenApi::RO);
  EXPECT_EQ(m_features.SetIntFeature("Integer", 20), FEATURE_ERROR);
  EXPECT_EQ(m_features.SetFloatFeature("Float", 2.0F), FEATURE_ERROR);
  EXPECT_EQ(m_features.SetBoolFeature("Boolean", false), FEATURE_ERROR);
  EXPECT_EQ(m_features.SetEnumFeature("Enumeration", "Second"), FEATURE_ERROR);
  EXPECT_EQ(m_features.SetStringFeature("String", "other"), FEATURE_ERROR);
  EXPECT_EQ(WriteRegister(m_features, "Register"), FEATURE_ERROR);
  EXPECT_EQ(m_features.ExecuteCommand("Command"), FEATURE_ERROR);
  ExpectNothingChanged();

  SetAccess(GenApi::WO);
  int64_t nValue = 0;
  EXPECT_EQ(m_features.GetIntFeature("Integer", nValue), SUCCESS);
  EXPECT_EQ(nValue, 10);
  float fValue = 0.0F;
  EXPECT_EQ(m_features.GetFloatFeature("Float", fValue), SUCCESS);
  EXPECT_EQ(fValue, 1.5F);
}

TEST_F(FeatureAccess, AnIntegerIsReadAndWrittenWithAll64Bits)
{
  constexpr int64_t LARGE = (int64_t{1} << 40) + 7;
  m_map.AddInteger("Large", LARGE);
  int64_t nValue = 0;
  EXPECT_EQ(m_features.GetIntFeature("Large", nValue), SUCCESS);
  EXPECT_EQ(nValue, LARGE);
  EXPECT_EQ(m_features.SetIntFeature("Large", -LARGE), SUCCESS);
  EXPECT_EQ(m_map.Find<CSoftwareInteger>("Large")->Peek(), -LARGE);
}

TEST_F(FeatureAccess, NumbersOutOfRangeOrBetweenIncrementsAreRefused)
{
  for (const int64_t nValue : {int64_t{-10}, int64_t{110}, int64_t{15}}) {
    EXPECT_EQ(m_features.SetIntFeature("Integer", nValue), FEATURE_ERROR) << nValue;
  }
  for (const float fValue : {-0.5F, 10.5F, std::numeric_limits<float>::quiet_NaN()}) {
    EXPECT_EQ(m_features.SetFloatFeature("Float", fValue), FEATURE_ERROR) << fValue;
  }
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, AFloatIsNarrowedWhenReadAndWidenedWhenWritten)
{
  m_float.Poke(0.1);
  float fValue = 0.0F;
  EXPECT_EQ(m_features.GetFloatFeature("Float", fValue), SUCCESS);
  EXPECT_EQ(fValue, 0.1F);
  EXPECT_EQ(m_features.SetFloatFeature("Float", 0.1F), SUCCESS);
  EXPECT_EQ(m_float.Peek(), static_cast<double>(0.1F));
}

TEST_F(FeatureAccess, AnIntegerReadAsAFloatIsAFeatureError)
{
  float fValue = 3.0F;
  EXPECT_EQ(m_features.GetFloatFeature("Integer", fValue), FEATURE_ERROR);
  EXPECT_EQ(fValue, 3.0F);
}

TEST_F(FeatureAccess, ABooleanIsReadAndWritten)
{
  bool bValue = false;
  EXPECT_EQ(m_features.GetBoolFeature("Boolean", bValue), SUCCESS);
  EXPECT_TRUE(bValue);
  EXPECT_EQ(m_features.SetBoolFeature("Boolean", false), SUCCESS);
  EXPECT_FALSE(m_boolean.Peek());
}

TEST_F(FeatureAccess, AStringIsReadAndWrittenUpToItsLength)
{
  std::string strValue;
  EXPECT_EQ(m_features.GetStringFeature("String", strValue), SUCCESS);
  EXPECT_EQ(strValue, "text");
  EXPECT_EQ(m_features.SetStringFeature("String", "much too long"), FEATURE_ERROR);
  ExpectNothingChanged();
  EXPECT_EQ(m_features.SetStringFeature("String", "12345678"), SUCCESS);
  EXPECT_EQ(m_string.Peek(), "12345678");
}

TEST_F(FeatureAccess, AnEnumerationIsReadByNameAndByValue)
{
  m_enumeration.Select("Third");
  std::string strValue;
  EXPECT_EQ(m_features.GetEnumFeature("Enumeration", strValue), SUCCESS);
  EXPECT_EQ(strValue, "Third");
  int64_t nValue = 0;
  EXPECT_EQ(m_features.GetEnumIntFeature("Enumeration", nValue), SUCCESS);
  EXPECT_EQ(nValue, 3);
}

TEST_F(FeatureAccess, AnEnumerationWithoutACurrentEntryIsAFeatureError)
{
  m_enumeration.Poke(77);
  std::string strValue = "before";
  EXPECT_EQ(m_features.GetEnumFeature("Enumeration", strValue), FEATURE_ERROR);
  EXPECT_EQ(strValue, "before");
  int64_t nValue = -5;
  EXPECT_EQ(m_features.GetEnumIntFeature("Enumeration", nValue), FEATURE_ERROR);
  EXPECT_EQ(nValue, -5);
  // Writing needs no current entry.
  EXPECT_EQ(m_features.SetEnumFeature("Enumeration", "Second"), SUCCESS);
  EXPECT_EQ(m_enumeration.Peek(), 2);
}

TEST_F(FeatureAccess, UnknownAndUnavailableEntriesAreRefused)
{
  m_enumeration.Entry("Absent", 4, GenApi::NI).Entry("Later", 5, GenApi::NA);
  for (const char *pEntry : {"Unknown", "", "second", "Absent", "Later"}) {
    EXPECT_EQ(m_features.SetEnumFeature("Enumeration", pEntry), FEATURE_ERROR) << pEntry;
  }
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, ListedEntriesAreThoseThatAreAvailableInTheirOrder)
{
  m_map.AddEnumeration("Mixed")
    .Entry("Zebra", 9)
    .Entry("Absent", 8, GenApi::NI)
    .Entry("Apple", 7)
    .Entry("Later", 6, GenApi::NA)
    .Entry("Mango", 5, GenApi::RW);
  std::vector<std::string> listEntries = {"what was there before"};
  EXPECT_EQ(m_features.GetEnumEntries("Mixed", listEntries), SUCCESS);
  EXPECT_EQ(listEntries, (std::vector<std::string>{"Zebra", "Apple", "Mango"}));
}

TEST_F(FeatureAccess, AnEnumerationWithoutEntriesHasAnEmptyList)
{
  m_map.AddEnumeration("Empty");
  std::vector<std::string> listEntries = {"what was there before"};
  EXPECT_EQ(m_features.GetEnumEntries("Empty", listEntries), SUCCESS);
  EXPECT_TRUE(listEntries.empty());
}

TEST_F(FeatureAccess, AnEntryThatFailsLeavesTheListAsItWas)
{
  m_map.AddEnumeration("Failing").Entry("Good", 1).Entry("Bad", 2, []() -> GenApi::EAccessMode {
    throw GenICam::RuntimeException("text", __FILE__, __LINE__);
  });
  std::vector<std::string> listEntries = {"what was there before"};
  EXPECT_EQ(m_features.GetEnumEntries("Failing", listEntries), FEATURE_ERROR);
  EXPECT_EQ(listEntries, (std::vector<std::string>{"what was there before"}));
}

TEST_F(FeatureAccess, ARegisterIsReadAndWrittenAsAWhole)
{
  int64_t nLength = 0;
  EXPECT_EQ(m_features.GetRegisterLength("Register", nLength), SUCCESS);
  EXPECT_EQ(nLength, REGISTER_LENGTH);
  ByteList listBytes(REGISTER_LENGTH);
  EXPECT_EQ(m_features.ReadRegisterFeature("Register", listBytes.data(), REGISTER_LENGTH), SUCCESS);
  EXPECT_EQ(listBytes, (ByteList{1, 2, 3, 4}));
  EXPECT_EQ(WriteRegister(m_features, "Register"), SUCCESS);
  EXPECT_EQ(m_register.Peek(), (ByteList{9, 8, 7, 6}));
}

TEST_F(FeatureAccess, ARegisterOfAnotherLengthIsNeitherReadNorWritten)
{
  bool bTouched = false;
  m_register.OnWrite([&](const ByteList &) { bTouched = true; });
  for (const int64_t nLength : {REGISTER_LENGTH - 1, REGISTER_LENGTH + 1, int64_t{0}, int64_t{-1},
                                std::numeric_limits<int64_t>::max()}) {
    ByteList listBytes(REGISTER_LENGTH + 1, 0xEE);
    EXPECT_EQ(m_features.WriteRegisterFeature("Register", listBytes.data(), nLength), ROI_MISMATCH) << nLength;
    EXPECT_EQ(m_features.ReadRegisterFeature("Register", listBytes.data(), nLength), ROI_MISMATCH) << nLength;
    EXPECT_EQ(listBytes, ByteList(REGISTER_LENGTH + 1, 0xEE));
  }
  EXPECT_FALSE(bTouched);
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, ANullBufferIsAnInvalidParameterBeforeAllElse)
{
  for (const char *pName : {"Register", "Integer", "Missing", static_cast<const char *>(nullptr)}) {
    EXPECT_EQ(m_features.ReadRegisterFeature(pName, nullptr, REGISTER_LENGTH), INVALID_PARAM);
    EXPECT_EQ(m_features.WriteRegisterFeature(pName, nullptr, REGISTER_LENGTH), INVALID_PARAM);
  }
  ExpectNothingChanged();
}

TEST_F(FeatureAccess, ACommandIsExecutedOnceAndNotWaitedFor)
{
  m_command.Done([]() -> bool { throw GenICam::TimeoutException("asked", __FILE__, __LINE__); });
  EXPECT_EQ(m_features.ExecuteCommand("Command"), SUCCESS);
  EXPECT_EQ(m_nExecuted, 1);
}

TEST_F(FeatureAccess, AFeatureIsImplementedUnlessItsModeSaysOtherwise)
{
  for (const GenApi::EAccessMode eMode : {GenApi::NI, GenApi::NA, GenApi::WO, GenApi::RO, GenApi::RW}) {
    m_integer.Access(eMode);
    bool bImplemented = eMode == GenApi::NI;
    EXPECT_EQ(m_features.IsFeatureImplemented("Integer", bImplemented), SUCCESS);
    EXPECT_EQ(bImplemented, eMode != GenApi::NI) << eMode;
    bool bWritable = false;
    EXPECT_EQ(m_features.IsFeatureWritable("Integer", bWritable), SUCCESS);
    EXPECT_EQ(bWritable, eMode == GenApi::WO || eMode == GenApi::RW) << eMode;
  }
}

TEST_F(FeatureAccess, AFeatureOfAnyTypeCanBeImplemented)
{
  for (const char *pFeature : {"Integer", "Float", "Boolean", "Enumeration", "String", "Register", "Command"}) {
    bool bImplemented = false;
    EXPECT_EQ(m_features.IsFeatureImplemented(pFeature, bImplemented), SUCCESS);
    EXPECT_TRUE(bImplemented) << pFeature;
  }
}

TEST_F(FeatureAccess, AskingForAMissingFeatureIsNoFailure)
{
  for (const CFeatureAccess &features : {m_features, CFeatureAccess(nullptr)}) {
    bool bAnswer = true;
    EXPECT_EQ(features.IsFeatureImplemented("Missing", bAnswer), SUCCESS);
    EXPECT_FALSE(bAnswer);
    bAnswer = true;
    EXPECT_EQ(features.IsFeatureWritable("Missing", bAnswer), SUCCESS);
    EXPECT_FALSE(bAnswer);
  }
}

TEST_F(FeatureAccess, AskingForANullNameIsAFailureAndAnswersNo)
{
  bool bAnswer = true;
  EXPECT_EQ(m_features.IsFeatureImplemented(nullptr, bAnswer), INVALID_PARAM);
  EXPECT_FALSE(bAnswer);
  bAnswer = true;
  EXPECT_EQ(m_features.IsFeatureWritable(nullptr, bAnswer), INVALID_PARAM);
  EXPECT_FALSE(bAnswer);
}

TEST_F(FeatureAccess, AskingWhatThrowsLeavesTheAnswerAsItWas)
{
  for (const auto &[strKind, fnThrow] : GetThrowers()) {
    InterceptEverything(fnThrow);
    for (const bool bBefore : {true, false}) {
      bool bAnswer = bBefore;
      EXPECT_EQ(m_features.IsFeatureImplemented("Integer", bAnswer), FEATURE_ERROR) << strKind;
      EXPECT_EQ(bAnswer, bBefore) << strKind;
      EXPECT_EQ(m_features.IsFeatureWritable("Integer", bAnswer), FEATURE_ERROR) << strKind;
      EXPECT_EQ(bAnswer, bBefore) << strKind;
    }
  }
}
