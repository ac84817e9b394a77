#include "host/viewer/pluginmodule.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "platform/moduleversion.h"

namespace ffc::host {

CPluginModule::~CPluginModule()
{
  Unload();
}

QString CPluginModule::GetDefaultPath()
{
  return QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("FlatFieldCorrection.plx"));
}

Result<> CPluginModule::Load(const QString &strPath)
{
  Unload();
  const QFileInfo info(strPath);
  if (!info.isFile()) {
    return Failure(QStringLiteral("plug-in %1: no such file").arg(strPath));
  }
  m_library.setFileName(info.absoluteFilePath());
  if (!m_library.load()) {
    return Failure(QStringLiteral("plug-in %1: %2").arg(strPath, m_library.errorString()));
  }
  const auto fnCreate = reinterpret_cast<FnCreatePluginObject>(m_library.resolve(CREATE_PLUGIN_OBJECT));
  m_fnDestroy = reinterpret_cast<FnDestoryPluginObject>(m_library.resolve(DESTORY_PLUGIN_OBJECT));
  if (fnCreate == nullptr || m_fnDestroy == nullptr) {
    const char *pMissing = fnCreate == nullptr ? CREATE_PLUGIN_OBJECT : DESTORY_PLUGIN_OBJECT;
    Unload();
    return Failure(QStringLiteral("plug-in %1: it does not export %2").arg(strPath, QLatin1String(pMissing)));
  }
  m_pPlugin = fnCreate();
  if (m_pPlugin == nullptr) {
    Unload();
    return Failure(QStringLiteral("plug-in %1: it made no object (out of memory)").arg(strPath));
  }
  return {};
}

QString CPluginModule::Describe() const
{
  if (!m_library.isLoaded()) {
    return {};
  }
  const QString strPath = m_library.fileName();
  QString strName = QFileInfo(strPath).fileName();
  uint16_t anVersion[4] = {};
  std::string strError;
  if (!platform::QueryModuleFileVersion(QFile::encodeName(strPath).toStdString(), anVersion, strError)) {
    return strName;
  }
  return QStringLiteral("%1 %2.%3.%4.%5")
    .arg(strName)
    .arg(anVersion[0])
    .arg(anVersion[1])
    .arg(anVersion[2])
    .arg(anVersion[3]);
}

void CPluginModule::Unload()
{
  if (m_pPlugin != nullptr && m_fnDestroy != nullptr) {
    m_fnDestroy(m_pPlugin);
  }
  m_pPlugin = nullptr;
  m_fnDestroy = nullptr;
  if (m_library.isLoaded()) {
    m_library.unload();
  }
}

} // namespace ffc::host
