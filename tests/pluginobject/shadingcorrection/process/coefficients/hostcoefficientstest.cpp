#include <atomic>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "pluginobject/shadingcorrection/process/coefficients/hosttable.h"
#include "tests/pluginobject/shadingcorrection/process/testframe.h"

using namespace ffc::process;
using namespace ffc::test;

namespace {

// A table of nSize bytes, every one nSize.
HostTablePtr MakeTable(uint32_t nSize)
{
  SHostTable stTable;
  EXPECT_TRUE(stTable.data.Allocate(nSize));
  std::memset(stTable.data.GetData(), static_cast<int>(nSize), nSize);
  stTable.nSize = nSize;
  return std::make_shared<const SHostTable>(std::move(stTable));
}

} // namespace

TEST(HostCoefficients, HoldNoTableAtFirst)
{
  const CHostCoefficients coefficients;
  EXPECT_EQ(coefficients.Get().pTable, nullptr);
  EXPECT_EQ(coefficients.Get().stShape.nWidth, 0);
}

TEST(HostCoefficients, KeepTableAndFormatApart)
{
  CHostCoefficients coefficients;
  coefficients.SetTable(MakeTable(8));
  coefficients.SetShape(MakeFormat(MONO_12, 64, 48).GetShape());
  EXPECT_EQ(coefficients.Get().pTable->nSize, 8U);
  EXPECT_EQ(coefficients.Get().stShape.nWidth, 64);
  coefficients.SetTable(nullptr);
  EXPECT_EQ(coefficients.Get().pTable, nullptr);
  EXPECT_EQ(coefficients.Get().stShape.nBitDepth, 12);
}

TEST(HostCoefficients, ASnapshotKeepsItsTableWhenItIsReplaced)
{
  CHostCoefficients coefficients;
  coefficients.SetTable(MakeTable(8));
  const std::weak_ptr<const SHostTable> pFormer = coefficients.Get().pTable;
  {
    const CHostCoefficients::SSnapshot stSnapshot = coefficients.Get();
    coefficients.SetTable(MakeTable(9));
    EXPECT_EQ(stSnapshot.pTable->data.GetData()[7], 8);
    EXPECT_FALSE(pFormer.expired());
  }
  EXPECT_TRUE(pFormer.expired());
}

TEST(HostCoefficients, AReaderSeesWholeTablesWhileTheyAreReplaced)
{
  CHostCoefficients coefficients;
  coefficients.SetTable(MakeTable(1));
  std::atomic<bool> bStop{false};
  std::atomic<int> nReads{0};
  std::atomic<bool> bWhole{true};
  std::thread reader([&] {
    while (!bStop) {
      const HostTablePtr pTable = coefficients.Get().pTable;
      if (pTable->data.GetData()[pTable->nSize - 1] != pTable->nSize) {
        bWhole = false;
      }
      ++nReads;
    }
  });
  for (uint32_t i = 0; nReads < 1000; ++i) {
    coefficients.SetTable(MakeTable(i % 200 + 1));
    coefficients.SetShape(MakeFormat(MONO_8, i, i).GetShape());
  }
  bStop = true;
  reader.join();
  EXPECT_TRUE(bWhole);
}
