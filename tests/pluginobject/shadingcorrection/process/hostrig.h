/// \file
/// The rig of the process that corrects on the host.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "pluginobject/shadingcorrection/process/shadingcorrectionpro_pc.h"
#include "tests/pluginobject/shadingcorrection/process/processrig.h"

namespace ffc::test {

/// A camera without a correction of its own.
class CHostRig : public CProcessRig {
public:
  explicit CHostRig(const std::string &strPixelFormat = "Mono8", int64_t nWidth = 64, int64_t nHeight = 48);

  CShadingCorrectionPro_PC &Process() { return m_process; }

  /// Corrects one frame of the camera's size and format.
  int32_t Correct(const std::vector<uint8_t> &listSource, std::vector<uint8_t> &listDestination);
  /// Bytes per pixel of the table in force: 4 with a dark frame, 2 without, 0 when there is none.
  uint32_t GetTableBytesPerPixel();

private:
  CShadingCorrectionPro_PC &m_process;
};

} // namespace ffc::test
