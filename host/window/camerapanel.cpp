#include "host/window/camerapanel.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "host/viewer/cameratexts.h"
#include "host/window/featureedits.h"

namespace ffc::host {

CCameraPanel::CCameraPanel(QWidget *pParent)
  : QGroupBox(tr("Camera"), pParent), m_pChooser(new QComboBox(this)), m_pStartStop(new QPushButton(this)),
    m_pError(new QLabel(this)), m_pNotes(new QLabel(this))
{
  m_pChooser->setObjectName(QStringLiteral("CameraChooser"));
  m_pChooser->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  m_pStartStop->setObjectName(QStringLiteral("StartStop"));
  m_pError->setObjectName(QStringLiteral("CameraError"));
  m_pError->setWordWrap(true);
  m_pError->setStyleSheet(QStringLiteral("color: #b3261e"));
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
  AddEdit(pForm, tr("E&xposure"), new CFloatEdit(QStringLiteral("ExposureTime"), QStringLiteral(" µs"), 0, this),
          false);
  AddEdit(pForm, tr("&Gain"), new CFloatEdit(QStringLiteral("Gain"), QStringLiteral(" dB"), 1, this), false);
  AddEdit(pForm, tr("&Black level"), new CFloatEdit(QStringLiteral("BlackLevel"), QStringLiteral(" %"), 2, this),
          false);
  AddEdit(pForm, tr("Pixel forma&t"), new CEnumerationEdit(QStringLiteral("PixelFormat"), this), true);
  AddEdit(pForm, tr("&Width"), new CIntegerEdit(QStringLiteral("Width"), QStringLiteral(" px"), this), true);
  AddEdit(pForm, tr("&Height"), new CIntegerEdit(QStringLiteral("Height"), QStringLiteral(" px"), this), true);
  QVBoxLayout *pLayout = new QVBoxLayout(this);
  pLayout->addLayout(pForm);
  pLayout->addWidget(m_pStartStop);
  pLayout->addWidget(m_pError);
  pLayout->addWidget(m_pNotes);

  connect(m_pChooser, QOverload<int>::of(&QComboBox::activated), this, &CCameraPanel::SigChosen);
  connect(m_pStartStop, &QPushButton::clicked, this, &CCameraPanel::SigStartStop);
  setTabOrder(m_pChooser, m_pStartStop);
  Refresh();
}

void CCameraPanel::AddEdit(QFormLayout *pLayout, const QString &strLabel, CFeatureEdit *pEdit,
                           bool bLockedWhileStreaming)
{
  pLayout->addRow(strLabel, pEdit);
  m_listEdits.push_back({pEdit, bLockedWhileStreaming});
  connect(pEdit, &CFeatureEdit::SigRefused, this, &CCameraPanel::ShowError);
  connect(pEdit, &CFeatureEdit::SigWritten, this, [this] {
    ShowError(QString());
    emit SigWritten();
  });
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

void CCameraPanel::SetViewer(CViewer *pViewer)
{
  m_pViewer = pViewer;
  for (const SEdit &stEdit : m_listEdits) {
    stEdit.pEdit->SetNodeMap(pViewer == nullptr ? nullptr : pViewer->GetCamera().GetDeviceNodeMap());
  }
  m_pNotes->setText(pViewer == nullptr
                      ? QString()
                      : DescribeFeatureNotes(pViewer->GetCamera().GetFeatureNotes()).join(QLatin1Char('\n')));
  m_pNotes->setVisible(!m_pNotes->text().isEmpty());
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
  m_pStartStop->setText(IsStreaming() ? tr("&Stop") : tr("&Start"));
}

void CCameraPanel::ShowError(const QString &strError)
{
  m_pError->setText(strError);
  m_pError->setVisible(!strError.isEmpty());
}

} // namespace ffc::host
