#include "host/dialogdriver/modalanswerer.h"

#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QTimer>

namespace ffc::host {
namespace {

constexpr int LOOK_INTERVAL_MS = 10;

/// The leftmost button with a text, which is the confirming one.
QPushButton *FindConfirmingButton(const QDialog &dialog)
{
  for (QPushButton *pButton : dialog.findChildren<QPushButton *>()) {
    if (pButton->isVisible() && pButton->isEnabled() && !pButton->text().isEmpty() && !IsInTitleBar(*pButton, dialog)) {
      return pButton;
    }
  }
  return nullptr;
}

} // namespace

bool IsInTitleBar(const QWidget &widget, const QDialog &dialog)
{
  for (const QWidget *pParent = &widget; pParent != &dialog; pParent = pParent->parentWidget()) {
    if (pParent->objectName() == QLatin1String("QToolsTitleBar")) {
      return true;
    }
  }
  return false;
}

QString ReadMessage(const QDialog &dialog)
{
  QStringList listTexts;
  for (const QLabel *pLabel : dialog.findChildren<QLabel *>()) {
    if (!pLabel->text().isEmpty() && !IsInTitleBar(*pLabel, dialog)) {
      listTexts << pLabel->text().simplified();
    }
  }
  return listTexts.join(QLatin1Char(' '));
}

CModalAnswerer::CModalAnswerer(const QString &strFile) : m_strFile(strFile)
{
  Arm();
}

void CModalAnswerer::Arm()
{
  // Armed anew for each look: a timer that is inside its own slot does not fire in a nested event loop,
  // and an answer may open the next box.
  QTimer::singleShot(LOOK_INTERVAL_MS, this, [this] { Look(); });
}

void CModalAnswerer::Look()
{
  Arm();
  QDialog *pDialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
  if (pDialog == nullptr || qobject_cast<QProgressDialog *>(pDialog) != nullptr) {
    return;
  }
  if (QFileDialog *pFileDialog = qobject_cast<QFileDialog *>(pDialog)) {
    AnswerFileDialog(*pFileDialog);
  } else if (!pDialog->testAttribute(Qt::WA_DontShowOnScreen)) {
    // (A box that stays off the screen is somebody else's to end: no user could answer it.)
    AnswerBox(*pDialog);
  }
}

void CModalAnswerer::AnswerFileDialog(QFileDialog &dialog)
{
  QLineEdit *pNameEdit = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
  if (m_strFile.isEmpty() || pNameEdit == nullptr || m_bFileDialogAnswered) {
    dialog.reject();
    return;
  }
  m_bFileDialogAnswered = true;
  pNameEdit->setText(QFileInfo(m_strFile).absoluteFilePath());
  QMetaObject::invokeMethod(&dialog, "accept");
}

void CModalAnswerer::AnswerBox(QDialog &dialog)
{
  m_listMessages << ReadMessage(dialog);
  QPushButton *pButton = FindConfirmingButton(dialog);
  if (pButton != nullptr) {
    pButton->click();
  } else {
    dialog.reject();
  }
}

} // namespace ffc::host
