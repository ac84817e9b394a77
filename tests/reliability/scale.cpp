#include "tests/reliability/scale.h"

#include <cstdio>

#include <QString>
#include <QtGlobal>

bool IsSoak()
{
  return qEnvironmentVariableIsSet("FFC_SOAK");
}

uint64_t GetStride()
{
  return IsSoak() ? 1 : RELIABILITY_STRIDE;
}

uint32_t GetSeed()
{
  constexpr uint32_t USUAL = 20;
  bool bNumber = false;
  const uint nSeed = qEnvironmentVariable("FFC_SEED").toUInt(&bNumber);
  const uint32_t nChosen = bNumber ? nSeed : USUAL;
  std::printf("seed %u (FFC_SEED sets another)\n", nChosen);
  return nChosen;
}
