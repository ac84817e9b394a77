#include "platform/instructionlevel.h"

#include <intrin.h>

namespace ffc::platform {

namespace {

enum ERegister { REGISTER_EAX, REGISTER_EBX, REGISTER_ECX, REGISTER_EDX };

constexpr int LEAF_FEATURES = 1;
constexpr int LEAF_STRUCTURED_FEATURES = 7;
constexpr int LEAF_EXTENDED_FEATURES = static_cast<int>(0x80000001);

// Leaf 1, ECX: SSE3, SSSE3, CMPXCHG16B, SSE4.1, SSE4.2, POPCNT.
constexpr unsigned BITS_V2 = 1U << 0 | 1U << 9 | 1U << 13 | 1U << 19 | 1U << 20 | 1U << 23;
// Leaf 0x80000001, ECX: LAHF.
constexpr unsigned BITS_V2_EXTENDED = 1U << 0;
// Leaf 1, ECX: FMA, MOVBE, OSXSAVE, AVX, F16C.
constexpr unsigned BITS_V3 = 1U << 12 | 1U << 22 | 1U << 27 | 1U << 28 | 1U << 29;
constexpr unsigned BIT_OSXSAVE = 1U << 27;
// Leaf 7, EBX: BMI1, AVX2, BMI2.
constexpr unsigned BITS_V3_STRUCTURED = 1U << 3 | 1U << 5 | 1U << 8;
// Leaf 0x80000001, ECX: LZCNT.
constexpr unsigned BITS_V3_EXTENDED = 1U << 5;
// Leaf 7, EBX: AVX512F, DQ, CD, BW, VL.
constexpr unsigned BITS_V4_STRUCTURED = 1U << 16 | 1U << 17 | 1U << 28 | 1U << 30 | 1U << 31;
// Registers that the operating system keeps, in XCR0: XMM and YMM; with them opmask and ZMM.
constexpr unsigned long long STATE_V3 = 0x06;
constexpr unsigned long long STATE_V4 = 0xE6;

bool HasBits(int nLeaf, ERegister eRegister, unsigned nBits)
{
  int anRegisters[4] = {};
  __cpuid(anRegisters, nLeaf < 0 ? static_cast<int>(0x80000000) : 0);
  if (static_cast<unsigned>(anRegisters[REGISTER_EAX]) < static_cast<unsigned>(nLeaf)) {
    return false;
  }
  __cpuidex(anRegisters, nLeaf, 0);
  return (static_cast<unsigned>(anRegisters[eRegister]) & nBits) == nBits;
}

// Only where the bit OSXSAVE is set may it be asked.
bool IsStateKept(unsigned long long nState)
{
  return HasBits(LEAF_FEATURES, REGISTER_ECX, BIT_OSXSAVE) && (_xgetbv(0) & nState) == nState;
}

} // namespace

EInstructionLevel DetectProcessorLevel() noexcept
{
  return FindOfferedLevel({
    {INSTRUCTION_LEVEL_V2, HasBits(LEAF_FEATURES, REGISTER_ECX, BITS_V2)},
    {INSTRUCTION_LEVEL_V2, HasBits(LEAF_EXTENDED_FEATURES, REGISTER_ECX, BITS_V2_EXTENDED)},
    {INSTRUCTION_LEVEL_V3, HasBits(LEAF_FEATURES, REGISTER_ECX, BITS_V3)},
    {INSTRUCTION_LEVEL_V3, HasBits(LEAF_STRUCTURED_FEATURES, REGISTER_EBX, BITS_V3_STRUCTURED)},
    {INSTRUCTION_LEVEL_V3, HasBits(LEAF_EXTENDED_FEATURES, REGISTER_ECX, BITS_V3_EXTENDED)},
    {INSTRUCTION_LEVEL_V3, IsStateKept(STATE_V3)},
    {INSTRUCTION_LEVEL_V4, HasBits(LEAF_STRUCTURED_FEATURES, REGISTER_EBX, BITS_V4_STRUCTURED)},
    {INSTRUCTION_LEVEL_V4, IsStateKept(STATE_V4)},
  });
}

} // namespace ffc::platform
