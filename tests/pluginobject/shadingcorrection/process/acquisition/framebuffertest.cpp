#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/failingnew.h"

using namespace ffc::process;

namespace {

CFrameBuffer MakeCounting(uint64_t nSize, uint8_t nFirst)
{
  CFrameBuffer buffer;
  EXPECT_TRUE(buffer.Allocate(nSize));
  std::iota(buffer.GetData(), buffer.GetData() + nSize, nFirst);
  return buffer;
}

bool IsZero(const CFrameBuffer &buffer)
{
  return std::all_of(buffer.GetData(), buffer.GetData() + buffer.GetSize(), [](uint8_t n) { return n == 0; });
}

} // namespace

TEST(FrameBuffer, IsEmptyAtFirst)
{
  const CFrameBuffer buffer;
  EXPECT_FALSE(buffer.IsAllocated());
  EXPECT_EQ(buffer.GetSize(), 0U);
  EXPECT_EQ(buffer.GetData(), nullptr);
}

TEST(FrameBuffer, IsZeroedWhenAllocatedAndWhenAllocatedAgain)
{
  CFrameBuffer buffer = MakeCounting(1000, 1);
  EXPECT_TRUE(buffer.Allocate(1000));
  EXPECT_TRUE(buffer.IsAllocated());
  EXPECT_EQ(buffer.GetSize(), 1000U);
  EXPECT_TRUE(IsZero(buffer));
}

TEST(FrameBuffer, OfNoBytesIsAllocated)
{
  CFrameBuffer buffer;
  EXPECT_TRUE(buffer.Allocate(0));
  EXPECT_TRUE(buffer.IsAllocated());
  EXPECT_EQ(buffer.GetSize(), 0U);
  buffer.ZeroBetween(0, 1);
}

TEST(FrameBuffer, HugeSizesFailAndLeaveItEmpty)
{
  for (const uint64_t nSize : {uint64_t{1} << 62, uint64_t{1} << 63, std::numeric_limits<uint64_t>::max(),
                               static_cast<uint64_t>(std::numeric_limits<std::ptrdiff_t>::max())}) {
    CFrameBuffer buffer = MakeCounting(8, 1);
    EXPECT_FALSE(buffer.Allocate(nSize)) << nSize;
    EXPECT_FALSE(buffer.IsAllocated()) << nSize;
    EXPECT_EQ(buffer.GetSize(), 0U) << nSize;
  }
}

TEST(FrameBuffer, WithoutMemoryFailsAndLeavesItEmpty)
{
  CFrameBuffer buffer = MakeCounting(8, 1);
  {
    const CFailingNew failing;
    EXPECT_FALSE(buffer.Allocate(8));
  }
  EXPECT_FALSE(buffer.IsAllocated());
  EXPECT_EQ(buffer.GetSize(), 0U);
  EXPECT_TRUE(buffer.Allocate(8));
}

TEST(FrameBuffer, OfBytesThatAreNeverWrittenCostsNoMemory)
{
  // More together than a sanitizer's program should take; memory that is not written is not there.
  std::vector<CFrameBuffer> listBuffers(2);
  for (CFrameBuffer &buffer : listBuffers) {
    EXPECT_TRUE(buffer.Allocate(uint64_t{1} << 30));
    EXPECT_EQ(buffer.GetData()[buffer.GetSize() - 1], 0);
  }
}

TEST(FrameBuffer, ClearsTheBytesBetweenOnly)
{
  CFrameBuffer buffer = MakeCounting(4, 1);
  buffer.ZeroBetween(1, 3);
  buffer.ZeroBetween(3, 2);
  buffer.ZeroBetween(4, 9);
  EXPECT_EQ(std::vector<uint8_t>(buffer.GetData(), buffer.GetData() + 4), (std::vector<uint8_t>{1, 0, 0, 4}));
  buffer.ZeroBetween(0, 100);
  EXPECT_TRUE(IsZero(buffer));
}

TEST(FrameBuffer, ReleaseEmptiesIt)
{
  CFrameBuffer buffer = MakeCounting(16, 1);
  buffer.Release();
  EXPECT_FALSE(buffer.IsAllocated());
  EXPECT_EQ(buffer.GetSize(), 0U);
  buffer.Release();
}

TEST(FrameBuffer, CopiesAsManyBytesAsBothHold)
{
  const CFrameBuffer source = MakeCounting(8, 100);
  CFrameBuffer shorter = MakeCounting(5, 1);
  shorter.CopyFrom(source);
  EXPECT_TRUE(std::equal(shorter.GetData(), shorter.GetData() + 5, source.GetData()));
  EXPECT_EQ(shorter.GetSize(), 5U);

  CFrameBuffer longer = MakeCounting(11, 1);
  longer.CopyFrom(source);
  EXPECT_TRUE(std::equal(source.GetData(), source.GetData() + 8, longer.GetData()));
  EXPECT_EQ(longer.GetData()[8], 9);
  EXPECT_EQ(longer.GetData()[10], 11);
}

TEST(FrameBuffer, CopyingFromOrToAnEmptyOneDoesNothing)
{
  CFrameBuffer buffer = MakeCounting(4, 1);
  buffer.CopyFrom(CFrameBuffer());
  EXPECT_EQ(buffer.GetData()[0], 1);
  CFrameBuffer empty;
  empty.CopyFrom(buffer);
  EXPECT_FALSE(empty.IsAllocated());
}

TEST(FrameBuffer, ReleasedAfterAMoveHoldsNothing)
{
  CFrameBuffer source = MakeCounting(4, 1);
  const uint8_t *pData = source.GetData();
  const CFrameBuffer target = std::move(source);
  EXPECT_EQ(target.GetData(), pData);
  EXPECT_EQ(target.GetSize(), 4U);
  EXPECT_FALSE(source.IsAllocated()); // NOLINT: what it then is, is the question
}
