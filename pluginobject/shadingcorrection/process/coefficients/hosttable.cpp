#include "pluginobject/shadingcorrection/process/coefficients/hosttable.h"

#include <new>
#include <utility>

#include "genapi/pfnc.h"
#include "ombrix/ombrix.h"
#include "pluginobject/shadingcorrection/process/coefficients/ffcfile.h"
#include "pluginobject/shadingcorrection/process/steps.h"
#include "pluginobject/statuscode.h"

namespace ffc::process {

using platform::CCriticalSection;

namespace {

constexpr uint64_t GAIN_BYTES = 2;
constexpr uint64_t GAIN_AND_DARK_BYTES = 4;

// Depth of a delivered frame: unpacked formats only, since the host unpacks the others. What is not known here, a
// Bayer format of 14 bits too, counts as 8.
int32_t GetDeliveredBitDepth(uint32_t nPixelFormat)
{
  const ffc::genapi::SPixelFormat *pFormat = ffc::genapi::FindPixelFormat(nPixelFormat);
  if (pFormat == nullptr || pFormat->ePacking != ffc::genapi::EPacking::None ||
      (pFormat->IsBayer() && pFormat->nBitDepth == 14)) {
    return 8;
  }
  return static_cast<int32_t>(pFormat->nBitDepth);
}

// shared_ptr's own allocation is the one that throws.
HostTablePtr ShareTable(SHostTable &&stTable)
{
  try {
    return std::make_shared<const SHostTable>(std::move(stTable));
  } catch (const std::bad_alloc &) {
    return nullptr;
  }
}

int32_t Publish(SHostTable &&stTable, HostTablePtr &pTable)
{
  pTable = ShareTable(std::move(stTable));
  return pTable == nullptr ? PLUGIN_STATUS_OUT_OF_MEMORY : PLUGIN_STATUS_SUCCESS;
}

bool HoldFrames(const SHostReference &stReference)
{
  const bool bBright = !stReference.bright.IsAllocated() || stReference.stFormat.FitsInto(stReference.bright.GetSize());
  return bBright && (stReference.pDark == nullptr || stReference.stFormat.FitsInto(stReference.pDark->GetSize()));
}

} // namespace

CHostCoefficients::SSnapshot CHostCoefficients::Get() const
{
  const std::lock_guard<CCriticalSection> lock(m_section);
  return m_stCurrent;
}

void CHostCoefficients::SetShape(const SFrameShape &stShape)
{
  const std::lock_guard<CCriticalSection> lock(m_section);
  m_stCurrent.stShape = stShape;
}

void CHostCoefficients::SetTable(HostTablePtr pTable)
{
  {
    const std::lock_guard<CCriticalSection> lock(m_section);
    std::swap(m_stCurrent.pTable, pTable);
  }
  // The former table, if nobody corrects with it, goes here, after the lock.
}

int32_t ComputeHostTable(const SHostReference &stReference, HostTablePtr &pTable)
{
  if (!HoldFrames(stReference)) {
    return PLUGIN_STATUS_BUFFER_SIZE_ERROR;
  }
  const SFrameFormat &stFormat = stReference.stFormat;
  const int32_t nBitDepth = stFormat.GetBitDepth();
  const OMBRIX_FFC_PARAM stParam = {
    stReference.bright.GetData(),           stReference.pDark == nullptr ? nullptr : stReference.pDark->GetData(),
    static_cast<uint32_t>(stFormat.nWidth), static_cast<uint32_t>(stFormat.nHeight),
    static_cast<uint32_t>(nBitDepth),       static_cast<uint32_t>(stReference.nBayerType)};
  uint32_t nSize = 0;
  (void)OmbrixComputeFlatField(stParam, nullptr, &nSize, nullptr);
  if (nSize == 0) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  SHostTable stTable;
  if (!stTable.data.Allocate(stFormat.GetPixelCount() * GAIN_AND_DARK_BYTES)) {
    return PLUGIN_STATUS_OUT_OF_MEMORY;
  }
  const uint32_t nTarget = stReference.nExpectGray << (nBitDepth - 8);
  const int32_t nStatus = MapCalcStatus(OmbrixComputeFlatField(stParam, stTable.data.GetData(), &nSize, &nTarget));
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  stTable.nSize = nSize;
  stTable.stShape = stFormat.GetShape();
  return Publish(std::move(stTable), pTable);
}

int32_t ReadHostTable(QFile &file, const SFrameFormat &stFormat, HostTablePtr &pTable)
{
  const auto nFileSize = static_cast<uint64_t>(file.size());
  const uint64_t nPixels = stFormat.GetPixelCount();
  if (nFileSize == 0 || nFileSize > UINT32_MAX ||
      (nFileSize != nPixels * GAIN_BYTES && nFileSize != nPixels * GAIN_AND_DARK_BYTES)) {
    return PLUGIN_STATUS_READ_FILE_ERROR;
  }
  SHostTable stTable;
  const int32_t nStatus = ReadCoefficientFile(file, nFileSize, stTable.data);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  stTable.nSize = static_cast<uint32_t>(nFileSize);
  stTable.stShape = stFormat.GetShape();
  return Publish(std::move(stTable), pTable);
}

bool IsFrameOfShape(const SFrameShape &stShape, uint32_t nWidth, int32_t nHeight, uint32_t nPixelFormat)
{
  return nWidth == stShape.nWidth && nHeight == stShape.nHeight &&
         GetDeliveredBitDepth(nPixelFormat) == stShape.nBitDepth;
}

int32_t ApplyHostTable(const SHostTable &stTable, const void *pSource, void *pDestination)
{
  const SFrameShape &stShape = stTable.stShape;
  const uint32_t nSize = stTable.nSize;
  return MapCalcStatus(OmbrixApplyFlatField(pSource, pDestination, static_cast<uint32_t>(stShape.nBitDepth),
                                            static_cast<uint32_t>(stShape.nWidth),
                                            static_cast<uint32_t>(stShape.nHeight), stTable.data.GetData(), &nSize));
}

} // namespace ffc::process
