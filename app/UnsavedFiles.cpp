#include "UnsavedFiles.h"

bool UnsavedFiles::add(const File& file) {
    if (m_files.size() >= maxFiles || file.contents.size() > maxBytes - m_bytes)
        return false;
    m_bytes += file.contents.size();
    m_files.append(file);
    return true;
}

void UnsavedFiles::removeFirst() {
    m_bytes -= m_files.takeFirst().contents.size();
}

void UnsavedFiles::clear() {
    m_files.clear();
    m_bytes = 0;
}
