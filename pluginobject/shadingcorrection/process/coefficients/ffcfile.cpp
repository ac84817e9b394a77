#include "pluginobject/shadingcorrection/process/coefficients/ffcfile.h"

#include <QFileInfo>

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

int32_t CCoefficientFileWriter::Open()
{
  const QFileInfo info(m_file.fileName());
  // A device or a pipe would be replaced by a file.
  const bool bOpened = (!info.exists() || info.isFile()) && m_file.open(QIODevice::WriteOnly);
  return bOpened ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_OPEN_FILE_ERROR;
}

int32_t CCoefficientFileWriter::Write(const uint8_t *pData, uint64_t nSize)
{
  const auto nWanted = static_cast<qint64>(nSize);
  // Flushed here, because commit does not notice that a buffered rest cannot be written.
  if (m_file.write(reinterpret_cast<const char *>(pData), nWanted) != nWanted || !m_file.flush()) {
    m_file.cancelWriting();
  }
  return m_file.commit() ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_WRITE_FILE_ERROR;
}

void CCoefficientFileWriter::LeaveEmpty()
{
  m_file.cancelWriting();
  (void)m_file.commit();
  if (!QFileInfo::exists(m_file.fileName())) {
    (void)QFile(m_file.fileName()).open(QIODevice::WriteOnly);
  }
}

int32_t WriteCoefficientFile(const QString &strFileName, const uint8_t *pData, uint64_t nSize)
{
  CCoefficientFileWriter writer(strFileName);
  const int32_t nStatus = writer.Open();
  return nStatus == PLUGIN_STATUS_SUCCESS ? writer.Write(pData, nSize) : nStatus;
}
