/// \file
/// A small live view, for trying the plug-in by hand.
#pragma once

#include <QWidget>

#include "host/viewer.h"

class QLabel;
class QPushButton;

/// Shows the latest frame and says whether it is corrected; starts and stops the stream; sets what stands
/// before the lens of a camera that lets software do so. Closing it ends the program.
class CLiveWindow : public QWidget {
  Q_OBJECT

public:
  /// \param viewer open, and outlives the window
  explicit CLiveWindow(CViewer &viewer);

protected:
  void timerEvent(QTimerEvent *pEvent) override;
  void closeEvent(QCloseEvent *pEvent) override;

private slots:
  void SlotStartStop();

private:
  void ShowFrame(const SFrameCopy &stFrame);
  QString DescribeFrame(const SFrameCopy &stFrame);
  void ShowStreamState();

  CViewer &m_viewer;
  QLabel *m_pPicture;
  QLabel *m_pState;
  QPushButton *m_pStartStop;
  SFrameCopy m_stFrame;
};
