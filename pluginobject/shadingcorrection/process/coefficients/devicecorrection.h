/// \file
/// The coefficients in a camera that corrects itself.
#pragma once

#include <cstdint>
#include <string>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/framejudge.h"
#include "pluginobject/shadingcorrection/process/coefficients/entrytables.h"
#include "pluginobject/shadingcorrection/process/coefficients/ffcinfo.h"

namespace ffc::process {

/// Bytes of the record.
constexpr uint64_t FFC_INFO_SIZE = sizeof(FFCInfo);

/// Whether there is room for a record.
inline bool HasRecord(const CFrameBuffer &image)
{
  return image.GetSize() >= FFC_INFO_SIZE;
}

/// The last 24 bytes of an image that has a record.
FFCInfo GetRecord(const CFrameBuffer &image);

/// Puts body and record together.
/// \param image as large as both
void FillImage(const CFrameBuffer &body, const FFCInfo &stInfo, CFrameBuffer &image);

/// Exchanges bytes 0 and 1, 2 and 3, and so on up to 22 and 23, of the record of an image that has one:
/// flat-field cameras hand it out in that order.
void ExchangeRecordBytes(CFrameBuffer &image);

/// The settings that the coefficients depend on.
struct SDeviceSettings {
  std::string strPixelColorFilter; ///< empty for a monochrome camera
  SCorrectionBlock stBlock;

  SBlockGrid GetGrid() const { return {stBlock.nWidth, stBlock.nHeight, GetBayerType(strPixelColorFilter)}; }
};

/// One of the tables of block-size entries.
using FnApplyBlockEntry = void (*)(const std::string &strEntry, SCorrectionBlock &stBlock);

/// Reads the colour filter of a colour camera, the block size and the frame count.
/// \return the code of the first failing read
[[nodiscard]] int32_t ReadDeviceSettings(const pluginobject::CFeatureAccess &features, bool bColorCamera,
                                         FnApplyBlockEntry fnApplyBlockEntry, SDeviceSettings &stSettings,
                                         FFCInfo &stInfo);

/// Sets the number of frames to average in the camera and, when it took it, in the record.
/// \param strEntry an entry of FFCFrameCount
[[nodiscard]] int32_t WriteFrameCount(const pluginobject::CFeatureAccess &features, const std::string &strEntry,
                                      FFCInfo &stInfo);

// All return the code of the first failing step. User-interface thread only.

/// Bytes of the whole coefficient image: FFCCoefficientsSize.
/// \param nSize written on success; a negative size comes out beyond every memory
[[nodiscard]] int32_t ReadCoefficientsSize(const pluginobject::CFeatureAccess &features, uint64_t &nSize);

/// Takes zeroed memory for an image of that size. \return -2 when there is none, and for a size beyond the
/// 32 bits that the correction record has for it
[[nodiscard]] int32_t AllocateCoefficients(uint64_t nSize, CFrameBuffer &image);

/// Reads the size into the record and takes that memory. \return -2 when there is none
[[nodiscard]] int32_t InitCoefficients(const pluginobject::CFeatureAccess &features, FFCInfo &stInfo,
                                       CFrameBuffer &image);

/// The camera corrects from now on.
[[nodiscard]] int32_t SwitchCorrectionOn(const pluginobject::CFeatureAccess &features);
/// The camera delivers its frames uncorrected from now on.
[[nodiscard]] int32_t SwitchCorrectionOff(const pluginobject::CFeatureAccess &features);

/// Reads FFCValueAll, -1015 when it is of another length.
[[nodiscard]] int32_t ReadCoefficients(const pluginobject::CFeatureAccess &features, CFrameBuffer &image);
/// Writes a whole image that has a record, takes the record over as soon as the camera has the image, and
/// switches the correction on.
[[nodiscard]] int32_t PutIntoForce(const pluginobject::CFeatureAccess &features, const CFrameBuffer &image,
                                   FFCInfo &stInfo);

/// Has the camera take the coefficients of its flash, and reads them.
[[nodiscard]] int32_t LoadFlashCoefficients(const pluginobject::CFeatureAccess &features, CFrameBuffer &image);
/// Has the camera keep its coefficients in its flash, and start with them from now on.
[[nodiscard]] int32_t SaveFlashCoefficients(const pluginobject::CFeatureAccess &features);

} // namespace ffc::process
