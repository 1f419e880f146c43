#pragma once

#include <atomic>
#include <memory>
#include <semaphore>

/// Tells when a thread is gone for good.
///
/// QThread::wait() returns while the thread is still on its way out of QThread's own code, and does
/// so in a manner that the thread sanitizer does not see. Who deletes the QThread next waits for
/// this as well.
class ThreadExit {
public:
    /// Called once, by the thread that is to be waited for.
    void enter();
    /// Waits until that thread has left all code but the system's; at once if it never entered.
    void wait();

private:
    std::shared_ptr<std::binary_semaphore> m_gone = std::make_shared<std::binary_semaphore>(0);
    std::atomic<bool> m_entered = false;
};
