/// \file
/// The correction dialog.
#pragma once

#include <cstdint>
#include <memory>

#include <QDialog>
#include <QSlider>
#include <QString>

#include "pluginobject/featureaccess.h"
#include "pluginobject/pluginrecords.h"
#include "pluginobject/shadingcorrection/liveframes.h"
#include "pluginobject/shadingcorrection/process/ishadingcorrectionprocess.h"
#include "pluginobject/shadingcorrection/process/processfactory.h"
#include "pluginobject/shadingcorrection/slotscope.h"

class QToolsTitleBar;
namespace Ui {
class ShadingCorrectionDlg;
}

/// Acquires dark and bright fields, executes and previews the correction, and loads and saves its data,
/// by means of the one process that suits the camera.
///
/// Everything runs on the user-interface thread but the operations under "Frame thread", which may be
/// called from the thread that delivers frames, between a successful InitDialog and ReleaseProcess. Those
/// touch no widget.
///
/// Whoever creates it ends it with Retire: a slot that shows a message box or a file dialog may be on the stack. Its
/// parent may be destroyed at any time, with a dialog that no slot keeps.
class CShadingCorrectionDlg : public QDialog {
  Q_OBJECT

public:
  /// \param pLiveFrames the frames' way to the process that the dialog will have; its gate is the caller's to open
  CShadingCorrectionDlg(
    QWidget *pParent, const PLUGIN_INIT_PARAM &stInitParam,
    std::shared_ptr<ffc::dialog::CLiveFrames> pLiveFrames = std::make_shared<ffc::dialog::CLiveFrames>());
  ~CShadingCorrectionDlg() override;

  /// Replaces the maker of the correction process. Before InitDialog.
  void SetProcessFactory(ffc::process::FnCreateProcess fnCreateProcess);
  /// Builds the title bar, chooses and initialises the process, loads and connects the controls.
  [[nodiscard]] int32_t InitDialog();
  /// Ends the process's service. An acquisition that it is in the middle of puts the camera's settings back first.
  void ReleaseProcess();
  /// Releases the process, lets host and camera go, and deletes the dialog: at once, or, hidden, when the last of its
  /// slots has left. Nothing of the host's is touched after it returned. No frame may be under way.
  void Retire();
  void SetDialogTitle(const QString &strTitle);

  bool HasNoProcess() const { return m_pProcess == nullptr; }
  bool IsApplyingCorrection() const { return m_pLiveFrames->IsPreviewOn(); }

  // Frame thread. Straight on; without a process each does nothing.

  /// See CLiveFrames::CorrectFrame.
  [[nodiscard]] int32_t CorrectFrame(const void *pSource, void *pDestination, uint32_t nWidth, int32_t nHeight,
                                     uint32_t nPixelFormat, bool &bCorrected)
  {
    return m_pLiveFrames->CorrectFrame(pSource, pDestination, nWidth, nHeight, nPixelFormat, bCorrected);
  }
  void ReceiveImage(const void *pFrame, uint32_t nSize) { m_pLiveFrames->ReceiveImage(pFrame, nSize); }
  void SetImageReady() { m_pLiveFrames->SetImageReady(); }
  /// \return the process's answer; 258 without a process
  uint32_t WaitImageRequest() { return m_pLiveFrames->WaitImageRequest(); }
  void SetStopFlag(bool bStop) { m_pLiveFrames->SetStopFlag(bStop); }
  bool IsColorCamera() { return m_pLiveFrames->IsColorCamera(); }

signals:
  void SigDlgStatusChanged(const PLUGIN_MSG &stPluginMsg);
  void SetInfoShowSignal(bool bStutas);

public slots:
  void Slot_objAcquisitionFrame_Slider_valueChanged(int nValue);
  void Slot_objExpectGrayValue_Slider_valueChanged(int nValue);
  void Slot_objExpectGrayValue_SpinBox_valueChanged(int nValue);
  void Slot_objAcquisitionDarkFrame_Button_clicked();
  void Slot_objAcquisitionBrightFrame_Button_clicked();
  void Slot_objExecuteShadingCorrection_Button_clicked();
  void Slot_objLoadFlash_Button_clicked();
  void Slot_objSaveFlash_Button_clicked();
  void Slot_objLoadPC_Button_clicked();
  void Slot_objSavePC_Button_clicked();
  void Slot_objPromptInformation_label_clicked(QString strInfo);
  void SlotPreviewCorrectionEffect(bool checked);
  void SlotShowInfo(bool bStutas);

protected:
  void showEvent(QShowEvent *pEvent) override;
  void hideEvent(QHideEvent *pEvent) override;

private:
  // Set-up.
  void __LoadStyleSheet();
  void __LoadWindowIcon();
  void __CreateTitleBar();
  [[nodiscard]] int32_t __ChooseProcess(ffc::process::EProcessKind &eKind, bool &bInert);
  [[nodiscard]] int32_t __CreateProcess();
  void __DisableEverything();
  void __LoadControls();
  void __ConnectControls();

  // What every slot runs in; each body returns the status to report.
  struct SOperation;
  struct SOutcome;
  template <class TBody>
  void __RunSlot(TBody fnBody);
  [[nodiscard]] SOutcome __RunOperation(ffc::dialog::CSlotScope &slot, const SOperation &stOperation);
  [[nodiscard]] int32_t __BeginOperation(ffc::dialog::CSlotScope &slot, const SOperation &stOperation);
  void __EndUncorrected(int32_t nStatus, bool bPreview);

  // Helpers of the slots.
  /// To be asked again after everything that may open an event loop or call the host.
  bool __IsReady() const { return m_pProcess != nullptr; }
  bool __IsHostMode() const { return !m_bModeFeatureAvailable; }
  [[nodiscard]] int32_t __CheckAcquisition();
  void __UncheckStoppedPreview();
  void __ShowDarkVerdict();
  [[nodiscard]] int32_t __AcceptBright();
  void __ShowExecuteResult();
  void __ShowPrompt(const QString &strText, Qt::GlobalColor eColor);
  void __ApplyEnableRule();
  void __SetPreview(bool bAvailableAndOn);
  void __SetFrameCount(uint32_t nFrameCount);
  void __ReloadSettings();
  void __ReportStatus(int32_t nStatus);
  void __ShowError(const QString &strText);

  bool m_bBrightAcquired = false;
  bool m_bFFCExecuted = false;
  bool m_bModeFeatureAvailable = false;
  QString m_strShadingCorrectionMode;
  int32_t m_nFrameCount = 0;
  int32_t m_nFrameSliderPos = 0;
  int32_t m_nExpectGray = 0;
  std::unique_ptr<Ui::ShadingCorrectionDlg> m_pUi;
  ffc::pluginobject::CFeatureAccess m_outputFeatures;
  ffc::pluginobject::CFeatureAccess m_streamFeatures;
  ffc::pluginobject::CFeatureAccess m_deviceFeatures;
  ffc::process::FnCreateProcess m_fnCreateProcess;
  const std::shared_ptr<ffc::dialog::CLiveFrames> m_pLiveFrames;
  // Shared with the slots that are on the stack. Destroyed before the features that it uses.
  std::shared_ptr<IShadingCorrectionProcess> m_pProcess;
  ffc::dialog::CSlotStack m_slots;
  bool m_bAcquiring = false;
  bool m_bRetired = false;
  QSlider *m_pExpectGraySlider = nullptr;
  QSlider *m_pFrameCountSlider = nullptr;
  QToolsTitleBar *m_pTitleBar = nullptr;
};
