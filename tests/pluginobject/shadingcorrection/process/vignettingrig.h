/// \file
/// The rig of the process for cameras that correct vignetting themselves.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "pluginobject/shadingcorrection/process/vignettingcorrectionpro_dev.h"
#include "tests/pluginobject/shadingcorrection/imagecalc/testimage.h"
#include "tests/pluginobject/shadingcorrection/process/processrig.h"
#include "tests/support/correctingcamera.h"

namespace ffc::test {

/// A camera with blocks of 64 x 64 that takes negative exposures, which shorten the waits for its frames. Unless
/// told otherwise its frames have 3 x 2 blocks, for a mono camera a register of 72 bytes, or 56 with blocks of
/// 128 x 128.
class CVignettingRig : public CProcessRig {
public:
  explicit CVignettingRig(const std::string &strPixelFormat = "Mono8", int64_t nWidth = 192, int64_t nHeight = 128);

  CCorrectingCamera &Camera() { return m_camera; }
  CVignettingCorrectionPro_Dev &Process() { return m_process; }

  /// What the camera sees from now on, frame by frame; the last one stays.
  void ShowImages(const std::vector<CTestImage> &listImages);
  /// Shows images and takes as many frames as the process is set to.
  int32_t Acquire(const std::vector<CTestImage> &listImages);
  /// Coefficients in force, computed from uniform frames.
  int32_t Correct(uint32_t nGray);

  /// Features by name as in TakeSnapshot, without what an acquisition need not put back: the coefficients and
  /// whether they are applied.
  Settings TakeSettings();
  /// Whether the camera corrects: "On" or "Off".
  std::string GetCorrection() const;
  /// The coefficients in force.
  std::vector<uint8_t> GetWritten() const { return m_camera.Correction().GetWritten(); }
  /// The last 24 of their bytes.
  std::vector<uint8_t> GetWrittenRecord() const;

  /// The camera refuses every access to a feature from now on.
  void Refuse(const std::string &strNode);

private:
  CCorrectingCamera &m_camera;
  CVignettingCorrectionPro_Dev &m_process;
};

/// An image of coefficients of nSize bytes for tests that do not look at the gains: every byte of the body
/// another one, and a record of the words 1, 2, 4, 2, nRecordSize, 7.
std::vector<uint8_t> MakeCoefficients(std::size_t nSize, uint32_t nRecordSize);

} // namespace ffc::test
