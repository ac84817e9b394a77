#include "host/dialogdriver/dialogdriver.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QPixmap>
#include <QSlider>
#include <QSpinBox>

namespace ffc::host {
namespace {

const char *const DIALOG_NAME = "ShadingCorrectionDlg";
const char *const DARK_BUTTON = "AcquisitionDarkFrame_Button";
const char *const BRIGHT_BUTTON = "AcquisitionBrightFrame_Button";
const char *const EXECUTE_BUTTON = "ExecuteShadingCorrection_Button";
const char *const LOAD_FLASH_BUTTON = "LoadFlash_Button";
const char *const SAVE_FLASH_BUTTON = "SaveFlash_Button";
const char *const LOAD_BUTTON = "LoadPC_Button";
const char *const SAVE_BUTTON = "SavePC_Button";
const char *const PREVIEW_BOX = "PreviewcheckBox";
const char *const FRAME_SLIDER = "AcquisitionFrame_Slider";
const char *const GRAY_SPIN_BOX = "ExpectGrayspinBox";
const char *const PROMPT_LABEL = "PromptInformation_label";

template <class TWidget>
TWidget *Find(const QDialog &dialog, const char *pName)
{
  return dialog.findChild<TWidget *>(QLatin1String(pName));
}

/// 1, 2, 4, 8, 16 stand at 0, 4, 8, 12, 16.
constexpr int SLIDER_STEP = 4;

int GetSliderPosition(int nFrames)
{
  int nPosition = 0;
  for (; nFrames > 1; nFrames /= 2) {
    nPosition += SLIDER_STEP;
  }
  return nPosition;
}

} // namespace

QDialog *CDialogDriver::FindDialog()
{
  QDialog *pDialog = FindAnyDialog();
  return pDialog != nullptr && pDialog->isVisible() ? pDialog : nullptr;
}

QDialog *CDialogDriver::FindAnyDialog()
{
  for (QWidget *pWidget : QApplication::topLevelWidgets()) {
    QDialog *pDialog = qobject_cast<QDialog *>(pWidget);
    if (pDialog != nullptr && pDialog->objectName() == QLatin1String(DIALOG_NAME)) {
      return pDialog;
    }
  }
  return nullptr;
}

template <class TWidget, class TAction>
SDialogAnswer CDialogDriver::Act(const char *pName, const QString &strFile, TAction fnAction)
{
  TWidget *pWidget = Find<TWidget>(m_dialog, pName);
  if (pWidget == nullptr || !pWidget->isVisible() || !pWidget->isEnabled()) {
    SDialogAnswer stAnswer = ReadPrompt();
    const char *pWhy = pWidget == nullptr ? "missing" : pWidget->isVisible() ? "disabled" : "hidden";
    stAnswer.strBox = QStringLiteral("%1 is %2").arg(QLatin1String(pName), QLatin1String(pWhy));
    return stAnswer;
  }
  CModalAnswerer answerer(strFile);
  fnAction(*pWidget);
  QApplication::processEvents();
  SDialogAnswer stAnswer = ReadPrompt();
  stAnswer.strBox = answerer.GetMessages().join(QStringLiteral("; "));
  stAnswer.bFileChosen = answerer.HasAnsweredFileDialog();
  return stAnswer;
}

SDialogAnswer CDialogDriver::Click(const char *pName, const QString &strFile)
{
  return Act<QAbstractButton>(pName, strFile, [](QAbstractButton &button) { button.click(); });
}

SDialogAnswer CDialogDriver::AcquireDark()
{
  return Click(DARK_BUTTON);
}

SDialogAnswer CDialogDriver::AcquireBright()
{
  return Click(BRIGHT_BUTTON);
}

SDialogAnswer CDialogDriver::Execute()
{
  return Click(EXECUTE_BUTTON);
}

SDialogAnswer CDialogDriver::LoadFlash()
{
  return Click(LOAD_FLASH_BUTTON);
}

SDialogAnswer CDialogDriver::SaveFlash()
{
  return Click(SAVE_FLASH_BUTTON);
}

SDialogAnswer CDialogDriver::LoadFile(const QString &strPath)
{
  return Click(LOAD_BUTTON, strPath);
}

SDialogAnswer CDialogDriver::SaveFile(const QString &strPath)
{
  return Click(SAVE_BUTTON, strPath);
}

SDialogAnswer CDialogDriver::SetFrameCount(int nFrames)
{
  return Act<QSlider>(FRAME_SLIDER, QString(),
                      [nFrames](QSlider &slider) { slider.setValue(GetSliderPosition(nFrames)); });
}

SDialogAnswer CDialogDriver::SetExpectGray(int nGray)
{
  return Act<QSpinBox>(GRAY_SPIN_BOX, QString(), [nGray](QSpinBox &spinBox) { spinBox.setValue(nGray); });
}

SDialogAnswer CDialogDriver::SetPreview(bool bOn)
{
  return Act<QCheckBox>(PREVIEW_BOX, QString(), [bOn](QCheckBox &preview) {
    if (preview.isChecked() != bOn) {
      preview.click();
    }
  });
}

int CDialogDriver::GetFrameCount() const
{
  const QSlider *pSlider = Find<QSlider>(m_dialog, FRAME_SLIDER);
  return pSlider == nullptr ? 0 : 1 << (pSlider->value() / SLIDER_STEP);
}

int CDialogDriver::GetExpectGray() const
{
  const QSpinBox *pSpinBox = Find<QSpinBox>(m_dialog, GRAY_SPIN_BOX);
  return pSpinBox == nullptr ? 0 : pSpinBox->value();
}

bool CDialogDriver::IsExecuteEnabled() const
{
  const QWidget *pButton = Find<QWidget>(m_dialog, EXECUTE_BUTTON);
  return pButton != nullptr && pButton->isEnabled();
}

bool CDialogDriver::IsAcquiringBright() const
{
  const QWidget *pButton = Find<QWidget>(m_dialog, BRIGHT_BUTTON);
  return pButton != nullptr && !pButton->isEnabled();
}

bool CDialogDriver::IsPreviewOn() const
{
  const QCheckBox *pPreview = Find<QCheckBox>(m_dialog, PREVIEW_BOX);
  return pPreview != nullptr && pPreview->isEnabled() && pPreview->isChecked();
}

bool CDialogDriver::IsPreviewOffered() const
{
  const QWidget *pPreview = Find<QWidget>(m_dialog, PREVIEW_BOX);
  return pPreview != nullptr && pPreview->isEnabled();
}

QStringList CDialogDriver::ListEnabledControls() const
{
  QStringList listNames;
  for (const QWidget *pWidget : m_dialog.findChildren<QWidget *>()) {
    const bool bControl = qobject_cast<const QAbstractButton *>(pWidget) != nullptr ||
                          qobject_cast<const QAbstractSlider *>(pWidget) != nullptr ||
                          qobject_cast<const QAbstractSpinBox *>(pWidget) != nullptr;
    if (bControl && pWidget->isEnabled() && !IsInTitleBar(*pWidget, m_dialog)) {
      listNames << pWidget->objectName();
    }
  }
  return listNames;
}

SDialogAnswer CDialogDriver::ReadPrompt() const
{
  SDialogAnswer stAnswer;
  if (const QLabel *pLabel = Find<QLabel>(m_dialog, PROMPT_LABEL)) {
    stAnswer.strPrompt = pLabel->text();
    stAnswer.bWarning = pLabel->palette().color(QPalette::WindowText) == QColor(Qt::red);
  }
  return stAnswer;
}

QImage CDialogDriver::GrabPicture()
{
  return m_dialog.grab().toImage();
}

} // namespace ffc::host
