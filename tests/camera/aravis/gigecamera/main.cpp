// A GigE Vision camera on this machine's own network: gigecamera SERIAL PIXELFORMAT WIDTH HEIGHT FRAMEPERIOD XML
//
// The pixel format is a PFNC code in hexadecimal, the frame period in microseconds. Writes "ready" when it answers.
// Each line "cover" or "uncover" on its standard input is obeyed and echoed; the end of the input ends it.
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <thread>

#include <sys/socket.h>
#include <sys/un.h>

#include "camera/aravis/gobject.h"
#include "tests/camera/aravis/gigecamera/shadedscene.h"

using ffc::camera::CObjectPointer;
using ffc::test::CShadedScene;
using ffc::test::PowerOn;

namespace {

const char ADDRESS[] = "127.0.0.1";

/// All such cameras of a machine have the same address, so that one at a time can be there: waits for its turn, which
/// ends with the process.
bool WaitForAddress()
{
  sockaddr_un stName = {};
  stName.sun_family = AF_UNIX;
  const char NAME[] = "\0ffc-gige-camera"; // the zero: a name without a file
  std::memcpy(stName.sun_path, NAME, sizeof NAME - 1);
  const int nSocket = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  const auto nLength = socklen_t(offsetof(sockaddr_un, sun_path) + sizeof NAME - 1);
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
  CShadedScene scene;
};

void Fill(ArvBuffer *pBuffer, void *pCamera, guint32, guint32, ArvPixelFormat)
{
  auto *pOwn = static_cast<SCamera *>(pCamera);
  pOwn->scene.Expose(*arv_gv_fake_camera_get_fake_camera(pOwn->pCamera.get()), *pBuffer);
}

} // namespace

int main(int nArguments, char **pArguments)
{
  if (nArguments != 7 || !WaitForAddress()) {
    return EXIT_FAILURE;
  }
  SCamera stCamera;
  stCamera.pCamera.reset(arv_gv_fake_camera_new_full(ADDRESS, pArguments[1], pArguments[6]));
  if (!arv_gv_fake_camera_is_running(stCamera.pCamera.get())) {
    return EXIT_FAILURE;
  }
  ArvFakeCamera *pFakeCamera = arv_gv_fake_camera_get_fake_camera(stCamera.pCamera.get());
  const auto fnNumber = [&](int nArgument, int nBase) {
    return uint32_t(std::strtoul(pArguments[nArgument], nullptr, nBase));
  };
  PowerOn(*pFakeCamera, fnNumber(2, 16), fnNumber(3, 10), fnNumber(4, 10), fnNumber(5, 10));
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
