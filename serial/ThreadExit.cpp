#include "ThreadExit.h"

namespace {

/// Destroyed with its thread, after everything that a QThread does at its end.
struct Release {
    std::shared_ptr<std::binary_semaphore> gone;
    Release() = default;
    Release(const Release&) = delete;
    Release& operator=(const Release&) = delete;
    ~Release() {
        if (gone)
            gone->release();
    }
};

} // namespace

void ThreadExit::enter() {
    thread_local Release release;
    release.gone = m_gone;
    m_entered = true;
}

void ThreadExit::wait() {
    if (m_entered.exchange(false))
        m_gone->acquire();
}
