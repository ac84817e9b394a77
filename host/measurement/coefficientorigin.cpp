#include "host/measurement/coefficientorigin.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>
#include <string_view>
#include <utility>

#include <QCoreApplication>

#include "frames/sidefile.h"
#include "host/dialogdriver/dialogdriver.h"

namespace ffc::host {
namespace {

using EKind = SCoefficientOrigin::EKind;

constexpr uint32_t JUDGED_FRAMES = 16;

QString Translate(const char *pText)
{
  return QCoreApplication::translate("CoefficientOrigin", pText);
}

/// While the file is surely the one that is in use.
void NoteFile(const QString &strFile, SCoefficientOrigin &stOrigin)
{
  const Result<QString> hash = frames::HashCoefficientFile(strFile);
  stOrigin.strFile = strFile;
  stOrigin.strSha256 = hash ? hash.GetValue() : QString();
}

/// What stands beside the file, where it belongs to it: the file itself cannot say what it was made of.
void NoteSideFile(SCoefficientOrigin &stOrigin)
{
  const Result<std::optional<frames::SSideFile>> side = frames::ReadSideFile(stOrigin.strFile);
  if (!side || !side.GetValue() || stOrigin.strSha256.isEmpty() ||
      side.GetValue()->strSha256.compare(stOrigin.strSha256, Qt::CaseInsensitive) != 0) {
    return;
  }
  const frames::SSideFile &stSide = *side.GetValue();
  constexpr uint32_t MOST = std::numeric_limits<int>::max();
  stOrigin.nFrames = stOrigin.nAskedFrames = static_cast<int>(std::min(stSide.nBrightFrames, MOST));
  stOrigin.nDarkFrames = static_cast<int>(std::min(stSide.nDarkFrames, MOST));
  stOrigin.eDarkField = stSide.bDarkUsed ? quality::EDarkField::Used : quality::EDarkField::None;
  stOrigin.nExpectGray = static_cast<int>(stSide.nExpectGray);
  stOrigin.strMethod = stSide.strMethod.isEmpty() ? stOrigin.strMethod : stSide.strMethod;
  stOrigin.strNoise = stSide.strNoise;
}

} // namespace

CDifferentFrames::CDifferentFrames(CFramePipeline &pipeline, FnFrame fnFrame)
  : m_pipeline(pipeline), m_fnFrame(std::move(fnFrame))
{
  pipeline.Request(std::numeric_limits<uint32_t>::max(), CFramePipeline::EWanted::Any,
                   [this](const SProcessedFrame &stFrame) { Take(*stFrame.pRaw); });
}

CDifferentFrames::~CDifferentFrames()
{
  m_pipeline.CancelRequest();
}

void CDifferentFrames::Take(const camera::SCameraFrame &stFrame)
{
  if (m_fnFrame) {
    m_fnFrame(stFrame);
  }
  const char *pBytes = static_cast<const char *>(stFrame.pBuffer);
  const bool bNew = m_setSeen.insert(std::hash<std::string_view>()({pBytes, stFrame.nSize})).second;
  if (m_pFormat == nullptr) {
    m_pFormat = genapi::FindSensorFormat(stFrame.nPixelFormat);
    if (m_pFormat == nullptr || !m_stack.Prepare(stFrame.nWidth, stFrame.nHeight, m_pFormat->nBitDepth)) {
      return;
    }
  }
  if (bNew && m_stack.GetFrameCount() < JUDGED_FRAMES && m_stack.Add(stFrame.pBuffer, stFrame.nSize)) {
    m_watch.Add(stFrame.pBuffer, stFrame.nWidth, stFrame.nHeight, m_pFormat->GetBytesPerPixel());
  }
}

double CDifferentFrames::GetBrightness() const
{
  uint64_t nSum = 0;
  for (uint32_t nLine = 0; m_stack.GetFrameCount() > 0 && nLine < m_stack.GetHeight(); ++nLine) {
    nSum = std::accumulate(m_stack.GetSums(nLine), m_stack.GetSums(nLine) + m_stack.GetWidth(), nSum);
  }
  const double dSamples = static_cast<double>(m_stack.GetFrameCount()) * m_stack.GetWidth() * m_stack.GetHeight();
  return nSum == 0 ? 0 : static_cast<double>(nSum) / dSamples / m_stack.GetMaximum();
}

QStringList CDifferentFrames::JudgeLight() const
{
  QStringList listRemarks;
  if (m_stack.GetFrameCount() == 0) {
    return listRemarks;
  }
  // A colour camera balances its white meanwhile, which is no flicker.
  const bool bMono = m_pFormat->eLayout == genapi::EColorLayout::Mono;
  for (const quality::SBrightRemark &stRemark : quality::JudgeBrightField(
         quality::MeasureBrightField(m_stack, bMono ? &m_watch : nullptr, m_pFormat->eLayout))) {
    listRemarks << stRemark.strText;
  }
  return listRemarks;
}

CDifferentFrames::Seen CDifferentFrames::Stop()
{
  m_pipeline.CancelRequest();
  return std::move(m_setSeen);
}

QStringList SCoefficientOrigin::GetNotes() const
{
  QStringList listNotes;
  if (eKind == EKind::File) {
    listNotes << Translate("The coefficients come from the file %1").arg(strFile);
  }
  if (eKind == EKind::Flash) {
    listNotes << Translate("The coefficients come from the camera's flash");
  }
  if (nFrames == 0) {
    listNotes << Translate("How many frames the coefficients were made of is not known");
  } else if (IsRepeated()) {
    listNotes << Translate(
                   "The coefficients come from %1 different bright frames, although %2 were asked for: the camera "
                   "repeats itself")
                   .arg(nFrames)
                   .arg(nAskedFrames);
  }
  for (const QString &strRemark : listBrightRemarks) {
    listNotes << Translate("As the coefficients were acquired: %1").arg(strRemark);
  }
  return listNotes;
}

void CCoefficientWatch::BeginAcquisition(CFramePipeline &pipeline, CDifferentFrames::FnFrame fnFrame)
{
  EndAcquisition(); // before the next one asks for frames
  m_pFrames = std::make_unique<CDifferentFrames>(pipeline, std::move(fnFrame));
}

void CCoefficientWatch::EndAcquisition()
{
  if (m_pFrames != nullptr) {
    m_setSeen.merge(m_pFrames->Stop());
    if (m_pFrames->GetJudgedCount() > m_nJudged) {
      m_nJudged = m_pFrames->GetJudgedCount();
      m_listBrightRemarks = m_pFrames->JudgeLight();
    }
    m_pFrames.reset();
  }
}

void CCoefficientWatch::Note(const SDialogOutcome &stOutcome, const CDialogDriver &driver, bool bByCamera)
{
  EndAcquisition();
  if (stOutcome.eAction == EDialogAction::AcquireDark) {
    m_bDark = false; // what was there goes first
  }
  if (stOutcome.strError.isEmpty()) {
    NoteDone(stOutcome, driver, bByCamera);
  }
  m_setSeen.clear();
  m_nJudged = 0;
  m_listBrightRemarks.clear();
}

void CCoefficientWatch::NoteDone(const SDialogOutcome &stOutcome, const CDialogDriver &driver, bool bByCamera)
{
  switch (stOutcome.eAction) {
  // One that is too bright is kept, and not used; the prompt says so in red.
  case EDialogAction::AcquireDark: m_bDark = !driver.ReadPrompt().bWarning; break;
  case EDialogAction::AcquireBright: NoteBright(driver); break;
  case EDialogAction::Execute:
    m_stOrigin = m_stBright;
    m_stOrigin.eDarkField = m_bDark ? quality::EDarkField::Used : quality::EDarkField::None;
    m_stOrigin.nExpectGray = driver.GetExpectGray();
    break;
  case EDialogAction::LoadFlash: NoteLoaded(EKind::Flash, QString(), driver, bByCamera); break;
  case EDialogAction::LoadFile:
    if (!stOutcome.strFile.isEmpty()) {
      NoteLoaded(EKind::File, stOutcome.strFile, driver, bByCamera);
    }
    break;
  case EDialogAction::SaveFile:
    if (!stOutcome.strFile.isEmpty() && m_stOrigin.eKind == EKind::Acquired) {
      NoteFile(stOutcome.strFile, m_stOrigin);
    }
    break;
  default: break;
  }
}

void CCoefficientWatch::NoteBright(const CDialogDriver &driver)
{
  m_stBright = SCoefficientOrigin();
  m_stBright.eKind = EKind::Acquired;
  m_stBright.nAskedFrames = driver.GetFrameCount();
  m_stBright.nFrames = std::min(m_stBright.nAskedFrames, static_cast<int>(m_setSeen.size()));
  m_stBright.listBrightRemarks = m_listBrightRemarks;
}

void CCoefficientWatch::NoteLoaded(EKind eKind, const QString &strFile, const CDialogDriver &driver, bool bByCamera)
{
  m_stOrigin = SCoefficientOrigin();
  m_stOrigin.eKind = eKind;
  if (!strFile.isEmpty()) {
    NoteFile(strFile, m_stOrigin);
  }
  if (bByCamera) {
    m_stOrigin.nAskedFrames = m_stOrigin.nFrames = driver.GetFrameCount();
    m_stOrigin.nExpectGray = driver.GetExpectGray();
  } else if (!strFile.isEmpty()) {
    NoteSideFile(m_stOrigin);
  }
}

} // namespace ffc::host
