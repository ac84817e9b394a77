// Values of each type.
#include <cmath>
#include <limits>
#include <tuple>

#include "tests/pluginobject/featureaccessfixture.h"

using ffc::genapi::CSoftwareInteger;

using FeatureValue = CFeatureAccessTest;

TEST_F(FeatureValue, AnIntegerIsReadAndWrittenWithAll64Bits)
{
  constexpr int64_t LARGE = (int64_t{1} << 40) + 7;
  m_map.AddInteger("Large", LARGE);
  int64_t nValue = 0;
  EXPECT_EQ(m_features.GetIntFeature("Large", nValue), SUCCESS);
  EXPECT_EQ(nValue, LARGE);
  EXPECT_EQ(m_features.SetIntFeature("Large", -LARGE), SUCCESS);
  EXPECT_EQ(m_map.Find<CSoftwareInteger>("Large")->Peek(), -LARGE);
}

TEST_F(FeatureValue, NumbersOutOfRangeOrBetweenIncrementsAreRefused)
{
  for (const int64_t nValue : {int64_t{-10}, int64_t{110}, int64_t{15}}) {
    EXPECT_EQ(m_features.SetIntFeature("Integer", nValue), FEATURE_ERROR) << nValue;
  }
  for (const float fValue : {-0.5F, 10.5F, std::numeric_limits<float>::quiet_NaN()}) {
    EXPECT_EQ(m_features.SetFloatFeature("Float", fValue), FEATURE_ERROR) << fValue;
  }
  ExpectNothingChanged();
}

TEST_F(FeatureValue, AFloatIsNarrowedWhenReadAndWidenedWhenWritten)
{
  m_float.Poke(0.1);
  float fValue = 0.0F;
  EXPECT_EQ(m_features.GetFloatFeature("Float", fValue), SUCCESS);
  EXPECT_EQ(fValue, 0.1F);
  EXPECT_EQ(m_features.SetFloatFeature("Float", 0.1F), SUCCESS);
  EXPECT_EQ(m_float.Peek(), static_cast<double>(0.1F));
}

TEST_F(FeatureValue, AFloatThatIsWrittenBackStaysInARangeWhoseEndNoFloatHas)
{
  for (const auto &[dMin, dMax, dValue] : {std::tuple{0.0, 24.1, 24.1}, {0.0, 0.1, 0.1}, {0.7, 2.0, 0.7}}) {
    m_float.Range(dMin, dMax).Poke(dValue);
    float fValue = 0.0F;
    EXPECT_EQ(m_features.GetFloatFeature("Float", fValue), SUCCESS);
    m_float.Poke(1.0);
    EXPECT_EQ(m_features.SetFloatFeature("Float", fValue), FEATURE_ERROR) << dValue;
    EXPECT_EQ(m_features.RestoreFloatFeature("Float", fValue), SUCCESS) << dValue;
    EXPECT_EQ(m_float.Peek(), dValue);
  }
}

TEST_F(FeatureValue, AFloatThatIsWrittenBackIsOtherwiseWrittenAsItIs)
{
  EXPECT_EQ(m_features.RestoreFloatFeature("Float", 0.1F), SUCCESS);
  EXPECT_EQ(m_float.Peek(), static_cast<double>(0.1F));
  m_float.Range(0.0, 24.1);
  for (const float fValue :
       {24.2F, 24.11F, -0.1F, std::nextafterf(24.1F, 25.0F), std::numeric_limits<float>::quiet_NaN()}) {
    EXPECT_EQ(m_features.RestoreFloatFeature("Float", fValue), FEATURE_ERROR) << fValue;
  }
  m_float.Range(0.0, 0.05).Access(GenApi::RO);
  EXPECT_EQ(m_features.RestoreFloatFeature("Float", 0.05F), FEATURE_ERROR);
  EXPECT_EQ(m_float.Peek(), static_cast<double>(0.1F));
  EXPECT_EQ(m_features.RestoreFloatFeature("Integer", 1.0F), FEATURE_ERROR);
  EXPECT_EQ(m_features.RestoreFloatFeature("None", 1.0F), INVALID_PARAM);
  EXPECT_EQ(m_features.RestoreFloatFeature(nullptr, 1.0F), INVALID_PARAM);
}

TEST_F(FeatureValue, AnIntegerReadAsAFloatIsAFeatureError)
{
  float fValue = 3.0F;
  EXPECT_EQ(m_features.GetFloatFeature("Integer", fValue), FEATURE_ERROR);
  EXPECT_EQ(fValue, 3.0F);
}

TEST_F(FeatureValue, ABooleanIsReadAndWritten)
{
  bool bValue = false;
  EXPECT_EQ(m_features.GetBoolFeature("Boolean", bValue), SUCCESS);
  EXPECT_TRUE(bValue);
  EXPECT_EQ(m_features.SetBoolFeature("Boolean", false), SUCCESS);
  EXPECT_FALSE(m_boolean.Peek());
}

TEST_F(FeatureValue, AStringIsReadAndWrittenUpToItsLength)
{
  std::string strValue;
  EXPECT_EQ(m_features.GetStringFeature("String", strValue), SUCCESS);
  EXPECT_EQ(strValue, "text");
  EXPECT_EQ(m_features.SetStringFeature("String", "much too long"), FEATURE_ERROR);
  ExpectNothingChanged();
  EXPECT_EQ(m_features.SetStringFeature("String", "12345678"), SUCCESS);
  EXPECT_EQ(m_string.Peek(), "12345678");
}

TEST_F(FeatureValue, AnEnumerationIsReadByNameAndByValue)
{
  m_enumeration.Select("Third");
  std::string strValue;
  EXPECT_EQ(m_features.GetEnumFeature("Enumeration", strValue), SUCCESS);
  EXPECT_EQ(strValue, "Third");
  int64_t nValue = 0;
  EXPECT_EQ(m_features.GetEnumIntFeature("Enumeration", nValue), SUCCESS);
  EXPECT_EQ(nValue, 3);
}

TEST_F(FeatureValue, AnEnumerationWithoutACurrentEntryIsAFeatureError)
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

TEST_F(FeatureValue, UnknownAndUnavailableEntriesAreRefused)
{
  m_enumeration.Entry("Absent", 4, GenApi::NI).Entry("Later", 5, GenApi::NA);
  for (const char *pEntry : {"Unknown", "", "second", "Absent", "Later"}) {
    EXPECT_EQ(m_features.SetEnumFeature("Enumeration", pEntry), FEATURE_ERROR) << pEntry;
  }
  ExpectNothingChanged();
}

TEST_F(FeatureValue, ListedEntriesAreThoseThatAreAvailableInTheirOrder)
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

TEST_F(FeatureValue, AnEnumerationWithoutEntriesHasAnEmptyList)
{
  m_map.AddEnumeration("Empty");
  std::vector<std::string> listEntries = {"what was there before"};
  EXPECT_EQ(m_features.GetEnumEntries("Empty", listEntries), SUCCESS);
  EXPECT_TRUE(listEntries.empty());
}

TEST_F(FeatureValue, AnEntryThatFailsLeavesTheListAsItWas)
{
  m_map.AddEnumeration("Failing").Entry("Good", 1).Entry(
    "Bad", 2, []() -> GenApi::EAccessMode { throw GenICam::RuntimeException("text", __FILE__, __LINE__); });
  std::vector<std::string> listEntries = {"what was there before"};
  EXPECT_EQ(m_features.GetEnumEntries("Failing", listEntries), FEATURE_ERROR);
  EXPECT_EQ(listEntries, (std::vector<std::string>{"what was there before"}));
}

TEST_F(FeatureValue, ARegisterIsReadAndWrittenAsAWhole)
{
  int64_t nLength = 0;
  EXPECT_EQ(m_features.GetRegisterLength("Register", nLength), SUCCESS);
  EXPECT_EQ(nLength, REGISTER_LENGTH);
  ByteList listBytes(REGISTER_LENGTH);
  EXPECT_EQ(m_features.ReadRegisterFeature("Register", listBytes.data(), REGISTER_LENGTH), SUCCESS);
  EXPECT_EQ(listBytes, (ByteList{1, 2, 3, 4}));
  const ByteList listWritten = {9, 8, 7, 6};
  EXPECT_EQ(m_features.WriteRegisterFeature("Register", listWritten.data(), REGISTER_LENGTH), SUCCESS);
  EXPECT_EQ(m_register.Peek(), (ByteList{9, 8, 7, 6}));
}

TEST_F(FeatureValue, ARegisterOfAnotherLengthIsNeitherReadNorWritten)
{
  bool bTouched = false;
  m_register.OnWrite([&](const ByteList &) { bTouched = true; });
  for (const int64_t nLength :
       {REGISTER_LENGTH - 1, REGISTER_LENGTH + 1, int64_t{0}, int64_t{-1}, std::numeric_limits<int64_t>::max()}) {
    ByteList listBytes(REGISTER_LENGTH + 1, 0xEE);
    EXPECT_EQ(m_features.WriteRegisterFeature("Register", listBytes.data(), nLength), ROI_MISMATCH) << nLength;
    EXPECT_EQ(m_features.ReadRegisterFeature("Register", listBytes.data(), nLength), ROI_MISMATCH) << nLength;
    EXPECT_EQ(listBytes, ByteList(REGISTER_LENGTH + 1, 0xEE));
  }
  EXPECT_FALSE(bTouched);
  ExpectNothingChanged();
}

TEST_F(FeatureValue, ANullBufferIsAnInvalidParameterBeforeAllElse)
{
  for (const char *pName : {"Register", "Integer", "Missing", static_cast<const char *>(nullptr)}) {
    EXPECT_EQ(m_features.ReadRegisterFeature(pName, nullptr, REGISTER_LENGTH), INVALID_PARAM);
    EXPECT_EQ(m_features.WriteRegisterFeature(pName, nullptr, REGISTER_LENGTH), INVALID_PARAM);
  }
  ExpectNothingChanged();
}

TEST_F(FeatureValue, ACommandIsExecutedOnceAndNotWaitedFor)
{
  m_command.Done([]() -> bool { throw GenICam::TimeoutException("asked", __FILE__, __LINE__); });
  EXPECT_EQ(m_features.ExecuteCommand("Command"), SUCCESS);
  EXPECT_EQ(m_nExecuted, 1);
}

namespace {

// An enumeration of a camera whose list of entries has other nodes in it.
class CMixedEnumeration final : public GenApi::INode, public GenApi::IEnumeration {
public:
  explicit CMixedEnumeration(std::vector<GenApi::INode *> listEntries) : m_listEntries(std::move(listEntries)) {}

  GenApi::EAccessMode GetAccessMode() const override { return GenApi::RW; }
  GenICam::gcstring GetName(bool) const override { return "Mixed"; }
  GenApi::INode *GetNode() override { return this; }
  GenICam::gcstring ToString(bool, bool) override { return ""; }
  void FromString(const GenICam::gcstring &, bool) override {}
  void GetEntries(GenApi::NodeList_t &listEntries) override
  {
    for (GenApi::INode *pEntry : m_listEntries) {
      listEntries.push_back(pEntry);
    }
  }
  void SetIntValue(int64_t, bool) override {}
  int64_t GetIntValue(bool, bool) override { return 0; }
  GenApi::IEnumEntry *GetEntryByName(const GenICam::gcstring &) override { return nullptr; }
  GenApi::IEnumEntry *GetEntry(int64_t) override { return nullptr; }
  GenApi::IEnumEntry *GetCurrentEntry(bool, bool) override { return nullptr; }

private:
  const std::vector<GenApi::INode *> m_listEntries;
};

// A node map of one node.
class COneNode final : public GenApi::INodeMap {
public:
  explicit COneNode(GenApi::INode &node) : m_node(node) {}

  GenApi::INode *GetNode(const GenICam::gcstring &) const override { return &m_node; }
  void GetNodes(GenApi::NodeList_t &) const override {}

private:
  GenApi::INode &m_node;
};

} // namespace

TEST_F(FeatureValue, EntriesAreListedWithoutWhatIsNoEntry)
{
  GenApi::NodeList_t listEntries;
  m_enumeration.GetEntries(listEntries);
  ASSERT_EQ(listEntries.size(), 3U);
  CMixedEnumeration mixed({&m_integer, listEntries[0], nullptr, listEntries[2]});
  COneNode map(mixed);
  std::vector<std::string> listNames;
  EXPECT_EQ(ffc::pluginobject::CFeatureAccess(&map).GetEnumEntries("Mixed", listNames), SUCCESS);
  EXPECT_EQ(listNames, (std::vector<std::string>{"First", "Third"}));
}
