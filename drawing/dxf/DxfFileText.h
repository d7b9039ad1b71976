// DxfFileText: the bytes of a DXF file, read as the reader moves on and given back behind it, so that a
// large drawing never sits in memory whole. The bytes keep their addresses in one reserved range, so
// that views into the record in hand stay valid while more is read.
#pragma once

#include "drawing/dxf/DxfTokenizer.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

class DxfFileText : public DxfTextFeed {
public:
    // Null when the file cannot be opened or is no regular file.
    static std::unique_ptr<DxfFileText> open(const std::string& nativePath);
    ~DxfFileText() override;
    DxfFileText(const DxfFileText&) = delete;
    DxfFileText& operator=(const DxfFileText&) = delete;

    // The size of the file when it was opened.
    size_t size() const { return m_reserved - 1; }
    // The bytes read so far, from the first.
    std::string_view text() const { return {m_base, m_filled}; }
    std::string_view more() override;
    // The memory of the bytes before `position` goes back to the system; they must not be looked at again.
    void releaseBefore(const char* position);
    // True when reading stopped at an error rather than at the end of the file.
    bool failed() const { return m_failed; }

private:
    DxfFileText(int descriptor, void* mapping, size_t mappingLength, char* base, size_t reserved)
        : m_descriptor(descriptor), m_mapping(mapping), m_mappingLength(mappingLength), m_base(base), m_reserved(reserved) {}

    int m_descriptor;
    void* m_mapping;
    size_t m_mappingLength;
    char* m_base;  // in the mapping, on a huge-page boundary
    size_t m_reserved;
    size_t m_filled = 0;
    size_t m_released = 0;
    bool m_atEnd = false;
    bool m_failed = false;
};
