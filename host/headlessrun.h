/// \file
/// The whole workflow through the plug-in's own dialog, without a person.
#pragma once

#include <memory>
#include <optional>

#include <QString>

#include "camera/icamera.h"
#include "host/commandline.h"
#include "host/dialogdriver.h"
#include "host/framecollector.h"
#include "host/progressline.h"
#include "host/quality/pairedstacks.h"
#include "host/resultfolder.h"
#include "host/viewer.h"

/// Cap on, dark field; cap off, bright field; execute; figures on fresh frames; coefficients to a file and
/// back; report. Stops at the first step that fails. Used once, on the user-interface thread.
///
/// Before and after are measured on the same exposures: each fresh frame as it came, and as ProcessImage
/// corrected it.
class CHeadlessRun {
public:
  /// \param pCamera its scene must be settable by software
  CHeadlessRun(const SHostOptions &stOptions, std::unique_ptr<ICamera> pCamera, CProgressLine &progress);
  ~CHeadlessRun();

  /// \return empty, or one line: the step and why it failed
  QString Run();
  /// Complete after a run that succeeded.
  const SReport &GetReport() const { return m_stReport; }

private:
  QString Open();
  QString OpenDialog();
  QString AcquireDark();
  QString AcquireBright();
  QString Execute();
  QString Measure();
  QString MeasureScene(bool bLensCap, CPairedStacks &stStacks);
  QString SaveFrames();
  QString CheckFile();
  QString CheckReloaded(const QString &strPath, const SFramePair &stReference);
  QString WriteResults();

  QString SetScene(bool bLensCap, ISceneControl::EPurpose ePurpose);
  QString CollectPair(SFramePair &stPair);
  /// Empty when the action had no error box; a red prompt becomes a note.
  QString Judge(const SDialogAnswer &stAnswer);
  QString ReadFormat();

  SHostOptions m_stOptions;
  CProgressLine &m_progress;
  CViewer m_viewer;
  CFrameCollector m_collector;
  CResultFolder m_folder;
  std::optional<CDialogDriver> m_driver;
  const SSensorFormat *m_pFormat = nullptr;
  CPairedStacks m_stBright;
  CPairedStacks m_stDark;
  SReport m_stReport;
};
