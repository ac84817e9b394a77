/// \file
/// The coefficients in a camera that corrects itself.
#pragma once

#include <cstdint>

#include "pluginobject/featureaccess.h"
#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/coefficients/ffcinfo.h"

// All return the code of the first failing step. User-interface thread only.

/// Bytes of the whole coefficient image: FFCCoefficientsSize.
/// \param nSize written on success; a negative size comes out beyond every memory
int32_t ReadCoefficientsSize(const CFeatureAccess &features, uint64_t &nSize);

/// Takes zeroed memory for an image of that size. \return -2 when there is none, and for a size beyond the
/// 32 bits that the correction record has for it
int32_t AllocateCoefficients(uint64_t nSize, CFrameBuffer &image);

/// Reads the size into the record and takes that memory. \return -2 when there is none
int32_t InitCoefficients(const CFeatureAccess &features, FFCInfo &stInfo, CFrameBuffer &image);

/// The camera corrects from now on.
int32_t SwitchCorrectionOn(const CFeatureAccess &features);
/// The camera delivers its frames uncorrected from now on.
int32_t SwitchCorrectionOff(const CFeatureAccess &features);

/// Reads FFCValueAll, -1015 when it is of another length.
int32_t ReadCoefficients(const CFeatureAccess &features, CFrameBuffer &image);
/// Writes a whole image that has a record, takes the record over as soon as the camera has the image, and
/// switches the correction on.
int32_t PutIntoForce(const CFeatureAccess &features, const CFrameBuffer &image, FFCInfo &stInfo);

/// Has the camera take the coefficients of its flash, and reads them.
int32_t LoadFlashCoefficients(const CFeatureAccess &features, CFrameBuffer &image);
/// Has the camera keep its coefficients in its flash, and start with them from now on.
int32_t SaveFlashCoefficients(const CFeatureAccess &features);
