/// \file
/// Work beside the user interface.
#pragma once

#include <functional>
#include <mutex>
#include <thread>

#include <QObject>

namespace ffc::host {

/// Runs one piece of work at a time on a thread of its own, and what is to be done with the result on the thread of
/// this object afterwards, through its event loop. Destroying it waits for work under way; its result is dropped.
class CBackground : public QObject {
  Q_OBJECT

public:
  explicit CBackground(QObject *pParent = nullptr);
  ~CBackground() override;

  bool IsBusy() const { return m_bBusy; }
  /// Lets events pass until the work is done and its result taken care of.
  void Wait();
  /// \param fnWork on the other thread; returns what to do with the result; memory that is
  /// short ends the work without
  /// \return false while busy, or when there is no thread to be had; nothing is done then
  bool Start(std::function<std::function<void()>()> fnWork);

private slots:
  void SlotFinished();

private:
  void Run(const std::function<std::function<void()>()> &fnWork);

  std::thread m_thread;
  bool m_bBusy = false; ///< of this object's thread
  std::mutex m_mutex;   ///< guards what follows
  std::function<void()> m_fnWhenDone;
};

} // namespace ffc::host
