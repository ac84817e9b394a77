/// \file
/// The camera: which one, whether it streams, and how it exposes.
#pragma once

#include <string>
#include <vector>

#include <QGroupBox>

#include "host/options/camerachoice.h"
#include "host/viewer/featurestate.h"
#include "host/viewer/viewer.h"

class QComboBox;
class QFormLayout;
class QLabel;
class QPushButton;
class QToolButton;

namespace ffc::host {

class CFeatureEdit;

class CCameraPanel : public QGroupBox {
  Q_OBJECT

public:
  explicit CCameraPanel(QWidget *pParent = nullptr);

  void SetChoices(const std::vector<SCameraChoice> &listChoices);
  /// Marks a choice as the one that is open.
  void Select(int nChoice);
  /// \param pViewer null: no camera is open
  /// \param bRecorded it plays recorded frames: what would change their exposure or size is not shown
  void SetViewer(CViewer *pViewer, bool bRecorded = false);
  /// Reads everything from the camera anew. What it locks while it streams says so.
  void Refresh();
  /// What the panel shows of a camera.
  std::vector<std::string> GetFeatures() const;
  /// Shows what was read of these.
  void ShowStates(const CFeatureStates &mapStates);
  /// Shows what went wrong with the camera; empty: nothing did.
  void ShowError(const QString &strError);

signals:
  void SigChosen(int nChoice);
  void SigStartStop();
  /// The user has changed a feature.
  void SigWritten();
  /// The exposure is to be found.
  void SigExpose();

private:
  void AddExposure(QFormLayout *pLayout);
  void AddEdit(QFormLayout *pLayout, const QString &strLabel, CFeatureEdit *pEdit, bool bLockedWhileStreaming);

  void AddRegion(QFormLayout *pLayout);
  void AddOptional(QFormLayout *pLayout, const QString &strLabel, CFeatureEdit *pEdit, bool bLockedWhileStreaming);
  void Watch(CFeatureEdit *pEdit, QWidget *pLabel, bool bLockedWhileStreaming, bool bOptional);
  void ShowRows();

  struct SEdit {
    CFeatureEdit *pEdit;
    QWidget *pLabel;
    bool bLockedWhileStreaming;
    bool bOptional; ///< only shown where the camera has it
  };

  bool IsStreaming() const { return m_pViewer != nullptr && m_pViewer->GetCamera().IsStreaming(); }
  QString GetLockedReason(const SEdit &stEdit) const;
  void ShowStream();

  CViewer *m_pViewer = nullptr;
  bool m_bRecorded = false;
  QComboBox *m_pChooser;
  QPushButton *m_pStartStop = nullptr;
  QToolButton *m_pExpose = nullptr;
  QLabel *m_pError;
  QLabel *m_pNotes; ///< features that are not the camera's own
  std::vector<SEdit> m_listEdits;
};

} // namespace ffc::host
