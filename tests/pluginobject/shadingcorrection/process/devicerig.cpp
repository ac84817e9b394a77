#include "tests/pluginobject/shadingcorrection/process/devicerig.h"

#include <memory>

namespace ffc::test {

using genapi::CSoftwareEnumeration;

namespace {

constexpr std::size_t RECORD_SIZE = 24;
constexpr std::size_t ELEMENT_SIZE = 8;

// The camera of a rig, before the process sees it.
CCorrectingCamera &Prepare(CTestCamera &camera)
{
  camera.Float("ExposureTime").Range(-1e6, 1e6);
  return static_cast<CCorrectingCamera &>(camera);
}

void SelectWhereThere(CTestCamera &camera, const char *pName, const char *pEntry)
{
  auto *pNode = camera.Device().Find<CSoftwareEnumeration>(pName);
  if (pNode != nullptr) {
    pNode->Select(pEntry);
  }
}

} // namespace

CDeviceRig::CDeviceRig(const std::string &strPixelFormat, int64_t nWidth, int64_t nHeight,
                       const std::set<std::string> &setAbsent)
  : CProcessRig(std::make_unique<CCorrectingCamera>(strPixelFormat, nWidth, nHeight, setAbsent)),
    m_camera(Prepare(CProcessRig::Camera())),
    m_process(Start(std::make_unique<CShadingCorrectionPro_Dev>(DeviceFeatures())))
{
}

Settings CDeviceRig::TakeSettings()
{
  auto mapValues = TakeSnapshot();
  mapValues.erase("FFCValueAll");
  return mapValues;
}

void CDeviceRig::ChangeSettings()
{
  const auto lock = m_camera.Device().Lock();
  m_camera.Float("Gain").Poke(3.0);
  m_camera.Float("BlackLevel").Poke(0.25);
  m_camera.UserSets().Save("UserSet0");
  m_camera.Float("Gain").Poke(7.5);
  m_camera.Float("BlackLevel").Poke(0.5);
  m_camera.Float("ExposureTime").Poke(20000.0);
  m_camera.Integer("FFCExpectGray").Poke(190);
  m_camera.m_adBalanceRatio = {2.5, 1.25, 3.5};
  for (const auto &[pName, pEntry] : {std::pair{"UserSetSelector", "Default"},
                                      {"UserSetDefault", "Default"},
                                      {"TriggerMode", "On"},
                                      {"TriggerSource", "Line0"},
                                      {"FlatFieldCorrection", "Off"},
                                      {"FixedPatternNoiseCorrectMode", "On"},
                                      {"DeadPixelCorrect", "On"},
                                      {"RemoveParameterLimit", "On"},
                                      {"AWBLampHouse", "Fluorescence"},
                                      {"BalanceRatioSelector", "Blue"}}) {
    SelectWhereThere(m_camera, pName, pEntry);
  }
}

int32_t CDeviceRig::Correct(uint32_t nDarkGray, uint32_t nBrightGray)
{
  int32_t nStatus = AcquireDark(nDarkGray);
  if (nStatus == 0) {
    nStatus = AcquireBright(nBrightGray);
  }
  return nStatus == 0 ? m_process.ExecuteCorrection() : nStatus;
}

bool CDeviceRig::IsDarkInForce()
{
  const std::vector<uint8_t> listBytes = m_camera.Correction().GetWritten();
  for (std::size_t i = 0; i + RECORD_SIZE < listBytes.size(); i += ELEMENT_SIZE) {
    if (listBytes[i] != 0 || listBytes[i + 1] != 0) {
      return true;
    }
  }
  return false;
}

} // namespace ffc::test
