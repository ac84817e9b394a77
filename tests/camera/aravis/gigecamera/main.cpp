// A GigE Vision camera on this machine's own network: gigecamera SERIAL PIXELFORMAT WIDTH HEIGHT FRAMEPERIOD XML
// LOSTPACKETS ADDRESS
//
// The pixel format is a PFNC code in hexadecimal, the frame period in microseconds. Writes "ready" when it answers.
// Where a program stands for the XML file, that program is the camera, with its own settings; it is started when no
// other camera has the address, and killed at the end. Of a thousand packets of the frames, LOSTPACKETS are not sent.
// Each line "cover" or "uncover" on its standard input is obeyed and echoed; the end of the input ends it.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <thread>

#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include "camera/aravis/gobject.h"
#include "tests/camera/aravis/gigecamera/shadedscene.h"

using ffc::camera::CObjectPointer;
using ffc::test::CShadedScene;
using ffc::test::PowerOn;

namespace {

/// A machine has few addresses, and each is one camera's at a time: waits for its turn, which ends with the process.
bool WaitForAddress(const std::string &strAddress)
{
  sockaddr_un stName = {};
  stName.sun_family = AF_UNIX;
  const std::string strName = '\0' + ("ffc-gige-camera-" + strAddress); // the zero: a name without a file
  if (strName.size() > sizeof stName.sun_path) {
    return false;
  }
  std::memcpy(stName.sun_path, strName.data(), strName.size());
  const int nSocket = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  const auto nLength = socklen_t(offsetof(sockaddr_un, sun_path) + strName.size());
  while (nSocket >= 0 && bind(nSocket, reinterpret_cast<const sockaddr *>(&stName), nLength) != 0) {
    if (errno != EADDRINUSE) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return nSocket >= 0;
}

struct SCamera {
  CObjectPointer<ArvGvFakeCamera> pCamera;
  ArvFakeCamera *pFakeCamera = nullptr; ///< its own, as long as its thread runs
  CShadedScene scene;
};

bool IsDescription(const std::string &strFile)
{
  const std::string EXTENSION = ".xml";
  return strFile.size() > EXTENSION.size() &&
         strFile.compare(strFile.size() - EXTENSION.size(), EXTENSION.size(), EXTENSION) == 0;
}

/// Until the input ends.
int RunProgram(const char *pProgram, const char *pSerial, const char *pAddress)
{
  const pid_t nProcess = fork();
  if (nProcess == 0) {
    execlp(pProgram, pProgram, "-i", pAddress, "-s", pSerial, static_cast<char *>(nullptr));
    std::_Exit(EXIT_FAILURE);
  }
  std::cout << "ready" << std::endl;
  std::string strLine;
  while (std::getline(std::cin, strLine)) {
  }
  kill(nProcess, SIGKILL);
  waitpid(nProcess, nullptr, 0);
  return nProcess > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

void Fill(ArvBuffer *pBuffer, void *pCamera, guint32, guint32, ArvPixelFormat)
{
  auto *pOwn = static_cast<SCamera *>(pCamera);
  pOwn->scene.Expose(*pOwn->pFakeCamera, *pBuffer);
}

} // namespace

int main(int nArguments, char **pArguments)
{
  if (nArguments != 9 || !WaitForAddress(pArguments[8])) {
    return EXIT_FAILURE;
  }
  if (!IsDescription(pArguments[6])) {
    return RunProgram(pArguments[6], pArguments[1], pArguments[8]);
  }
  SCamera stCamera;
  stCamera.pCamera.reset(arv_gv_fake_camera_new_full(pArguments[8], pArguments[1], pArguments[6]));
  if (!arv_gv_fake_camera_is_running(stCamera.pCamera.get())) {
    return EXIT_FAILURE;
  }
  ArvFakeCamera *pFakeCamera = arv_gv_fake_camera_get_fake_camera(stCamera.pCamera.get());
  stCamera.pFakeCamera = pFakeCamera;
  const auto fnNumber = [&](int nArgument, int nBase) {
    return uint32_t(std::strtoul(pArguments[nArgument], nullptr, nBase));
  };
  PowerOn(*pFakeCamera, fnNumber(2, 16), fnNumber(3, 10), fnNumber(4, 10), fnNumber(5, 10));
  g_object_set(stCamera.pCamera.get(), "gvsp-lost-ratio", fnNumber(7, 10) / 1000.0, nullptr);
  arv_fake_camera_set_fill_pattern(pFakeCamera, Fill, &stCamera);
  std::cout << "ready" << std::endl;
  std::string strLine;
  while (std::getline(std::cin, strLine)) {
    if (strLine == "cover" || strLine == "uncover") {
      stCamera.scene.SetLensCap(strLine == "cover");
      std::cout << strLine << std::endl;
    }
  }
  stCamera.pCamera.reset();
  return EXIT_SUCCESS;
}
