/// \file
/// How flat the image is, in figures.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QDateTime>
#include <QWidget>

#include "host/window/correctionstate.h"
#include "quality/qualityresult.h"

class QDoubleSpinBox;
class QLabel;
class QLayout;
class QPushButton;
class QTableWidget;

namespace ffc::host {

/// Figures before and after, per colour plane, with a verdict against the user's limits, advice on the frame count, and
/// drift. It shows and asks; measuring is the window's matter.
class CQualityPanel : public QWidget {
  Q_OBJECT

public:
  explicit CQualityPanel(QWidget *pParent = nullptr);

  const quality::SLimits &GetLimits() const { return m_stLimits; }
  void SetLimits(const quality::SLimits &stLimits);
  void ShowResult(std::shared_ptr<const quality::SResult> pResult, const QDateTime &dtMeasured);
  /// The result does not belong to the present coefficients and frames any more. It stays, in grey; the first reason
  /// counts.
  /// \param strEvent what has happened since: "a new acquisition"
  void MarkStale(const QString &strEvent);
  /// Marks a result that was measured on frames of another shape.
  void CheckShape(const SFrameShape &stShape);
  /// There is a result, and it is not stale.
  bool CanSaveReport() const { return m_pResult != nullptr && m_strStale.isEmpty(); }
  const QDateTime &GetMeasuredTime() const { return m_dtMeasured; }
  void ShowDrift(double dShadingPercent);
  /// Another camera: nothing is known.
  void Clear();
  /// \param bBusy buttons are disabled
  void SetBusy(bool bBusy);
  void ShowMessage(const QString &strMessage);
  /// Null before a measurement.
  const std::shared_ptr<const quality::SResult> &GetResult() const { return m_pResult; }

signals:
  void SigMeasure();
  void SigCheckDrift();
  void SigSaveReport();
  void SigReportReady(bool bReady); ///< whether there is one that can be saved

private:
  QLabel *AddText(const char *pName);
  QLayout *MakeLimitFields();
  void FillTable(const quality::SReport &stReport);
  void ShowPictures();
  void ShowVerdict();

  std::shared_ptr<const quality::SResult> m_pResult;
  QDateTime m_dtMeasured;
  QString m_strStale;             ///< what has happened since; empty: nothing
  std::optional<double> m_dDrift; ///< percent
  bool m_bBusy = false;
  QPushButton *m_pMeasure;
  QPushButton *m_pCheckDrift;
  QPushButton *m_pSaveReport;
  quality::SLimits m_stLimits;
  std::vector<QDoubleSpinBox *> m_listLimitFields; ///< shading, PRNU, DSNU
  QLabel *m_pVerdict;
  QTableWidget *m_pTable;
  QLabel *m_pPictureBefore;
  QLabel *m_pPictureAfter;
  QLabel *m_pPictureTitle;
  QLabel *m_pFindings;
  QLabel *m_pDrift;
};

} // namespace ffc::host
