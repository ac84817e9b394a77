// Cameras from before the present standard names, as the plug-in sees them. Each description is the least that has
// the pattern.
#include "camera/aravis/overlay/featureoverlay.h"

#include <cmath>

#include <gtest/gtest.h>

#include "camera/aravis/overlay/colorfilter.h"
#include "tests/camera/aravis/memorydevice.h"

using ffc::camera::CFeatureOverlay;
using ffc::camera::NormalizeLayoutName;
using ffc::camera::SFeatureNote;
using ffc::test::CMemoryDevice;
using ffc::test::MakeDescription;
using ffc::test::MakeRegister;

namespace {

/// What every description has.
const std::string GEOMETRY = R"(<Integer Name="Width"><Value>64</Value></Integer>
<Integer Name="Height"><Value>48</Value></Integer>
<Integer Name="PayloadSize"><Value>3072</Value></Integer>
<Enumeration Name="PixelFormat"><EnumEntry Name="Mono8"><Value>17301505</Value></EnumEntry><Value>17301505</Value></Enumeration>
)" + MakeRegister("RegA", 0) +
                             MakeRegister("RegB", 4) + MakeRegister("RegC", 8);
const std::string EXPOSURE = R"(<Float Name="ExposureTime"><Value>5000</Value><Unit>us</Unit></Float>)";
const std::string GAIN = R"(<Float Name="Gain"><Value>1</Value></Float>)";
const std::string TRIGGER = R"(<Enumeration Name="TriggerMode"><EnumEntry Name="Off"><Value>0</Value></EnumEntry>
<EnumEntry Name="On"><Value>1</Value></EnumEntry><pValue>RegC</pValue></Enumeration>)";

/// A camera with this description, seen through the overlay.
class CCamera {
public:
  explicit CCamera(const std::string &strNodes)
    : m_device(MakeDescription(GEOMETRY + strNodes)), m_overlay(*m_device.GetMap())
  {
  }

  template <class TInterface>
  TInterface &Node(const char *pName)
  {
    return dynamic_cast<TInterface &>(*m_overlay.GetNode(pName));
  }
  GenApi::IFloat &Float(const char *pName) { return Node<GenApi::IFloat>(pName); }
  std::string Read(const char *pName) { return Node<GenApi::IValue>(pName).ToString(true).c_str(); }

  /// One line for each note.
  std::string GetNotes() const
  {
    const char *const KINDS[] = {"aliased", "supplied", "hidden", "guessed", "missing"};
    std::string strText;
    for (const SFeatureNote &stNote : m_overlay.GetNotes()) {
      strText += stNote.strFeature + " " + KINDS[int(stNote.eKind)] + ": " + stNote.strSource + "\n";
    }
    return strText;
  }

  CMemoryDevice m_device;
  CFeatureOverlay m_overlay;
};

} // namespace

TEST(FeatureOverlay, ACameraWithThePresentNamesPassesThrough)
{
  CCamera camera(EXPOSURE + GAIN + TRIGGER);
  EXPECT_EQ(camera.GetNotes(), "");
  for (const char *pName : {"Width", "ExposureTime", "Gain", "TriggerMode"}) {
    EXPECT_EQ(camera.m_overlay.GetNode(pName), camera.m_device.GetMap()->GetNode(pName)) << pName;
  }
  EXPECT_EQ(camera.m_overlay.GetNode("PixelColorFilter"), nullptr);
  GenApi::NodeList_t listOwn;
  GenApi::NodeList_t listInner;
  camera.m_overlay.GetNodes(listOwn);
  camera.m_device.GetMap()->GetNodes(listInner);
  EXPECT_EQ(listOwn.size(), listInner.size());
}

TEST(FeatureOverlay, AnAbsoluteExposureTimeAndARawGainAnswerUnderThePresentNames)
{
  CCamera camera(TRIGGER + R"(<Float Name="ExposureTimeAbs"><pValue>RegA</pValue><Min>10</Min><Max>90000</Max></Float>
<Integer Name="GainRaw"><pValue>RegB</pValue><Min>0</Min><Max>500</Max><Inc>5</Inc></Integer>)");
  EXPECT_EQ(camera.GetNotes(), "ExposureTime aliased: ExposureTimeAbs\nGain aliased: GainRaw in raw steps\n");
  camera.Float("ExposureTime").SetValue(1234.6);
  EXPECT_EQ(camera.m_device.Peek(0), 1235U);
  EXPECT_EQ(camera.Read("ExposureTime"), "1235");
  EXPECT_EQ(camera.Float("ExposureTime").GetMax(), 90000.0);
  EXPECT_EQ(camera.Float("ExposureTime").GetMin(), 10.0);
  EXPECT_TRUE(camera.Float("ExposureTime").HasInc());
  EXPECT_EQ(camera.Float("ExposureTime").GetInc(), 1.0) << "the register's";
  EXPECT_THROW(camera.Float("ExposureTime").SetValue(9), GenICam::OutOfRangeException);
  GenApi::IFloat &gain = camera.Float("Gain");
  EXPECT_EQ(gain.GetNode()->GetName(), "Gain");
  gain.SetValue(102.6);
  EXPECT_EQ(camera.m_device.Peek(4), 105U) << "the nearest step";
  EXPECT_EQ(gain.GetMin(), 0.0);
  EXPECT_EQ(gain.GetMax(), 500.0);
  EXPECT_TRUE(gain.HasInc());
  EXPECT_EQ(gain.GetInc(), 5.0);
  gain.FromString("500");
  EXPECT_EQ(camera.m_device.Peek(4), 500U);
  EXPECT_THROW(gain.SetValue(505), GenICam::OutOfRangeException);
  EXPECT_THROW(gain.SetValue(std::nan("")), GenICam::OutOfRangeException);
  EXPECT_THROW(gain.FromString("high"), GenICam::InvalidArgumentException);
  EXPECT_EQ(camera.m_device.Peek(4), 500U);
}

TEST(FeatureOverlay, ARawExposureTimeIsMultipliedWithItsTimeBase)
{
  CCamera camera(TRIGGER + GAIN +
                 R"(<Integer Name="ExposureTimeRaw"><pValue>RegA</pValue><Min>1</Min><Max>4095</Max></Integer>
<Float Name="ExposureTimeBaseAbs"><pValue>RegB</pValue></Float>)");
  EXPECT_EQ(camera.GetNotes(), "ExposureTime aliased: ExposureTimeRaw times ExposureTimeBaseAbs\n");
  camera.m_device.Poke(4, 20);
  camera.Float("ExposureTime").SetValue(20000);
  EXPECT_EQ(camera.m_device.Peek(0), 1000U);
  camera.m_device.Poke(4, 50);
  EXPECT_EQ(camera.Float("ExposureTime").GetValue(), 50000.0);
  EXPECT_EQ(camera.Float("ExposureTime").GetMax(), 50 * 4095.0);
  camera.m_device.Poke(4, 0);
  EXPECT_THROW(camera.Float("ExposureTime").GetValue(), GenICam::RuntimeException) << "no unit";
}

TEST(FeatureOverlay, ARawExposureTimeWithoutItsTimeBaseIsNotAvailable)
{
  CCamera camera(TRIGGER + GAIN + R"(<Float Name="ExposureTimeRaw"><pValue>RegA</pValue></Float>
<Float Name="ExposureTimeBaseAbs"><pIsAvailable>RegB</pIsAvailable><Value>20</Value></Float>)");
  EXPECT_EQ(camera.GetNotes(), "ExposureTime aliased: ExposureTimeRaw times ExposureTimeBaseAbs\n");
  GenApi::IFloat &exposure = camera.Float("ExposureTime");
  EXPECT_EQ(exposure.GetAccessMode(), GenApi::NA);
  EXPECT_THROW(exposure.SetValue(100), GenICam::AccessException);
  camera.m_device.Poke(4, 1);
  EXPECT_EQ(exposure.GetAccessMode(), GenApi::RW);
  exposure.SetValue(100);
  EXPECT_EQ(camera.m_device.Peek(0), 5U);
}

TEST(FeatureOverlay, AnotherUnitOfTimeIsConvertedToMicroseconds)
{
  CCamera milliseconds(TRIGGER + GAIN + R"(<Float Name="ExposureTime"><Value>2.5</Value><Unit>ms</Unit></Float>)");
  EXPECT_EQ(milliseconds.GetNotes(), "ExposureTime aliased: ExposureTime in ms\n");
  EXPECT_EQ(milliseconds.Float("ExposureTime").GetValue(), 2500.0);
  milliseconds.Float("ExposureTime").SetValue(4000.0);
  EXPECT_EQ(dynamic_cast<GenApi::IFloat &>(*milliseconds.m_device.GetMap()->GetNode("ExposureTime")).GetValue(), 4.0);
  CCamera raw(TRIGGER + GAIN + R"(<Integer Name="ExposureTimeRaw"><pValue>RegA</pValue><Unit>ns</Unit></Integer>)");
  EXPECT_EQ(raw.GetNotes(), "ExposureTime aliased: ExposureTimeRaw in ns\n");
  raw.m_device.Poke(0, 1000000);
  EXPECT_NEAR(raw.Float("ExposureTime").GetValue(), 1000.0, 1e-9);
}

TEST(FeatureOverlay, AnIntegerOfThePresentNameIsAFloat)
{
  CCamera camera(TRIGGER + R"(<Integer Name="ExposureTime"><pValue>RegA</pValue><Unit>us</Unit></Integer>
<Integer Name="Gain"><pValue>RegB</pValue></Integer>)");
  EXPECT_EQ(camera.GetNotes(), "ExposureTime aliased: ExposureTime as an integer\nGain aliased: Gain as an integer\n");
  for (uint32_t nRaw = 0; nRaw < 3000; nRaw += 7) {
    camera.m_device.Poke(4, nRaw);
    camera.Float("Gain").SetValue(double(float(camera.Float("Gain").GetValue())));
    ASSERT_EQ(camera.m_device.Peek(4), nRaw);
  }
  EXPECT_EQ(camera.Float("Gain").GetAccessMode(), GenApi::RW);
}

TEST(FeatureOverlay, AGainThatIsACategoryOrNotThereIsSuppliedUnlessThereIsAnother)
{
  CCamera category(EXPOSURE + TRIGGER + R"(<Category Name="Gain"><pFeature>GainRaw</pFeature></Category>)");
  EXPECT_EQ(category.GetNotes(), "Gain supplied: 0\n");
  EXPECT_EQ(category.Read("Gain"), "0");
  EXPECT_EQ(category.Float("Gain").GetAccessMode(), GenApi::RO);
  EXPECT_THROW(category.Float("Gain").SetValue(1), GenICam::AccessException);
  CCamera none(EXPOSURE + TRIGGER);
  EXPECT_EQ(none.GetNotes(), "Gain supplied: 0\n");
  GenApi::NodeList_t listNodes;
  none.m_overlay.GetNodes(listNodes);
  EXPECT_EQ(listNodes[listNodes.size() - 1]->GetName(), "Gain");
  CCamera absolute(EXPOSURE + TRIGGER + R"(<Category Name="Gain"><pFeature>GainAbs</pFeature></Category>
<Float Name="GainAbs"><Value>3.5</Value></Float>)");
  EXPECT_EQ(absolute.GetNotes(), "Gain aliased: GainAbs\n");
  EXPECT_EQ(absolute.Read("Gain"), "3.5");
  CCamera notImplemented(EXPOSURE + TRIGGER + R"(<Integer Name="No"><Value>0</Value></Integer>
<Float Name="Gain"><pIsImplemented>No</pIsImplemented><Value>2</Value></Float>)");
  EXPECT_EQ(notImplemented.GetNotes(), "Gain supplied: 0\n");
}

TEST(FeatureOverlay, AGainOfStepsOrUnderTheMakersOwnNamesIsNoGain)
{
  CCamera steps(EXPOSURE + TRIGGER + R"(<Enumeration Name="Gain"><EnumEntry Name="x1"><Value>1</Value></EnumEntry>
<EnumEntry Name="x2"><Value>2</Value></EnumEntry><pValue>RegA</pValue></Enumeration>)");
  EXPECT_EQ(steps.GetNotes(), "Gain supplied: 0\n");
  EXPECT_EQ(steps.Float("Gain").GetAccessMode(), GenApi::RO);
  CCamera own(EXPOSURE + TRIGGER + R"(<Float Name="DigitalGain"><Value>2</Value></Float>)");
  EXPECT_EQ(own.GetNotes(), "Gain supplied: 0\n");
  EXPECT_EQ(own.Read("DigitalGain"), "2");
}

TEST(FeatureOverlay, ATriggerModeThatIsNotThereIsOff)
{
  CCamera camera(EXPOSURE + GAIN);
  EXPECT_EQ(camera.GetNotes(), "TriggerMode supplied: Off\n");
  EXPECT_EQ(camera.Read("TriggerMode"), "Off");
  auto &mode = camera.Node<GenApi::IEnumeration>("TriggerMode");
  mode.FromString("Off");
  EXPECT_THROW(mode.FromString("On"), GenICam::InvalidArgumentException);
  EXPECT_EQ(mode.GetCurrentEntry()->GetSymbolic(), "Off");
}

TEST(FeatureOverlay, AColorFilterIsThereWhileItNamesALayout)
{
  CCamera camera(EXPOSURE + GAIN + TRIGGER + R"(<Enumeration Name="PixelColorFilter">
<EnumEntry Name="None"><Value>0</Value></EnumEntry><EnumEntry Name="Bayer_RG"><Value>1</Value></EnumEntry>
<EnumEntry Name="Bayer_BG"><Value>2</Value></EnumEntry><pValue>RegA</pValue></Enumeration>)");
  GenApi::INode *pNode = camera.m_overlay.GetNode("PixelColorFilter");
  EXPECT_EQ(pNode->GetAccessMode(), GenApi::NI) << "None";
  EXPECT_EQ(camera.GetNotes(), "PixelColorFilter hidden: it names no Bayer layout at the moment, so the camera is "
                               "monochrome\n");
  camera.m_device.Poke(0, 1);
  EXPECT_EQ(pNode->GetAccessMode(), GenApi::RW);
  EXPECT_EQ(camera.Read("PixelColorFilter"), "BayerRG");
  auto &filter = camera.Node<GenApi::IEnumeration>("PixelColorFilter");
  EXPECT_EQ(filter.GetCurrentEntry()->GetSymbolic(), "BayerRG");
  EXPECT_EQ(filter.GetCurrentEntry()->ToString(), "BayerRG");
  EXPECT_EQ(filter.GetCurrentEntry(), filter.GetEntryByName("BayerRG"));
  filter.FromString("BayerBG");
  EXPECT_EQ(camera.m_device.Peek(0), 2U);
  filter.FromString("None");
  EXPECT_EQ(camera.m_device.Peek(0), 0U);
  EXPECT_EQ(filter.GetEntryByName("Bayer_RG"), nullptr);
  GenApi::NodeList_t listEntries;
  filter.GetEntries(listEntries);
  ASSERT_EQ(listEntries.size(), 3U);
  EXPECT_EQ(dynamic_cast<GenApi::IEnumEntry &>(*listEntries[2]).GetSymbolic(), "BayerBG");
  EXPECT_EQ(filter.GetEntry(2), dynamic_cast<GenApi::IEnumEntry *>(listEntries[2]));
  EXPECT_THROW(filter.FromString("BayerXX"), GenICam::InvalidArgumentException);
  filter.SetIntValue(2);
  EXPECT_EQ(filter.GetIntValue(), 2);
  EXPECT_EQ(filter.GetEntry(2)->GetAccessMode(), GenApi::RO);
  EXPECT_EQ(filter.GetEntry(2)->GetNode()->GetName(), "EnumEntry_PixelColorFilter_Bayer_BG");
  EXPECT_EQ(filter.GetNode()->GetName(), "PixelColorFilter");
  EXPECT_THROW(filter.GetEntry(2)->FromString("BayerBG"), GenICam::AccessException);
  camera.m_device.Poke(0, 7);
  EXPECT_EQ(pNode->GetAccessMode(), GenApi::NI) << "no entry";
  EXPECT_EQ(filter.GetCurrentEntry(), nullptr);
  camera.m_device.Memory().eRefusal = ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED;
  EXPECT_EQ(pNode->GetAccessMode(), GenApi::NI);
}

TEST(FeatureOverlay, AColorFilterThatCannotBeReadIsNotThere)
{
  const std::string ENTRY = R"(<EnumEntry Name="BayerRG"><Value>0</Value></EnumEntry>)";
  CCamera away(EXPOSURE + GAIN + TRIGGER + R"(<Integer Name="No"><Value>0</Value></Integer>
<Enumeration Name="PixelColorFilter"><pIsAvailable>No</pIsAvailable>)" +
               ENTRY + "<pValue>RegA</pValue></Enumeration>");
  EXPECT_EQ(away.m_overlay.GetNode("PixelColorFilter")->GetAccessMode(), GenApi::NI);
  CCamera writeOnly(EXPOSURE + GAIN + TRIGGER + MakeRegister("RegW", 0x40, "WO") +
                    R"(<Enumeration Name="PixelColorFilter">)" + ENTRY + "<pValue>RegW</pValue></Enumeration>");
  EXPECT_EQ(writeOnly.m_overlay.GetNode("PixelColorFilter")->GetAccessMode(), GenApi::NI);
  CCamera text(EXPOSURE + GAIN + TRIGGER + R"(<String Name="PixelColorFilter"><Value>None</Value></String>)");
  EXPECT_EQ(text.m_overlay.GetNode("PixelColorFilter"), nullptr);
}

TEST(FeatureOverlay, LayoutsHaveOneNameHoweverTheyAreSpelt)
{
  for (const char *pName : {"BayerGB", "Bayer_GB", "BAYER GB", "Bayer_GB8", "bayer-gb"}) {
    EXPECT_EQ(NormalizeLayoutName(pName), "BayerGB") << pName;
  }
  for (const char *pName : {"None", "BayerGBR", "", "RGGB", "Bayer"}) {
    EXPECT_EQ(NormalizeLayoutName(pName), pName);
  }
}

TEST(FeatureOverlay, TheRatiosOfTheWhiteBalanceAnswerUnderThePresentName)
{
  const std::string BALANCE =
    R"(<Enumeration Name="BalanceWhiteAuto"><EnumEntry Name="Off"><Value>0</Value></EnumEntry><Value>0</Value></Enumeration>
)";
  const std::string SELECTOR =
    R"(<Enumeration Name="BalanceRatioSelector"><EnumEntry Name="Red"><Value>0</Value></EnumEntry><Value>0</Value></Enumeration>
)";
  CCamera absolute(EXPOSURE + GAIN + TRIGGER + BALANCE + SELECTOR +
                   R"(<Float Name="BalanceRatioAbs"><Value>1.25</Value></Float>)");
  EXPECT_EQ(absolute.GetNotes(), "BalanceRatio aliased: BalanceRatioAbs\n");
  EXPECT_EQ(absolute.Read("BalanceRatio"), "1.25");
  CCamera raw(EXPOSURE + GAIN + TRIGGER + BALANCE + SELECTOR +
              R"(<Integer Name="BalanceRatioRaw"><pValue>RegA</pValue></Integer>)");
  EXPECT_EQ(raw.GetNotes(), "BalanceRatio aliased: BalanceRatioRaw in raw steps\n");
  raw.Float("BalanceRatio").SetValue(64);
  EXPECT_EQ(raw.m_device.Peek(0), 64U);
  CCamera none(EXPOSURE + GAIN + TRIGGER + BALANCE);
  EXPECT_EQ(none.m_overlay.GetNode("BalanceWhiteAuto"), nullptr);
  CCamera withoutSelector(EXPOSURE + GAIN + TRIGGER + BALANCE +
                          R"(<Float Name="BalanceRatio"><Value>1.25</Value></Float>)");
  for (CCamera *pCamera : {&none, &withoutSelector}) {
    EXPECT_EQ(pCamera->GetNotes(), "BalanceWhiteAuto hidden: the ratios that it sets cannot be saved, so the plug-in "
                                   "leaves it alone\n");
    GenApi::NodeList_t listNodes;
    pCamera->m_overlay.GetNodes(listNodes);
    for (const GenApi::INode *pNode : listNodes) {
      EXPECT_FALSE(pNode->GetName() == "BalanceWhiteAuto");
    }
  }
}

TEST(FeatureOverlay, WhatNothingCanStandForIsMissing)
{
  CCamera camera(GAIN + R"(<Boolean Name="TriggerMode"><Value>0</Value></Boolean>)");
  EXPECT_EQ(camera.GetNotes(),
            "ExposureTime missing: neither ExposureTime nor ExposureTimeAbs nor ExposureTimeRaw is there\n"
            "TriggerMode missing: it is no list of modes\n");
  EXPECT_EQ(camera.m_overlay.GetNode("ExposureTime"), nullptr);
  CCamera ownNames(GAIN + R"(<Integer Name="AcquisitionExpTime"><pValue>RegA</pValue></Integer>
<Enumeration Name="AcquisitionTrigMode"><EnumEntry Name="FreeRunning"><Value>0</Value></EnumEntry><pValue>RegB</pValue></Enumeration>)");
  EXPECT_EQ(ownNames.GetNotes(),
            "ExposureTime missing: neither ExposureTime nor ExposureTimeAbs nor ExposureTimeRaw is there\n"
            "TriggerMode supplied: Off\n");
}

TEST(FeatureOverlay, WithoutItsGeometryACameraIsOfNoUse)
{
  const CMemoryDevice device(MakeDescription(R"(<Float Name="Width"><Value>64</Value></Float>
<Integer Name="PayloadSize"><Value>3072</Value></Integer><Integer Name="PixelFormat"><Value>1</Value></Integer>)" +
                                             MakeRegister("RegC", 8) + EXPOSURE + GAIN + TRIGGER));
  const CFeatureOverlay overlay(*device.GetMap());
  std::string strMissing;
  for (const SFeatureNote &stNote : overlay.GetNotes()) {
    strMissing += stNote.strFeature + ": " + stNote.strSource + "\n";
    EXPECT_EQ(stNote.eKind, SFeatureNote::EKind::Missing);
  }
  EXPECT_EQ(strMissing,
            "Width: it is no integer\nHeight: there is none\nPixelFormat: there is no list of pixel formats\n");
}

TEST(FeatureOverlay, NothingIsWrittenForIt)
{
  CCamera camera(TRIGGER + R"(<Integer Name="ExposureTimeRaw"><pValue>RegA</pValue></Integer>
<Enumeration Name="PixelColorFilter"><EnumEntry Name="BayerRG"><Value>0</Value></EnumEntry><pValue>RegB</pValue></Enumeration>)");
  EXPECT_EQ(camera.m_device.Memory().listBytes, std::vector<uint8_t>(0x1000));
}
