#include "genapi/sensorformat.h"

#include <algorithm>
#include <iterator>

namespace ffc::genapi {

namespace {

// No Bayer format of 14 bits: a correction in the host takes those for 8.
constexpr const char *NAMES[] = {
  "Mono8",     "Mono10",    "Mono12",    "Mono14",    "Mono16",    "BayerGR8",  "BayerGR10",
  "BayerGR12", "BayerGR16", "BayerRG8",  "BayerRG10", "BayerRG12", "BayerRG16", "BayerGB8",
  "BayerGB10", "BayerGB12", "BayerGB16", "BayerBG8",  "BayerBG10", "BayerBG12", "BayerBG16",
};

std::vector<SSensorFormat> MakeFormats()
{
  std::vector<SSensorFormat> listFormats;
  std::transform(std::begin(NAMES), std::end(NAMES), std::back_inserter(listFormats),
                 [](const char *pName) { return *FindPixelFormat(std::string_view(pName)); });
  return listFormats;
}

template <class TPredicate>
const SSensorFormat *FindFormat(TPredicate fnMatches)
{
  const auto &listFormats = GetSensorFormats();
  const auto itFormat = std::find_if(listFormats.begin(), listFormats.end(), fnMatches);
  return itFormat == listFormats.end() ? nullptr : &*itFormat;
}

} // namespace

const std::vector<SSensorFormat> &GetSensorFormats()
{
  static const std::vector<SSensorFormat> LIST_FORMATS = MakeFormats();
  return LIST_FORMATS;
}

const SSensorFormat *FindSensorFormat(std::string_view strName)
{
  return FindFormat([strName](const SSensorFormat &stFormat) { return stFormat.pName == strName; });
}

const SSensorFormat *FindSensorFormat(uint32_t nCode)
{
  return FindFormat([nCode](const SSensorFormat &stFormat) { return stFormat.nCode == nCode; });
}

std::vector<SSensorFormat> GetSensorFormats(EColorLayout eLayout)
{
  std::vector<SSensorFormat> listFormats;
  std::copy_if(GetSensorFormats().begin(), GetSensorFormats().end(), std::back_inserter(listFormats),
               [eLayout](const SSensorFormat &stFormat) { return stFormat.eLayout == eLayout; });
  return listFormats;
}

} // namespace ffc::genapi
