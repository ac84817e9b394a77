/// \file
/// What a self-correcting camera lets the user switch at its sensor.
#pragma once

#include <cstdint>

#include "camera/software/camerasettings.h"
#include "genapi/softwarenodemap/softwarenodemap.h"

namespace ffc::camera {

/// Declares FixedPatternNoiseCorrectMode, DeadPixelCorrect, DigitalShift and RemoveParameterLimit. The last
/// one, when "On", lets ExposureTime, Gain and BlackLevel go further; switched "Off" it brings them back to
/// the nearest value that is allowed.
class CSensorFeatures {
public:
  /// \param deviceMap has the three features already, and outlives this object
  explicit CSensorFeatures(genapi::CSoftwareNodeMap &deviceMap);

  void CompleteSettings(SCameraSettings &stSettings) const;
  uint32_t GetDigitalShift() const { return static_cast<uint32_t>(m_pDigitalShift->Peek()); }

private:
  genapi::CSoftwareEnumeration *m_pFixedPattern = nullptr;
  genapi::CSoftwareEnumeration *m_pDeadPixel = nullptr;
  genapi::CSoftwareInteger *m_pDigitalShift = nullptr;
  genapi::CSoftwareEnumeration *m_pRemoveLimit = nullptr;
};

} // namespace ffc::camera
