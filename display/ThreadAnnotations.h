#pragma once

#include <QMutex>
#include <QWaitCondition>

#if defined(__SANITIZE_THREAD__)
#define GX_THREAD_SANITIZER
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define GX_THREAD_SANITIZER
#endif
#endif
#ifdef GX_THREAD_SANITIZER
#include <sanitizer/tsan_interface.h>
#endif

// Qt's libraries are not built for the thread sanitizer, which therefore misses that some of their
// operations order two threads. These functions tell it; in other builds they add nothing.

/// Waits on `condition` with `mutex` locked, as QWaitCondition::wait() does.
inline void annotatedWait(QWaitCondition& condition, QMutex& mutex) {
#ifdef GX_THREAD_SANITIZER
    __tsan_mutex_pre_unlock(&mutex, 0);
    __tsan_mutex_post_unlock(&mutex, 0);
#endif
    condition.wait(&mutex);
#ifdef GX_THREAD_SANITIZER
    __tsan_mutex_pre_lock(&mutex, 0);
    __tsan_mutex_post_lock(&mutex, 0, 0);
#endif
}

/// At the end of a thread's run(): all that it did comes before what a thread does that has waited
/// for it and then calls annotateJoined() with the same key.
inline void annotateEnd([[maybe_unused]] void* key) {
#ifdef GX_THREAD_SANITIZER
    __tsan_release(key);
#endif
}

/// After QThread::wait(): the other end of annotateEnd().
inline void annotateJoined([[maybe_unused]] void* key) {
#ifdef GX_THREAD_SANITIZER
    __tsan_acquire(key);
#endif
}
