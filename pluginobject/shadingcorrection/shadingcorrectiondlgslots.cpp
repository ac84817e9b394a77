// The slots of the dialog, and what they share.
#include <exception>
#include <new>

#include <QCheckBox>
#include <QMessageBox>
#include <QPalette>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QStyle>

#include "pluginobject/shadingcorrection/framecountposition.h"
#include "pluginobject/shadingcorrection/process/acquisition/frameformat.h"
#include "pluginobject/shadingcorrection/process/steps.h"
#include "pluginobject/shadingcorrection/shadingcorrectiondlg.h"
#include "pluginobject/shadingcorrection/tipsmessagebox/tipsmessagebox.h"
#include "pluginobject/statuscode.h"
#include "ui_shadingcorrectiondlg.h"

using ffc::dialog::CSlotScope;
using ffc::dialog::EBusy;
using ffc::dialog::FrameCountToPosition;
using ffc::dialog::PositionToFrameCount;
using ffc::dialog::SnapPosition;
using ffc::pluginobject::ETextAudience;
using ffc::pluginobject::GetStatusSourceText;
using ffc::process::CheckDeliveredImage;
using ffc::process::CScopeGuard;

namespace {

constexpr Qt::GlobalColor SUCCESS_COLOUR = Qt::black;
constexpr Qt::GlobalColor WARNING_COLOUR = Qt::red;

// Limits on an 8-bit scale.
constexpr double DARK_MAX_GRAY = 20.0;
// The user is asked above 5.0 and not at it. The process has a limit of its own, below which a dark frame is good: they
// differ on purpose at 5.0 itself.
constexpr double DARK_MAX_DIFF = 5.0;
constexpr double BRIGHT_MIN_GRAY = 20.0;
constexpr double BRIGHT_MAX_GRAY = 250.0;

constexpr int EXPECT_GRAY_END = 256;

// Whether the host may go on correcting frames.
enum class EFrames { AsTheyAre, Uncorrected };

// When to look whether the camera and the host are fit for an acquisition.
enum class ECheck { Never, First, WhileBusy };

// How an operation ended.
enum class EEnd {
  NotRun,
  DialogGone, // the dialog's service ended meanwhile
  Thrown,     // and the user was told
  Returned,
};

// What the exception in flight says of itself; null for one that says nothing.
QString DescribeException()
{
  try {
    throw;
  } catch (const GenICam::GenericException &exception) {
    return QString::fromUtf8(exception.GetDescription());
  } catch (const std::exception &exception) {
    return QString::fromUtf8(exception.what());
  } catch (...) {
    return {};
  }
}

} // namespace

// An operation of the process, and what is to hold while it runs.
struct CShadingCorrectionDlg::SOperation {
  int32_t (IShadingCorrectionProcess::*fnRun)() = nullptr;
  EFrames eFrames = EFrames::AsTheyAre;
  EBusy eBusy = EBusy::No;
  // Of an acquisition.
  QPushButton *pButton = nullptr;
  ECheck eCheck = ECheck::Never;

  bool IsAcquisition() const { return eCheck != ECheck::Never; }
};

// What came of it.
struct CShadingCorrectionDlg::SOutcome {
  int32_t nStatus = PLUGIN_STATUS_SUCCESS; // its own, or why it did not run
  EEnd eEnd = EEnd::NotRun;

  bool IsDone() const { return eEnd == EEnd::Returned && nStatus == PLUGIN_STATUS_SUCCESS; }
};

// Every slot runs in here. Nothing that its body throws may reach the toolkit, which would end the host; the dialog and
// its process outlive it, whatever happens in the event loops that it opens; what it was busy with ends after its
// status is reported.
template <class TBody>
void CShadingCorrectionDlg::__RunSlot(TBody fnBody)
{
  if (m_bRetired) {
    return;
  }
  CSlotScope slot(m_slots, m_pProcess);
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

// Within a slot, every operation of the process that takes long or asks the user runs in here: checked, with the dialog
// busy, and with frames uncorrected, as it wants. What it throws is shown at once and leaves the silent status.
CShadingCorrectionDlg::SOutcome CShadingCorrectionDlg::__RunOperation(CSlotScope &slot, const SOperation &stOperation)
{
  const int32_t nBeginStatus = __BeginOperation(slot, stOperation);
  if (nBeginStatus != PLUGIN_STATUS_SUCCESS) {
    return {nBeginStatus, EEnd::NotRun};
  }
  const bool bUncorrected = stOperation.eFrames == EFrames::Uncorrected;
  const bool bPreview = bUncorrected && m_pLiveFrames->StopPreview();
  SOutcome stOutcome{PLUGIN_STATUS_SUCCESS, EEnd::Returned};
  QString strThrown;
  try {
    const QScopedValueRollback<bool> acquiring(m_bAcquiring, m_bAcquiring || stOperation.IsAcquisition());
    stOutcome.nStatus = (m_pProcess.get()->*stOperation.fnRun)();
  } catch (...) {
    strThrown = DescribeException();
    stOutcome = strThrown.isNull() ? SOutcome{PLUGIN_STATUS_UNKNOWN_ERROR, EEnd::Returned}
                                   : SOutcome{PLUGIN_STATUS_SILENT, EEnd::Thrown};
  }
  if (stOutcome.eEnd == EEnd::Thrown) {
    __ShowError(strThrown);
  }
  if (!__IsReady()) {
    stOutcome.eEnd = EEnd::DialogGone;
  } else if (bUncorrected && stOutcome.eEnd == EEnd::Returned) {
    __EndUncorrected(stOutcome.nStatus, bPreview);
  }
  return stOutcome;
}

// \return 0 when the operation is to run
int32_t CShadingCorrectionDlg::__BeginOperation(CSlotScope &slot, const SOperation &stOperation)
{
  if (!__IsReady()) {
    return stOperation.IsAcquisition() ? PLUGIN_STATUS_SILENT : PLUGIN_STATUS_INVALID_PARAM;
  }
  int32_t nStatus = stOperation.eCheck == ECheck::First ? __CheckAcquisition() : PLUGIN_STATUS_SUCCESS;
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  slot.BeBusy(stOperation.eBusy, stOperation.pButton);
  if (__IsReady() && stOperation.eCheck == ECheck::WhileBusy) {
    nStatus = __CheckAcquisition();
  }
  return __IsReady() ? nStatus : PLUGIN_STATUS_SILENT;
}

// A cancelled operation has changed nothing. After one that failed frames stay uncorrected.
void CShadingCorrectionDlg::__EndUncorrected(int32_t nStatus, bool bPreview)
{
  if (nStatus == PLUGIN_STATUS_SILENT) {
    if (bPreview) {
      m_pLiveFrames->ResumePreview();
    }
  } else if (nStatus != PLUGIN_STATUS_SUCCESS) {
    __UncheckStoppedPreview();
  }
}

// Silent when an acquisition makes no sense now and there is nothing to be said about it.
int32_t CShadingCorrectionDlg::__CheckAcquisition()
{
  const int32_t nStatus = CheckDeliveredImage(m_outputFeatures, m_deviceFeatures);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus == PLUGIN_STATUS_DEVICE_PARAMS_MODIFIED ? nStatus : PLUGIN_STATUS_SILENT;
  }
  if (!__IsReady()) {
    return PLUGIN_STATUS_SILENT;
  }
  return m_pProcess->IsPixelFormatSupported() ? PLUGIN_STATUS_SUCCESS : PLUGIN_STATUS_NEED_BAYER_FORMAT;
}

// The host's correction was stopped and its coefficients are still in force: the user may tick the box again.
void CShadingCorrectionDlg::__UncheckStoppedPreview()
{
  if (__IsHostMode()) {
    m_pUi->PreviewcheckBox->setChecked(false);
  }
}

void CShadingCorrectionDlg::__ReportStatus(int32_t nStatus)
{
  if (nStatus != PLUGIN_STATUS_SUCCESS && nStatus != PLUGIN_STATUS_SILENT && !m_bRetired) {
    __ShowError(QObject::tr(GetStatusSourceText(nStatus, ETextAudience::Dialog)));
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
  __RunSlot([this, nValue](CSlotScope &) {
    const CScopeGuard showAccepted([this] {
      const QSignalBlocker blocker(m_pFrameCountSlider);
      m_pFrameCountSlider->setValue(m_nFrameSliderPos);
    });
    if (!__IsReady()) {
      return PLUGIN_STATUS_INVALID_PARAM;
    }
    const int nPosition = SnapPosition(nValue);
    m_nFrameCount = PositionToFrameCount(nPosition);
    const int32_t nStatus = m_pProcess->SetFrameCount("FFCFrameCount_" + std::to_string(m_nFrameCount));
    if (nStatus == PLUGIN_STATUS_SUCCESS) {
      m_nFrameSliderPos = nPosition;
    }
    return nStatus;
  });
}

void CShadingCorrectionDlg::Slot_objExpectGrayValue_Slider_valueChanged(int nValue)
{
  __RunSlot([this, nValue](CSlotScope &) {
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
  });
}

void CShadingCorrectionDlg::Slot_objExpectGrayValue_SpinBox_valueChanged(int nValue)
{
  __RunSlot([this, nValue](CSlotScope &) {
    if (nValue < EXPECT_GRAY_END) {
      m_pExpectGraySlider->setValue(nValue);
    } else {
      m_pUi->ExpectGrayspinBox->setValue(m_nExpectGray);
    }
    return PLUGIN_STATUS_SUCCESS;
  });
}

void CShadingCorrectionDlg::Slot_objAcquisitionDarkFrame_Button_clicked()
{
  __RunSlot([this](CSlotScope &slot) {
    const SOutcome stOutcome = __RunOperation(slot, {&IShadingCorrectionProcess::AcquireDarkImage, EFrames::Uncorrected,
                                                     EBusy::Button, m_pUi->AcquisitionDarkFrame_Button, ECheck::First});
    if (stOutcome.IsDone()) {
      __ShowDarkVerdict();
      m_bFFCExecuted = false;
      m_pUi->PreviewcheckBox->setChecked(false);
      __ApplyEnableRule();
    }
    return stOutcome.nStatus;
  });
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
  __RunSlot([this](CSlotScope &slot) {
    const SOutcome stOutcome =
      __RunOperation(slot, {&IShadingCorrectionProcess::AcquireBrightImage, EFrames::Uncorrected, EBusy::Button,
                            m_pUi->AcquisitionBrightFrame_Button, ECheck::WhileBusy});
    return stOutcome.IsDone() ? __AcceptBright() : stOutcome.nStatus;
  });
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
  __RunSlot([this](CSlotScope &slot) {
    const SOutcome stOutcome =
      __RunOperation(slot, {&IShadingCorrectionProcess::ExecuteCorrection, EFrames::Uncorrected, EBusy::Cursor});
    if (stOutcome.eEnd == EEnd::Thrown || stOutcome.eEnd == EEnd::DialogGone) {
      // The controls stay as they were.
      return stOutcome.nStatus;
    }
    if (stOutcome.eEnd == EEnd::Returned) {
      m_bFFCExecuted = stOutcome.IsDone();
      __ShowExecuteResult();
    }
    __SetPreview(m_bFFCExecuted);
    return stOutcome.nStatus;
  });
}

void CShadingCorrectionDlg::__ShowExecuteResult()
{
  if (__IsHostMode()) {
    // The success text comes with the first corrected frame.
    if (m_bFFCExecuted) {
      m_pLiveFrames->SetPreview(true);
    }
  } else if (m_bFFCExecuted) {
    __ShowPrompt(tr("FFC executed successfully"), SUCCESS_COLOUR);
  } else {
    __ShowPrompt(tr("Failed to execute FFC"), WARNING_COLOUR);
  }
}

void CShadingCorrectionDlg::SlotShowInfo(bool bStutas)
{
  __RunSlot([this, bStutas](CSlotScope &) {
    if (bStutas) {
      __ShowPrompt(tr("FFC executed successfully"), SUCCESS_COLOUR);
    } else {
      __ShowPrompt(tr("Failed to execute FFC. Please Acquired bright filed images and executed FFC again"),
                   WARNING_COLOUR);
      __SetPreview(false);
    }
    return PLUGIN_STATUS_SUCCESS;
  });
}

void CShadingCorrectionDlg::SlotPreviewCorrectionEffect(bool checked)
{
  __RunSlot([this, checked](CSlotScope &) {
    // With a process there are device features.
    if (!__IsReady()) {
      return PLUGIN_STATUS_SUCCESS;
    }
    if (!__IsHostMode()) {
      return m_deviceFeatures.SetEnumFeature("FlatFieldCorrection", checked ? "On" : "Off");
    }
    m_pLiveFrames->SetPreview(checked);
    return PLUGIN_STATUS_SUCCESS;
  });
}

void CShadingCorrectionDlg::Slot_objLoadFlash_Button_clicked()
{
  __RunSlot([this](CSlotScope &slot) {
    const SOutcome stOutcome =
      __RunOperation(slot, {&IShadingCorrectionProcess::LoadFromFlash, EFrames::AsTheyAre, EBusy::Cursor});
    if (stOutcome.IsDone()) {
      __ReloadSettings();
    }
    return stOutcome.nStatus;
  });
}

void CShadingCorrectionDlg::Slot_objSaveFlash_Button_clicked()
{
  __RunSlot([this](CSlotScope &slot) {
    return __RunOperation(slot, {&IShadingCorrectionProcess::SaveToFlash, EFrames::AsTheyAre, EBusy::Cursor}).nStatus;
  });
}

void CShadingCorrectionDlg::Slot_objLoadPC_Button_clicked()
{
  __RunSlot([this](CSlotScope &slot) {
    const SOutcome stOutcome =
      __RunOperation(slot, {&IShadingCorrectionProcess::LoadFromFile, EFrames::Uncorrected, EBusy::No});
    if (stOutcome.eEnd == EEnd::Thrown) {
      __UncheckStoppedPreview();
    } else if (stOutcome.IsDone() && __IsHostMode()) {
      m_bFFCExecuted = true;
      __SetPreview(true);
      m_pLiveFrames->ResumePreview();
    } else if (stOutcome.IsDone()) {
      __ReloadSettings();
    }
    return stOutcome.nStatus;
  });
}

void CShadingCorrectionDlg::Slot_objSavePC_Button_clicked()
{
  __RunSlot([this](CSlotScope &slot) {
    const int32_t nStatus =
      __RunOperation(slot, {&IShadingCorrectionProcess::SaveToFile, EFrames::AsTheyAre, EBusy::No}).nStatus;
    if (m_bRetired && nStatus != PLUGIN_STATUS_SUCCESS && nStatus != PLUGIN_STATUS_SILENT) {
      // The camera went while the user chose a file: that nothing is in it must be said all the same.
      __ShowError(QObject::tr(GetStatusSourceText(nStatus, ETextAudience::Dialog)));
    }
    return nStatus;
  });
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
  __RunSlot([this, &strInfo](CSlotScope &) {
    m_pUi->PromptInformation_label->setText(strInfo);
    return PLUGIN_STATUS_SUCCESS;
  });
}
