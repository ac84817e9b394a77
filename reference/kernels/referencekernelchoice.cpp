#include "platform/kernelchoice.h"
#include "reference/kernels/referencekernels.h"

namespace ffc::reference {

namespace {

const SReferenceKernels &KERNELS = platform::ChooseKernels(FindSReferenceKernels, platform::GetInstructionLevel());

} // namespace

const SReferenceKernels &GetReferenceKernels()
{
  return KERNELS;
}

} // namespace ffc::reference
