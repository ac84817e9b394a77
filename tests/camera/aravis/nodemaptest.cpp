#include "camera/aravis/nodemap/aravisnodemap.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "camera/idescribednode.h"
#include "tests/camera/aravis/memorydevice.h"

using ffc::test::CMemoryDevice;
using ffc::test::MakeDescription;
using ffc::test::MakeRegister;

namespace {

const std::string NODES =
  R"(<Category Name="Root"><pFeature>Width</pFeature></Category>
<Group Comment="nodes in a group">
<Integer Name="Width"><pIsLocked>Lock</pIsLocked><pValue>WidthReg</pValue><Min>16</Min><Max>640</Max><Inc>4</Inc></Integer>
</Group>
<Integer Name="Lock"><Value>0</Value></Integer>
<Integer Name="Plain"><Value>5</Value></Integer>
<Integer Name="OfReadOnly"><pValue>ReadOnlyReg</pValue></Integer>
<Integer Name="OfWriteOnly"><pValue>WriteOnlyReg</pValue></Integer>
<Integer Name="Imposed"><ImposedAccessMode>RO</ImposedAccessMode><pValue>SpareReg</pValue></Integer>
<Integer Name="Indexed"><pIndex>Plain</pIndex><pValueIndexed Index="5">ReadOnlyReg</pValueIndexed><pValueDefault>SpareReg</pValueDefault></Integer>
<IntSwissKnife Name="Sum"><pVariable Name="A">WidthReg</pVariable><Formula>A+1</Formula></IntSwissKnife>
<Float Name="Exposure"><ToolTip>How long the shutter is open</ToolTip><pValue>ExposureReg</pValue><Min>10</Min><Max>1000</Max></Float>
<Float Name="Stepped"><Value>2</Value><Min>0</Min><Max>10</Max><Inc>0.5</Inc></Float>
<Converter Name="Gain"><FormulaTo>FROM*10</FormulaTo><FormulaFrom>TO/10</FormulaFrom><pValue>SpareReg</pValue></Converter>
<Boolean Name="Switch"><pValue>SwitchReg</pValue><OnValue>7</OnValue><OffValue>3</OffValue></Boolean>
<Command Name="Go"><pValue>GoReg</pValue><CommandValue>9</CommandValue></Command>
<Command Name="GoBlind"><pValue>WriteOnlyReg</pValue><CommandValue>9</CommandValue></Command>
<Command Name="GoNowhere"><pValue>ReadOnlyReg</pValue><CommandValue>9</CommandValue></Command>
<Enumeration Name="Format">
  <EnumEntry Name="Mono8"><Value>17301505</Value></EnumEntry>
  <EnumEntry Name="Mono12"><Value>17825797</Value></EnumEntry>
  <EnumEntry Name="Never"><pIsImplemented>Zero</pIsImplemented><Value>1</Value></EnumEntry>
  <EnumEntry Name="NotNow"><pIsAvailable>Zero</pIsAvailable><Value>2</Value></EnumEntry>
  <pValue>FormatReg</pValue>
</Enumeration>
<Enumeration Name="Nowhere">
  <EnumEntry Name="One"><pIsImplemented>Zero</pIsImplemented><Value>1</Value></EnumEntry>
  <EnumEntry Name="Two"><pIsImplemented>Zero</pIsImplemented><Value>2</Value></EnumEntry>
  <pValue>SpareReg</pValue>
</Enumeration>
<Integer Name="Zero"><Value>0</Value></Integer>
<StringReg Name="UserID"><Address>0x80</Address><Length>8</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></StringReg>
<String Name="UserIDToo"><pValue>UserID</pValue></String>
<String Name="Vendor"><Value>A maker</Value></String>
<Register Name="Table"><Address>0x100</Address><Length>6</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></Register>
<Register Name="Empty"><Address>0x110</Address><Length>0</Length><AccessMode>RW</AccessMode><pPort>Device</pPort></Register>
<Register Name="Sized"><Address>0x100</Address><pLength>LengthReg</pLength><AccessMode>RW</AccessMode><pPort>Device</pPort></Register>
<Integer Name="Missing"><pIsImplemented>Zero</pIsImplemented><pValue>SpareReg</pValue></Integer>
<Integer Name="Away"><pIsAvailable>Zero</pIsAvailable><pValue>SpareReg</pValue></Integer>
<Float Name="FloatAway"><pIsAvailable>Zero</pIsAvailable><Value>1</Value><Inc>0.5</Inc></Float>
<Integer Name="BehindAway"><pValue>Away</pValue></Integer>
<Integer Name="Circle"><pValue>CircleToo</pValue></Integer>
<Integer Name="CircleToo"><pValue>Circle</pValue></Integer>
<StructReg><Address>0x20</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort><Endianess>BigEndian</Endianess>
  <StructEntry Name="Bits"><LSB>31</LSB><MSB>28</MSB></StructEntry></StructReg>
)" +
  MakeRegister("WidthReg", 0) + MakeRegister("ReadOnlyReg", 4, "RO") + MakeRegister("WriteOnlyReg", 8, "WO") +
  MakeRegister("SpareReg", 12) + MakeRegister("SwitchReg", 16) + MakeRegister("GoReg", 20) +
  MakeRegister("FormatReg", 24) + MakeRegister("ExposureReg", 28) + MakeRegister("LengthReg", 36);

class AravisNodeMap : public testing::Test {
protected:
  template <class TInterface>
  TInterface &Node(const char *pName)
  {
    return dynamic_cast<TInterface &>(*m_device.GetMap()->GetNode(pName));
  }
  GenApi::IInteger &Integer(const char *pName) { return Node<GenApi::IInteger>(pName); }
  GenApi::EAccessMode GetMode(const char *pName) { return m_device.GetMap()->GetNode(pName)->GetAccessMode(); }

  CMemoryDevice m_device{MakeDescription(NODES)};
};

} // namespace

TEST_F(AravisNodeMap, EachNodeHasTheInterfaceOfItsKindAndNoOther)
{
  EXPECT_NE(dynamic_cast<GenApi::IInteger *>(m_device.GetMap()->GetNode("Width")), nullptr);
  EXPECT_NE(dynamic_cast<GenApi::IInteger *>(m_device.GetMap()->GetNode("WidthReg")), nullptr);
  EXPECT_EQ(dynamic_cast<GenApi::IRegister *>(m_device.GetMap()->GetNode("WidthReg")), nullptr);
  EXPECT_NE(dynamic_cast<GenApi::IInteger *>(m_device.GetMap()->GetNode("Bits")), nullptr);
  EXPECT_NE(dynamic_cast<GenApi::IFloat *>(m_device.GetMap()->GetNode("Gain")), nullptr);
  EXPECT_NE(dynamic_cast<GenApi::IBoolean *>(m_device.GetMap()->GetNode("Switch")), nullptr);
  EXPECT_NE(dynamic_cast<GenApi::ICommand *>(m_device.GetMap()->GetNode("Go")), nullptr);
  EXPECT_NE(dynamic_cast<GenApi::IEnumeration *>(m_device.GetMap()->GetNode("Format")), nullptr);
  EXPECT_EQ(dynamic_cast<GenApi::IInteger *>(m_device.GetMap()->GetNode("Format")), nullptr);
  EXPECT_NE(dynamic_cast<GenApi::IString *>(m_device.GetMap()->GetNode("UserID")), nullptr);
  EXPECT_NE(dynamic_cast<GenApi::IRegister *>(m_device.GetMap()->GetNode("Table")), nullptr);
  EXPECT_EQ(dynamic_cast<GenApi::IValue *>(m_device.GetMap()->GetNode("Root")), nullptr);
  EXPECT_EQ(GetMode("Root"), GenApi::RO);
  EXPECT_EQ(m_device.GetMap()->GetNode("Nothing"), nullptr);
  EXPECT_EQ(m_device.GetMap()->GetNode(""), nullptr);
}

TEST_F(AravisNodeMap, NodesSayWhatTheCameraSaysOfThem)
{
  const auto GetTip = [this](const char *pName) {
    return dynamic_cast<ffc::camera::IDescribedNode &>(*m_device.GetMap()->GetNode(pName)).GetToolTip();
  };
  EXPECT_EQ(GetTip("Exposure"), "How long the shutter is open");
  EXPECT_EQ(GetTip("Plain"), "");
}

TEST_F(AravisNodeMap, NodesComeInTheOrderOfTheDescriptionWithoutTheEntries)
{
  GenApi::NodeList_t listNodes;
  m_device.GetMap()->GetNodes(listNodes);
  ASSERT_GT(listNodes.size(), 3U);
  EXPECT_EQ(listNodes[0]->GetName(), "Root");
  EXPECT_EQ(listNodes[1]->GetName(), "Width");
  EXPECT_EQ(listNodes[2]->GetName(), "Lock");
  for (GenApi::INode *pNode : listNodes) {
    EXPECT_EQ(dynamic_cast<GenApi::IEnumEntry *>(pNode), nullptr);
  }
  EXPECT_NE(dynamic_cast<GenApi::IEnumEntry *>(m_device.GetMap()->GetNode("EnumEntry_Format_Mono12")), nullptr);
}

TEST_F(AravisNodeMap, TheAccessModeIsThatOfTheWholeChain)
{
  EXPECT_EQ(GetMode("Width"), GenApi::RW);
  EXPECT_EQ(GetMode("Plain"), GenApi::RW);
  EXPECT_EQ(GetMode("ReadOnlyReg"), GenApi::RO);
  EXPECT_EQ(GetMode("OfReadOnly"), GenApi::RO);
  EXPECT_EQ(GetMode("OfWriteOnly"), GenApi::WO);
  EXPECT_EQ(GetMode("Imposed"), GenApi::RO);
  EXPECT_EQ(GetMode("Sum"), GenApi::RO);
  EXPECT_EQ(GetMode("Gain"), GenApi::RW);
  EXPECT_EQ(GetMode("Missing"), GenApi::NI);
  EXPECT_EQ(GetMode("Away"), GenApi::NA);
  EXPECT_EQ(GetMode("BehindAway"), GenApi::NA);
  EXPECT_EQ(GetMode("Go"), GenApi::WO);
  EXPECT_EQ(GetMode("GoNowhere"), GenApi::NA);
  EXPECT_EQ(GetMode("EnumEntry_Format_Mono8"), GenApi::RO);
  EXPECT_EQ(GetMode("EnumEntry_Format_Never"), GenApi::NI);
  EXPECT_EQ(GetMode("EnumEntry_Format_NotNow"), GenApi::NA);
}

TEST_F(AravisNodeMap, AnIndexSelectsWhoseAccessModeCounts)
{
  EXPECT_EQ(GetMode("Indexed"), GenApi::RO);
  Integer("Plain").SetValue(6);
  EXPECT_EQ(GetMode("Indexed"), GenApi::RW);
}

TEST_F(AravisNodeMap, ALockedNodeIsReadOnlyAsLongAsItIsLocked)
{
  Integer("Lock").SetValue(1);
  EXPECT_EQ(GetMode("Width"), GenApi::RO);
  EXPECT_THROW(Integer("Width").SetValue(64), GenICam::AccessException);
  EXPECT_EQ(m_device.Peek(0), 0U);
  Integer("Lock").SetValue(0);
  Integer("Width").SetValue(64);
  EXPECT_EQ(m_device.Peek(0), 64U);
}

TEST_F(AravisNodeMap, AnIntegerIsVerifiedAgainstRangeAndIncrement)
{
  GenApi::IInteger &width = Integer("Width");
  EXPECT_EQ(width.GetMin(), 16);
  EXPECT_EQ(width.GetMax(), 640);
  EXPECT_EQ(width.GetInc(), 4);
  for (const int64_t nWrong : {int64_t{12}, int64_t{644}, int64_t{18}, std::numeric_limits<int64_t>::max(),
                               std::numeric_limits<int64_t>::min()}) {
    EXPECT_THROW(width.SetValue(nWrong), GenICam::OutOfRangeException) << nWrong;
  }
  EXPECT_EQ(m_device.Peek(0), 0U) << "nothing is written when a test fails";
  width.SetValue(18, false);
  EXPECT_EQ(width.GetValue(), 18) << "unverified it is the camera's matter";
}

TEST_F(AravisNodeMap, AnIntegerWithoutLimitsHasThoseOfItsRegisterOrItsType)
{
  EXPECT_EQ(Integer("SpareReg").GetMin(), 0);
  EXPECT_EQ(Integer("SpareReg").GetMax(), int64_t{0xFFFFFFFF});
  EXPECT_EQ(Integer("Plain").GetMax(), std::numeric_limits<int64_t>::max());
  EXPECT_EQ(Integer("Sum").GetMin(), std::numeric_limits<int64_t>::min());
  EXPECT_EQ(Integer("Plain").GetInc(), 1);
}

TEST_F(AravisNodeMap, ReadingAndWritingKeepToTheAccessMode)
{
  EXPECT_THROW(Integer("OfWriteOnly").GetValue(true), GenICam::AccessException);
  EXPECT_THROW(Integer("OfReadOnly").SetValue(1), GenICam::AccessException);
  EXPECT_THROW(Integer("ReadOnlyReg").SetValue(1), GenICam::AccessException);
  EXPECT_THROW(Integer("ReadOnlyReg").SetValue(1, false), GenICam::AccessException) << "there is no way to write";
  EXPECT_THROW(Integer("Sum").SetValue(1, false), GenICam::AccessException);
  for (const char *pName : {"Missing", "Away", "BehindAway"}) {
    EXPECT_THROW(Integer(pName).GetValue(), GenICam::AccessException) << pName;
    EXPECT_THROW(Integer(pName).SetValue(1, false), GenICam::AccessException) << pName;
    EXPECT_THROW(Integer(pName).GetMin(), GenICam::AccessException) << pName;
    EXPECT_THROW(Integer(pName).ToString(), GenICam::AccessException) << pName;
  }
  EXPECT_EQ(m_device.Peek(4), 0U);
  EXPECT_EQ(m_device.Peek(12), 0U);
}

TEST_F(AravisNodeMap, NumbersHaveATextForm)
{
  Integer("Width").FromString("0x40");
  EXPECT_EQ(Integer("Width").ToString(), "64");
  EXPECT_EQ(Integer("Sum").ToString(), "65");
  EXPECT_THROW(Integer("Width").FromString("wide"), GenICam::InvalidArgumentException);
  Node<GenApi::IBoolean>("Switch").FromString("true");
  EXPECT_EQ(m_device.Peek(16), 7U);
  EXPECT_EQ(Node<GenApi::IBoolean>("Switch").ToString(), "1");
}

TEST_F(AravisNodeMap, AFloatIsVerifiedAndNaNIsInNoRange)
{
  auto &exposure = Node<GenApi::IFloat>("Exposure");
  exposure.SetValue(500);
  EXPECT_EQ(m_device.Peek(28), 500U);
  for (const double dWrong : {9.0, 1001.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
    EXPECT_THROW(exposure.SetValue(dWrong), GenICam::OutOfRangeException) << dWrong;
  }
  EXPECT_EQ(exposure.GetValue(), 500.0);
  auto &stepped = Node<GenApi::IFloat>("Stepped");
  ASSERT_TRUE(stepped.HasInc());
  EXPECT_EQ(stepped.GetInc(), 0.5);
  stepped.SetValue(1.25);
  EXPECT_EQ(stepped.GetValue(), 1.25) << "a float's increment is told, not enforced";
  auto &gain = Node<GenApi::IFloat>("Gain");
  EXPECT_FALSE(gain.HasInc());
  EXPECT_THROW(gain.GetInc(), GenICam::AccessException);
  gain.SetValue(2.5);
  EXPECT_EQ(m_device.Peek(12), 25U);
}

TEST_F(AravisNodeMap, ABooleanWritesItsOwnTwoValues)
{
  auto &node = Node<GenApi::IBoolean>("Switch");
  node.SetValue(true);
  EXPECT_EQ(m_device.Peek(16), 7U);
  EXPECT_TRUE(node.GetValue());
  node.SetValue(false);
  EXPECT_EQ(m_device.Peek(16), 3U);
  EXPECT_FALSE(node.GetValue());
}

TEST_F(AravisNodeMap, ACommandIsDoneWhenItsRegisterReadsDifferently)
{
  auto &node = Node<GenApi::ICommand>("Go");
  EXPECT_TRUE(node.IsDone());
  node.Execute();
  EXPECT_EQ(m_device.Peek(20), 9U);
  EXPECT_FALSE(node.IsDone());
  EXPECT_EQ(node.ToString(), "0");
  m_device.Poke(20, 0);
  EXPECT_TRUE(node.IsDone());
  node.FromString("1");
  EXPECT_EQ(m_device.Peek(20), 9U);
  Node<GenApi::ICommand>("GoBlind").Execute();
  EXPECT_TRUE(Node<GenApi::ICommand>("GoBlind").IsDone()) << "what cannot be read is done";
  EXPECT_THROW(Node<GenApi::ICommand>("GoNowhere").Execute(), GenICam::AccessException);
}

TEST_F(AravisNodeMap, EntriesComeInTheOrderOfTheDescription)
{
  auto &node = Node<GenApi::IEnumeration>("Format");
  GenApi::NodeList_t listEntries;
  node.GetEntries(listEntries);
  ASSERT_EQ(listEntries.size(), 4U);
  const char *const NAMES[] = {"Mono8", "Mono12", "Never", "NotNow"};
  for (std::size_t nEntry = 0; nEntry < 4; ++nEntry) {
    auto &entry = dynamic_cast<GenApi::IEnumEntry &>(*listEntries[nEntry]);
    EXPECT_EQ(entry.GetSymbolic(), NAMES[nEntry]);
    EXPECT_THROW(entry.FromString("Mono8"), GenICam::AccessException);
  }
}

TEST_F(AravisNodeMap, AnEnumerationTakesItsAvailableEntriesOnly)
{
  auto &node = Node<GenApi::IEnumeration>("Format");
  node.FromString("Mono12");
  EXPECT_EQ(m_device.Peek(24), 0x01100005U);
  EXPECT_EQ(node.ToString(), "Mono12");
  EXPECT_EQ(node.GetIntValue(), 0x01100005);
  EXPECT_EQ(node.GetCurrentEntry(), node.GetEntryByName("Mono12"));
  EXPECT_THROW(node.FromString("RGB8"), GenICam::InvalidArgumentException);
  EXPECT_THROW(node.FromString("Never"), GenICam::AccessException);
  EXPECT_THROW(node.FromString("NotNow"), GenICam::AccessException);
  EXPECT_THROW(node.SetIntValue(77), GenICam::InvalidArgumentException);
  EXPECT_EQ(m_device.Peek(24), 0x01100005U);
  EXPECT_EQ(node.GetEntryByName("RGB8"), nullptr);
  EXPECT_EQ(node.GetEntry(77), nullptr);
}

TEST_F(AravisNodeMap, AnEnumerationWithoutAnImplementedEntryIsNotImplementedAndStillListsThem)
{
  auto &node = Node<GenApi::IEnumeration>("Nowhere");
  EXPECT_EQ(GetMode("Nowhere"), GenApi::NI);
  EXPECT_THROW(node.GetIntValue(), GenICam::AccessException);
  EXPECT_THROW(node.SetIntValue(1, false), GenICam::AccessException);
  EXPECT_EQ(m_device.Peek(12), 0U);
  GenApi::NodeList_t listEntries;
  node.GetEntries(listEntries);
  EXPECT_EQ(listEntries.size(), 2U);
  EXPECT_EQ(node.GetEntry(2), node.GetEntryByName("Two"));
}

TEST_F(AravisNodeMap, AnAbsentNodeTellsItsIncrement)
{
  for (const char *pName : {"Missing", "Away", "Circle"}) {
    EXPECT_EQ(Integer(pName).GetInc(), 1) << pName;
  }
  EXPECT_FALSE(Node<GenApi::IFloat>("FloatAway").HasInc());
  EXPECT_THROW(Node<GenApi::IFloat>("FloatAway").GetInc(), GenICam::AccessException) << "it has none";
}

TEST_F(AravisNodeMap, AValueThatIsNoEntryHasNoCurrentEntryAndNoText)
{
  m_device.Poke(24, 77);
  auto &node = Node<GenApi::IEnumeration>("Format");
  EXPECT_EQ(node.GetIntValue(), 77);
  EXPECT_EQ(node.GetCurrentEntry(), nullptr);
  EXPECT_THROW(node.ToString(), GenICam::RuntimeException);
}

TEST_F(AravisNodeMap, AStringIsNoLongerThanItsRegister)
{
  auto &node = Node<GenApi::IString>("UserID");
  EXPECT_EQ(node.GetValue(), "");
  EXPECT_EQ(node.GetMaxLength(), 8);
  node.SetValue("camera");
  EXPECT_EQ(node.GetValue(), "camera");
  node.SetValue("12345678");
  m_device.Memory().listBytes[0x88] = 'x'; // no zero behind it
  EXPECT_EQ(node.GetValue(), "12345678");
  EXPECT_EQ(Node<GenApi::IString>("UserIDToo").GetValue(), "12345678");
  EXPECT_THROW(node.SetValue("123456789"), GenICam::OutOfRangeException);
  EXPECT_THROW(node.SetValue(GenICam::gcstring("a\0b", 3)), GenICam::OutOfRangeException);
  EXPECT_EQ(node.GetValue(), "12345678");
  EXPECT_EQ(Node<GenApi::IString>("Vendor").GetValue(), "A maker");
}

TEST_F(AravisNodeMap, ARegisterIsReadAndWrittenAsAWhole)
{
  auto &node = Node<GenApi::IRegister>("Table");
  EXPECT_EQ(node.GetLength(), 6);
  EXPECT_EQ(node.GetAddress(), 0x100);
  const uint8_t BYTES[] = {1, 2, 3, 4, 5, 6, 7};
  node.Set(BYTES, 6);
  EXPECT_EQ(node.ToString(), "0x010203040506");
  EXPECT_THROW(node.Set(BYTES, 5), GenICam::OutOfRangeException);
  EXPECT_THROW(node.Set(BYTES, 7), GenICam::OutOfRangeException);
  EXPECT_THROW(node.Set(nullptr, 6), GenICam::InvalidArgumentException);
  EXPECT_THROW(node.FromString("0x01"), GenICam::OutOfRangeException);
  EXPECT_THROW(node.FromString("bytes"), GenICam::InvalidArgumentException);
  uint8_t aRead[6] = {};
  EXPECT_THROW(node.Get(aRead, 4), GenICam::OutOfRangeException);
  node.Get(aRead, 6);
  EXPECT_EQ(aRead[5], 6) << "a shorter write has not filled it up with zeros";
  node.FromString("0xa0a1a2a3a4a5");
  EXPECT_EQ(m_device.Memory().listBytes[0x105], 0xA5);
}

TEST_F(AravisNodeMap, ARegisterWithoutLengthIsNotImplemented)
{
  EXPECT_EQ(GetMode("Empty"), GenApi::NI);
  uint8_t nByte = 0;
  EXPECT_THROW(Node<GenApi::IRegister>("Empty").Get(&nByte, 0), GenICam::AccessException);
  EXPECT_THROW(Node<GenApi::IRegister>("Empty").GetLength(), GenICam::AccessException);
}

TEST_F(AravisNodeMap, ALengthThatTheCameraTellsIsLookedAtBeforeEachAccess)
{
  auto &node = Node<GenApi::IRegister>("Sized");
  EXPECT_THROW(node.ToString(), GenICam::RuntimeException) << "no bytes";
  m_device.Poke(36, 3);
  EXPECT_EQ(node.GetLength(), 3);
  EXPECT_EQ(node.ToString(), "0x000000");
  m_device.Poke(36, 0xFFFFFFFF);
  EXPECT_THROW(node.ToString(), GenICam::RuntimeException) << "4 GB";
}

TEST_F(AravisNodeMap, ACircleIsNotImplemented)
{
  EXPECT_EQ(GetMode("Circle"), GenApi::NI);
  EXPECT_EQ(GetMode("CircleToo"), GenApi::NI);
  EXPECT_THROW(Integer("Circle").GetValue(), GenICam::AccessException);
}

TEST_F(AravisNodeMap, ACircleIsCalledByName)
{
  try {
    Integer("Circle").GetValue();
    FAIL() << "a value in a circle";
  } catch (const GenICam::AccessException &exception) {
    EXPECT_NE(std::string(exception.GetDescription()).find("'Circle' asks itself"), std::string::npos)
      << exception.GetDescription();
  }
}

TEST_F(AravisNodeMap, TwoFeaturesMayLimitEachOther)
{
  CMemoryDevice device(MakeDescription(
    R"(<Integer Name="Wide"><pValue>WideReg</pValue><Min>16</Min><pMax>WideMax</pMax></Integer>
<Integer Name="Shift"><pIsAvailable>WideIsNotFull</pIsAvailable><pValue>ShiftReg</pValue><Min>0</Min><pMax>ShiftMax</pMax></Integer>
<IntSwissKnife Name="WideMax"><pVariable Name="S">Shift</pVariable><Formula>640 - S</Formula></IntSwissKnife>
<IntSwissKnife Name="ShiftMax"><pVariable Name="W">Wide</pVariable><Formula>640 - W</Formula></IntSwissKnife>
<IntSwissKnife Name="WideIsNotFull"><pVariable Name="W">Wide</pVariable><Formula>W &lt; 640</Formula></IntSwissKnife>
<Integer Name="OwnLimit"><pValue>ShiftReg</pValue><pMax>TwiceOwn</pMax></Integer>
<IntSwissKnife Name="TwiceOwn"><pVariable Name="O">OwnLimit</pVariable><Formula>O * 2</Formula></IntSwissKnife>
)" + MakeRegister("WideReg", 0) +
    MakeRegister("ShiftReg", 4)));
  auto &wide = dynamic_cast<GenApi::IInteger &>(*device.GetMap()->GetNode("Wide"));
  auto &shift = dynamic_cast<GenApi::IInteger &>(*device.GetMap()->GetNode("Shift"));
  wide.SetValue(600);
  EXPECT_EQ(shift.GetMax(), 40);
  EXPECT_THROW(shift.SetValue(41), GenICam::OutOfRangeException);
  shift.SetValue(30);
  EXPECT_EQ(wide.GetMax(), 610);
  EXPECT_EQ(dynamic_cast<GenApi::IInteger &>(*device.GetMap()->GetNode("OwnLimit")).GetMax(), 60);
  shift.SetValue(0);
  wide.SetValue(640);
  EXPECT_EQ(shift.GetAccessMode(), GenApi::NA);
}

TEST_F(AravisNodeMap, ALimitThatAsksItselfIsACircleAllTheSame)
{
  CMemoryDevice device(MakeDescription(
    R"(<Integer Name="Wide"><pValue>WideReg</pValue><pMax>Loop</pMax></Integer>
<IntSwissKnife Name="Loop"><pVariable Name="L">LoopToo</pVariable><Formula>L + 1</Formula></IntSwissKnife>
<IntSwissKnife Name="LoopToo"><pVariable Name="L">Loop</pVariable><Formula>L + 1</Formula></IntSwissKnife>
<Integer Name="Locked"><pIsLocked>LockedToo</pIsLocked><pValue>WideReg</pValue></Integer>
<Integer Name="LockedToo"><pValue>LoopToo</pValue></Integer>
)" + MakeRegister("WideReg", 0)));
  EXPECT_EQ(device.GetMap()->GetNode("Wide")->GetAccessMode(), GenApi::NI);
  EXPECT_EQ(device.GetMap()->GetNode("Locked")->GetAccessMode(), GenApi::NI);
  EXPECT_EQ(device.GetMap()->GetNode("WideReg")->GetAccessMode(), GenApi::RW);
}

TEST_F(AravisNodeMap, AFormulaWithABooleanIsRefusedAndTheBooleanNamed)
{
  CMemoryDevice device(MakeDescription(
    R"(<Boolean Name="IsFast"><pValue>FastReg</pValue><OnValue>1</OnValue><OffValue>0</OffValue></Boolean>
<Integer Name="WhenFast"><pIsAvailable>IsFast</pIsAvailable><pValue>FastReg</pValue></Integer>
<Integer Name="UnlessFast"><pIsLocked>IsFast</pIsLocked><pValue>FastReg</pValue></Integer>
<IntSwissKnife Name="Rate"><pVariable Name="F">IsFast</pVariable><Formula>F ? 100 : 10</Formula></IntSwissKnife>
)" + MakeRegister("FastReg", 0)));
  auto &rate = dynamic_cast<GenApi::IInteger &>(*device.GetMap()->GetNode("Rate"));
  EXPECT_EQ(device.GetMap()->GetNode("IsFast")->GetAccessMode(), GenApi::RW);
  for (const bool bFast : {false, true}) { // a boolean that is asked itself is no matter
    device.Poke(0, bFast ? 1 : 0);
    EXPECT_EQ(device.GetMap()->GetNode("WhenFast")->GetAccessMode(), bFast ? GenApi::RW : GenApi::NA);
    EXPECT_EQ(device.GetMap()->GetNode("UnlessFast")->GetAccessMode(), bFast ? GenApi::RO : GenApi::RW);
  }
  try {
    rate.GetValue();
    FAIL() << "a value without its variable";
  } catch (const GenICam::AccessException &exception) {
    EXPECT_NE(std::string(exception.GetDescription()).find("Node 'Rate'"), std::string::npos);
    EXPECT_NE(std::string(exception.GetDescription()).find("the boolean 'IsFast'"), std::string::npos);
  }
}

TEST_F(AravisNodeMap, AChainThatIsTooLongIsNotImplemented)
{
  std::string strNodes = "<Integer Name=\"N0\"><Value>1</Value></Integer>";
  for (int nNode = 1; nNode <= 5000; ++nNode) {
    strNodes += "<Integer Name=\"N" + std::to_string(nNode) + "\"><pValue>N" + std::to_string(nNode - 1) +
                "</pValue></Integer>\n";
  }
  CMemoryDevice device(MakeDescription(strNodes));
  EXPECT_EQ(device.GetMap()->GetNode("N10")->GetAccessMode(), GenApi::RW);
  EXPECT_EQ(device.GetMap()->GetNode("N5000")->GetAccessMode(), GenApi::NI);
  strNodes = "<Integer Name=\"N0\"><Value>1</Value></Integer>";
  for (int nNode = 1; nNode <= 5000; ++nNode) { // the other way round: each is looked at from its end
    strNodes = "<Integer Name=\"N" + std::to_string(nNode) + "\"><pValue>N" + std::to_string(nNode - 1) +
               "</pValue></Integer>\n" + strNodes;
  }
  CMemoryDevice reversed(MakeDescription(strNodes));
  EXPECT_EQ(reversed.GetMap()->GetNode("N10")->GetAccessMode(), GenApi::RW);
  EXPECT_EQ(reversed.GetMap()->GetNode("N5000")->GetAccessMode(), GenApi::NI);
}

TEST_F(AravisNodeMap, FormulasThatAskEachOtherTooOftenAreNotImplemented)
{
  std::string strNodes = "<Integer Name=\"N0\"><Value>1</Value></Integer>";
  for (int nNode = 1; nNode <= 40; ++nNode) {
    const std::string strBelow = "N" + std::to_string(nNode - 1);
    strNodes += "<IntSwissKnife Name=\"N" + std::to_string(nNode) + "\"><pVariable Name=\"A\">" + strBelow +
                "</pVariable><pVariable Name=\"B\">" + strBelow +
                "</pVariable><Formula>A+B</Formula></IntSwissKnife>\n";
  }
  CMemoryDevice device(MakeDescription(strNodes));
  EXPECT_EQ(dynamic_cast<GenApi::IInteger &>(*device.GetMap()->GetNode("N8")).GetValue(), 256);
  EXPECT_EQ(device.GetMap()->GetNode("N40")->GetAccessMode(), GenApi::NI);
}

TEST_F(AravisNodeMap, ValuesAreNeverKept)
{
  m_device.Poke(0, 32);
  EXPECT_EQ(Integer("Width").GetValue(), 32);
  m_device.Poke(0, 48);
  EXPECT_EQ(Integer("Width").GetValue(), 48);
}

TEST_F(AravisNodeMap, WhatTheCameraDoesNotTellOfAModeMakesItNotAvailable)
{
  CMemoryDevice device(
    MakeDescription(R"(<Integer Name="Implemented"><pIsImplemented>Far</pIsImplemented><Value>1</Value></Integer>
<Integer Name="Available"><pIsAvailable>Far</pIsAvailable><Value>1</Value></Integer>
<Integer Name="Unlocked"><pIsLocked>Far</pIsLocked><Value>1</Value></Integer>
<Integer Name="Selected"><pIndex>Far</pIndex><pValueIndexed Index="5">Near</pValueIndexed></Integer>
)" + MakeRegister("Near", 0) +
                    MakeRegister("Far", 0x5000)));
  for (const char *pName : {"Implemented", "Available", "Unlocked", "Selected"}) {
    auto &node = dynamic_cast<GenApi::IInteger &>(*device.GetMap()->GetNode(pName));
    EXPECT_EQ(device.GetMap()->GetNode(pName)->GetAccessMode(), GenApi::NA) << pName;
    EXPECT_THROW(node.GetValue(), GenICam::RuntimeException) << pName;
    EXPECT_THROW(node.SetValue(1), GenICam::RuntimeException) << pName;
  }
  EXPECT_FALSE(device.Link().IsLost());
}

TEST_F(AravisNodeMap, AValueBehindOneThatIsNotImplementedIsNeitherLockedOrNot)
{
  CMemoryDevice device(MakeDescription(R"(<Integer Name="No"><Value>0</Value></Integer>
<Integer Name="Yes"><Value>1</Value></Integer>
<Integer Name="Missing"><pIsImplemented>No</pIsImplemented><Value>1</Value></Integer>
<Integer Name="Behind"><pValue>Missing</pValue></Integer>
<Integer Name="LockedBehind"><pIsLocked>Yes</pIsLocked><pValue>Missing</pValue></Integer>)"));
  EXPECT_EQ(device.GetMap()->GetNode("Behind")->GetAccessMode(), GenApi::NI);
  EXPECT_EQ(device.GetMap()->GetNode("LockedBehind")->GetAccessMode(), GenApi::NI);
}

TEST_F(AravisNodeMap, LimitsAndCommandValuesMayStandInOtherNodes)
{
  CMemoryDevice device(MakeDescription(
    R"(<Integer Name="Wide"><pValue>WideReg</pValue><pMin>Least</pMin><pMax>Most</pMax><pInc>Step</pInc></Integer>
<Integer Name="Least"><Value>8</Value></Integer>
<Integer Name="Most"><Value>80</Value></Integer>
<Integer Name="Step"><Value>4</Value></Integer>
<Command Name="Go"><pValue>WideReg</pValue><pCommandValue>Most</pCommandValue></Command>
<Command Name="GoAnyhow"><pValue>WideReg</pValue></Command>
<Integer Name="Wide"><Value>1000</Value></Integer>
)" + MakeRegister("WideReg", 0)));
  auto &wide = dynamic_cast<GenApi::IInteger &>(*device.GetMap()->GetNode("Wide"));
  EXPECT_EQ(wide.GetMin(), 8);
  EXPECT_EQ(wide.GetMax(), 80);
  EXPECT_EQ(wide.GetInc(), 4);
  wide.SetValue(12);
  EXPECT_THROW(wide.SetValue(14), GenICam::OutOfRangeException);
  auto &go = dynamic_cast<GenApi::ICommand &>(*device.GetMap()->GetNode("Go"));
  go.Execute();
  EXPECT_EQ(device.Peek(0), 80U);
  EXPECT_FALSE(go.IsDone());
  EXPECT_THROW(go.FromString("maybe"), GenICam::InvalidArgumentException);
  EXPECT_THROW(dynamic_cast<GenApi::ICommand &>(*device.GetMap()->GetNode("GoAnyhow")).IsDone(),
               GenICam::RuntimeException);
  GenApi::NodeList_t listNodes;
  device.GetMap()->GetNodes(listNodes);
  EXPECT_EQ(listNodes.size(), 8U) << "with the port; a name that comes again is that of the first";
}

TEST_F(AravisNodeMap, ALengthThatTheCameraTellsCountsForWhateverUsesTheRegister)
{
  CMemoryDevice device(MakeDescription(R"(<String Name="Text"><pValue>TextReg</pValue></String>
<StringReg Name="TextReg"><Address>0x80</Address><pLength>LengthReg</pLength><AccessMode>RW</AccessMode><pPort>Device</pPort></StringReg>
<IntSwissKnife Name="Sum"><pVariable Name="A">Sized</pVariable><pVariable Name="B">SizedToo</pVariable><Formula>A+B</Formula></IntSwissKnife>
<Integer Name="SizedToo"><pValue>Sized</pValue></Integer>
<IntReg Name="Sized"><Address>0</Address><pLength>LengthReg</pLength><AccessMode>RW</AccessMode><pPort>Device</pPort><Sign>Unsigned</Sign><Endianess>BigEndian</Endianess></IntReg>
)" + MakeRegister("LengthReg", 0x40)));
  auto &text = dynamic_cast<GenApi::IString &>(*device.GetMap()->GetNode("Text"));
  auto &sum = dynamic_cast<GenApi::IInteger &>(*device.GetMap()->GetNode("Sum"));
  EXPECT_EQ(device.GetMap()->GetNode("Text")->GetAccessMode(), GenApi::NA);
  EXPECT_THROW(text.GetValue(), GenICam::RuntimeException) << "no bytes";
  EXPECT_THROW(sum.GetValue(), GenICam::RuntimeException);
  device.Poke(0x40, 4);
  text.SetValue("four");
  EXPECT_EQ(text.GetValue(), "four");
  device.Poke(0, 21);
  EXPECT_EQ(sum.GetValue(), 42);
}

TEST_F(AravisNodeMap, ARefusedAccessIsNoSilence)
{
  for (const ArvDeviceError eError :
       {ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED, ARV_DEVICE_ERROR_PROTOCOL_ERROR_WRITE_PROTECT}) {
    m_device.Memory().eRefusal = eError;
    EXPECT_THROW(Integer("SpareReg").SetValue(1), GenICam::AccessException);
    EXPECT_FALSE(m_device.Link().IsLost());
  }
  m_device.Memory().eRefusal = ARV_DEVICE_ERROR_NOT_CONNECTED;
  EXPECT_THROW(Integer("SpareReg").GetValue(), GenICam::RuntimeException);
  EXPECT_TRUE(m_device.Link().IsLost());
  m_device.Link().MarkLost(); // once more: nobody is told, nothing changes
  EXPECT_THROW(Integer("SpareReg").GetInc(), GenICam::RuntimeException);
  EXPECT_THROW(Node<GenApi::IFloat>("Stepped").HasInc(), GenICam::RuntimeException);
}

TEST_F(AravisNodeMap, ACameraThatRefusesIsNotLost)
{
  m_device.Memory().listBytes.resize(8);
  EXPECT_THROW(Integer("SpareReg").GetValue(), GenICam::RuntimeException);
  EXPECT_FALSE(m_device.Link().IsLost());
}

TEST_F(AravisNodeMap, ACameraThatIsSilentIsLostAndNotAskedAgain)
{
  int nTold = 0;
  m_device.Link().SetLostCallback([&] { ++nTold; });
  m_device.Memory().bSilent = true;
  EXPECT_THROW(Integer("Width").GetValue(), GenICam::TimeoutException);
  EXPECT_TRUE(m_device.Link().IsLost());
  const uint64_t nAccesses = m_device.Memory().nAccesses;
  EXPECT_THROW(Integer("Width").GetValue(), GenICam::RuntimeException);
  EXPECT_THROW(Integer("Plain").SetValue(1), GenICam::RuntimeException);
  EXPECT_EQ(GetMode("Width"), GenApi::NA);
  EXPECT_EQ(m_device.Memory().nAccesses, nAccesses);
  EXPECT_EQ(nTold, 1);
}

TEST_F(AravisNodeMap, ADescriptionThatIsNoneGivesNoMap)
{
  EXPECT_EQ(CMemoryDevice("").GetMap(), nullptr);
  EXPECT_EQ(CMemoryDevice("<Something/>").GetMap(), nullptr);
  EXPECT_EQ(CMemoryDevice("no description").GetMap(), nullptr);
}
