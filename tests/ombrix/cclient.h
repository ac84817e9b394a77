/// \file
/// The image library as a C program uses it.
#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Makes a table from the first two frames and corrects the third in place: query, compute, apply.
/// \param pFrame nPixels bytes, corrected on success
/// \return the first status that is not success, -1 for lack of memory
int32_t CorrectInC(const uint8_t *pBright, const uint8_t *pDark, uint32_t nPixels, uint32_t nExpectGray,
                   uint8_t *pFrame);

#ifdef __cplusplus
}
#endif
