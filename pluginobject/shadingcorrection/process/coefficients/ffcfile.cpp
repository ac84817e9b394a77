#include "pluginobject/shadingcorrection/process/coefficients/ffcfile.h"

#include <new>

#include <QFileInfo>

#include "platform/replaceablefile.h"
#include "pluginobject/statuscode.h"

namespace ffc::process {

namespace {

bool IsReplaceable(const QString &strFileName)
{
  return ffc::platform::IsReplaceable({QFile::encodeName(strFileName).toStdString(), strFileName.toStdWString()});
}

// Written over what is there, which then ends behind it. Going back to the start of an open
// file never fails.
bool Overwrite(QFile &file, const uint8_t *pData, uint64_t nSize)
{
  const auto nWanted = static_cast<qint64>(nSize);
  return file.seek(0) && file.write(reinterpret_cast<const char *>(pData), nWanted) == nWanted && file.resize(nWanted);
}

} // namespace

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
  try {
    const QFileInfo info(m_file.fileName());
    // A device or a pipe would be replaced by a file.
    if (info.exists() && !info.isFile()) {
      return PLUGIN_STATUS_OPEN_FILE_ERROR;
    }
    const bool bOpened = (IsReplaceable(m_file.fileName()) && m_file.open(QIODevice::WriteOnly)) ||
                         m_inPlace.open(QIODevice::ReadWrite | QIODevice::ExistingOnly | QIODevice::Unbuffered);
    return bOpened ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_OPEN_FILE_ERROR;
  } catch (const std::bad_alloc &) {
    // The names for the system.
    return PLUGIN_STATUS_OUT_OF_MEMORY;
  }
}

int32_t CCoefficientFileWriter::WriteInPlace(const uint8_t *pData, uint64_t nSize)
{
  CFrameBuffer former;
  const auto nFormerSize = static_cast<uint64_t>(m_inPlace.size());
  if (nFormerSize > 0) {
    // Fails to be read only when somebody else cuts the file at this moment, or on a broken volume.
    const int32_t nStatus = ReadCoefficientFile(m_inPlace, nFormerSize, former);
    if (nStatus != PLUGIN_STATUS_SUCCESS) {
      return nStatus == PLUGIN_STATUS_READ_FILE_ERROR ? PLUGIN_STATUS_WRITE_FILE_ERROR : nStatus;
    }
  }
  const bool bWritten = Overwrite(m_inPlace, pData, nSize);
  if (!bWritten) {
    (void)Overwrite(m_inPlace, former.GetData(), nFormerSize);
  }
  m_inPlace.close();
  return bWritten ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_WRITE_FILE_ERROR;
}

int32_t CCoefficientFileWriter::Write(const uint8_t *pData, uint64_t nSize)
{
  if (m_inPlace.isOpen()) {
    return WriteInPlace(pData, nSize);
  }
  const auto nWanted = static_cast<qint64>(nSize);
  // Flushed here, because commit does not notice that a buffered rest cannot be written.
  if (m_file.write(reinterpret_cast<const char *>(pData), nWanted) != nWanted || !m_file.flush()) {
    m_file.cancelWriting();
  }
  return m_file.commit() ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_WRITE_FILE_ERROR;
}

void CCoefficientFileWriter::LeaveEmpty()
{
  if (m_inPlace.isOpen()) {
    m_inPlace.close();
    return;
  }
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

} // namespace ffc::process
