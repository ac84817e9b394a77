/// \file
/// The memory of a camera that outlives its power.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "camera/software/selfcorrection/framecorrector.h"
#include "camera/software/settinglist.h"
#include "platform/result.h"

namespace ffc::camera {

struct SFlashContent {
  std::string strStartSet;                            ///< the user set that is loaded at power-on
  std::map<std::string, SettingSnapshot> mapUserSets; ///< those that were saved
  std::shared_ptr<const SCoefficients> pCoefficients; ///< null: none were saved
};

/// Kept in a file, which is written whole or not at all; or in memory. Whoever calls holds the lock of the
/// camera's device map.
class CCameraFlash {
public:
  /// \param strFile empty: in memory, gone with this object
  /// \param strCamera the kind of camera, by which its files are told from those of another kind
  /// \param stFresh what is there before anything was stored
  CCameraFlash(std::string strFile, std::string strCamera, SFlashContent stFresh);

  /// Reads the file, if there is one.
  /// \return why not: what makes the file of no use; then the content is the fresh one
  Result<> Load();

  const SFlashContent &Get() const { return m_stContent; }
  /// \throws GenICam::RuntimeException when the file cannot be written; then file and content are as before
  void Store(SFlashContent stContent);

private:
  std::string m_strFile;
  std::string m_strCamera;
  SFlashContent m_stContent;
};

} // namespace ffc::camera
