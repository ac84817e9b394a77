#include "pluginobject/shadingcorrection/process/camerastate/balancerun.h"

#include <string>

void RunWhiteBalance(const CFeatureAccess &features, CFrameExchange &exchange, uint32_t nTimeout,
                     const std::function<void()> &fnStartStream)
{
  constexpr int ATTEMPTS = 5;
  exchange.RequestFrame();
  exchange.ForgetFrame();
  fnStartStream();
  for (int nAttempt = 0; nAttempt < ATTEMPTS && exchange.WaitFrameReady(nTimeout); ++nAttempt) {
    std::string strState;
    // A camera that does not tell its state is given the remaining frames.
    (void)features.GetEnumFeature("BalanceWhiteAuto", strState);
    if (strState == "Off") {
      break;
    }
    exchange.RequestFrame();
  }
  exchange.WithdrawRequest();
}
