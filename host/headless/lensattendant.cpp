#include "host/headless/lensattendant.h"

#include <istream>
#include <ostream>
#include <string>

#include <QThread>

namespace ffc::host {

Result<> CTerminalAttendant::Cover(bool bCovered)
{
  if (m_bCovered == bCovered) {
    return {};
  }
  const char *pWhat = bCovered ? "cover the lens" : "uncover the lens, with an evenly lit target before it";
  if (m_dDelay) {
    m_output << pWhat << std::endl;
    QThread::msleep(static_cast<unsigned long>(*m_dDelay * 1000));
  } else {
    m_output << pWhat << ", then press Enter" << std::endl;
    std::string strLine;
    if (!std::getline(m_input, strLine)) {
      return Failure("nobody is there to " + std::string(bCovered ? "cover" : "uncover") +
                     " the lens: the input has ended; for a rig with a shutter there is --no-wait");
    }
  }
  m_bCovered = bCovered;
  return {};
}

} // namespace ffc::host
