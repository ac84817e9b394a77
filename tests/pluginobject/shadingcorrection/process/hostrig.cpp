#include "tests/pluginobject/shadingcorrection/process/hostrig.h"

#include <memory>

namespace ffc::test {

CHostRig::CHostRig(const std::string &strPixelFormat, int64_t nWidth, int64_t nHeight)
  : CProcessRig(std::make_unique<CTestCamera>(strPixelFormat, nWidth, nHeight)),
    m_process(Start(std::make_unique<CShadingCorrectionPro_PC>(DeviceFeatures(), StreamFeatures())))
{
}

int32_t CHostRig::Correct(const std::vector<uint8_t> &listSource, std::vector<uint8_t> &listDestination)
{
  listDestination.resize(listSource.size());
  return m_process.CorrectImage(listSource.data(), listDestination.data(),
                                static_cast<uint32_t>(Camera().Integer("Width").Peek()),
                                static_cast<int32_t>(Camera().Integer("Height").Peek()), Camera().GetPixelFormat());
}

uint32_t CHostRig::GetTableBytesPerPixel()
{
  const int64_t nPixels = Camera().Integer("Width").Peek() * Camera().Integer("Height").Peek();
  return m_process.GetCorrectionInfo().nCoefficientsSize / static_cast<uint32_t>(nPixels);
}

} // namespace ffc::test
