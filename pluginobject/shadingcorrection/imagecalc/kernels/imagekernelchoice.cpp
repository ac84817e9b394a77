#include "pluginobject/shadingcorrection/imagecalc/kernels/imagekernels.h"

#include "platform/kernelchoice.h"

namespace ffc::imagecalc {

namespace {

const SImageKernels &KERNELS = platform::ChooseKernels(FindSImageKernels, platform::GetInstructionLevel());

} // namespace

const SImageKernels &GetImageKernels()
{
  return KERNELS;
}

} // namespace ffc::imagecalc
