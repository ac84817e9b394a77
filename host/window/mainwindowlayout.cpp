// How the main window is put together: its panels, its menus and their keys, and what it remembers.

#include "host/window/mainwindow.h"

#include <algorithm>
#include <utility>

#include <QAction>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSettings>
#include <QSplitter>
#include <QTabWidget>
#include <QVBoxLayout>

#include "host/window/appearance.h"
#include "host/window/camerapanel.h"
#include "host/window/displaypicture.h"
#include "host/window/imagearea.h"
#include "host/window/imageview.h"
#include "host/window/plotpanel.h"
#include "host/window/qualitypanel.h"
#include "host/window/recordingpanel.h"
#include "host/window/scenepanel.h"
#include "host/window/statusline.h"

namespace ffc::host {
namespace {

constexpr QSize LARGEST_FIRST_SIZE(1360, 840);
constexpr double SHARE_OF_SCREEN = 0.92; ///< leaves room for the frame, and for other windows to be seen
constexpr int CONTROLS_WIDTH = 262;
constexpr int PLOTS_WIDTH = 380;

/// Where the limits are remembered.
std::vector<std::pair<QString, double quality::SLimits::*>> GetLimitKeys()
{
  return {{QStringLiteral("quality/shadingLimit"), &quality::SLimits::dShading},
          {QStringLiteral("quality/prnuLimit"), &quality::SLimits::dPrnu},
          {QStringLiteral("quality/dsnuLimit"), &quality::SLimits::dDsnu}};
}

/// A panel that scrolls where the window is too low for it.
QScrollArea *MakeScrolling(QWidget *pPanel, QWidget *pParent)
{
  QScrollArea *pArea = new QScrollArea(pParent);
  pArea->setWidgetResizable(true);
  pArea->setFrameShape(QFrame::NoFrame);
  pArea->setWidget(pPanel);
  pArea->setFocusPolicy(Qt::NoFocus);
  return pArea;
}

} // namespace

QSize CMainWindow::GetFirstSize(const QSize &szScreen)
{
  return LARGEST_FIRST_SIZE.boundedTo(
    {qRound(szScreen.width() * SHARE_OF_SCREEN), qRound(szScreen.height() * SHARE_OF_SCREEN)});
}

void CMainWindow::MakeLayout()
{
  m_pTabs = new QTabWidget(this);
  m_pTabs->setObjectName(QStringLiteral("Tabs"));
  m_pTabs->setDocumentMode(true);
  m_pTabs->addTab(MakeScrolling(m_pPlotPanel, m_pTabs), tr("&Plots"));
  m_pTabs->addTab(MakeScrolling(m_pQualityPanel, m_pTabs), tr("&Quality"));
  m_pControls = MakeControls();
  m_pSplitter = new QSplitter(this);
  m_pSplitter->setChildrenCollapsible(false);
  m_pSplitter->addWidget(MakeScrolling(m_pControls, m_pSplitter));
  m_pSplitter->addWidget(m_pImageArea);
  m_pSplitter->addWidget(m_pTabs);
  m_pSplitter->setStretchFactor(1, 1);
  const QSize szFirst = GetFirstSize(screen()->availableSize());
  const int nPlots = std::min(PLOTS_WIDTH, szFirst.width() / 3);
  m_pSplitter->setSizes({CONTROLS_WIDTH, szFirst.width() - CONTROLS_WIDTH - nPlots, nPlots});
  setCentralWidget(m_pSplitter);
  setStatusBar(m_pStatusLine);
  resize(szFirst);
}

QWidget *CMainWindow::MakeControls()
{
  QWidget *pControls = new QWidget(this);
  QPushButton *pDialog = new QPushButton(tr("&Flat-field correction..."), pControls);
  pDialog->setObjectName(QStringLiteral("ShowDialog"));
  pDialog->setToolTip(tr("The plug-in's dialog: dark field, bright field, execute, preview"));
  connect(pDialog, &QPushButton::clicked, this, &CMainWindow::SlotShowDialog);
  m_pNote->setObjectName(QStringLiteral("DialogNote"));
  m_pNote->setWordWrap(true);
  m_pNote->setTextInteractionFlags(Qt::TextSelectableByMouse);
  setTabOrder(m_pScenePanel->GetLastInTabOrder(), pDialog); // and not behind the image and the figures
  QVBoxLayout *pLayout = new QVBoxLayout(pControls);
  pLayout->setContentsMargins(6, 6, 2, 6);
  pLayout->addWidget(m_pCameraPanel);
  pLayout->addWidget(m_pRecordingPanel);
  pLayout->addWidget(m_pScenePanel);
  pLayout->addWidget(pDialog);
  pLayout->addWidget(m_pNote);
  pLayout->addStretch();
  return pControls;
}

QAction *CMainWindow::AddAction(QMenu *pMenu, const QString &strText, const QKeySequence &keys,
                                std::function<void()> fnAction)
{
  QAction *pAction = pMenu->addAction(strText);
  pAction->setShortcut(keys);
  connect(pAction, &QAction::triggered, this, std::move(fnAction));
  return pAction;
}

void CMainWindow::MakeActions()
{
  QMenu *pCamera = menuBar()->addMenu(tr("&Camera"));
  AddAction(pCamera, tr("&Start or stop"), Qt::Key_F5, [this] { SlotStartStop(); });
  AddAction(pCamera, tr("&Expose to 70 %"), Qt::CTRL + Qt::Key_7, [this] { SlotExpose(); });
  AddAction(pCamera, tr("&Look for cameras"), Qt::Key_F6, [this] { SlotLookForCameras(); });
  AddAction(pCamera, tr("&Restore settings (UserSet0)"), QKeySequence(), [this] { SlotRestoreSettings(); });
  AddAction(pCamera, tr("&Features..."), Qt::Key_F7, [this] { SlotShowFeatures(); });
  AddPresets(pCamera);
  pCamera->addSeparator();
  AddAction(pCamera, tr("Save &image..."), Qt::CTRL + Qt::SHIFT + Qt::Key_S, [this] { SlotSaveImage(); });
  AddAction(pCamera, tr("Save se&quence..."), Qt::CTRL + Qt::SHIFT + Qt::Key_R, [this] { SlotSaveSequence(); });
  pCamera->addSeparator();
  AddAction(pCamera, tr("&Quit"), Qt::CTRL + Qt::Key_Q, [this] { close(); });

  QMenu *pView = menuBar()->addMenu(tr("&View"));
  m_pImageArea->FillMenu(*pView);
  m_pPlotPanel->FillMenu(*pView);
  pView->addSeparator();
  AddLooks(*pView, this);

  QMenu *pCorrection = menuBar()->addMenu(tr("C&orrection"));
  AddAction(pCorrection, tr("&Flat-field correction..."), Qt::CTRL + Qt::Key_F, [this] { SlotShowDialog(); });
  m_pLastCoefficients =
    AddAction(pCorrection, tr("L&oad the last coefficients"), QKeySequence(), [this] { SlotLoadLastCoefficients(); });
  m_pLastCoefficients->setEnabled(false);
  m_pMakeReference = AddAction(pCorrection, tr("Ma&ke from the acquired frames..."), Qt::CTRL + Qt::SHIFT + Qt::Key_F,
                               [this] { SlotMakeReference(); });
  pCorrection->setToolTipsVisible(true);
  OfferReference();
  AddAction(pCorrection, tr("&Measure..."), Qt::CTRL + Qt::Key_M, [this] { SlotMeasure(); });
  AddAction(pCorrection, tr("Check &drift..."), Qt::CTRL + Qt::Key_D, [this] { SlotCheckDrift(); });
  QAction *pSaveReport =
    AddAction(pCorrection, tr("Save &report..."), QKeySequence::Save, [this] { SlotSaveReport(); });
  pSaveReport->setObjectName(QStringLiteral("SaveReportAction"));
  pSaveReport->setEnabled(false);
  connect(m_pQualityPanel, &CQualityPanel::SigReportReady, pSaveReport, &QAction::setEnabled);
  AddHelp();
}

void CMainWindow::ConnectPanels()
{
  connect(m_pCameraPanel, &CCameraPanel::SigStartStop, this, &CMainWindow::SlotStartStop);
  connect(m_pRecordingPanel, &CRecordingPanel::SigChosen, this, &CMainWindow::ReplayAs);
  connect(m_pCameraPanel, &CCameraPanel::SigExpose, this, &CMainWindow::SlotExpose);
  connect(m_pCameraPanel, &CCameraPanel::SigChosen, this, &CMainWindow::SlotChoose);
  connect(m_pQualityPanel, &CQualityPanel::SigMeasure, this, &CMainWindow::SlotMeasure);
  connect(m_pQualityPanel, &CQualityPanel::SigCheckDrift, this, &CMainWindow::SlotCheckDrift);
  connect(m_pQualityPanel, &CQualityPanel::SigSaveReport, this, &CMainWindow::SlotSaveReport);
  connect(m_pPlotPanel, &CPlotPanel::SigShown, this, &CMainWindow::SigPlotted);
  connect(m_pView, &CImageView::SigMarked, this, [this] {
    const CImageMarks &marks = m_pView->GetMarks();
    m_pPlotPanel->SetLine(marks.HasLine() ? std::optional<QLine>(marks.GetLine()) : std::nullopt);
  });
  connect(m_pView, &CImageView::SigViewChanged, this, [this] {
    if (m_pFrame != nullptr) {
      m_pStatusLine->ShowPixel(GetPixelText(*m_pFrame, m_pView->GetPixel().x(), m_pView->GetPixel().y()));
    }
  });
  ConnectDialog();
}

void CMainWindow::ConnectDialog()
{
  connect(&m_progress, &CAcquisitionProgress::SigExpected, this, &CMainWindow::ExpectAcquisition);
  connect(&m_progress, &CAcquisitionProgress::SigBegun, this, &CMainWindow::BeginAcquisition);
  connect(&m_progress, &CAcquisitionProgress::SigCounted, this, [this] { m_acquired.Count(); });
  connect(&m_progress, &CAcquisitionProgress::SigCancelled, this, [this] {
    m_bCancelled = true;
    GetViewer()->GetPipeline().Withhold(true);
  });
  connect(&m_progress, &CAcquisitionProgress::SigEnded, this, &CMainWindow::EndAcquisition);
  connect(&m_dialogObserver, &CDialogObserver::SigBox, this, &CMainWindow::AnswerBox);
  connect(&m_dialogObserver, &CDialogObserver::SigOpening, this, &CMainWindow::CheckSideFile);
  connect(&m_dialogObserver, &CDialogObserver::SigDone, this, &CMainWindow::NoteOutcome);
}

void CMainWindow::RestoreLayout()
{
  const QSettings settings;
  restoreGeometry(settings.value(QStringLiteral("window/geometry")).toByteArray());
  m_pSplitter->restoreState(settings.value(QStringLiteral("window/splitter")).toByteArray());
  m_pTabs->setCurrentIndex(settings.value(QStringLiteral("window/tab"), 0).toInt());
  m_pImageArea->RestoreSettings();
  quality::SLimits stLimits = m_pQualityPanel->GetLimits();
  for (const auto &[strKey, pLimit] : GetLimitKeys()) {
    stLimits.*pLimit = settings.value(strKey, stLimits.*pLimit).toDouble();
  }
  m_pQualityPanel->SetLimits(stLimits);
}

void CMainWindow::SaveLayout() const
{
  QSettings settings;
  m_pImageArea->SaveSettings();
  settings.setValue(QStringLiteral("window/geometry"), saveGeometry());
  settings.setValue(QStringLiteral("window/splitter"), m_pSplitter->saveState());
  settings.setValue(QStringLiteral("window/tab"), m_pTabs->currentIndex());
  for (const auto &[strKey, pLimit] : GetLimitKeys()) {
    settings.setValue(strKey, m_pQualityPanel->GetLimits().*pLimit);
  }
}

} // namespace ffc::host
