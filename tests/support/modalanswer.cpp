#include "tests/support/modalanswer.h"

#include <utility>

#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

namespace ffc::test {

namespace {

bool IsTipsMessageBox(const QDialog &dialog)
{
  return dialog.objectName() == QLatin1String("TipsMessageBox");
}

QWidget *FindTitleBar(const QDialog &dialog)
{
  for (QWidget *pChild : dialog.findChildren<QWidget *>()) {
    if (pChild->inherits("QToolsTitleBar")) {
      return pChild;
    }
  }
  return nullptr;
}

// Children of the dialog's body: not of its title bar.
template <class TWidget>
std::vector<TWidget *> FindInBody(const QDialog &dialog)
{
  const QWidget *pTitleBar = FindTitleBar(dialog);
  std::vector<TWidget *> listFound;
  for (TWidget *pWidget : dialog.findChildren<TWidget *>()) {
    if (pTitleBar == nullptr || !pTitleBar->isAncestorOf(pWidget)) {
      listFound.push_back(pWidget);
    }
  }
  return listFound;
}

std::string ReadTitle(const QDialog &dialog)
{
  const QWidget *pTitleBar = FindTitleBar(dialog);
  // The tool tip has the whole title also when the label is too narrow for it.
  const auto *pTitle = pTitleBar == nullptr ? nullptr : pTitleBar->findChild<QLabel *>(QStringLiteral("TitleContent"));
  return (pTitle == nullptr ? dialog.windowTitle() : pTitle->toolTip()).toStdString();
}

std::string ReadMessage(const QDialog &dialog)
{
  if (const auto *pMessageBox = qobject_cast<const QMessageBox *>(&dialog)) {
    return pMessageBox->text().toStdString();
  }
  for (const QLabel *pLabel : FindInBody<QLabel>(dialog)) {
    if (!pLabel->text().isEmpty()) {
      return pLabel->text().toStdString();
    }
  }
  return {};
}

// The button with a text, or the first one (the accepting one) when any will do.
QPushButton *FindButton(const QDialog &dialog, bool bAny, const QString &strText)
{
  for (QPushButton *pButton : FindInBody<QPushButton>(dialog)) {
    if (pButton->isVisible() && pButton->isEnabled() && (bAny || pButton->text() == strText)) {
      return pButton;
    }
  }
  return nullptr;
}

} // namespace

CModalAnswer::CModalAnswer()
{
  qApp->installEventFilter(this);
}

CModalAnswer::~CModalAnswer()
{
  qApp->removeEventFilter(this);
}

CModalAnswer &CModalAnswer::PressButton(const QString &strText)
{
  m_strButton = strText;
  m_bAnyButton = false;
  return *this;
}

CModalAnswer &CModalAnswer::ChooseFile(const QString &strFile)
{
  m_strFile = strFile;
  return *this;
}

CModalAnswer &CModalAnswer::BeforeAnswer(std::function<void(QDialog &)> fnBefore)
{
  m_fnBefore = std::move(fnBefore);
  return *this;
}

bool CModalAnswer::eventFilter(QObject *pWatched, QEvent *pEvent)
{
  auto *pDialog = pEvent->type() == QEvent::Show ? qobject_cast<QDialog *>(pWatched) : nullptr;
  if (pDialog != nullptr && pDialog->isModal()) {
    // From the dialog's own event loop, which starts when it has been shown.
    QTimer::singleShot(0, pDialog, [this, pThis = QPointer<CModalAnswer>(this), pDialog] {
      if (pThis != nullptr) {
        Answer(*pDialog);
      }
    });
  }
  return QObject::eventFilter(pWatched, pEvent);
}

void CModalAnswer::Answer(QDialog &dialog)
{
  if (m_fnBefore) {
    m_fnBefore(dialog);
  }
  if (auto *pFileDialog = qobject_cast<QFileDialog *>(&dialog)) {
    AnswerFileDialog(*pFileDialog);
  } else if (IsTipsMessageBox(dialog) || qobject_cast<QMessageBox *>(&dialog) != nullptr) {
    AnswerBox(dialog);
  } else {
    dialog.reject();
  }
}

void CModalAnswer::AnswerFileDialog(QFileDialog &dialog)
{
  auto *pNameEdit = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
  SFileDialog stRecord;
  stRecord.strTitle = dialog.windowTitle().toStdString();
  stRecord.strDirectory = dialog.directory().absolutePath().toStdString();
  stRecord.strFilter = dialog.nameFilters().join(QStringLiteral(";;")).toStdString();
  stRecord.strProposed = pNameEdit == nullptr ? std::string() : pNameEdit->text().toStdString();
  if (pNameEdit != nullptr && !m_strFile.isEmpty()) {
    pNameEdit->setText(QFileInfo(m_strFile).absoluteFilePath());
    QMetaObject::invokeMethod(&dialog, "accept");
    stRecord.bAccepted = dialog.result() == QDialog::Accepted;
  }
  m_listFileDialogs.push_back(stRecord);
  if (!stRecord.bAccepted) {
    dialog.reject();
  }
}

void CModalAnswer::AnswerBox(QDialog &dialog)
{
  // The toolkit's own boxes ask for leave to overwrite.
  const bool bAny = m_bAnyButton || !IsTipsMessageBox(dialog);
  QPushButton *pButton = FindButton(dialog, bAny, m_strButton);
  m_listBoxes.push_back(
    {ReadTitle(dialog), ReadMessage(dialog), pButton == nullptr ? std::string() : pButton->text().toStdString()});
  if (pButton != nullptr) {
    pButton->click();
  } else {
    dialog.reject();
  }
}

} // namespace ffc::test
