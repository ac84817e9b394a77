/// \file
/// The features of a camera that corrects its own frames, in software.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "genapi/softwarenodemap/softwarenodemap.h"

namespace ffc::test {

/// What a camera takes coefficients for.
enum class ECoefficients {
  FlatField,  ///< small blocks; the record is handed out with the bytes of each pair exchanged
  Vignetting, ///< blocks of 64 x 64 or 128 x 128; the record is handed out as it was written
};

/// FFCBlockSize, FFCFrameCount, FFCExpectGray, FFCCoefficientsSize, FFCValueAll, FFCFlashLoad, FFCFlashSave and
/// FlatFieldCorrection. The register is as long as FFCCoefficientsSize says, which is what the coefficients of
/// the current Width, Height and FFCBlockSize take. It holds the last write as it was; its last 24 bytes are the
/// record.
class CCorrectionFeatures {
public:
  /// \param map has Width and Height, a colour camera's PixelColorFilter too, and outlives this object
  /// \param setAbsent features that this camera has not at all
  CCorrectionFeatures(genapi::CSoftwareNodeMap &map, const std::set<std::string> &setAbsent,
                      ECoefficients eCoefficients = ECoefficients::FlatField);
  CCorrectionFeatures(const CCorrectionFeatures &) = delete;
  CCorrectionFeatures &operator=(const CCorrectionFeatures &) = delete;

  /// The coefficients in force as they were written, as they are read, and those in the flash.
  std::vector<uint8_t> GetWritten() const;
  std::vector<uint8_t> GetReadBack() const;
  std::vector<uint8_t> GetFlash() const;
  void SetWritten(std::vector<uint8_t> listBytes);
  void SetFlash(std::vector<uint8_t> listBytes);
  /// Whether the bytes of the record are exchanged.
  void SetRecordExchanged(bool bExchanged) { m_bRecordExchanged = bExchanged; }

private:
  void AddSettings(const std::set<std::string> &setAbsent);
  void AddCoefficients();
  int64_t CountPoints(int64_t nSide) const;
  int64_t ComputeSize() const;

  genapi::CSoftwareNodeMap &m_map;
  const ECoefficients m_eCoefficients;
  bool m_bRecordExchanged;
  std::vector<uint8_t> m_listWritten;
  std::vector<uint8_t> m_listFlash;
};

} // namespace ffc::test
