#include "camera/software/selfcorrection/cameraflash.h"

#include <utility>

#include "camera/software/selfcorrection/flashfile.h"

namespace ffc::camera {

CCameraFlash::CCameraFlash(std::string strFile, std::string strCamera, SFlashContent stFresh)
  : m_strFile(std::move(strFile)), m_strCamera(std::move(strCamera)), m_stContent(std::move(stFresh))
{
}

Result<> CCameraFlash::Load()
{
  if (m_strFile.empty() || !FlashFileExists(m_strFile)) {
    return {};
  }
  Result<SFlashContent> content = ReadFlashFile(m_strFile, m_strCamera);
  if (!content) {
    return content.GetFailure();
  }
  m_stContent = std::move(content).GetValue();
  return {};
}

void CCameraFlash::Store(SFlashContent stContent)
{
  if (!m_strFile.empty()) {
    if (const Result<> result = WriteFlashFile(m_strFile, m_strCamera, stContent); !result) {
      throw GenICam::RuntimeException(result.GetError().c_str(), __FILE__, __LINE__);
    }
  }
  m_stContent = std::move(stContent);
}

} // namespace ffc::camera
