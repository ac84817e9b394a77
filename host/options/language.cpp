#include "host/options/language.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>

/// In the global scope, as the macro demands: nobody else asks for the resources of a static library.
static void RegisterResources()
{
  Q_INIT_RESOURCE(hostresources);
}

namespace ffc::host {

CLanguage::CLanguage(bool bChinese)
{
  RegisterResources();
  if (!bChinese) {
    return;
  }
  // The first name holds the widgets' texts; older toolkits have all in one file.
  const QString strFolder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
  const QString strBeside = QCoreApplication::applicationDirPath() + QStringLiteral("/translations"); // in a package
  if (m_toolkit.load(QStringLiteral("qtbase_zh_CN"), strFolder) ||
      m_toolkit.load(QStringLiteral("qtbase_zh_CN"), strBeside) ||
      m_toolkit.load(QStringLiteral("qt_zh_CN"), strFolder)) {
    QCoreApplication::installTranslator(&m_toolkit);
  }
  if (m_translator.load(QStringLiteral(":/ffchost_zh.qm"))) {
    QCoreApplication::installTranslator(&m_translator);
  }
}

CLanguage::~CLanguage()
{
  QCoreApplication::removeTranslator(&m_translator);
  QCoreApplication::removeTranslator(&m_toolkit);
}

} // namespace ffc::host
