/// \file
/// Everything that arbitrary bytes are fed to. A target returns, whatever the bytes; a promise that is broken ends
/// the program. Each keeps to one thread and leaves nothing behind that the next run would see.
#pragma once

#include <cstddef>
#include <cstdint>

/// CGetSCCoefficient: block grid, frames and table.
void FuzzCoefficientGenerator(const uint8_t *pData, std::size_t nSize);
/// CVCGary, CVCBayer and the two functions that choose between them.
void FuzzVignetting(const uint8_t *pData, std::size_t nSize);
/// Both entry points of the image library.
void FuzzOmbrix(const uint8_t *pData, std::size_t nSize);
/// LoadFromFile of the process that corrects on the host.
void FuzzHostFile(const uint8_t *pData, std::size_t nSize);
/// LoadFromFile of the process for cameras that correct flat fields themselves.
void FuzzDeviceFile(const uint8_t *pData, std::size_t nSize);
/// LoadFromFile of the process for cameras that correct vignetting themselves.
void FuzzVignettingFile(const uint8_t *pData, std::size_t nSize);
/// The records that a host passes to ProcessImage and SlotProcessDemoMsg. User-interface thread only.
void FuzzPluginRecords(const uint8_t *pData, std::size_t nSize);
/// The node map of a real camera: a camera's description file up to the first zero byte; behind it what its registers
/// answer. Reads, verifies and writes every node. Only where Aravis is.
void FuzzAravisNodeMap(const uint8_t *pData, std::size_t nSize);
/// A TIFF file; without the library for them there is nothing to find.
void FuzzTiffFile(const uint8_t *pData, std::size_t nSize);
/// A FITS file, or lines of a header, an empty line and data; without the library for them there is nothing to find.
void FuzzFitsFile(const uint8_t *pData, std::size_t nSize);
/// A SER file.
void FuzzSerFile(const uint8_t *pData, std::size_t nSize);
/// A line with size and format as --raw takes them, and a file of raw frames.
void FuzzRawFile(const uint8_t *pData, std::size_t nSize);
/// The side file of a coefficient file.
void FuzzSideFile(const uint8_t *pData, std::size_t nSize);
/// A list of defect pixels, of either kind.
void FuzzDefectList(const uint8_t *pData, std::size_t nSize);
