// Set-up of the dialog, and its service. The slots are in shadingcorrectiondlgslots.cpp.
#include "pluginobject/shadingcorrection/shadingcorrectiondlg.h"

#include <utility>

#include <QCoreApplication>
#include <QFile>
#include <QPixmap>

#include "pluginobject/shadingcorrection/toolstitlebar.h"
#include "pluginobject/statuscode.h"
#include "ui_shadingcorrectiondlg.h"

using ffc::process::CreateShadingCorrectionProcess;
using ffc::process::EProcessKind;
using ffc::process::FnCreateProcess;

namespace {

constexpr int TITLE_POINT_SIZE = 8;

const auto MODE_FLAT_FIELD = QStringLiteral("FlatFieldCorrection");
const auto MODE_VIGNETTING = QStringLiteral("TailorFlatFieldCorrection");

GenApi::INodeMap *ToNodeMap(void *pNodeMap)
{
  return static_cast<GenApi::INodeMap *>(pNodeMap);
}

} // namespace

CShadingCorrectionDlg::CShadingCorrectionDlg(QWidget *pParent, const PLUGIN_INIT_PARAM &stInitParam,
                                             std::shared_ptr<ffc::dialog::CLiveFrames> pLiveFrames)
  : QDialog(pParent), m_pUi(std::make_unique<Ui::ShadingCorrectionDlg>()),
    m_outputFeatures(ToNodeMap(stInitParam.pOutputNodeMap)), m_streamFeatures(ToNodeMap(stInitParam.pStreamNodeMap)),
    m_deviceFeatures(ToNodeMap(stInitParam.pDeviceNodeMap)), m_fnCreateProcess(CreateShadingCorrectionProcess),
    m_pLiveFrames(std::move(pLiveFrames))
{
  m_pLiveFrames->Attach([this](bool bCorrected) { emit SetInfoShowSignal(bCorrected); });
  m_pUi->setupUi(this);
  m_pFrameCountSlider = m_pUi->AcquisitionFrame_Slider;
  m_pExpectGraySlider = m_pUi->ExpectGrayValue_Slider;
  __LoadStyleSheet();
  for (QPushButton *pButton : {m_pUi->AcquisitionDarkFrame_Button, m_pUi->AcquisitionBrightFrame_Button,
                               m_pUi->ExecuteShadingCorrection_Button, m_pUi->LoadFlash_Button, m_pUi->SaveFlash_Button,
                               m_pUi->LoadPC_Button, m_pUi->SavePC_Button}) {
    pButton->setAutoDefault(false);
  }
  m_pUi->SaveFlash_Button->setToolTip(
    tr("This operation will save the user sets and set the startup sets to UserSet0"));
  m_pUi->Prompt2621Info_label->hide();
  __LoadWindowIcon();
  if (pParent != nullptr) {
    // Comes before the parent deletes its children: widgets that called a slot must outlive it.
    connect(pParent, &QObject::destroyed, this, [this] {
      if (!m_slots.IsEmpty()) {
        setParent(nullptr, windowFlags());
      }
    });
  }
}

CShadingCorrectionDlg::~CShadingCorrectionDlg()
{
  // A retired one has no share in it any more; its successor may.
  if (!m_bRetired) {
    m_pLiveFrames->Detach();
  }
}

void CShadingCorrectionDlg::__LoadStyleSheet()
{
  QFile file(QStringLiteral(":/skin/style/PlugAcqstatusSetting.qss"));
  if (file.open(QIODevice::ReadOnly)) {
    setStyleSheet(QString::fromLatin1(file.readAll()));
  }
}

void CShadingCorrectionDlg::__LoadWindowIcon()
{
  QPixmap pixmap;
  if (pixmap.load(QCoreApplication::applicationDirPath() + QStringLiteral("/resource/oem/images/logo.png"))) {
    setWindowIcon(QIcon(pixmap));
  }
}

void CShadingCorrectionDlg::SetProcessFactory(FnCreateProcess fnCreateProcess)
{
  m_fnCreateProcess = std::move(fnCreateProcess);
}

int32_t CShadingCorrectionDlg::InitDialog()
{
  setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::FramelessWindowHint);
  __CreateTitleBar();
  if (!m_deviceFeatures.HasNodeMap()) {
    return PLUGIN_STATUS_INVALID_PARAM;
  }
  const int32_t nStatus = __CreateProcess();
  if (nStatus != PLUGIN_STATUS_SUCCESS || m_pProcess == nullptr) {
    return nStatus;
  }
  const int32_t nInitStatus = m_pProcess->InitProcess();
  if (nInitStatus == PLUGIN_STATUS_SUCCESS) {
    __LoadControls();
    __ConnectControls();
  }
  return nInitStatus;
}

void CShadingCorrectionDlg::__CreateTitleBar()
{
  // A dialog that is initialised again keeps its one title bar.
  if (m_pTitleBar == nullptr) {
    m_pTitleBar = new QToolsTitleBar(this);
  }
  m_pTitleBar->setTitleIcon(false, QString());
  m_pTitleBar->setTitleContent(windowTitle(), TITLE_POINT_SIZE);
  m_pTitleBar->setTitleWidth(width());
  m_pTitleBar->setButtonType(2);
  m_pTitleBar->setWindowBorderWidth(0);
}

// What the camera offers decides who corrects.
int32_t CShadingCorrectionDlg::__ChooseProcess(EProcessKind &eKind, bool &bInert)
{
  int32_t nStatus = m_deviceFeatures.IsFeatureImplemented("ShadingCorrectionMode", m_bModeFeatureAvailable);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  bInert = false;
  eKind = EProcessKind::HostFlatField;
  if (__IsHostMode()) {
    return PLUGIN_STATUS_SUCCESS;
  }
  std::string strMode;
  nStatus = m_deviceFeatures.GetEnumFeature("ShadingCorrectionMode", strMode);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  m_strShadingCorrectionMode = QString::fromStdString(strMode);
  eKind =
    m_strShadingCorrectionMode == MODE_FLAT_FIELD ? EProcessKind::DeviceFlatField : EProcessKind::DeviceVignetting;
  bInert = m_strShadingCorrectionMode != MODE_FLAT_FIELD && m_strShadingCorrectionMode != MODE_VIGNETTING;
  return PLUGIN_STATUS_SUCCESS;
}

// No process and status 0: the camera's mode is none that this dialog serves, and the dialog is inert.
int32_t CShadingCorrectionDlg::__CreateProcess()
{
  EProcessKind eKind = EProcessKind::HostFlatField;
  bool bInert = false;
  const int32_t nStatus = __ChooseProcess(eKind, bInert);
  if (nStatus != PLUGIN_STATUS_SUCCESS) {
    return nStatus;
  }
  if (bInert) {
    __DisableEverything();
    return PLUGIN_STATUS_SUCCESS;
  }
  if (eKind == EProcessKind::HostFlatField) {
    m_pUi->LoadFlash_Button->setEnabled(false);
    m_pUi->SaveFlash_Button->setEnabled(false);
  } else if (eKind == EProcessKind::DeviceVignetting) {
    m_pUi->AcquisitionDarkFrame_Button->setEnabled(false);
    m_pUi->groupBox_5->setEnabled(false);
    m_pUi->Prompt2621Info_label->show();
  }
  std::unique_ptr<IShadingCorrectionProcess> pProcess;
  const int32_t nCreateStatus = m_fnCreateProcess(eKind, m_deviceFeatures, m_streamFeatures, pProcess);
  m_pProcess = std::move(pProcess);
  m_pLiveFrames->SetProcess(m_pProcess.get(), __IsHostMode());
  return nCreateStatus;
}

void CShadingCorrectionDlg::__DisableEverything()
{
  const std::initializer_list<QWidget *> listWidgets = {
    m_pUi->groupBox_2,
    m_pUi->AcquisitionDarkFrame_Button,
    m_pUi->AcquisitionBrightFrame_Button,
    m_pUi->PreviewcheckBox,
    m_pUi->ExecuteShadingCorrection_Button,
    m_pUi->groupBox_5,
    m_pUi->LoadFlash_Button,
    m_pUi->SaveFlash_Button,
    m_pUi->LoadPC_Button,
    m_pUi->SavePC_Button,
    m_pUi->groupBox_6,
  };
  for (QWidget *pWidget : listWidgets) {
    pWidget->setEnabled(false);
  }
  m_pUi->PromptInformation_label->setText(QString());
}

void CShadingCorrectionDlg::__LoadControls()
{
  const FFCInfo stInfo = m_pProcess->GetCorrectionInfo();
  m_pFrameCountSlider->setSingleStep(4);
  m_pFrameCountSlider->setMinimum(0);
  m_pFrameCountSlider->setMaximum(16);
  __SetFrameCount(stInfo.nFrameCount);
  if (m_strShadingCorrectionMode != MODE_VIGNETTING) {
    m_nExpectGray = static_cast<int32_t>(stInfo.nExpectGray);
    m_pExpectGraySlider->setRange(0, 255);
    m_pExpectGraySlider->setSingleStep(1);
    m_pExpectGraySlider->setValue(m_nExpectGray);
    m_pUi->ExpectGrayspinBox->setValue(m_nExpectGray);
  }
  m_pUi->PromptInformation_label->setText(QString());
  __ApplyEnableRule();
}

void CShadingCorrectionDlg::__ConnectControls()
{
  using Dlg = CShadingCorrectionDlg;
  const auto valueChanged = qOverload<int>(&QSpinBox::valueChanged);
  connect(m_pFrameCountSlider, &QSlider::valueChanged, this, &Dlg::Slot_objAcquisitionFrame_Slider_valueChanged);
  connect(m_pUi->AcquisitionDarkFrame_Button, &QPushButton::clicked, this,
          &Dlg::Slot_objAcquisitionDarkFrame_Button_clicked);
  connect(m_pUi->AcquisitionBrightFrame_Button, &QPushButton::clicked, this,
          &Dlg::Slot_objAcquisitionBrightFrame_Button_clicked);
  connect(m_pUi->ExecuteShadingCorrection_Button, &QPushButton::clicked, this,
          &Dlg::Slot_objExecuteShadingCorrection_Button_clicked);
  connect(m_pExpectGraySlider, &QSlider::valueChanged, this, &Dlg::Slot_objExpectGrayValue_Slider_valueChanged);
  connect(m_pUi->ExpectGrayspinBox, valueChanged, this, &Dlg::Slot_objExpectGrayValue_SpinBox_valueChanged);
  connect(m_pUi->LoadFlash_Button, &QPushButton::clicked, this, &Dlg::Slot_objLoadFlash_Button_clicked);
  connect(m_pUi->SaveFlash_Button, &QPushButton::clicked, this, &Dlg::Slot_objSaveFlash_Button_clicked);
  connect(m_pUi->LoadPC_Button, &QPushButton::clicked, this, &Dlg::Slot_objLoadPC_Button_clicked);
  connect(m_pUi->SavePC_Button, &QPushButton::clicked, this, &Dlg::Slot_objSavePC_Button_clicked);
  connect(m_pProcess.get(), &IShadingCorrectionProcess::SigAcquisitionStatusChanged, this, &Dlg::SigDlgStatusChanged);
  connect(m_pUi->PreviewcheckBox, &QCheckBox::clicked, this, &Dlg::SlotPreviewCorrectionEffect);
  connect(this, &Dlg::SetInfoShowSignal, this, &Dlg::SlotShowInfo);
}

void CShadingCorrectionDlg::ReleaseProcess()
{
  m_bBrightAcquired = false;
  m_bFFCExecuted = false;
  if (m_pProcess == nullptr) {
    return;
  }
  // A slot on the stack may go on in the process, which then speaks to nobody.
  disconnect(m_pProcess.get(), nullptr, this, nullptr);
  if (m_bAcquiring) {
    (void)m_pProcess->RestoreDeviceParam(); // always 0
  }
  m_pLiveFrames->SetProcess(nullptr, false);
  m_pProcess.reset();
}

void CShadingCorrectionDlg::Retire()
{
  if (m_bRetired) {
    return;
  }
  m_bRetired = true;
  disconnect(this, &CShadingCorrectionDlg::SigDlgStatusChanged, nullptr, nullptr);
  ReleaseProcess();
  m_pLiveFrames->Detach();
  for (ffc::pluginobject::CFeatureAccess *pFeatures : {&m_deviceFeatures, &m_outputFeatures, &m_streamFeatures}) {
    pFeatures->Detach();
  }
  if (m_slots.IsEmpty()) {
    delete this;
    return;
  }
  // Who looks for the dialog by its name finds the one in service.
  setObjectName(QString());
  hide();
  m_slots.DeleteWhenEmpty(this);
}

void CShadingCorrectionDlg::SetDialogTitle(const QString &strTitle)
{
  if (m_pTitleBar != nullptr) {
    m_pTitleBar->setTitleContent(strTitle, TITLE_POINT_SIZE);
  }
}

void CShadingCorrectionDlg::showEvent(QShowEvent *pEvent)
{
  const ffc::dialog::CSlotScope slot(m_slots); // the host may end the service when it hears of this
  emit SigDlgStatusChanged(ffc::pluginobject::MakePluginMsg(PLUGIN_MSG_DIALOG_SHOWN));
  QDialog::showEvent(pEvent);
}

void CShadingCorrectionDlg::hideEvent(QHideEvent *pEvent)
{
  const ffc::dialog::CSlotScope slot(m_slots);
  emit SigDlgStatusChanged(ffc::pluginobject::MakePluginMsg(PLUGIN_MSG_DIALOG_HIDDEN));
  QWidget::hideEvent(pEvent);
}
