/// \file
/// What the samples of a recording are.
#pragma once

#include <optional>

#include <QGroupBox>

#include "frames/alignment.h"
#include "host/options/hostoptions.h"

class QComboBox;

namespace ffc::host {

/// Pixel format and alignment of recorded frames: as their files and values say, or as the user knows. Hidden for any
/// other camera.
class CRecordingPanel : public QGroupBox {
  Q_OBJECT

public:
  explicit CRecordingPanel(QWidget *pParent = nullptr);

  /// \param stCamera what the camera was opened with
  /// \param strPixelFormat that it plays
  void ShowCamera(const SCameraOptions &stCamera, const std::string &strPixelFormat);

signals:
  /// The user has chosen something else; what is left to the files and values is empty.
  void SigChosen(const QString &strPixelFormat, std::optional<ffc::frames::EAlignment> eAlignment);

private:
  void Choose();

  QComboBox *m_pFormat;
  QComboBox *m_pAlignment;
};

} // namespace ffc::host
