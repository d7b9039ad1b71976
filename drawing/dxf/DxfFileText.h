// DxfFileText: the bytes of a DXF file, read piece by piece into a small window that moves on with the
// reader, so that a large drawing never sits in memory whole. When the window is full, what the reader
// still needs is copied into another one; the old window stays readable until the reader lets it go, so
// that views into the record in hand stay valid. Windows are used again, so the memory is touched once.
#pragma once

#include "drawing/dxf/DxfTokenizer.h"
#include "support/Export.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class QX_API DxfFileText : public DxfTextFeed {
public:
    // Null when the file cannot be opened or is no regular file.
    static std::unique_ptr<DxfFileText> open(const std::string& nativePath);
    ~DxfFileText() override;
    DxfFileText(const DxfFileText&) = delete;
    DxfFileText& operator=(const DxfFileText&) = delete;

    // The size of the file when it was opened: no more than that is read.
    size_t size() const { return m_size; }
    // The bytes at hand: from the first until more() is first called with a keep mark.
    std::string_view text() const { return {m_window.bytes.get() + m_start, m_filled - m_start}; }
    std::string_view more(size_t keepFrom) override;
    void release() override;
    // True when reading stopped at an error rather than at the end of the file.
    bool failed() const { return m_failed; }

private:
    struct Window {
        std::unique_ptr<char[]> bytes;
        size_t capacity = 0;
    };

    DxfFileText(int descriptor, size_t size) : m_descriptor(descriptor), m_size(size) {}
    Window takeWindow(size_t capacity);
    void moveToAnotherWindow();
    void readPiece();

    int m_descriptor;
    size_t m_size;
    size_t m_read = 0;
    Window m_window;
    size_t m_start = 0;   // where the text at hand begins in the window
    size_t m_filled = 0;  // how much of the window holds bytes of the file
    std::vector<Window> m_retired;  // earlier windows that views may still point into
    Window m_spare;                 // a window let go, to be used again
    bool m_atEnd = false;
    bool m_failed = false;
};
