#include <QTemporaryFile>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/coefficients/hosttable.h"
#include "pluginobject/statuscode.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"
#include "tests/pluginobject/shadingcorrection/process/testframe.h"

using namespace ffc::process;
using namespace ffc::test;

namespace {

constexpr int32_t WIDTH = 32;
constexpr int32_t HEIGHT = 34;
constexpr uint32_t PIXELS = WIDTH * HEIGHT;

SHostReference MakeReference(const CFrameBuffer &bright, const CFrameBuffer *pDark, uint32_t nPixelFormat,
                             uint32_t nExpectGray, int32_t nBayerType = 0)
{
  return {bright, pDark, MakeFormat(nPixelFormat, WIDTH, HEIGHT), nBayerType, nExpectGray};
}

// A file of nSize zero bytes, open for reading.
class CZeroFile {
public:
  explicit CZeroFile(qint64 nSize)
  {
    EXPECT_TRUE(m_file.open());
    EXPECT_TRUE(m_file.resize(nSize));
  }

  int32_t ReadAs(const SFrameFormat &stFormat, HostTablePtr &pTable) { return ReadHostTable(m_file, stFormat, pTable); }

private:
  QTemporaryFile m_file;
};

} // namespace

TEST(HostTable, BringsTheBrightFrameToTheExpectedGrey)
{
  const CFrameBuffer bright = MakeFrame(CTestImage(WIDTH, HEIGHT, 8, 60));
  HostTablePtr pTable;
  EXPECT_EQ(ComputeHostTable(MakeReference(bright, nullptr, MONO_8, 180), pTable), PLUGIN_STATUS_SUCCESS);
  ASSERT_NE(pTable, nullptr);
  EXPECT_EQ(pTable->nSize, 2U * PIXELS);
  CTestImage corrected(WIDTH, HEIGHT, 8);
  EXPECT_EQ(ApplyHostTable(*pTable, bright.GetData(), corrected.GetData()), PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(CTestImage(WIDTH, HEIGHT, 8, 180) == corrected);
}

TEST(HostTable, WithADarkFrameSubtractsIt)
{
  const CFrameBuffer bright = MakeFrame(CTestImage(WIDTH, HEIGHT, 12, 2000));
  const CFrameBuffer dark = MakeFrame(CTestImage(WIDTH, HEIGHT, 12, 400));
  HostTablePtr pTable;
  EXPECT_EQ(ComputeHostTable(MakeReference(bright, &dark, MONO_12, 200), pTable), PLUGIN_STATUS_SUCCESS);
  EXPECT_EQ(pTable->nSize, 4U * PIXELS);
  CTestImage corrected(WIDTH, HEIGHT, 12);
  const CTestImage source(WIDTH, HEIGHT, 12, 1200);
  EXPECT_EQ(ApplyHostTable(*pTable, source.GetData(), corrected.GetData()), PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(CTestImage(WIDTH, HEIGHT, 12, 1600) == corrected); // half of 200 << 4
}

TEST(HostTable, ShiftsTheExpectedGreyToTheBitDepth)
{
  const std::pair<uint32_t, int32_t> aFormats[] = {{MONO_8, 8},   {MONO_10, 10}, {MONO_12, 12},
                                                   {MONO_14, 14}, {MONO_16, 16}, {MONO_12_PACKED, 12}};
  for (const auto &[nPixelFormat, nBitDepth] : aFormats) {
    const int32_t nTarget = 200 << (nBitDepth - 8);
    const CFrameBuffer bright = MakeFrame(CTestImage(WIDTH, HEIGHT, nBitDepth, nTarget / 2));
    HostTablePtr pTable;
    EXPECT_EQ(ComputeHostTable(MakeReference(bright, nullptr, nPixelFormat, 200), pTable), PLUGIN_STATUS_SUCCESS)
      << nBitDepth;
    CTestImage corrected(WIDTH, HEIGHT, nBitDepth);
    EXPECT_EQ(ApplyHostTable(*pTable, bright.GetData(), corrected.GetData()), PLUGIN_STATUS_SUCCESS);
    EXPECT_TRUE(CTestImage(WIDTH, HEIGHT, nBitDepth, nTarget) == corrected) << nBitDepth;
  }
}

TEST(HostTable, WithoutABrightFrameIsInvalid)
{
  HostTablePtr pTable;
  EXPECT_EQ(ComputeHostTable(MakeReference(CFrameBuffer(), nullptr, MONO_8, 100), pTable), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(pTable, nullptr);
}

TEST(HostTable, OfWhatOmbrixCannotUseIsInvalid)
{
  const CFrameBuffer bright = MakeFrame(CTestImage(WIDTH, HEIGHT, 16, 60));
  HostTablePtr pTable;
  EXPECT_EQ(ComputeHostTable(MakeReference(bright, nullptr, UNKNOWN_FORMAT, 100), pTable), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(ComputeHostTable(MakeReference(bright, nullptr, MONO_16, 100, 5), pTable), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(ComputeHostTable(MakeReference(bright, nullptr, MONO_8, 256), pTable), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(ComputeHostTable(MakeReference(bright, nullptr, MONO_16, UINT32_MAX), pTable), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(pTable, nullptr);
}

TEST(HostTable, OfFramesSmallerThanTheirFormatIsRefused)
{
  const CFrameBuffer bright = MakeFrame(CTestImage(WIDTH, HEIGHT, 12, 60));
  CFrameBuffer small;
  ASSERT_TRUE(small.Allocate(2 * PIXELS - 1));
  HostTablePtr pTable;
  EXPECT_EQ(ComputeHostTable(MakeReference(small, nullptr, MONO_12, 100), pTable), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  EXPECT_EQ(ComputeHostTable(MakeReference(bright, &small, MONO_12, 100), pTable), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  const CFrameBuffer empty;
  EXPECT_EQ(ComputeHostTable(MakeReference(bright, &empty, MONO_12, 100), pTable), PLUGIN_STATUS_BUFFER_SIZE_ERROR);
  EXPECT_EQ(pTable, nullptr);
}

TEST(HostTable, OfAHostileGeometryIsRefused)
{
  const CFrameBuffer bright = MakeFrame(CTestImage(WIDTH, HEIGHT, 8, 60));
  HostTablePtr pTable;
  for (const int64_t nSide : {int64_t{0}, int64_t{-32}, int64_t{1} << 31, (int64_t{1} << 32) + 32, int64_t{1} << 62}) {
    const SHostReference stReference = {bright, nullptr, MakeFormat(MONO_8, nSide, HEIGHT), 0, 100};
    EXPECT_EQ(ComputeHostTable(stReference, pTable), PLUGIN_STATUS_BUFFER_SIZE_ERROR) << nSide;
  }
  EXPECT_EQ(pTable, nullptr);
}

TEST(HostTable, WithoutMemoryIsAStatus)
{
  const CFrameBuffer bright = MakeFrame(CTestImage(WIDTH, HEIGHT, 8, 60));
  CZeroFile file(2 * PIXELS);
  HostTablePtr pTable;
  const CFailingNew failing;
  EXPECT_EQ(ComputeHostTable(MakeReference(bright, nullptr, MONO_8, 100), pTable), PLUGIN_STATUS_OUT_OF_MEMORY);
  EXPECT_EQ(file.ReadAs(MakeFormat(MONO_8, WIDTH, HEIGHT), pTable), -2);
  EXPECT_EQ(pTable, nullptr);
}

TEST(HostTable, WithoutMemoryForWhatHoldsItIsAStatusToo)
{
  const CFrameBuffer bright = MakeFrame(CTestImage(WIDTH, HEIGHT, 8, 60));
  HostTablePtr pTable;
  int32_t nStatus = PLUGIN_STATUS_OUT_OF_MEMORY;
  int32_t nSuccesses = 0;
  for (; nStatus == PLUGIN_STATUS_OUT_OF_MEMORY && nSuccesses < 20; ++nSuccesses) {
    EXPECT_EQ(pTable, nullptr);
    const CFailingThrowingNew failing(nSuccesses);
    nStatus = ComputeHostTable(MakeReference(bright, nullptr, MONO_8, 100), pTable);
  }
  EXPECT_EQ(nStatus, PLUGIN_STATUS_SUCCESS);
  EXPECT_GT(nSuccesses, 1) << "the table itself throws nothing, its holder does";
  EXPECT_NE(pTable, nullptr);
}

TEST(HostTable, IsReadFromAFileOfOneOfTheTwoSizes)
{
  for (const uint32_t nPixelFormat : {MONO_8, MONO_16}) {
    for (const uint32_t nBytesPerPixel : {2U, 4U}) {
      HostTablePtr pTable;
      CZeroFile file(nBytesPerPixel * PIXELS);
      EXPECT_EQ(file.ReadAs(MakeFormat(nPixelFormat, WIDTH, HEIGHT), pTable), 0);
      ASSERT_NE(pTable, nullptr);
      EXPECT_EQ(nBytesPerPixel * PIXELS, pTable->nSize);
      EXPECT_EQ(pTable->data.GetSize(), nBytesPerPixel * PIXELS);
    }
  }
}

TEST(HostTable, IsNotReadFromAFileOfAnotherSize)
{
  HostTablePtr pTable;
  for (const qint64 nSize : {qint64{0}, qint64{1}, qint64{PIXELS}, qint64{2 * PIXELS - 1}, qint64{2 * PIXELS + 1},
                             qint64{3 * PIXELS}, qint64{4 * PIXELS - 1}, qint64{4 * PIXELS + 1}, qint64{8 * PIXELS}}) {
    EXPECT_EQ(CZeroFile(nSize).ReadAs(MakeFormat(MONO_8, WIDTH, HEIGHT), pTable), PLUGIN_STATUS_READ_FILE_ERROR)
      << nSize;
  }
  EXPECT_EQ(pTable, nullptr);
}

TEST(HostTable, IsNotReadForAHostileGeometry)
{
  HostTablePtr pTable;
  for (const int64_t nSide : {int64_t{0}, int64_t{-32}, int64_t{1} << 31, int64_t{1} << 62}) {
    EXPECT_EQ(CZeroFile(0).ReadAs(MakeFormat(MONO_8, nSide, HEIGHT), pTable), PLUGIN_STATUS_READ_FILE_ERROR) << nSide;
    EXPECT_EQ(CZeroFile(2 * PIXELS).ReadAs(MakeFormat(MONO_8, nSide, HEIGHT), pTable), PLUGIN_STATUS_READ_FILE_ERROR)
      << nSide;
  }
  // A file without end has no size; one of 2^32 bytes (a sparse one) has a size that the table cannot tell.
  EXPECT_EQ(CZeroFile(qint64{1} << 32).ReadAs(MakeFormat(MONO_8, 1 << 16, 1 << 15), pTable),
            PLUGIN_STATUS_READ_FILE_ERROR);
  EXPECT_EQ(pTable, nullptr);
}

TEST(HostTable, AppliesToFramesOfTheKeptSizeAndDepthOnly)
{
  const SFrameFormat stKept = MakeFormat(MONO_12, WIDTH, HEIGHT);
  EXPECT_TRUE(IsFrameOfShape(stKept.GetShape(), WIDTH, HEIGHT, MONO_12));
  EXPECT_FALSE(IsFrameOfShape(stKept.GetShape(), WIDTH + 1, HEIGHT, MONO_12));
  EXPECT_FALSE(IsFrameOfShape(stKept.GetShape(), WIDTH, HEIGHT + 1, MONO_12));
  EXPECT_FALSE(IsFrameOfShape(stKept.GetShape(), WIDTH, -HEIGHT, MONO_12));
  EXPECT_FALSE(IsFrameOfShape(stKept.GetShape(), WIDTH, HEIGHT, MONO_10));
  EXPECT_FALSE(IsFrameOfShape(MakeFormat(MONO_8, -1, HEIGHT).GetShape(), UINT32_MAX, HEIGHT, MONO_8));
  EXPECT_FALSE(IsFrameOfShape(MakeFormat(UNKNOWN_FORMAT, WIDTH, HEIGHT).GetShape(), WIDTH, HEIGHT, UNKNOWN_FORMAT));
}

TEST(HostTable, KnowsTheDepthOfEveryFormatThatAHostDelivers)
{
  const std::pair<uint32_t, std::vector<uint32_t>> aDepths[] = {
    {MONO_8, {0x01080001, 0x01080008, 0x0108000B}},
    {MONO_10, {0x01100003, 0x0110000C, 0x0110000D, 0x0110000E, 0x0110000F}},
    {MONO_12, {0x01100005, 0x01100010, 0x01100011, 0x01100012, 0x01100013}},
    {MONO_14, {0x01100025}},
    {MONO_16, {0x01100007, 0x0110002E, 0x0110002F, 0x01100030, 0x01100031}},
  };
  for (const auto &stKept : aDepths) {
    for (const auto &stDelivered : aDepths) {
      for (const uint32_t nDelivered : stDelivered.second) {
        EXPECT_EQ(IsFrameOfShape(MakeFormat(stKept.first, WIDTH, HEIGHT).GetShape(), WIDTH, HEIGHT, nDelivered),
                  stKept.first == stDelivered.first)
          << std::hex << stKept.first << " " << nDelivered;
      }
    }
  }
}

TEST(HostTable, TakesEveryOtherFormatForEightBits)
{
  for (const uint32_t nDelivered : {UNKNOWN_FORMAT, MONO_12_PACKED, uint32_t{0x01100109}, uint32_t{0x01100014}, 0U}) {
    EXPECT_TRUE(IsFrameOfShape(MakeFormat(MONO_8, WIDTH, HEIGHT).GetShape(), WIDTH, HEIGHT, nDelivered)) << nDelivered;
    EXPECT_FALSE(IsFrameOfShape(MakeFormat(MONO_12, WIDTH, HEIGHT).GetShape(), WIDTH, HEIGHT, nDelivered))
      << nDelivered;
  }
  // So a 14-bit Bayer frame is refused although its depth is known.
  EXPECT_FALSE(IsFrameOfShape(MakeFormat(0x01100109, WIDTH, HEIGHT).GetShape(), WIDTH, HEIGHT, 0x01100109));
}

TEST(HostTable, MapsTheStatusesOfItsApplication)
{
  const CFrameBuffer bright = MakeFrame(CTestImage(WIDTH, HEIGHT, 8, 60));
  HostTablePtr pTable;
  ASSERT_EQ(ComputeHostTable(MakeReference(bright, nullptr, MONO_8, 100), pTable), PLUGIN_STATUS_SUCCESS);
  CTestImage corrected(WIDTH, HEIGHT, 8);
  EXPECT_EQ(ApplyHostTable(*pTable, nullptr, corrected.GetData()), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(ApplyHostTable(*pTable, bright.GetData(), nullptr), PLUGIN_STATUS_INVALID_PARAM);
  EXPECT_EQ(ApplyHostTable(SHostTable(), bright.GetData(), corrected.GetData()), PLUGIN_STATUS_INVALID_PARAM);
  SHostTable stOther;
  ASSERT_TRUE(stOther.data.Allocate(pTable->data.GetSize()));
  stOther.nSize = pTable->nSize;
  for (const auto &[stFormat, nStatus] :
       {std::pair{MakeFormat(MONO_8, WIDTH, HEIGHT - 1), -3},
        {MakeFormat(MONO_8, 0, HEIGHT), -3},
        {MakeFormat(UNKNOWN_FORMAT, WIDTH, HEIGHT), PLUGIN_STATUS_CAMERA_NOT_SUPPORTED}}) {
    stOther.stShape = stFormat.GetShape();
    EXPECT_EQ(ApplyHostTable(stOther, bright.GetData(), corrected.GetData()), nStatus);
  }
  EXPECT_TRUE(CTestImage(WIDTH, HEIGHT, 8, 0) == corrected);
}

TEST(HostTable, KnowsTheFormatThatItWasMadeOrReadFor)
{
  const SFrameFormat stFormat = MakeFormat(MONO_12, WIDTH, HEIGHT);
  const CFrameBuffer bright = MakeFrame(CTestImage(WIDTH, HEIGHT, 12, 2000));
  HostTablePtr pTable;
  ASSERT_EQ(ComputeHostTable(MakeReference(bright, nullptr, MONO_12, 200), pTable), PLUGIN_STATUS_SUCCESS);
  EXPECT_TRUE(pTable->stShape == stFormat.GetShape());
  const SFrameFormat stTurned = MakeFormat(MONO_8, HEIGHT, WIDTH);
  ASSERT_EQ(CZeroFile(2 * PIXELS).ReadAs(stTurned, pTable), 0);
  EXPECT_TRUE(pTable->stShape == stTurned.GetShape());
}
