// The form in which the reading process hands an Access snapshot to its parent: tagged records of
// little-endian numbers and length-prefixed UTF-8 text.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace AccessWire {

enum Tag : char {
    kTable = 'T',
    kRow = 'R',
    kEndTable = 'E',
    kEnd = 'Z',
};

enum ValueTag : uint8_t {
    kNull = 0,
    kInteger = 1,
    kReal = 2,
    kText = 3,
};

class Writer {
public:
    explicit Writer(std::string& out) : m_out(out) {}
    void tag(char t) { m_out += t; }
    void u8(uint8_t v) { m_out += static_cast<char>(v); }
    void u32(uint32_t v) { raw(&v, sizeof v); }
    void i64(int64_t v) { raw(&v, sizeof v); }
    void f64(double v) { raw(&v, sizeof v); }
    void text(std::string_view s) {
        u32(static_cast<uint32_t>(s.size()));
        m_out.append(s);
    }

private:
    void raw(const void* p, size_t n) { m_out.append(static_cast<const char*>(p), n); }
    std::string& m_out;
};

// Every read checks the bounds; after a failed read `ok()` stays false and reads give zeros.
class Reader {
public:
    explicit Reader(std::string_view in) : m_in(in) {}
    bool ok() const { return m_ok; }
    bool atEnd() const { return m_pos >= m_in.size(); }
    char tag() { char t = 0; raw(&t, 1); return t; }
    uint8_t u8() { uint8_t v = 0; raw(&v, 1); return v; }
    uint32_t u32() { uint32_t v = 0; raw(&v, sizeof v); return v; }
    int64_t i64() { int64_t v = 0; raw(&v, sizeof v); return v; }
    double f64() { double v = 0; raw(&v, sizeof v); return v; }
    std::string_view text() {
        const uint32_t n = u32();
        if (!m_ok || n > m_in.size() - m_pos) return fail();
        const std::string_view s = m_in.substr(m_pos, n);
        m_pos += n;
        return s;
    }

private:
    std::string_view fail() {
        m_ok = false;
        m_pos = m_in.size();
        return {};
    }
    void raw(void* p, size_t n) {
        if (!m_ok || n > m_in.size() - m_pos) {
            fail();
            return;
        }
        std::memcpy(p, m_in.data() + m_pos, n);
        m_pos += n;
    }
    std::string_view m_in;
    size_t m_pos = 0;
    bool m_ok = true;
};

} // namespace AccessWire

// Reads the Access file in `bytes` through libmdb and writes its tables in the wire form. Runs in the child.
bool EncodeAccessTables(std::string& bytes, std::string& wire);
