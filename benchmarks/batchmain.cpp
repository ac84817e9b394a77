// What correcting recorded frames costs beside copying them: ffc on TIFF files of 5 megapixels and 12 bits, a plain
// copy by the same library, and the same correction with OpenCV. Prints "name value" lines. Linux only: it asks /proc.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <opencv2/core.hpp>
#include <tiffio.h>

namespace {

constexpr int ROUNDS = 5; // of which the fastest counts
constexpr uint32_t STRIP_ROWS = 200;

QString s_strTool; ///< ffc

struct SSize {
  uint32_t nWidth;
  uint32_t nHeight;
};

constexpr SSize LARGE = {2592, 1944};
constexpr SSize SMALL = {320, 240};

struct SCloseTiff {
  void operator()(TIFF *pTiff) const { TIFFClose(pTiff); }
};
using TiffPtr = std::unique_ptr<TIFF, SCloseTiff>;

[[noreturn]] void GiveUp(const QString &strWhat)
{
  std::fprintf(stderr, "batch_benchmark: %s\n", qPrintable(strWhat));
  std::exit(1);
}

TiffPtr Open(const QString &strPath, const char *pMode)
{
  TiffPtr pTiff(TIFFOpen(strPath.toLocal8Bit().constData(), pMode));
  if (pTiff == nullptr) {
    GiveUp("cannot open " + strPath);
  }
  return pTiff;
}

void WriteFrame(TIFF *pTiff, const cv::Mat &frame)
{
  TIFFSetField(pTiff, TIFFTAG_IMAGEWIDTH, static_cast<uint32_t>(frame.cols));
  TIFFSetField(pTiff, TIFFTAG_IMAGELENGTH, static_cast<uint32_t>(frame.rows));
  TIFFSetField(pTiff, TIFFTAG_BITSPERSAMPLE, 16);
  TIFFSetField(pTiff, TIFFTAG_SAMPLESPERPIXEL, 1);
  TIFFSetField(pTiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
  TIFFSetField(pTiff, TIFFTAG_ROWSPERSTRIP, STRIP_ROWS);
  bool bWritten = true;
  for (uint32_t nRow = 0; nRow < static_cast<uint32_t>(frame.rows); nRow += STRIP_ROWS) {
    const uint32_t nRows = std::min(STRIP_ROWS, static_cast<uint32_t>(frame.rows) - nRow);
    void *pRows = const_cast<uint8_t *>(frame.ptr(static_cast<int>(nRow)));
    bWritten = TIFFWriteEncodedStrip(pTiff, nRow / STRIP_ROWS, pRows, tmsize_t{nRows} * frame.cols * 2) > 0 && bWritten;
  }
  if (!bWritten || TIFFWriteDirectory(pTiff) != 1) {
    GiveUp("there is no room for the frames");
  }
}

void ReadFrame(TIFF *pTiff, cv::Mat &frame)
{
  for (uint32_t nRow = 0; nRow < static_cast<uint32_t>(frame.rows); nRow += STRIP_ROWS) {
    TIFFReadEncodedStrip(pTiff, nRow / STRIP_ROWS, frame.ptr(static_cast<int>(nRow)), -1);
  }
}

/// A shaded frame with noise; others differ in their level.
cv::Mat MakeFrame(const SSize &stSize, double dLevel)
{
  cv::Mat frame(static_cast<int>(stSize.nHeight), static_cast<int>(stSize.nWidth), CV_16UC1);
  cv::randu(frame, 0, 64);
  for (int nY = 0; nY < frame.rows; ++nY) {
    for (int nX = 0; nX < frame.cols; ++nX) {
      const double dShading = 1.0 - 0.4 * std::abs(static_cast<double>(nX) / frame.cols - 0.5);
      frame.at<uint16_t>(nY, nX) = static_cast<uint16_t>(frame.at<uint16_t>(nY, nX) + 50 + dLevel * dShading);
    }
  }
  return frame;
}

/// One file with so many frames, or as many files.
void WriteFrames(const QDir &dir, const SSize &stSize, int nFrames, bool bOneFile)
{
  const cv::Mat base = MakeFrame(stSize, 2500);
  TiffPtr pTiff;
  for (int n = 0; n < nFrames; ++n) {
    if (!bOneFile || n == 0) {
      pTiff = Open(dir.filePath(QStringLiteral("frame_%1.tif").arg(n, 4, 10, QLatin1Char('0'))), "w");
    }
    WriteFrame(pTiff.get(), base + cv::Scalar(n % 256));
  }
}

/// Reads all frames of a folder, changes and writes them, on one thread.
void ProcessFrames(const QDir &from, const QDir &to, const std::function<void(cv::Mat &)> &fnChange)
{
  cv::Mat frame(static_cast<int>(LARGE.nHeight), static_cast<int>(LARGE.nWidth), CV_16UC1);
  for (const QString &strName : from.entryList(QDir::Files)) {
    const TiffPtr pIn = Open(from.filePath(strName), "rm");
    const TiffPtr pOut = Open(to.filePath(strName), "w");
    do {
      ReadFrame(pIn.get(), frame);
      fnChange(frame);
      WriteFrame(pOut.get(), frame);
    } while (TIFFReadDirectory(pIn.get()) == 1);
  }
}

double ReadPeak(qint64 nProcess)
{
  std::ifstream file("/proc/" + std::to_string(nProcess) + "/status");
  std::string strWord;
  double dKilobytes = 0.0;
  while (file >> strWord && strWord != "VmHWM:") {
  }
  file >> dKilobytes;
  return dKilobytes / 1024.0;
}

/// \return the program's peak memory in megabytes, as it was a millisecond before its end
double RunTool(const QStringList &listArguments)
{
  QProcess tool;
  tool.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  tool.start(s_strTool, listArguments + QStringList{"--quiet"});
  double dPeak = 0;
  while (!tool.waitForFinished(1) && tool.state() != QProcess::NotRunning) {
    dPeak = std::max(dPeak, ReadPeak(tool.processId()));
  }
  if (tool.exitStatus() != QProcess::NormalExit || tool.exitCode() != 0) {
    GiveUp("ffc " + listArguments.join(' ') + " failed");
  }
  return dPeak;
}

/// Folders of the frames and of what is made of them.
class CFolders {
public:
  explicit CFolders(const QString &strRoot) : m_root(strRoot + "/ffc-XXXXXX")
  {
    for (const char *pName : {"in", "dark", "out"}) {
      QDir(m_root.path()).mkdir(pName);
    }
  }

  QDir Get(const char *pName) const { return QDir(m_root.filePath(pName)); }
  QString GetFlat() const { return m_root.filePath("flat.ffc"); }
  void EmptyOut() const
  {
    Get("out").removeRecursively();
    QDir(m_root.path()).mkdir("out");
  }

private:
  QTemporaryDir m_root;
};

void MakeFlat(const CFolders &folders, const SSize &stSize)
{
  WriteFrame(Open(folders.Get("dark").filePath("dark.tif"), "w").get(), MakeFrame(stSize, 0));
  RunTool({"make", "--dark", folders.Get("dark").path(), "--bright", folders.Get("in").filePath("frame_0000.tif"),
           "--pixel-format", "Mono12", "-o", folders.GetFlat()});
}

/// The fastest of several rounds, in which all take their turn.
void MeasureInTurn(const char *pName, const CFolders &folders,
                   const std::vector<std::pair<const char *, std::function<void()>>> &listWork)
{
  std::vector<double> listFastest(listWork.size(), std::numeric_limits<double>::max());
  for (int nRound = 0; nRound < ROUNDS; ++nRound) {
    for (std::size_t n = 0; n < listWork.size(); ++n) {
      folders.EmptyOut();
      const auto start = std::chrono::steady_clock::now();
      listWork[n].second();
      const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
      listFastest[n] = std::min(listFastest[n], seconds.count());
    }
  }
  for (std::size_t n = 0; n < listWork.size(); ++n) {
    std::printf("%s %s %.4f\n", pName, listWork[n].first, listFastest[n]);
  }
}

void MeasureSpeed(const QString &strRoot, const char *pName, int nFrames, bool bOneFile)
{
  const CFolders folders(strRoot);
  WriteFrames(folders.Get("in"), LARGE, nFrames, bOneFile);
  MakeFlat(folders, LARGE);
  cv::Mat gain;
  cv::Mat dark;
  MakeFrame(LARGE, 0).convertTo(dark, CV_32F);
  MakeFrame(LARGE, 2500).convertTo(gain, CV_32F);
  gain = 2500.0 / (gain - dark);
  const QDir in = folders.Get("in");
  const QDir out = folders.Get("out");
  const auto fnApply = [&](const char *pThreads) {
    RunTool({"apply", folders.GetFlat(), in.path(), "-o", out.path(), "--threads", pThreads});
  };
  const auto fnCorrect = [&](cv::Mat &frame) {
    cv::Mat difference;
    cv::subtract(frame, dark, difference, cv::noArray(), CV_32F);
    cv::multiply(difference, gain, frame, 1.0, CV_16U);
    cv::min(frame, 4095, frame);
  };
  MeasureInTurn(pName, folders,
                {{"copy", [&] { ProcessFrames(in, out, [](cv::Mat &) {}); }},
                 {"apply2", [&] { fnApply("2"); }},
                 {"apply1", [&] { fnApply("1"); }},
                 {"opencv", [&] { ProcessFrames(in, out, fnCorrect); }}});
}

void MeasureMemory(const QString &strRoot, int nFrames)
{
  const CFolders folders(strRoot);
  WriteFrames(folders.Get("in"), SMALL, nFrames, true);
  MakeFlat(folders, SMALL);
  std::printf(
    "memory frames_%d %.1f\n", nFrames,
    RunTool({"apply", folders.GetFlat(), folders.Get("in").path(), "-o", folders.Get("out").path(), "--threads", "2"}));
}

} // namespace

int main(int argc, char **argv)
{
  if (argc != 4) {
    GiveUp("usage: batch_benchmark FFC FOLDER FRAMES; frames of 10 MB are in the folder twice");
  }
  cv::setNumThreads(1);
  s_strTool = QString::fromLocal8Bit(argv[1]);
  const QString strRoot = QString::fromLocal8Bit(argv[2]);
  MeasureSpeed(strRoot, "one_file", std::atoi(argv[3]), true);
  MeasureSpeed(strRoot, "single_files", std::atoi(argv[3]), false);
  for (const int nFrames : {20, 2000}) {
    MeasureMemory(strRoot, nFrames);
  }
  return 0;
}
