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
  unsigned nEcx = 0;
  unsigned nEdx = 0;
  return __get_cpuid(nLeaf, &nEax, &nEbx, &nEcx, &nEdx) != 0 && (nEcx & nBits) == nBits;
}

bool HasV2()
{
  return __builtin_cpu_supports("sse3") && __builtin_cpu_supports("ssse3") && __builtin_cpu_supports("sse4.1") &&
         __builtin_cpu_supports("sse4.2") && __builtin_cpu_supports("popcnt") &&
         HasBitsInEcx(LEAF_FEATURES, BIT_CMPXCHG16B) && HasBitsInEcx(LEAF_EXTENDED_FEATURES, BIT_LAHF);
}

// The builtin function says yes to AVX and AVX-512 only where the operating system keeps their registers too.
bool HasV3()
{
  return HasV2() && __builtin_cpu_supports("avx") && __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") &&
         __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("fma") &&
         HasBitsInEcx(LEAF_FEATURES, BIT_MOVBE | BIT_F16C) && HasBitsInEcx(LEAF_EXTENDED_FEATURES, BIT_LZCNT);
}

bool HasV4()
{
  return HasV3() && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
         __builtin_cpu_supports("avx512cd") && __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
}

} // namespace

EInstructionLevel DetectProcessorLevel() noexcept
{
  // Needed where a library asks while it is being loaded.
  __builtin_cpu_init();
  if (HasV4()) {
    return INSTRUCTION_LEVEL_V4;
  }
  if (HasV3()) {
    return INSTRUCTION_LEVEL_V3;
  }
  return HasV2() ? INSTRUCTION_LEVEL_V2 : INSTRUCTION_LEVEL_BASELINE;
}

} // namespace ffc::platform
