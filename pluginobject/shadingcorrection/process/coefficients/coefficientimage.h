/// \file
/// The bytes of a camera's coefficients: a body, and the correction record behind it.
#pragma once

#include <cstdint>

#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/coefficients/ffcinfo.h"

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
