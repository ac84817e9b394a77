#include "host/window/imagearea.h"

#include <utility>

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QSettings>
#include <QVBoxLayout>

#include "host/window/frameinspection.h"
#include "host/window/imageview.h"
#include "host/window/inspectionbar.h"
#include "host/window/stretchcontrol.h"
#include "host/window/toolbar.h"

namespace ffc::host {

CImageArea::CImageArea(QWidget *pParent)
  : QWidget(pParent), m_pTools(new CToolBar(this)), m_pView(new CImageView(this)),
    m_pInspection(new CInspectionBar(this)), m_pStretch(new CStretchControl(this))
{
  m_pTools->setObjectName(QStringLiteral("ViewTools"));
  QVBoxLayout *pLayout = new QVBoxLayout(this);
  pLayout->setContentsMargins(0, 0, 0, 0);
  pLayout->setSpacing(0);
  pLayout->addWidget(m_pTools);
  pLayout->addWidget(m_pView, 1);
  pLayout->addWidget(m_pInspection);
  connect(m_pStretch, &CStretchControl::SigChanged, this, &CImageArea::ShowPicture);
  connect(m_pInspection, &CInspectionBar::SigThreshold, this, [this] {
    ShowPicture();
    UpdateFigures();
  });
  connect(m_pView, &CImageView::SigMarked, this, &CImageArea::UpdateFigures);
}

QAction *CImageArea::AddAction(QMenu &menu, const QString &strText, const QKeySequence &keys,
                               std::function<void()> fnAction)
{
  QAction *pAction = menu.addAction(strText);
  pAction->setShortcut(keys);
  pAction->setIconText(GetToolBarText(strText));
  m_pTools->addAction(pAction);
  connect(pAction, &QAction::triggered, this, std::move(fnAction));
  return pAction;
}

QAction *CImageArea::AddOption(QMenu &menu, const QString &strText, const QKeySequence &keys, bool &bOption)
{
  QAction *pAction = AddAction(menu, strText, keys, [] {});
  pAction->setCheckable(true);
  pAction->setChecked(bOption);
  connect(pAction, &QAction::toggled, this, [this, &bOption](bool bOn) {
    bOption = bOn;
    ShowPicture();
  });
  return pAction;
}

void CImageArea::FillMenu(QMenu &menu)
{
  AddAction(menu, tr("&Fit"), Qt::CTRL + Qt::Key_0, [this] { m_pView->SlotFit(); });
  AddAction(menu, tr("&1:1"), Qt::CTRL + Qt::Key_1, [this] { m_pView->SlotOneToOne(); });
  AddAction(menu, tr("Zoom &in"), QKeySequence::ZoomIn, [this] {
    m_pView->SlotZoomIn();
  })->setIconText(QStringLiteral("+"));
  AddAction(menu, tr("Zoom &out"), QKeySequence::ZoomOut, [this] {
    m_pView->SlotZoomOut();
  })->setIconText(QStringLiteral("−"));
  menu.addSeparator();
  m_pTools->addSeparator();
  AddOption(menu, tr("&Raw beside corrected"), Qt::CTRL + Qt::Key_B, m_bSplit);
  m_pStretch->AddTo(menu, *m_pTools);
  AddOption(menu, tr("Mark over-&exposed"), Qt::CTRL + Qt::Key_E, m_stDisplay.bMarkOverexposed);
  m_pColor = AddOption(menu, tr("&Colour"), Qt::CTRL + Qt::Key_K, m_stDisplay.bColor);
  m_pColor->setVisible(false);
  menu.addSeparator();
  m_pTools->addSeparator();
  AddTools(menu);
}

/// What dragging on the image does.
void CImageArea::AddTools(QMenu &menu)
{
  QActionGroup *pGroup = new QActionGroup(this);
  const auto AddTool = [&](const QString &strText, const QKeySequence &keys, const QString &strTip, EImageTool eTool) {
    QAction *pAction = AddAction(menu, strText, keys, [this, eTool] { m_pView->SetTool(eTool); });
    pAction->setCheckable(true);
    pAction->setChecked(eTool == EImageTool::Pan);
    pAction->setToolTip(strTip);
    pGroup->addAction(pAction);
  };
  AddTool(tr("&Move"), Qt::CTRL + Qt::Key_2, tr("Dragging moves the image"), EImageTool::Pan);
  AddTool(tr("Mark re&gion"), Qt::CTRL + Qt::Key_3,
          tr("Dragging marks a region: its mean and noise stand below the image. Escape clears it."),
          EImageTool::Region);
  AddTool(tr("Mark &line"), Qt::CTRL + Qt::Key_4,
          tr("Dragging marks a line: its profile stands among the plots. Escape clears it."), EImageTool::Line);
}

void CImageArea::SetFrame(const std::shared_ptr<const SFrameCopy> &pFrame)
{
  m_pPrevious = m_pView->GetMarks().GetRegion().isEmpty() || pFrame == m_pFrame ? nullptr : m_pFrame;
  m_pFrame = pFrame;
  ShowPicture();
}

void CImageArea::UpdateFigures()
{
  m_pInspection->ShowFigures(m_pFrame.get(), m_pPrevious.get(), m_pView->GetMarks().GetRegion());
}

/// Black and white of both halves, as the user has chosen.
void CImageArea::ChooseRanges(SDisplayOptions &stRight, SDisplayOptions &stLeft)
{
  const genapi::SPixelFormat *pFormat = GetShownFormat(*m_pFrame);
  if (pFormat == nullptr) {
    return;
  }
  const bool bSplit = m_bSplit && m_pFrame->pRaw != nullptr;
  const EStretch eMode = m_pStretch->GetMode();
  if (eMode == EStretch::Fixed) {
    stRight.stRange = m_pStretch->GetFixed();
    stLeft.stRange = stRight.stRange;
  } else if (eMode != EStretch::FullRange) {
    stRight.stRange = FindGreyRange(*m_pFrame);
    stLeft.stRange = bSplit ? FindGreyRange(*m_pFrame->pRaw) : *stRight.stRange;
  }
  if (eMode == EStretch::Auto) {
    stRight.stRange = Unite(*stRight.stRange, *stLeft.stRange);
    stLeft.stRange = stRight.stRange;
  }
  m_pStretch->Follow(stRight.stRange.value_or(GetFullRange(pFormat->GetMaxValue())), pFormat->GetMaxValue());
}

void CImageArea::ShowPicture()
{
  if (m_pFrame == nullptr) {
    m_pView->SetPicture(QImage());
    m_pView->SetLeftPicture(QImage());
    m_pView->SetLabels(QString(), QString());
    return;
  }
  if (m_pColor != nullptr) {
    const genapi::SPixelFormat *pFormat = GetShownFormat(*m_pFrame);
    m_pColor->setVisible(pFormat != nullptr && pFormat->eLayout != genapi::EColorLayout::Mono);
  }
  SDisplayOptions stRight = m_stDisplay;
  stRight.dThreshold = m_pInspection->GetThreshold();
  SDisplayOptions stLeft = stRight;
  ChooseRanges(stRight, stLeft);
  m_pView->SetPicture(MakeDisplayPicture(*m_pFrame, stRight));
  ShowSplit(stRight, stLeft);
}

/// The raw half, and what stands upon both: which is which, and how they are stretched.
void CImageArea::ShowSplit(const SDisplayOptions &stRight, const SDisplayOptions &stLeft)
{
  const auto Describe = [](const QString &strWhat, const SDisplayOptions &stOptions) {
    const QString strRange = stOptions.stRange ? DescribeRange(*stOptions.stRange) : QString();
    return strWhat.isEmpty() || strRange.isEmpty() ? strWhat + strRange : strWhat + QLatin1Char('\n') + strRange;
  };
  const bool bSplit = m_bSplit && m_pFrame->pRaw != nullptr;
  m_pView->SetLeftPicture(bSplit ? MakeDisplayPicture(*m_pFrame->pRaw, stLeft) : QImage());
  QString strRight = bSplit ? tr("corrected") : QString();
  if (m_bSplit && !bSplit) {
    strRight = tr("No raw image beside it: the plug-in does not correct this one.");
  }
  m_pView->SetLabels(bSplit ? Describe(tr("raw"), stLeft) : QString(), Describe(strRight, stRight));
}

void CImageArea::RestoreSettings()
{
  m_pInspection->SetThreshold(QSettings().value(QStringLiteral("view/overexposedFrom"), 100.0).toDouble());
}

void CImageArea::SaveSettings() const
{
  QSettings().setValue(QStringLiteral("view/overexposedFrom"), m_pInspection->GetThreshold());
}

} // namespace ffc::host
