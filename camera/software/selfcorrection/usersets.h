/// \file
/// The user sets of a camera.
#pragma once

#include <string>

#include "camera/software/selfcorrection/cameraflash.h"
#include "camera/software/settinglist.h"
#include "genapi/softwarenodemap/softwarenodemap.h"
#include "platform/result.h"

namespace ffc::camera {

/// The set that a camera without a history starts with.
constexpr char DEFAULT_USER_SET[] = "Default";

/// Declares UserSetSelector, UserSetDefault, UserSetLoad and UserSetSave. "Default" is the state that the
/// camera has when this object is made, and cannot be saved into; "UserSet0" is kept in the flash, and is
/// like "Default" until it is saved. Neither can be switched while the camera streams.
class CUserSets {
public:
  /// \param deviceMap, flash outlive this object
  /// \param settings what a set consists of
  CUserSets(genapi::CSoftwareNodeMap &deviceMap, CCameraFlash &flash, CSettingList settings);

  /// Loads the set that UserSetDefault names in the flash.
  /// \return why the sets in the flash are of no use
  Result<> PowerOn();
  bool StartsWithDefault() const;

private:
  GenApi::EAccessMode GetAccess(bool bSaving) const;
  SettingSnapshot GetSet(const std::string &strName) const;
  void LoadSelected();
  void SaveSelected();

  CCameraFlash &m_flash;
  CSettingList m_settings;
  SettingSnapshot m_mapFactory;
  const genapi::CSoftwareInteger *m_pLocked = nullptr;
  genapi::CSoftwareEnumeration *m_pSelector = nullptr;
  genapi::CSoftwareEnumeration *m_pStart = nullptr;
};

} // namespace ffc::camera
