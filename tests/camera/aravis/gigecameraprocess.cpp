#include "tests/camera/aravis/gigecameraprocess.h"

#include <csignal>

#include <QCoreApplication>
#include <QStandardPaths>

namespace ffc::test {

namespace {

constexpr int WAIT_MS = 100000; ///< other cameras may have to end first

std::string MakeSerial()
{
  static int s_nCamera = 0;
  return "T" + std::to_string(QCoreApplication::applicationPid()) + "N" + std::to_string(++s_nCamera);
}

} // namespace

bool CGigeCameraProcess::IsStockThere()
{
  return !QStandardPaths::findExecutable(QStringLiteral(STOCK_CAMERA)).isEmpty();
}

CGigeCameraProcess::CGigeCameraProcess(const SOptions &stOptions) : m_stOptions(stOptions), m_strSerial(MakeSerial())
{
  m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  Start();
}

CGigeCameraProcess::~CGigeCameraProcess()
{
  End();
}

void CGigeCameraProcess::SetLensCap(bool bCovered)
{
  const QByteArray byteLine = bCovered ? "cover" : "uncover";
  m_process.write(byteLine + "\n");
  WaitForLine(byteLine);
}

void CGigeCameraProcess::Kill() const
{
  ::kill(pid_t(m_nProcessId), SIGKILL);
}

void CGigeCameraProcess::Restart()
{
  End();
  Start();
}

void CGigeCameraProcess::Start()
{
  m_process.start(QStringLiteral(GIGE_CAMERA),
                  {QString::fromStdString(m_strSerial), QString::number(m_stOptions.nPixelFormat, 16),
                   QString::number(m_stOptions.nWidth), QString::number(m_stOptions.nHeight),
                   QString::number(m_stOptions.nFramePeriod),
                   m_stOptions.bStock ? QStringLiteral(STOCK_CAMERA) : QStringLiteral(GIGE_CAMERA_XML),
                   QString::number(m_stOptions.nLostPackets)});
  m_process.waitForStarted();
  m_nProcessId = m_process.processId();
  WaitForLine("ready");
}

void CGigeCameraProcess::End()
{
  m_process.closeWriteChannel();
  m_process.waitForFinished();
}

bool CGigeCameraProcess::WaitForLine(const QByteArray &byteLine)
{
  while (m_process.canReadLine() || m_process.waitForReadyRead(WAIT_MS)) {
    if (m_process.canReadLine() && m_process.readLine().trimmed() == byteLine) {
      return true;
    }
  }
  return false;
}

} // namespace ffc::test
