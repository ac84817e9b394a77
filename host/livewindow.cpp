#include "host/livewindow.h"

#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "host/featuretext.h"
#include "host/quality/pictures.h"

namespace {

constexpr int REFRESH_MS = 50;
constexpr QSize PICTURE_SIZE(720, 540);

} // namespace

CLiveWindow::CLiveWindow(CViewer &viewer)
  : m_viewer(viewer), m_pPicture(new QLabel(this)), m_pState(new QLabel(this)), m_pStartStop(new QPushButton(this))
{
  setWindowTitle(QString::fromStdString(viewer.GetCamera().GetDisplayName()));
  m_pPicture->setFixedSize(PICTURE_SIZE);
  m_pPicture->setAlignment(Qt::AlignCenter);
  connect(m_pStartStop, &QPushButton::clicked, this, &CLiveWindow::SlotStartStop);
  QPushButton *pDialog = new QPushButton(tr("Correction..."), this);
  connect(pDialog, &QPushButton::clicked, this, [this] { m_viewer.ShowDialog(); });

  QHBoxLayout *pControls = new QHBoxLayout;
  pControls->addWidget(m_pStartStop);
  if (ISceneControl *pScene = viewer.GetCamera().GetSceneControl()) {
    QCheckBox *pLensCap = new QCheckBox(tr("Lens cap"), this);
    connect(pLensCap, &QCheckBox::toggled, this, [pScene](bool bOn) { pScene->SetLensCap(bOn); });
    QCheckBox *pChart = new QCheckBox(tr("Test chart"), this);
    connect(pChart, &QCheckBox::toggled, this, [pScene](bool bOn) {
      pScene->SetScene(bOn ? ISceneControl::EScene::TestChart : ISceneControl::EScene::Target);
    });
    pControls->addWidget(pLensCap);
    pControls->addWidget(pChart);
  }
  pControls->addStretch();
  pControls->addWidget(m_pState);
  pControls->addStretch();
  pControls->addWidget(pDialog);
  QVBoxLayout *pLayout = new QVBoxLayout(this);
  pLayout->addWidget(m_pPicture);
  pLayout->addLayout(pControls);
  ShowStreamState();
  startTimer(REFRESH_MS);
}

void CLiveWindow::SlotStartStop()
{
  if (m_viewer.GetCamera().IsStreaming()) {
    m_viewer.StopStream();
  } else {
    m_viewer.StartStream();
  }
  ShowStreamState();
}

void CLiveWindow::ShowStreamState()
{
  m_pStartStop->setText(m_viewer.GetCamera().IsStreaming() ? tr("Stop") : tr("Start"));
  const QString strError = m_viewer.GetStreamError();
  if (!strError.isEmpty()) {
    m_pState->setText(strError);
  }
}

void CLiveWindow::timerEvent(QTimerEvent *)
{
  if (m_viewer.GetPipeline().TakeLatest(m_stFrame)) {
    ShowFrame(m_stFrame);
  }
  ShowStreamState();
}

void CLiveWindow::ShowFrame(const SFrameCopy &stFrame)
{
  const SSensorFormat *pFormat = FindSensorFormat(stFrame.nPixelFormat);
  CFrameStack stStack;
  if (pFormat == nullptr || !stStack.Prepare(stFrame.nWidth, stFrame.nHeight, pFormat->nBitDepth) ||
      !stStack.Add(stFrame.listBytes.data(), stFrame.listBytes.size())) {
    m_pState->setText(tr("This frame cannot be shown"));
    return;
  }
  const QImage imgView = MakeViewPicture(stStack, pFormat->eLayout);
  m_pPicture->setPixmap(QPixmap::fromImage(imgView.scaled(PICTURE_SIZE, Qt::KeepAspectRatio, Qt::FastTransformation)));
  m_pState->setText(DescribeFrame(stFrame));
}

/// Who has corrected a frame. The camera is asked now, some frames later.
QString CLiveWindow::DescribeFrame(const SFrameCopy &stFrame)
{
  if (stFrame.bCorrected) {
    return tr("corrected");
  }
  const bool bByCamera = ReadFeature(*m_viewer.GetCamera().GetDeviceNodeMap(), CORRECTION_FEATURE) == "On";
  return bByCamera ? tr("corrected by the camera") : tr("raw");
}

void CLiveWindow::closeEvent(QCloseEvent *pEvent)
{
  QWidget::closeEvent(pEvent);
  QApplication::quit();
}
