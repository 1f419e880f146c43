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

/// Waits on `condition` with `mutex` locked, as QWaitCondition::wait() does. Qt tells the thread
/// sanitizer what its mutex does but not that waiting lets go of it; this tells the rest.
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
