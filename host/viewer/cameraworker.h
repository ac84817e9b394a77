/// \file
/// The thread on which cameras are opened, asked and destroyed.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

#include <QObject>

namespace ffc::host {

/// Does what takes a camera long beside the user interface, one thing at a time and in the order in which it was given.
/// Used on the user-interface thread, where results are taken care of. Where no thread can be had, work is done at
/// once.
class CCameraWorker : public QObject {
  Q_OBJECT

public:
  /// Runs on the worker's thread and returns what to do with its result on the user-interface thread, through its event
  /// loop; null: nothing. Memory that is short ends it without.
  using Work = std::function<std::function<void()>()>;

  explicit CCameraWorker(QObject *pParent = nullptr);
  /// Waits until all work is done; results are dropped.
  ~CCameraWorker() override;

  void Post(Work fnWork);
  /// Lets all events but the user's input pass until this work, and all before it, is done.
  void RunLive(const std::function<void()> &fnWork);
  /// Waits until all work is done, and lets no event pass.
  void Finish();

private slots:
  void SlotDone();

private:
  bool StartThread();
  void Run();
  void Do(const Work &fnWork);

  std::thread m_thread;
  std::mutex m_mutex; ///< guards what follows
  std::condition_variable m_condition;
  std::deque<Work> m_listWork;                  ///< the first one is under way
  std::deque<std::function<void()>> m_listDone; ///< results that nobody has taken care of yet
  bool m_bEnd = false;
};

} // namespace ffc::host
