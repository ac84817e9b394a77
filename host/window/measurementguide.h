/// \file
/// Leads the user through a measurement.
#pragma once

#include <optional>

#include "host/measurement/measurement.h"
#include "host/window/waitbox.h"

namespace ffc::host {

class CScenePanel;

/// Arranges a scene that software can arrange; for a real camera asks the user to cover and uncover the lens.
class CMeasurementGuide final : public QObject, public IMeasurementGuide {
  Q_OBJECT

public:
  /// \param pWindow boxes stand over it
  CMeasurementGuide(CScenePanel &scenePanel, QWidget *pWindow);
  /// Puts the scene back.
  ~CMeasurementGuide() override;

  bool ArrangeScene(bool bCovered) override;
  void ShowProgress(const QString &strStep, uint32_t nDone, uint32_t nTotal) override;
  bool IsCancelled() const override;

private:
  CScenePanel &m_scenePanel;
  QWidget *m_pWindow;
  std::optional<CWaitBox> m_box; ///< none while the user is asked
};

} // namespace ffc::host
