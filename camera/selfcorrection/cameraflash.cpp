#include "camera/selfcorrection/cameraflash.h"

#include <utility>

#include "camera/selfcorrection/flashfile.h"

namespace ffc::camera {

CCameraFlash::CCameraFlash(std::string strFile, std::string strCamera, SFlashContent stFresh)
  : m_strFile(std::move(strFile)), m_strCamera(std::move(strCamera)), m_stContent(std::move(stFresh))
{
}

std::string CCameraFlash::Load()
{
  if (m_strFile.empty() || !FlashFileExists(m_strFile)) {
    return {};
  }
  return ReadFlashFile(m_strFile, m_strCamera, &m_stContent);
}

void CCameraFlash::Store(SFlashContent stContent)
{
  if (!m_strFile.empty()) {
    const std::string strError = WriteFlashFile(m_strFile, m_strCamera, stContent);
    if (!strError.empty()) {
      throw GenICam::RuntimeException(strError.c_str(), __FILE__, __LINE__);
    }
  }
  m_stContent = std::move(stContent);
}

} // namespace ffc::camera
