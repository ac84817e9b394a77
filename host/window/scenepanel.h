/// \file
/// What stands before the lens of a camera that lets software arrange it.
#pragma once

#include <QGroupBox>

#include "camera/iscenecontrol.h"

class QCheckBox;
class QLabel;
class QSlider;

namespace ffc::host {

/// Hidden for a camera without a scene control.
class CScenePanel : public QGroupBox {
  Q_OBJECT

public:
  explicit CScenePanel(QWidget *pParent = nullptr);

  /// \param pScene outlives its use here; null: a real camera
  void SetScene(camera::ISceneControl *pScene);
  /// Shows what others have changed.
  void Refresh();
  /// The even target for a measurement, covered or not, whatever the user has chosen.
  void Arrange(bool bCovered);
  /// What the user has chosen, after measurements.
  void Restore();
  QWidget *GetLastInTabOrder() const;
  bool HasScene() const { return m_pScene != nullptr; }

private:
  void ShowIllumination(int nPercent);

  camera::ISceneControl *m_pScene = nullptr;
  bool m_bCapOn = false; ///< as the user left it
  QCheckBox *m_pLensCap;
  QCheckBox *m_pTestChart;
  QLabel *m_pLampLabel;
  QSlider *m_pLamp; ///< percent
  QLabel *m_pLampValue;
};

} // namespace ffc::host
