#include "platform/instructionlevel.h"

#include <cpuid.h>

namespace ffc::platform {

namespace {

// What not every compiler has a name for.
constexpr unsigned LEAF_FEATURES = 1;
constexpr unsigned LEAF_EXTENDED_FEATURES = 0x80000001;
constexpr unsigned BIT_CMPXCHG16B = 1U << 13;
constexpr unsigned BIT_MOVBE = 1U << 22;
constexpr unsigned BIT_F16C = 1U << 29;
constexpr unsigned BIT_LAHF = 1U << 0;
constexpr unsigned BIT_LZCNT = 1U << 5;

bool HasBitsInEcx(unsigned nLeaf, unsigned nBits)
{
  unsigned nEax = 0;
  unsigned nEbx = 0;
  unsigned nEcx = 0; // stays for a leaf that there is not
  unsigned nEdx = 0;
  (void)__get_cpuid(nLeaf, &nEax, &nEbx, &nEcx, &nEdx);
  return (nEcx & nBits) == nBits;
}

} // namespace

EInstructionLevel DetectProcessorLevel() noexcept
{
  // Needed where a library asks while it is being loaded.
  __builtin_cpu_init();
  // The builtin function says yes to AVX and AVX-512 only where the operating system keeps their registers too.
  return FindOfferedLevel({
    {INSTRUCTION_LEVEL_V2, __builtin_cpu_supports("sse3") != 0},
    {INSTRUCTION_LEVEL_V2, __builtin_cpu_supports("ssse3") != 0},
    {INSTRUCTION_LEVEL_V2, __builtin_cpu_supports("sse4.1") != 0},
    {INSTRUCTION_LEVEL_V2, __builtin_cpu_supports("sse4.2") != 0},
    {INSTRUCTION_LEVEL_V2, __builtin_cpu_supports("popcnt") != 0},
    {INSTRUCTION_LEVEL_V2, HasBitsInEcx(LEAF_FEATURES, BIT_CMPXCHG16B)},
    {INSTRUCTION_LEVEL_V2, HasBitsInEcx(LEAF_EXTENDED_FEATURES, BIT_LAHF)},
    {INSTRUCTION_LEVEL_V3, __builtin_cpu_supports("avx") != 0},
    {INSTRUCTION_LEVEL_V3, __builtin_cpu_supports("avx2") != 0},
    {INSTRUCTION_LEVEL_V3, __builtin_cpu_supports("bmi") != 0},
    {INSTRUCTION_LEVEL_V3, __builtin_cpu_supports("bmi2") != 0},
    {INSTRUCTION_LEVEL_V3, __builtin_cpu_supports("fma") != 0},
    {INSTRUCTION_LEVEL_V3, HasBitsInEcx(LEAF_FEATURES, BIT_MOVBE | BIT_F16C)},
    {INSTRUCTION_LEVEL_V3, HasBitsInEcx(LEAF_EXTENDED_FEATURES, BIT_LZCNT)},
    {INSTRUCTION_LEVEL_V4, __builtin_cpu_supports("avx512f") != 0},
    {INSTRUCTION_LEVEL_V4, __builtin_cpu_supports("avx512bw") != 0},
    {INSTRUCTION_LEVEL_V4, __builtin_cpu_supports("avx512cd") != 0},
    {INSTRUCTION_LEVEL_V4, __builtin_cpu_supports("avx512dq") != 0},
    {INSTRUCTION_LEVEL_V4, __builtin_cpu_supports("avx512vl") != 0},
  });
}

} // namespace ffc::platform
