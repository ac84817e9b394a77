#include "pluginobject/shadingcorrection/process/ffcfile.h"

#include <QFileInfo>
#include <QSaveFile>

#include "pluginobject/statuscode.h"

int32_t OpenCoefficientFile(QFile &file)
{
  return !QFileInfo(file).isDir() && file.open(QIODevice::ReadOnly) ? PLUGIN_STATUS_SUCCESS
                                                                    : PLUGIN_STATUS_OPEN_FILE_ERROR;
}

int32_t ReadCoefficientFile(QFile &file, uint64_t nSize, CFrameBuffer &data)
{
  if (nSize == 0) {
    return PLUGIN_STATUS_READ_FILE_ERROR;
  }
  if (!data.Allocate(nSize)) {
    return PLUGIN_STATUS_OUT_OF_MEMORY;
  }
  const auto nWanted = static_cast<qint64>(nSize);
  return file.read(reinterpret_cast<char *>(data.GetData()), nWanted) == nWanted ? PLUGIN_STATUS_SUCCESS
                                                                                 : PLUGIN_STATUS_READ_FILE_ERROR;
}

int32_t WriteCoefficientFile(const QString &strFileName, const uint8_t *pData, uint64_t nSize)
{
  const QFileInfo info(strFileName);
  // A device or a pipe would be replaced by a file.
  if (info.exists() && !info.isFile()) {
    return PLUGIN_STATUS_OPEN_FILE_ERROR;
  }
  QSaveFile file(strFileName);
  if (!file.open(QIODevice::WriteOnly)) {
    return PLUGIN_STATUS_OPEN_FILE_ERROR;
  }
  const auto nWanted = static_cast<qint64>(nSize);
  // Flushed here, because commit does not notice that a buffered rest cannot be written.
  if (file.write(reinterpret_cast<const char *>(pData), nWanted) != nWanted || !file.flush()) {
    file.cancelWriting();
  }
  return file.commit() ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_WRITE_FILE_ERROR;
}
