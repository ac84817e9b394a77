#include "platform/instructionlevel.h"

namespace ffc::platform {

// A processor without levels.
EInstructionLevel DetectProcessorLevel() noexcept
{
  return INSTRUCTION_LEVEL_BASELINE;
}

} // namespace ffc::platform
