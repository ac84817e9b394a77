#include "host/window/camerapanel.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "host/viewer/cameratexts.h"
#include "host/viewer/errortexts.h"
#include "host/window/appearance.h"
#include "host/window/featureedits.h"

namespace ffc::host {

CCameraPanel::CCameraPanel(QWidget *pParent)
  : QGroupBox(tr("Camera"), pParent), m_pChooser(new QComboBox(this)), m_pError(new QLabel(this)),
    m_pNotes(new QLabel(this))
{
  m_pChooser->setObjectName(QStringLiteral("CameraChooser"));
  m_pChooser->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  m_pError->setObjectName(QStringLiteral("CameraError"));
  m_pError->setWordWrap(true);
  SetWarning(*m_pError, true);
  m_pError->hide();
  m_pNotes->setObjectName(QStringLiteral("CameraNotes"));
  m_pNotes->setWordWrap(true);
  m_pNotes->hide();

  QFormLayout *pForm = new QFormLayout;
  pForm->setHorizontalSpacing(8);
  pForm->setVerticalSpacing(4);
  QLabel *pChooserLabel = new QLabel(tr("C&amera"), this);
  pChooserLabel->setBuddy(m_pChooser);
  pForm->addRow(pChooserLabel);
  pForm->addRow(m_pChooser); // names are long
  AddExposure(pForm);
  AddEdit(pForm, tr("Gai&n"), new CFloatEdit(QStringLiteral("Gain"), QStringLiteral(" dB"), 1, this), false);
  AddEdit(pForm, tr("&Black level"), new CFloatEdit(QStringLiteral("BlackLevel"), QStringLiteral(" %"), 2, this),
          false);
  AddEdit(pForm, tr("Pixel forma&t"), new CEnumerationEdit(QStringLiteral("PixelFormat"), this), true);
  AddEdit(pForm, tr("&Width"), new CIntegerEdit(QStringLiteral("Width"), QStringLiteral(" px"), this), true);
  AddEdit(pForm, tr("Hei&ght"), new CIntegerEdit(QStringLiteral("Height"), QStringLiteral(" px"), this), true);
  AddRegion(pForm);
  m_pStartStop = new QPushButton(this); // after the settings for the Tab key, too
  m_pStartStop->setObjectName(QStringLiteral("StartStop"));
  QVBoxLayout *pLayout = new QVBoxLayout(this);
  pLayout->addLayout(pForm);
  pLayout->addWidget(m_pStartStop);
  pLayout->addWidget(m_pError);
  pLayout->addWidget(m_pNotes);

  connect(m_pChooser, QOverload<int>::of(&QComboBox::activated), this, &CCameraPanel::SigChosen);
  connect(m_pStartStop, &QPushButton::clicked, this, &CCameraPanel::SigStartStop);
  Refresh();
}

void CCameraPanel::AddExposure(QFormLayout *pLayout)
{
  AddEdit(pLayout, tr("E&xposure"), new CFloatEdit(QStringLiteral("ExposureTime"), QStringLiteral(" µs"), 0, this),
          false);
  m_pExpose = new QToolButton(this);
  m_pExpose->setObjectName(QStringLiteral("Expose"));
  m_pExpose->setText(tr("To 70 %"));
  m_pExpose->setFocusPolicy(Qt::TabFocus);
  m_pExpose->setToolTip(
    tr("Finds the exposure at which the brightest part of the image lies at 70 % of the format's maximum"));
  pLayout->addRow(QString(), m_pExpose);
  connect(m_pExpose, &QToolButton::clicked, this, &CCameraPanel::SigExpose);
}

/// What many cameras have not: those rows are not there then.
void CCameraPanel::AddRegion(QFormLayout *pLayout)
{
  const QString strPixels = QStringLiteral(" px");
  AddOptional(pLayout, tr("Offset X"), new CIntegerEdit(QStringLiteral("OffsetX"), strPixels, this), true);
  AddOptional(pLayout, tr("Offset Y"), new CIntegerEdit(QStringLiteral("OffsetY"), strPixels, this), true);
  AddOptional(pLayout, tr("Binning X"), new CIntegerEdit(QStringLiteral("BinningHorizontal"), QString(), this), true);
  AddOptional(pLayout, tr("Binning Y"), new CIntegerEdit(QStringLiteral("BinningVertical"), QString(), this), true);
  AddOptional(pLayout, tr("Frame rate"),
              new CFloatEdit(QStringLiteral("AcquisitionFrameRate"), QStringLiteral(" /s"), 2, this), false);
}

void CCameraPanel::AddEdit(QFormLayout *pLayout, const QString &strLabel, CFeatureEdit *pEdit,
                           bool bLockedWhileStreaming)
{
  pLayout->addRow(strLabel, pEdit);
  Watch(pEdit, pLayout->labelForField(pEdit), bLockedWhileStreaming, false);
}

/// Without a key of its own: there are not enough letters.
void CCameraPanel::AddOptional(QFormLayout *pLayout, const QString &strLabel, CFeatureEdit *pEdit,
                               bool bLockedWhileStreaming)
{
  QLabel *pLabel = new QLabel(strLabel, this);
  pLayout->addRow(pLabel, pEdit);
  Watch(pEdit, pLabel, bLockedWhileStreaming, true);
}

void CCameraPanel::Watch(CFeatureEdit *pEdit, QWidget *pLabel, bool bLockedWhileStreaming, bool bOptional)
{
  m_listEdits.push_back({pEdit, pLabel, bLockedWhileStreaming, bOptional});
  connect(pEdit, &CFeatureEdit::SigRefused, this, &CCameraPanel::ShowError);
  connect(pEdit, &CFeatureEdit::SigWritten, this, [this] {
    ShowError(QString());
    emit SigWritten();
  });
}

/// Recorded frames were exposed once and for all.
void CCameraPanel::ShowRows()
{
  for (const SEdit &stEdit : m_listEdits) {
    const bool bShown = stEdit.pEdit->IsChoice() || (!m_bRecorded && (!stEdit.bOptional || stEdit.pEdit->IsOffered()));
    stEdit.pEdit->setVisible(bShown);
    stEdit.pLabel->setVisible(bShown);
  }
  m_pExpose->setVisible(!m_bRecorded);
}

void CCameraPanel::SetChoices(const std::vector<SCameraChoice> &listChoices)
{
  m_pChooser->clear();
  for (const SCameraChoice &stChoice : listChoices) {
    m_pChooser->addItem(stChoice.strName);
    m_pChooser->setItemData(m_pChooser->count() - 1, stChoice.strName, Qt::ToolTipRole);
  }
}

void CCameraPanel::Select(int nChoice)
{
  m_pChooser->setCurrentIndex(nChoice);
  m_pChooser->setToolTip(m_pChooser->currentText());
}

void CCameraPanel::SetViewer(CViewer *pViewer, bool bRecorded)
{
  m_pViewer = pViewer;
  m_bRecorded = bRecorded;
  for (const SEdit &stEdit : m_listEdits) {
    stEdit.pEdit->SetNodeMap(pViewer == nullptr ? nullptr : pViewer->GetCamera().GetDeviceNodeMap());
  }
  m_pNotes->setText(pViewer == nullptr
                      ? QString()
                      : DescribeFeatureNotes(pViewer->GetCamera().GetFeatureNotes()).join(QLatin1Char('\n')));
  m_pNotes->setVisible(!m_pNotes->text().isEmpty());
  ShowRows();
  Refresh();
}

void CCameraPanel::Refresh()
{
  ShowStream();
  for (const SEdit &stEdit : m_listEdits) {
    stEdit.pEdit->Refresh(GetLockedReason(stEdit));
  }
}

std::vector<std::string> CCameraPanel::GetFeatures() const
{
  std::vector<std::string> listFeatures;
  for (const SEdit &stEdit : m_listEdits) {
    listFeatures.push_back(stEdit.pEdit->GetFeature());
  }
  return listFeatures;
}

void CCameraPanel::ShowStates(const CFeatureStates &mapStates)
{
  ShowStream();
  for (const SEdit &stEdit : m_listEdits) {
    const auto itState = mapStates.find(stEdit.pEdit->GetFeature());
    if (itState != mapStates.end()) {
      stEdit.pEdit->ShowState(itState->second, GetLockedReason(stEdit));
    }
  }
}

QString CCameraPanel::GetLockedReason(const SEdit &stEdit) const
{
  return stEdit.bLockedWhileStreaming && IsStreaming() ? tr("Locked while the camera streams: stop it first")
                                                       : QString();
}

void CCameraPanel::ShowStream()
{
  m_pStartStop->setEnabled(m_pViewer != nullptr);
  m_pExpose->setEnabled(IsStreaming());
  m_pStartStop->setText(IsStreaming() ? tr("&Stop") : tr("&Start"));
}

void CCameraPanel::ShowError(const QString &strError)
{
  m_pError->setText(TranslateError(strError));
  SetWarning(*m_pError, true); // in the look of now
  m_pError->setVisible(!strError.isEmpty());
}

} // namespace ffc::host
