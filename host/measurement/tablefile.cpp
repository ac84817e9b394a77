#include "host/measurement/tablefile.h"

#include <new>

#include <QFile>

namespace ffc::host {

std::vector<uint16_t> ReadGains(const QString &strFile, uint32_t nWidth, uint32_t nHeight)
{
  const qint64 nBytes = qint64{nWidth} * nHeight * 2;
  QFile file(strFile);
  // Behind the gains of all pixels, their dark levels may follow.
  if (nBytes == 0 || !file.open(QIODevice::ReadOnly) || (file.size() != nBytes && file.size() != 2 * nBytes)) {
    return {};
  }
  try {
    std::vector<uint16_t> listGains(static_cast<std::size_t>(nBytes) / 2);
    return file.read(reinterpret_cast<char *>(listGains.data()), nBytes) == nBytes ? listGains
                                                                                   : std::vector<uint16_t>();
  } catch (const std::bad_alloc &) {
    return {};
  }
}

} // namespace ffc::host
