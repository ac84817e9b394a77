#include "pluginobject/shadingcorrection/imagecalc/kernels/imagekernels.h"

#include "platform/kernelchoice.h"

namespace {

const SImageKernels &KERNELS = ChooseKernels(FindSImageKernels, GetInstructionLevel());

} // namespace

const SImageKernels &GetImageKernels()
{
  return KERNELS;
}
