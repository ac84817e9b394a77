#include "host/window/savebox.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

namespace ffc::host {
namespace {

QString Translate(const char *pText)
{
  return QCoreApplication::translate("SaveBox", pText);
}

bool MayReplace(QWidget *pParent, const QString &strTitle, const QString &strFile)
{
  if (!QFileInfo::exists(strFile)) {
    return true;
  }
  QMessageBox box(QMessageBox::Question, strTitle,
                  Translate("%1 is there already. Replace it?").arg(QFileInfo(strFile).fileName()),
                  QMessageBox::NoButton, pParent);
  box.setObjectName(QStringLiteral("ReplaceFile"));
  const QPushButton *pReplace = box.addButton(Translate("&Replace"), QMessageBox::AcceptRole);
  box.setDefaultButton(box.addButton(Translate("&Cancel"), QMessageBox::RejectRole));
  box.exec();
  return box.clickedButton() == pReplace;
}

} // namespace

SSaveAnswer AskSavePath(QWidget *pParent, const SSaveBox &stBox,
                        const std::function<QString(const QString &, const QString &)> &fnComplete,
                        const std::function<QString(const QString &)> &fnFirstFile)
{
  SSaveAnswer stAnswer{stBox.strPath, stBox.strFilter};
  bool bDecided = false;
  while (!bDecided) {
    const QString strTyped =
      QFileDialog::getSaveFileName(pParent, stBox.strTitle, stAnswer.strPath, stBox.listFilters.join(";;"),
                                   &stAnswer.strFilter, QFileDialog::DontConfirmOverwrite);
    stAnswer.strPath = strTyped.isEmpty() ? QString() : fnComplete(strTyped, stAnswer.strFilter);
    const QString strFile = fnFirstFile && !strTyped.isEmpty() ? fnFirstFile(stAnswer.strPath) : stAnswer.strPath;
    bDecided = strTyped.isEmpty() || MayReplace(pParent, stBox.strTitle, strFile);
  }
  return stAnswer;
}

QString AskSavePath(QWidget *pParent, const SSaveBox &stBox, const QString &strSuffix)
{
  return AskSavePath(pParent, stBox,
                     [&strSuffix](const QString &strTyped, const QString &) {
                       const bool bHas = QFileInfo(strTyped).suffix().compare(strSuffix, Qt::CaseInsensitive) == 0;
                       return bHas ? strTyped : strTyped + QLatin1Char('.') + strSuffix;
                     })
    .strPath;
}

} // namespace ffc::host
