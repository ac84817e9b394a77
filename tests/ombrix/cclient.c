#include "tests/ombrix/cclient.h"

#include <stdlib.h>

#include "ombrix/ombrix.h"

int32_t CorrectInC(const uint8_t *pBright, const uint8_t *pDark, uint32_t nPixels, uint32_t nExpectGray,
                   uint8_t *pFrame)
{
  const OMBRIX_FFC_PARAM stParam = {pBright, pDark, nPixels, 1, 8, 0};
  uint32_t nSize = 0;
  int32_t nStatus = OmbrixComputeFlatField(stParam, NULL, &nSize, NULL);
  if (nStatus != OMBRIX_STATUS_SUCCESS) {
    return nStatus;
  }
  void *pTable = malloc(nSize);
  if (pTable == NULL) {
    return -1;
  }
  nStatus = OmbrixComputeFlatField(stParam, pTable, &nSize, &nExpectGray);
  if (nStatus == OMBRIX_STATUS_SUCCESS) {
    nStatus = OmbrixApplyFlatField(pFrame, pFrame, 8, nPixels, 1, pTable, &nSize);
  }
  free(pTable);
  return nStatus;
}
