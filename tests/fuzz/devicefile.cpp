#include "pluginobject/shadingcorrection/process/shadingcorrectionpro_dev.h"
#include "tests/fuzz/devicefilerun.h"
#include "tests/fuzz/fuzztargets.h"

using namespace ffc::test;

void FuzzDeviceFile(const uint8_t *pData, std::size_t nSize)
{
  static CLyingCamera s_camera(ECoefficients::FlatField);
  CFuzzInput input(pData, nSize);
  CDeviceFileRun<CShadingCorrectionPro_Dev> run(input, s_camera, true);
  run.Load();
  run.Load();
}
