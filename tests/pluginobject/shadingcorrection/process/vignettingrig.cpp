#include "tests/pluginobject/shadingcorrection/process/vignettingrig.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <set>

namespace ffc::test {

using genapi::SNodeAccess;

namespace {

constexpr std::size_t GEOMETRY_SIZE = 24;

// What cameras that correct flat fields have besides.
const std::set<std::string> ABSENT = {"FFCExpectGray", "DigitalShift", "FixedPatternNoiseCorrectMode",
                                      "DeadPixelCorrect", "RemoveParameterLimit"};

std::vector<uint8_t> ToBytes(const CTestImage &image)
{
  const auto nPixels = static_cast<std::size_t>(image.GetPixelCount());
  std::vector<uint8_t> listBytes(image.GetBitDepth() == 8 ? nPixels : 2 * nPixels);
  std::memcpy(listBytes.data(), image.GetData(), listBytes.size());
  return listBytes;
}

} // namespace

CVignettingRig::CVignettingRig(const std::string &strPixelFormat, int64_t nWidth, int64_t nHeight)
  : CProcessRig(
      std::make_unique<CCorrectingCamera>(strPixelFormat, nWidth, nHeight, ABSENT, ECoefficients::Vignetting)),
    m_camera(static_cast<CCorrectingCamera &>(CProcessRig::Camera())),
    m_process(Start(std::make_unique<CVignettingCorrectionPro_Dev>(DeviceFeatures())))
{
  m_camera.Float("ExposureTime").Range(-1e6, 1e6);
}

void CVignettingRig::ShowImages(const std::vector<CTestImage> &listImages)
{
  Show([listImages](int nFrame) {
    return ToBytes(listImages[std::min(static_cast<std::size_t>(nFrame), listImages.size() - 1)]);
  });
}

int32_t CVignettingRig::Acquire(const std::vector<CTestImage> &listImages)
{
  ShowImages(listImages);
  return m_process.AcquireBrightImage();
}

int32_t CVignettingRig::Correct(uint32_t nGray)
{
  const int32_t nStatus = AcquireBright(nGray);
  return nStatus == 0 ? m_process.ExecuteCorrection() : nStatus;
}

Settings CVignettingRig::TakeSettings()
{
  Settings mapValues = TakeSnapshot();
  mapValues.erase("FFCValueAll");
  mapValues.erase("FlatFieldCorrection");
  return mapValues;
}

std::string CVignettingRig::GetCorrection() const
{
  return m_camera.Enumeration("FlatFieldCorrection").PeekSymbolic();
}

std::vector<uint8_t> CVignettingRig::GetWrittenRecord() const
{
  const std::vector<uint8_t> listBytes = GetWritten();
  const std::size_t nBodySize = listBytes.size() - std::min(listBytes.size(), GEOMETRY_SIZE);
  return {listBytes.begin() + static_cast<std::ptrdiff_t>(nBodySize), listBytes.end()};
}

void CVignettingRig::Refuse(const std::string &strNode)
{
  SetHook([strNode](const SNodeAccess &stAccess) {
    if (stAccess.strNode == strNode) {
      throw GenICam::AccessException("refused", __FILE__, __LINE__);
    }
  });
}

std::vector<uint8_t> MakeCoefficients(std::size_t nSize, uint32_t nRecordSize)
{
  std::vector<uint8_t> listBytes;
  for (std::size_t i = 0; i + GEOMETRY_SIZE < nSize; ++i) {
    listBytes.push_back(static_cast<uint8_t>(i * 5 + 1));
  }
  const std::vector<uint8_t> listRecord = MakeRecord({1, 2, 4, 2, nRecordSize, 7});
  listBytes.insert(listBytes.end(), listRecord.begin(), listRecord.end());
  return listBytes;
}

} // namespace ffc::test
