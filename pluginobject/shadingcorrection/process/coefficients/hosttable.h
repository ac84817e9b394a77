/// \file
/// Making, reading and applying a coefficient table of the host-side correction.
#pragma once

#include <cstdint>

#include <QFile>

#include "pluginobject/shadingcorrection/process/acquisition/framebuffer.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"
#include "pluginobject/shadingcorrection/process/coefficients/hostcoefficients.h"

/// What a table is computed from.
struct SHostReference {
  const CFrameBuffer &bright; ///< averaged bright frame
  const CFrameBuffer *pDark;  ///< null: not used
  SFrameFormat stFormat;      ///< of both frames
  int32_t nBayerType;         ///< 0 mono, 1 to 4
  uint32_t nExpectGray;       ///< target on an 8-bit scale
};

/// Has Ombrix compute a table.
/// \param pTable written on success
/// \return 0; -3 when Ombrix asks for no bytes, as it does for input it cannot use; -2 when there is no
///   memory; -1012 when a frame is smaller than the format says; else a mapped status of Ombrix
int32_t ComputeHostTable(const SHostReference &stReference, HostTablePtr &pTable);

/// Reads a table for frames of a format from an open file.
/// \return 0; -1007 unless the file has width x height x 2 or x 4 bytes and all can be read; -2 when there
///   is no memory
int32_t ReadHostTable(QFile &file, const SFrameFormat &stFormat, HostTablePtr &pTable);

/// Whether a delivered frame has the geometry and depth of a format.
bool IsFrameOfFormat(const SFrameFormat &stFormat, uint32_t nWidth, int32_t nHeight, uint32_t nPixelFormat);

/// Has Ombrix correct a frame of the table's format. \return a mapped status of Ombrix
int32_t ApplyHostTable(const SHostTable &stTable, const void *pSource, void *pDestination);
