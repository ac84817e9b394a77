#include "pluginobject/shadingcorrection/process/coefficients/coefficientimage.h"

#include <cstring>
#include <utility>

FFCInfo GetRecord(const CFrameBuffer &image)
{
  FFCInfo stInfo;
  std::memcpy(&stInfo, image.GetData() + (image.GetSize() - FFC_INFO_SIZE), FFC_INFO_SIZE);
  return stInfo;
}

void FillImage(const CFrameBuffer &body, const FFCInfo &stInfo, CFrameBuffer &image)
{
  image.CopyFrom(body);
  std::memcpy(image.GetData() + body.GetSize(), &stInfo, FFC_INFO_SIZE);
}

void ExchangeRecordBytes(CFrameBuffer &image)
{
  for (uint64_t nByte = image.GetSize() - FFC_INFO_SIZE; nByte < image.GetSize(); nByte += 2) {
    std::swap(image.GetData()[nByte], image.GetData()[nByte + 1]);
  }
}
