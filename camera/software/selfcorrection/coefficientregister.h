/// \file
/// FFCValueAll and what belongs to it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "camera/software/selfcorrection/blocklayout.h"
#include "camera/software/selfcorrection/cameraflash.h"
#include "camera/software/selfcorrection/framecorrector.h"
#include "genapi/softwarenodemap/softwarenodemap.h"

namespace ffc::camera {

/// Declares FFCCoefficientsSize, FFCValueAll, FFCFlashLoad and FFCFlashSave, and holds the coefficients
/// together with the region and blocks that they were written for. Elsewhere they do not count: the
/// register reads as zeros there, and counts again when region and blocks are back.
///
/// In flat-field mode the last 24 bytes read with the bytes of each pair exchanged.
class CCoefficientRegister {
public:
  /// \param deviceMap, flash outlive this object; the map's lock guards what it holds
  /// \param fnLayout region and blocks as the camera's features say now
  CCoefficientRegister(genapi::CSoftwareNodeMap &deviceMap, CCameraFlash &flash,
                       std::function<SBlockLayout()> fnLayout);

  /// Takes what the flash has, if it has any.
  void PowerOn() { m_pHeld = m_flash.Get().pCoefficients; }
  /// Those that hold for the current region and blocks, and have a table; else null.
  std::shared_ptr<const SCoefficients> GetApplicable() const;

private:
  bool CountsNow() const { return m_pHeld != nullptr && m_pHeld->stLayout == m_fnLayout(); }
  std::vector<uint8_t> Read() const;
  void Write(const std::vector<uint8_t> &listBytes);
  void LoadFromFlash();
  void SaveToFlash();

  CCameraFlash &m_flash;
  std::function<SBlockLayout()> m_fnLayout;
  std::shared_ptr<const SCoefficients> m_pHeld;
};

} // namespace ffc::camera
