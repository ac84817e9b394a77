#include "tests/fuzz/require.h"

#include <cstdio>
#include <cstdlib>

void Require(bool bHolds, const char *pPromise)
{
  if (!bHolds) {
    std::fprintf(stderr, "broken: %s\n", pPromise);
    std::abort();
  }
}
