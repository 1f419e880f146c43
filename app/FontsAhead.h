#pragma once

#include <thread>

/// Has fontconfig read its files on a thread of its own, so that Qt finds that done when the first
/// text is to be measured. Make one before the QApplication; its end waits for the thread.
class FontsAhead {
public:
    FontsAhead();
    ~FontsAhead();

    FontsAhead(const FontsAhead&) = delete;
    FontsAhead& operator=(const FontsAhead&) = delete;

private:
    std::thread m_thread;
};
