// Work that is shared by threads.
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "reference/parallel.h"

using namespace ffc::reference;

TEST(ReferenceParallel, EveryItemIsWorkedOnOnceWithAnyNumberOfThreads)
{
  for (const uint32_t nThreads : {0U, 1U, 3U, 1000U}) {
    std::vector<int> listSeen(100);
    ForEachItem(100, nThreads, [&](uint32_t nItem, uint32_t nWorker) {
      ++listSeen[nItem];
      EXPECT_LT(nWorker, MAX_THREADS);
    });
    EXPECT_EQ(listSeen, std::vector<int>(100, 1)) << nThreads;
  }
}
