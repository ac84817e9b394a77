#include "pluginobject/shadingcorrection/process/vignettingcorrectionpro_dev.h"
#include "tests/fuzz/devicefilerun.h"
#include "tests/fuzz/fuzztargets.h"

using namespace ffc::test;

void FuzzVignettingFile(const uint8_t *pData, std::size_t nSize)
{
  static CLyingCamera s_camera(ECoefficients::Vignetting);
  CFuzzInput input(pData, nSize);
  CDeviceFileRun<CVignettingCorrectionPro_Dev> run(input, s_camera, false);
  run.Load();
  run.Load();
}
