#include "tests/camera/aravis/gigecamera/shadedscene.h"

#include <algorithm>
#include <cmath>

#include "camera/aravis/frameunpacker.h"
#include "genapi/sensorformat.h"

namespace ffc::test {

using genapi::FindSensorFormat;

namespace {

constexpr uint32_t IS_COLOR = 0x1000;
constexpr uint32_t BLACK_LEVEL = 0x1004;
constexpr uint32_t BALANCE_WHITE_AUTO = 0x1008;
constexpr uint32_t BALANCE_RATIO = 0x1010;
constexpr uint32_t BALANCE_OFF = 0;
constexpr uint32_t BALANCE_ONCE = 1;

constexpr double FULL_SCALE = 255.0;
constexpr double LIGHT = 150.0;  ///< of full scale 255, in the centre, at the exposure time after power on
constexpr double FALLOFF = 0.45; ///< what the corners lack
constexpr double PIXEL_SPREAD = 0.03;
constexpr double NOISE = 0.8;                ///< of full scale 255, largest
constexpr double COLORS[] = {0.9, 1.0, 0.7}; ///< of the light, by EColor
constexpr uint32_t EXPOSURE_TIME = 10000;    ///< microseconds
constexpr uint32_t RATIO_ONE = 1000;

/// A number from -1 to 1 that looks random and is the same for the same place.
double Scatter(uint32_t nX, uint32_t nY, uint32_t nSalt)
{
  uint32_t nHash = nX * 0x9E3779B1U ^ nY * 0x85EBCA77U ^ nSalt * 0xC2B2AE3DU;
  nHash = (nHash ^ nHash >> 15U) * 0x2C1B3C6DU;
  nHash = (nHash ^ nHash >> 12U) * 0x297A2D39U;
  return double(nHash >> 8U & 0xFFFFU) / 32767.5 - 1.0;
}

uint32_t Read(ArvFakeCamera &camera, uint32_t nAddress)
{
  guint32 nValue = 0;
  arv_fake_camera_read_register(&camera, nAddress, &nValue);
  return nValue;
}

/// The format of the samples before they are packed.
const genapi::SSensorFormat &GetSampleFormat(uint32_t nPixelFormat)
{
  const genapi::SPixelFormat *pPacked = camera::FindPackedFormat(nPixelFormat);
  return *FindSensorFormat(pPacked == nullptr ? nPixelFormat : genapi::FindUnpackedFormat(*pPacked)->nCode);
}

/// Two samples of 12 bits in three bytes, their low bits in the middle one.
void PutPacked(uint8_t *pData, std::size_t nSample, uint32_t nValue)
{
  uint8_t *pGroup = pData + nSample / 2 * 3;
  const bool bSecond = nSample % 2 != 0;
  pGroup[bSecond ? 2 : 0] = uint8_t(nValue >> 4U);
  const uint32_t nOther = pGroup[1] & (bSecond ? 0x0FU : 0xF0U);
  pGroup[1] = uint8_t(nOther | (nValue & 0x0FU) << (bSecond ? 4U : 0U));
}

void Put(uint8_t *pData, uint32_t nPixelFormat, std::size_t nSample, uint32_t nValue)
{
  if (camera::FindPackedFormat(nPixelFormat) != nullptr) {
    PutPacked(pData, nSample, nValue);
  } else if (GetSampleFormat(nPixelFormat).GetBytesPerPixel() == 2) {
    pData[nSample * 2] = uint8_t(nValue);
    pData[nSample * 2 + 1] = uint8_t(nValue >> 8U);
  } else {
    pData[nSample] = uint8_t(nValue);
  }
}

/// Light on one pixel relative to the centre, and how the pixel takes it.
double GetResponse(uint32_t nX, uint32_t nY, uint32_t nWidth, uint32_t nHeight)
{
  const double dX = 2.0 * nX / nWidth - 1.0;
  const double dY = 2.0 * nY / nHeight - 1.0;
  return (1.0 - FALLOFF * (dX * dX + dY * dY) / 2.0) * (1.0 + PIXEL_SPREAD * Scatter(nX, nY, 0));
}

} // namespace

void CShadedScene::Expose(ArvFakeCamera &camera, ArvBuffer &buffer)
{
  std::size_t nReceived = 0;
  auto *pData = static_cast<uint8_t *>(const_cast<void *>(arv_buffer_get_data(&buffer, &nReceived)));
  const uint32_t nPixelFormat = arv_buffer_get_image_pixel_format(&buffer);
  const uint32_t nWidth = uint32_t(arv_buffer_get_image_width(&buffer));
  const uint32_t nHeight = uint32_t(arv_buffer_get_image_height(&buffer));
  const genapi::SSensorFormat &stFormat = GetSampleFormat(nPixelFormat);
  const double dExposure = double(Read(camera, ARV_FAKE_CAMERA_REGISTER_EXPOSURE_TIME_US)) / EXPOSURE_TIME;
  const double dGain = std::pow(10.0, double(Read(camera, ARV_FAKE_CAMERA_REGISTER_GAIN_RAW)) / 200.0);
  const double dLight = m_bLensCapOn ? 0.0 : LIGHT * dExposure * dGain;
  const double dBlack = 2.0 + Read(camera, BLACK_LEVEL);
  double adColors[genapi::COLOR_COUNT] = {1.0, 1.0, 1.0};
  for (uint32_t nColor = 0; stFormat.eLayout != genapi::EColorLayout::Mono && nColor < genapi::COLOR_COUNT; ++nColor) {
    adColors[nColor] = COLORS[nColor] * Read(camera, BALANCE_RATIO + 4 * nColor) / RATIO_ONE;
  }
  for (uint32_t nY = 0; nY < nHeight; ++nY) {
    for (uint32_t nX = 0; nX < nWidth; ++nX) {
      const double dColor = adColors[int(genapi::GetPixelColor(stFormat.eLayout, nX, nY))];
      const double dSignal =
        dBlack + NOISE * Scatter(nX, nY, m_nFrame + 1) + dLight * dColor * GetResponse(nX, nY, nWidth, nHeight);
      const double dScaled = std::clamp(dSignal / FULL_SCALE, 0.0, 1.0) * stFormat.GetMaxValue();
      Put(pData, nPixelFormat, std::size_t{nY} * nWidth + nX, uint32_t(std::lround(dScaled)));
    }
  }
  ++m_nFrame;
  Balance(camera);
}

/// Takes a frame to look at and is done.
void CShadedScene::Balance(ArvFakeCamera &camera)
{
  if (Read(camera, BALANCE_WHITE_AUTO) != BALANCE_ONCE || m_bLensCapOn) {
    return;
  }
  for (uint32_t nColor = 0; nColor < genapi::COLOR_COUNT; ++nColor) {
    arv_fake_camera_write_register(&camera, BALANCE_RATIO + 4 * nColor, uint32_t(RATIO_ONE / COLORS[nColor]));
  }
  arv_fake_camera_write_register(&camera, BALANCE_WHITE_AUTO, BALANCE_OFF);
}

void PowerOn(ArvFakeCamera &camera, uint32_t nPixelFormat, uint32_t nWidth, uint32_t nHeight, uint32_t nFramePeriod)
{
  const bool bColor = GetSampleFormat(nPixelFormat).eLayout != genapi::EColorLayout::Mono;
  const std::pair<uint32_t, uint32_t> REGISTERS[] = {
    {ARV_FAKE_CAMERA_REGISTER_SENSOR_WIDTH, nWidth},
    {ARV_FAKE_CAMERA_REGISTER_SENSOR_HEIGHT, nHeight},
    {ARV_FAKE_CAMERA_REGISTER_WIDTH, nWidth},
    {ARV_FAKE_CAMERA_REGISTER_HEIGHT, nHeight},
    {ARV_FAKE_CAMERA_REGISTER_PIXEL_FORMAT, nPixelFormat},
    {ARV_FAKE_CAMERA_REGISTER_ACQUISITION_FRAME_PERIOD_US, nFramePeriod},
    {ARV_FAKE_CAMERA_REGISTER_EXPOSURE_TIME_US, EXPOSURE_TIME},
    {IS_COLOR, bColor ? 1U : 0U},
    {BALANCE_RATIO, RATIO_ONE},
    {BALANCE_RATIO + 4, RATIO_ONE},
    {BALANCE_RATIO + 8, RATIO_ONE},
  };
  for (const auto &[nAddress, nValue] : REGISTERS) {
    arv_fake_camera_write_register(&camera, nAddress, nValue);
  }
}

} // namespace ffc::test
