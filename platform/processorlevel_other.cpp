#include "platform/instructionlevel.h"

// A processor without levels.
EInstructionLevel DetectProcessorLevel() noexcept
{
  return INSTRUCTION_LEVEL_BASELINE;
}
