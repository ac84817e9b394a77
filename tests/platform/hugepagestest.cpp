#include "platform/hugepages.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/zeroedmemory.h"

using ffc::platform::GiveZeroedMemory;
using ffc::platform::TakeZeroedMemory;

namespace {

constexpr std::size_t HUGE_PAGE = std::size_t{1} << 21;

#if defined(__linux__)
// Whether the mapping that an address lies in has the system's advice, "hg".
bool IsAdvised(const void *pMemory)
{
  const auto nAddress = reinterpret_cast<uintptr_t>(pMemory);
  std::ifstream file("/proc/self/smaps");
  bool bFound = false;
  for (std::string strLine; std::getline(file, strLine);) {
    uintptr_t nBegin = 0;
    uintptr_t nEnd = 0;
    char cDash = 0;
    if (std::istringstream(strLine) >> std::hex >> nBegin >> cDash >> nEnd && cDash == '-') {
      bFound = nAddress >= nBegin && nAddress < nEnd;
    } else if (bFound && strLine.rfind("VmFlags:", 0) == 0) {
      return strLine.find(" hg") != std::string::npos;
    }
  }
  return false;
}
#endif

} // namespace

TEST(HugePages, AdviceLeavesAnyPieceOfMemoryAsItIs)
{
  std::vector<unsigned char> listMemory(4 * HUGE_PAGE, 0x5A);
  for (const std::size_t nOffset : {std::size_t{0}, std::size_t{1}, HUGE_PAGE - 1, HUGE_PAGE, 3 * HUGE_PAGE + 7}) {
    for (const std::size_t nSize : {std::size_t{0}, std::size_t{1}, HUGE_PAGE, listMemory.size() - nOffset}) {
      ffc::platform::AdviseHugePages(listMemory.data() + nOffset, std::min(nSize, listMemory.size() - nOffset));
    }
  }
  EXPECT_EQ(listMemory, std::vector<unsigned char>(4 * HUGE_PAGE, 0x5A));
  ffc::platform::AdviseHugePages(nullptr, 0);
  ffc::platform::AdviseHugePages(nullptr, 4 * HUGE_PAGE);
}

TEST(ZeroedMemory, NoBytesArePlaceEnoughForOne)
{
  auto *const pMemory = static_cast<unsigned char *>(TakeZeroedMemory(0));
  ASSERT_NE(pMemory, nullptr);
  EXPECT_EQ(*pMemory, 0);
  GiveZeroedMemory(pMemory);
  GiveZeroedMemory(nullptr);
}

#if defined(__linux__)
TEST(HugePages, LargeZeroedMemoryAsksForThem)
{
  if (!std::ifstream("/sys/kernel/mm/transparent_hugepage/enabled")) {
    GTEST_SKIP() << "this system has none";
  }
  constexpr std::size_t LARGE = 32 * HUGE_PAGE;
  auto *const pMemory = static_cast<unsigned char *>(TakeZeroedMemory(LARGE));
  ASSERT_NE(pMemory, nullptr);
  EXPECT_TRUE(IsAdvised(pMemory + LARGE / 2));
  EXPECT_EQ(std::count(pMemory, pMemory + LARGE, 0), static_cast<std::ptrdiff_t>(LARGE));
  GiveZeroedMemory(pMemory);
}
#endif
