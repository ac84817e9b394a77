#include "host/options/language.h"

#include <QCoreApplication>
#include <QDir>

/// In the global scope, as the macro demands: nobody else asks for the resources of a static library.
static void RegisterResources()
{
  Q_INIT_RESOURCE(hostresources);
}

namespace ffc::host {

CLanguage::CLanguage(bool bChinese)
{
  RegisterResources();
  if (bChinese && m_translator.load(QStringLiteral(":/ffchost_zh.qm"))) {
    QCoreApplication::installTranslator(&m_translator);
  }
}

CLanguage::~CLanguage()
{
  QCoreApplication::removeTranslator(&m_translator);
}

} // namespace ffc::host
