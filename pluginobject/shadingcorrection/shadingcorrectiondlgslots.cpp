// The slots of the dialog, and what they share.
#include <exception>
#include <new>

#include <QCheckBox>
#include <QMessageBox>
#include <QPalette>
#include <QSignalBlocker>
#include <QStyle>

#include "pluginobject/shadingcorrection/deliveredimagecheck.h"
#include "pluginobject/shadingcorrection/framecountposition.h"
#include "pluginobject/shadingcorrection/shadingcorrectiondlg.h"
#include "pluginobject/shadingcorrection/tipsmessagebox/tipsmessagebox.h"
#include "pluginobject/statuscode.h"
#include "ui_shadingcorrectiondlg.h"

namespace {

constexpr Qt::GlobalColor SUCCESS_COLOUR = Qt::black;
constexpr Qt::GlobalColor WARNING_COLOUR = Qt::red;

// Limits on an 8-bit scale.
constexpr double DARK_MAX_GRAY = 20.0;
constexpr double DARK_MAX_DIFF = 5.0;
constexpr double BRIGHT_MIN_GRAY = 20.0;
constexpr double BRIGHT_MAX_GRAY = 250.0;

constexpr int EXPECT_GRAY_END = 256;

} // namespace

void CShadingCorrectionDlg::__ReportStatus(int32_t nStatus)
{
  if (nStatus != PLUGIN_STATUS_SUCCESS && nStatus != PLUGIN_STATUS_SILENT && !m_bRetired) {
    __ShowError(QObject::tr(GetStatusSourceText(nStatus, EStatusTextAudience::Dialog)));
  }
}

void CShadingCorrectionDlg::__ShowError(const QString &strText)
{
  m_slots.PopCursors();
  try {
    CTipsMessageBox::Error(this, tr("Error"), strText, QMessageBox::Ok, QMessageBox::NoButton);
  } catch (const std::bad_alloc &) {
    // Without memory for a box there is the prompt line.
    __ShowPrompt(strText, WARNING_COLOUR);
  }
}

// Every slot runs in here. Nothing that its body throws may reach the toolkit, which would end the host; the dialog and
// its process outlive it, whatever happens in the event loops that it opens; what it was busy with ends after its
// status is reported.
template <typename TBody>
void CShadingCorrectionDlg::__RunSlot(TBody fnBody)
{
  if (m_bRetired) {
    return;
  }
  ffc::dialog::CSlotScope slot(m_slots, m_pProcess);
  int32_t nStatus = PLUGIN_STATUS_SUCCESS;
  try {
    nStatus = fnBody(slot);
  } catch (const std::bad_alloc &) {
    nStatus = PLUGIN_STATUS_OUT_OF_MEMORY;
  } catch (...) {
    nStatus = PLUGIN_STATUS_UNKNOWN_ERROR;
  }
  slot.PopCursor();
  __ReportStatus(nStatus);
  slot.EndBusy();
}

// A style sheet overrules a palette: of the sheets in force ours, which is nearest to the label, has a rule for each
// value of the property.
void CShadingCorrectionDlg::__ShowPrompt(const QString &strText, Qt::GlobalColor eColor)
{
  QLabel *pLabel = m_pUi->PromptInformation_label;
  QPalette palette = pLabel->palette();
  palette.setColor(QPalette::WindowText, eColor);
  pLabel->setPalette(palette);
  pLabel->setProperty("warning", eColor == WARNING_COLOUR);
  pLabel->style()->unpolish(pLabel);
  pLabel->style()->polish(pLabel);
  pLabel->setText(strText);
}

// Runs an operation of the process. What it throws is shown at once and leaves the silent status.
template <typename TOperation>
int32_t CShadingCorrectionDlg::__CallProcess(TOperation fnOperation)
{
  QString strDescription;
  try {
    return fnOperation();
  } catch (const GenICam::GenericException &exception) {
    strDescription = QString::fromUtf8(exception.GetDescription());
  } catch (const std::exception &exception) {
    strDescription = QString::fromUtf8(exception.what());
  } catch (...) {
    return PLUGIN_STATUS_UNKNOWN_ERROR;
  }
  __ShowError(strDescription);
  return PLUGIN_STATUS_SILENT;
}

// Runs an acquisition, which must see uncorrected frames. Frames stay uncorrected when it fails.
template <typename TOperation>
int32_t CShadingCorrectionDlg::__Acquire(TOperation fnOperation)
{
  (void)m_pLiveFrames->StopPreview();
  m_bAcquiring = true;
  const int32_t nStatus = __CallProcess(fnOperation);
  m_bAcquiring = false;
  if (nStatus != PLUGIN_STATUS_SUCCESS && nStatus != PLUGIN_STATUS_SILENT) {
    __UncheckStoppedPreview();
  }
  return nStatus;
}

// The host's correction was stopped and its coefficients are still in force: the user may tick the box again.
void CShadingCorrectionDlg::__UncheckStoppedPreview()
{
  if (__IsReady() && __IsHostMode()) {
    m_pUi->PreviewcheckBox->setChecked(false);
  }
}

// Silent when an acquisition makes no sense now and there is nothing to be said about it.
int32_t CShadingCorrectionDlg::__CheckAcquisition()
{
  const int32_t nStatus = CheckDeliveredImage(m_outputFeatures, m_deviceFeatures);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus == PLUGIN_STATUS_DEVICE_PARAMS_MODIFIED ? nStatus : PLUGIN_STATUS_SILENT;
  }
  return m_pProcess->IsPixelFormatSupported() ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_NEED_BAYER_FORMAT;
}

void CShadingCorrectionDlg::__ForgetExecution()
{
  m_bFFCExecuted = false;
  m_pUi->PreviewcheckBox->setChecked(false);
  __ApplyEnableRule();
}

void CShadingCorrectionDlg::__ApplyEnableRule()
{
  m_pUi->ExecuteShadingCorrection_Button->setEnabled(m_bBrightAcquired);
  m_pUi->PreviewcheckBox->setEnabled(m_bFFCExecuted);
}

void CShadingCorrectionDlg::__SetPreview(bool bAvailableAndOn)
{
  m_pUi->PreviewcheckBox->setEnabled(bAvailableAndOn);
  m_pUi->PreviewcheckBox->setChecked(bAvailableAndOn);
}

void CShadingCorrectionDlg::__SetFrameCount(uint32_t nFrameCount)
{
  m_nFrameCount = static_cast<int32_t>(nFrameCount);
  m_nFrameSliderPos = FrameCountToPosition(m_nFrameCount);
  m_pFrameCountSlider->setValue(m_nFrameSliderPos);
}

void CShadingCorrectionDlg::Slot_objAcquisitionFrame_Slider_valueChanged(int nValue)
{
  __RunSlot([this, nValue](auto &) { return __ChangeFrameCount(nValue); });
}

int32_t CShadingCorrectionDlg::__ChangeFrameCount(int nValue)
{
  if (m_pUi == nullptr) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  int32_t nStatus = PLUGIN_STATUS_INVALID_PARAM;
  if (m_pProcess != nullptr) {
    const int nPosition = SnapPosition(nValue);
    m_nFrameCount = PositionToFrameCount(nPosition);
    nStatus = m_pProcess->SetFrameCount("FFCFrameCount_" + std::to_string(m_nFrameCount));
    if (nStatus == PLUGIN_STATUS_SUCCESS) {
      m_nFrameSliderPos = nPosition;
    }
  }
  const QSignalBlocker blocker(m_pFrameCountSlider);
  m_pFrameCountSlider->setValue(m_nFrameSliderPos);
  return nStatus;
}

void CShadingCorrectionDlg::Slot_objExpectGrayValue_Slider_valueChanged(int nValue)
{
  __RunSlot([this, nValue](auto &) { return __ChangeExpectGray(nValue); });
}

int32_t CShadingCorrectionDlg::__ChangeExpectGray(int nValue)
{
  if (!__IsReady()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  const int32_t nStatus = m_pProcess->SetExpectGray(nValue);
  if (nStatus == PLUGIN_STATUS_SUCCESS) {
    m_nExpectGray = nValue;
    m_pUi->ExpectGrayspinBox->setValue(nValue);
  } else {
    const QSignalBlocker blocker(m_pExpectGraySlider);
    m_pExpectGraySlider->setValue(m_nExpectGray);
    m_pUi->ExpectGrayspinBox->setValue(m_nExpectGray);
  }
  return nStatus;
}

void CShadingCorrectionDlg::Slot_objExpectGrayValue_SpinBox_valueChanged(int nValue)
{
  __RunSlot([this, nValue](auto &) { return __ChangeExpectGrayBox(nValue); });
}

int32_t CShadingCorrectionDlg::__ChangeExpectGrayBox(int nValue)
{
  if (m_pUi == nullptr) {
    return PLUGIN_STATUS_SUCCESS;
  }
  if (nValue < EXPECT_GRAY_END) {
    m_pExpectGraySlider->setValue(nValue);
  } else {
    m_pUi->ExpectGrayspinBox->setValue(m_nExpectGray);
  }
  return PLUGIN_STATUS_SUCCESS;
}

void CShadingCorrectionDlg::Slot_objAcquisitionDarkFrame_Button_clicked()
{
  __RunSlot([this](auto &slot) { return __AcquireDark(slot); });
}

int32_t CShadingCorrectionDlg::__AcquireDark(ffc::dialog::CSlotScope &slot)
{
  if (!__IsReady()) {
    return PLUGIN_STATUS_SUCCESS;
  }
  const int32_t nCheckStatus = __CheckAcquisition();
  if (nCheckStatus != PLUGIN_STATUS_SUCCESS) {
    return nCheckStatus;
  }
  slot.BeBusy(m_pUi->AcquisitionDarkFrame_Button);
  ffc::dialog::CBusyScope::Paint();
  if (!__IsReady()) {
    return PLUGIN_STATUS_SUCCESS;
  }
  const int32_t nStatus = __Acquire([this] { return m_pProcess->AcquireDarkImage(); });
  if (nStatus == PLUGIN_STATUS_SUCCESS && __IsReady()) {
    __ShowDarkVerdict();
    __ForgetExecution();
  }
  return nStatus;
}

void CShadingCorrectionDlg::__ShowDarkVerdict()
{
  if (m_pProcess->GetImageMaxGray() > DARK_MAX_GRAY || m_pProcess->GetImageGrayDiff() > DARK_MAX_DIFF) {
    __ShowPrompt(tr("The dark field image is too bright, the flat field correction will not use the dark field "
                    "image,this will not affect the flat field correction effect"),
                 WARNING_COLOUR);
  } else if (!m_pProcess->IsBlackLevelDefault()) {
    __ShowPrompt(tr("The current black level is not the default value, the flat field correction will not use the "
                    "dark field image,this will not affect the flat field correction effect"),
                 WARNING_COLOUR);
  } else {
    __ShowPrompt(tr("Acquisition of dark field image complete"), SUCCESS_COLOUR);
  }
}

void CShadingCorrectionDlg::Slot_objAcquisitionBrightFrame_Button_clicked()
{
  __RunSlot([this](auto &slot) { return __AcquireBright(slot); });
}

int32_t CShadingCorrectionDlg::__AcquireBright(ffc::dialog::CSlotScope &slot)
{
  slot.BeBusy(m_pUi->AcquisitionBrightFrame_Button);
  ffc::dialog::CBusyScope::Paint();
  if (!__IsReady()) {
    return PLUGIN_STATUS_SUCCESS;
  }
  const int32_t nCheckStatus = __CheckAcquisition();
  if (nCheckStatus != PLUGIN_STATUS_SUCCESS) {
    return nCheckStatus;
  }
  const int32_t nStatus = __Acquire([this] { return m_pProcess->AcquireBrightImage(); });
  return nStatus == PLUGIN_STATUS_SUCCESS && __IsReady() ? __AcceptBright() : nStatus;
}

// Every completed bright field is accepted; too dark or too bright ones with a warning.
int32_t CShadingCorrectionDlg::__AcceptBright()
{
  const double dMaxGray = m_pProcess->GetImageMaxGray();
  if (dMaxGray < BRIGHT_MIN_GRAY) {
    __ShowPrompt(tr("The bright field image is too dark, it will affect the flat field correction effect,it is "
                    "recommended to adjust the brightness of the image in the range of 20-250"),
                 WARNING_COLOUR);
  } else if (dMaxGray > BRIGHT_MAX_GRAY) {
    __ShowPrompt(tr("The bright field image is too bright, it will affect the flat field correction effect,it is "
                    "recommended to adjust the brightness of the image in the range of 20-250"),
                 WARNING_COLOUR);
  } else {
    __ShowPrompt(tr("Acquisition of bright field images complete"), SUCCESS_COLOUR);
  }
  m_bBrightAcquired = true;
  m_bFFCExecuted = false;
  m_pUi->PreviewcheckBox->setChecked(false);
  int32_t nStatus = PLUGIN_STATUS_SUCCESS;
  if (__IsHostMode()) {
    const int nExpectGray = static_cast<int>(dMaxGray);
    nStatus = m_pProcess->SetExpectGray(nExpectGray);
    m_pExpectGraySlider->setValue(nExpectGray);
    m_pUi->ExpectGrayspinBox->setValue(nExpectGray);
  }
  __ApplyEnableRule();
  return nStatus;
}

void CShadingCorrectionDlg::Slot_objExecuteShadingCorrection_Button_clicked()
{
  __RunSlot([this](auto &slot) { return __Execute(slot); });
}

int32_t CShadingCorrectionDlg::__Execute(ffc::dialog::CSlotScope &slot)
{
  slot.BeBusy();
  int32_t nStatus = PLUGIN_STATUS_INVALID_PARAM;
  if (__IsReady()) {
    (void)m_pLiveFrames->StopPreview();
    nStatus = __CallProcess([this] { return m_pProcess->ExecuteCorrection(); });
    if (nStatus == PLUGIN_STATUS_SILENT || !__IsReady()) {
      // What it threw has been shown; the controls stay as they were.
      return nStatus;
    }
    m_bFFCExecuted = nStatus == PLUGIN_STATUS_SUCCESS;
    __ShowExecuteResult(nStatus);
  }
  __SetPreview(m_bFFCExecuted);
  return nStatus;
}

void CShadingCorrectionDlg::__ShowExecuteResult(int32_t nStatus)
{
  if (__IsHostMode()) {
    // The success text comes with the first corrected frame.
    if (m_bFFCExecuted) {
      m_pLiveFrames->SetPreview(true);
    }
  } else if (nStatus == PLUGIN_STATUS_SUCCESS) {
    __ShowPrompt(tr("FFC executed successfully"), SUCCESS_COLOUR);
  } else {
    __ShowPrompt(tr("Failed to execute FFC"), WARNING_COLOUR);
  }
}

void CShadingCorrectionDlg::SlotShowInfo(bool bStutas)
{
  __RunSlot([this, bStutas](auto &) { return __ShowInfo(bStutas); });
}

int32_t CShadingCorrectionDlg::__ShowInfo(bool bStatus)
{
  if (bStatus) {
    __ShowPrompt(tr("FFC executed successfully"), SUCCESS_COLOUR);
  } else {
    __ShowPrompt(tr("Failed to execute FFC. Please Acquired bright filed images and executed FFC again"),
                 WARNING_COLOUR);
    __SetPreview(false);
  }
  return PLUGIN_STATUS_SUCCESS;
}

void CShadingCorrectionDlg::SlotPreviewCorrectionEffect(bool checked)
{
  __RunSlot([this, checked](auto &) { return __SwitchPreview(checked); });
}

int32_t CShadingCorrectionDlg::__SwitchPreview(bool checked)
{
  if (!__IsReady() || !m_deviceFeatures.HasNodeMap()) {
    return PLUGIN_STATUS_SUCCESS;
  }
  if (!__IsHostMode()) {
    return m_deviceFeatures.SetEnumFeature("FlatFieldCorrection", checked ? "On" : "Off");
  }
  m_pLiveFrames->SetPreview(checked);
  return PLUGIN_STATUS_SUCCESS;
}

void CShadingCorrectionDlg::Slot_objLoadFlash_Button_clicked()
{
  __RunSlot([this](auto &slot) { return __LoadFlash(slot); });
}

int32_t CShadingCorrectionDlg::__LoadFlash(ffc::dialog::CSlotScope &slot)
{
  slot.BeBusy();
  if (!__IsReady()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  const int32_t nStatus = __CallProcess([this] { return m_pProcess->LoadFromFlash(); });
  if (nStatus == PLUGIN_STATUS_SUCCESS && __IsReady()) {
    __ReloadSettings();
  }
  return nStatus;
}

void CShadingCorrectionDlg::Slot_objSaveFlash_Button_clicked()
{
  __RunSlot([this](auto &slot) { return __SaveFlash(slot); });
}

int32_t CShadingCorrectionDlg::__SaveFlash(ffc::dialog::CSlotScope &slot)
{
  slot.BeBusy();
  return __IsReady() ? __CallProcess([this] { return m_pProcess->SaveToFlash(); }) : PLUGIN_STATUS_INVALID_PARAM;
}

void CShadingCorrectionDlg::Slot_objLoadPC_Button_clicked()
{
  __RunSlot([this](auto &) { return __LoadFile(); });
}

int32_t CShadingCorrectionDlg::__LoadFile()
{
  if (!__IsReady()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  const bool bApplied = m_pLiveFrames->StopPreview();
  bool bCancelled = false;
  const int32_t nStatus = __CallProcess([this, &bCancelled] {
    const int32_t nLoadStatus = m_pProcess->LoadFromFile();
    bCancelled = nLoadStatus == PLUGIN_STATUS_SILENT;
    return nLoadStatus;
  });
  if (!__IsReady()) {
    return nStatus;
  }
  if (bCancelled) {
    if (bApplied) {
      m_pLiveFrames->ResumePreview();
    }
  } else if (nStatus != PLUGIN_STATUS_SUCCESS) {
    __UncheckStoppedPreview();
  } else if (__IsHostMode()) {
    m_bFFCExecuted = true;
    __SetPreview(true);
    m_pLiveFrames->ResumePreview();
  } else {
    __ReloadSettings();
  }
  return nStatus;
}

void CShadingCorrectionDlg::Slot_objSavePC_Button_clicked()
{
  __RunSlot([this](auto &) { return __SaveFile(); });
}

int32_t CShadingCorrectionDlg::__SaveFile()
{
  if (!__IsReady()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  const int32_t nStatus = __CallProcess([this] { return m_pProcess->SaveToFile(); });
  if (m_bRetired && nStatus != PLUGIN_STATUS_SUCCESS && nStatus != PLUGIN_STATUS_SILENT) {
    // The camera went while the user chose a file: that nothing is in it must be said all the same.
    __ShowError(QObject::tr(GetStatusSourceText(nStatus, EStatusTextAudience::Dialog)));
  }
  return nStatus;
}

// The sliders' own slots write the loaded values back and update the rest.
void CShadingCorrectionDlg::__ReloadSettings()
{
  const FFCInfo stInfo = m_pProcess->GetCorrectionInfo();
  __SetFrameCount(stInfo.nFrameCount);
  if (m_strShadingCorrectionMode == QLatin1String("FlatFieldCorrection")) {
    m_pExpectGraySlider->setValue(static_cast<int>(stInfo.nExpectGray));
  }
}

void CShadingCorrectionDlg::Slot_objPromptInformation_label_clicked(QString strInfo)
{
  __RunSlot([this, &strInfo](auto &) {
    if (m_pUi != nullptr) {
      m_pUi->PromptInformation_label->setText(strInfo);
    }
    return PLUGIN_STATUS_SUCCESS;
  });
}
