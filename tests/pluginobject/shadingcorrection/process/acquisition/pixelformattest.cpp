#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"

#include <limits>
#include <map>
#include <set>

#include <gtest/gtest.h>

#include "genapi/pfnc.h"

namespace {

using DepthTable = std::map<uint32_t, int32_t>;

void AddRun(DepthTable &mapDepths, int32_t nDepth, uint32_t nFirst, uint32_t nLast)
{
  for (uint32_t nFormat = nFirst; nFormat <= nLast; ++nFormat) {
    mapDepths[nFormat] = nDepth;
  }
}

// Written out, one by one or by run, as the formats are documented.
DepthTable MakeDepths()
{
  DepthTable mapDepths;
  for (const uint32_t nFormat :
       {0x01080001U, 0x01080002U, 0x010800C9U, 0x010800CDU, 0x010800D1U, 0x02180014U, 0x02180015U}) {
    mapDepths[nFormat] = 8;
  }
  AddRun(mapDepths, 8, 0x01080008, 0x0108000B);
  for (const uint32_t nFormat :
       {0x010A0046U, 0x010A0052U, 0x010A0054U, 0x010A0056U, 0x010A0058U, 0x010C0004U, 0x01100003U}) {
    mapDepths[nFormat] = 10;
  }
  AddRun(mapDepths, 10, 0x010C0026, 0x010C0029);
  AddRun(mapDepths, 10, 0x0110000C, 0x0110000F);
  for (const uint32_t nFormat :
       {0x010C0006U, 0x010C0047U, 0x010C0053U, 0x010C0055U, 0x010C0057U, 0x010C0059U, 0x01100005U}) {
    mapDepths[nFormat] = 12;
  }
  AddRun(mapDepths, 12, 0x010C002A, 0x010C002D);
  AddRun(mapDepths, 12, 0x01100010, 0x01100013);
  AddRun(mapDepths, 14, 0x010E0105, 0x010E0108);
  mapDepths[0x01100025] = 14;
  AddRun(mapDepths, 14, 0x01100109, 0x0110010C);
  mapDepths[0x01100007] = 16;
  AddRun(mapDepths, 16, 0x0110002E, 0x01100031);
  return mapDepths;
}

std::set<uint32_t> MakePacked()
{
  std::set<uint32_t> setPacked = {0x010A0046, 0x010A0052, 0x010A0054, 0x010A0056, 0x010A0058, 0x010C0004,
                                  0x010C0006, 0x010C0047, 0x010C0053, 0x010C0055, 0x010C0057, 0x010C0059};
  for (uint32_t nFormat = 0x010C0026; nFormat <= 0x010C002D; ++nFormat) {
    setPacked.insert(nFormat);
  }
  for (uint32_t nFormat = 0x010E0104; nFormat <= 0x010E0108; ++nFormat) {
    setPacked.insert(nFormat);
  }
  return setPacked;
}

// Every code of the families that hold known formats, and of those beside them.
template <class TCheck>
void ForEachCodeOfTheFamilies(TCheck fnCheck)
{
  for (const uint32_t nFamily : {0x0000U, 0x0101U, 0x0104U, 0x0108U, 0x010AU, 0x010CU, 0x010EU, 0x0110U, 0x0118U,
                                 0x0120U, 0x0208U, 0x0210U, 0x0218U, 0x0220U, 0x0230U, 0x8108U, 0xFFFFU}) {
    for (uint32_t nNumber = 0; nNumber <= 0xFFFF; ++nNumber) {
      fnCheck(nFamily << 16U | nNumber);
    }
  }
}

} // namespace

TEST(PixelFormat, EveryKnownFormatHasItsDepthAndEveryNeighbourNone)
{
  const DepthTable mapDepths = MakeDepths();
  ForEachCodeOfTheFamilies([&](uint32_t nFormat) {
    const auto itDepth = mapDepths.find(nFormat);
    EXPECT_EQ(GetPixelFormatBitDepth(nFormat), itDepth == mapDepths.end() ? -1 : itDepth->second)
      << std::hex << nFormat;
  });
}

TEST(PixelFormat, CodesOfNoFamilyHaveNoDepth)
{
  for (const uint32_t nFormat : {0U, 1U, 0x81080001U, 0x02080001U, 0xFFFFFFFFU}) {
    EXPECT_EQ(GetPixelFormatBitDepth(nFormat), -1) << std::hex << nFormat;
  }
}

TEST(PixelFormat, EveryPackedFormatIsUnpackedToTwoBytesAndNoOther)
{
  const std::set<uint32_t> setPacked = MakePacked();
  ForEachCodeOfTheFamilies([&](uint32_t nFormat) {
    EXPECT_EQ(GetUnpackedPayloadSize(nFormat, 640, 480), setPacked.count(nFormat) > 0 ? 640 * 480 * 2 : 0)
      << std::hex << nFormat;
  });
}

TEST(PixelFormat, OnePackedFormatHasNoKnownDepth)
{
  EXPECT_EQ(GetUnpackedPayloadSize(0x010E0104, 4, 2), 16);
  EXPECT_EQ(GetPixelFormatBitDepth(0x010E0104), -1);
}

TEST(PixelFormat, AnUnpackedSizeBeyond32BitsIsExact)
{
  EXPECT_EQ(GetUnpackedPayloadSize(0x010C0006, 100000, 100000), 20000000000);
}

TEST(PixelFormat, AnUnpackedSizeBeyond63BitsIsNone)
{
  constexpr int64_t LARGEST = std::numeric_limits<int64_t>::max();
  constexpr int64_t HALF = LARGEST / 2;
  EXPECT_EQ(GetUnpackedPayloadSize(0x010C0006, HALF, 1), HALF * 2);
  EXPECT_EQ(GetUnpackedPayloadSize(0x010C0006, 1, HALF), HALF * 2);
  EXPECT_EQ(GetUnpackedPayloadSize(0x010C0006, HALF + 1, 1), 0);
  EXPECT_EQ(GetUnpackedPayloadSize(0x010C0006, 1, HALF + 1), 0);
  EXPECT_EQ(GetUnpackedPayloadSize(0x010C0006, LARGEST, LARGEST), 0);
  EXPECT_EQ(GetUnpackedPayloadSize(0x010C0006, int64_t{1} << 32, int64_t{1} << 32), 0);
}

TEST(PixelFormat, ASizeThatIsNotPositiveHasNoUnpackedSize)
{
  constexpr int64_t SMALLEST = std::numeric_limits<int64_t>::min();
  for (const int64_t nSize : {int64_t{0}, int64_t{-1}, SMALLEST}) {
    EXPECT_EQ(GetUnpackedPayloadSize(0x010C0006, nSize, 480), 0);
    EXPECT_EQ(GetUnpackedPayloadSize(0x010C0006, 640, nSize), 0);
    EXPECT_EQ(GetUnpackedPayloadSize(0x010C0006, nSize, nSize), 0);
  }
}

TEST(PixelFormat, BayerFormatsAreThoseWithFourLayouts)
{
  std::set<uint32_t> setBayer = {0x010A0052, 0x010A0054, 0x010A0056, 0x010A0058,
                                 0x010C0053, 0x010C0055, 0x010C0057, 0x010C0059};
  for (const uint32_t nFirst :
       {0x01080008U, 0x010C0026U, 0x010C002AU, 0x0110000CU, 0x01100010U, 0x0110002EU, 0x010E0105U, 0x01100109U}) {
    for (uint32_t nFormat = nFirst; nFormat < nFirst + 4; ++nFormat) {
      setBayer.insert(nFormat);
    }
  }
  ForEachCodeOfTheFamilies([&](uint32_t nFormat) {
    EXPECT_EQ(ffc::genapi::IsBayerFormat(nFormat), setBayer.count(nFormat) > 0) << std::hex << nFormat;
  });
}
