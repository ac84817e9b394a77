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

bool MayReplace(QWidget *pParent, const QString &strTitle, const QStringList &listFiles)
{
  QStringList listNames;
  for (const QString &strFile : listFiles) {
    if (QFileInfo::exists(strFile)) {
      listNames << QFileInfo(strFile).fileName();
    }
  }
  if (listNames.isEmpty()) {
    return true;
  }
  const QString strQuestion = listNames.size() == 1 ? Translate("%1 is there already. Replace it?")
                                                    : Translate("%1 are there already. Replace them?");
  QMessageBox box(QMessageBox::Question, strTitle, strQuestion.arg(listNames.join(QStringLiteral(", "))),
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
                        const std::function<QStringList(const QString &)> &fnFiles)
{
  SSaveAnswer stAnswer{stBox.strPath, stBox.strFilter};
  bool bDecided = false;
  while (!bDecided) {
    const QString strTyped =
      QFileDialog::getSaveFileName(pParent, stBox.strTitle, stAnswer.strPath, stBox.listFilters.join(";;"),
                                   &stAnswer.strFilter, QFileDialog::DontConfirmOverwrite);
    stAnswer.strPath = strTyped.isEmpty() ? QString() : fnComplete(strTyped, stAnswer.strFilter);
    bDecided = strTyped.isEmpty() ||
               MayReplace(pParent, stBox.strTitle, fnFiles ? fnFiles(stAnswer.strPath) : QStringList{stAnswer.strPath});
  }
  return stAnswer;
}

QString AskSavePath(QWidget *pParent, const SSaveBox &stBox, const QString &strSuffix,
                    const std::function<QStringList(const QString &)> &fnFiles)
{
  const auto complete = [&strSuffix](const QString &strTyped, const QString &) {
    const bool bHas = QFileInfo(strTyped).suffix().compare(strSuffix, Qt::CaseInsensitive) == 0;
    return bHas ? strTyped : strTyped + QLatin1Char('.') + strSuffix;
  };
  return AskSavePath(pParent, stBox, complete, fnFiles).strPath;
}

} // namespace ffc::host
