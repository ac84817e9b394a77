#include "tests/camera/aravis/gigecameraprocess.h"

#include <csignal>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>

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

std::string CGigeCameraProcess::FindSecondAddress()
{
  ifaddrs *pInterfaces = nullptr;
  if (getifaddrs(&pInterfaces) != 0) {
    return {};
  }
  std::string strAddress;
  constexpr unsigned NEEDED = IFF_UP | IFF_RUNNING | IFF_BROADCAST;
  for (const ifaddrs *pInterface = pInterfaces; pInterface != nullptr && strAddress.empty();
       pInterface = pInterface->ifa_next) {
    if (pInterface->ifa_addr != nullptr && pInterface->ifa_addr->sa_family == AF_INET &&
        (pInterface->ifa_flags & NEEDED) == NEEDED) {
      char szAddress[INET_ADDRSTRLEN] = {};
      const auto *pAddress = reinterpret_cast<const sockaddr_in *>(pInterface->ifa_addr);
      strAddress = inet_ntop(AF_INET, &pAddress->sin_addr, szAddress, sizeof szAddress);
    }
  }
  freeifaddrs(pInterfaces);
  return strAddress;
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
                   QString::number(m_stOptions.nLostPackets), QString::fromStdString(m_stOptions.strAddress)});
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
