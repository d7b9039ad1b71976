// resbuf chains as the host hands them out (xdata, xrecords, host variables), and ResItem, the compact
// form in which objects keep such items. A chain handed out is the receiver's to free with acutRelRb.
#pragma once

#include "drawing/model/AcGe.h"
#include "support/CString.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

// Result types of host calls (group codes stand for themselves in xdata and xrecords).
enum : short {
    RTNONE = 5000,
    RTREAL = 5001,
    RTPOINT = 5002,
    RTSHORT = 5003,
    RTANG = 5004,
    RTSTR = 5005,
    RT3DPOINT = 5009,
    RTLONG = 5010,
};
// Status results of host calls.
enum : int { RTNORM = 5100, RTERROR = -5001, RTCAN = -5002 };

union ads_u_val {
    double rreal;
    double rpoint[3];
    short rint;
    char16_t* rstring;  // owned by the item; freed by acutRelRb
    std::int32_t rlong;
    std::int64_t rint64;
};

struct resbuf {
    resbuf* rbnext;
    short restype;
    ads_u_val resval;
};

// How the value of an item with a given result type or group code is held.
enum class RbKind { Text, Point, Real, Int16, Int32, Int64 };
QX_API RbKind RbKindOf(int restype);

// A new item of the type, zeroed; a text item starts with no string.
QX_API resbuf* acutNewRb(int restype);
// Frees a whole chain, strings included. Null is fine.
QX_API int acutRelRb(resbuf* chain);

// Frees a chain when it goes out of scope.
struct QX_API ResbufDeleter {
    void operator()(resbuf* chain) const { acutRelRb(chain); }
};
using ResbufPtr = std::unique_ptr<resbuf, ResbufDeleter>;

// One item as an object keeps it: group code and value, in 32 bytes. Text of up to 12 UTF-16 units (a
// handle, a short label) lives inside the item; longer text in one block of its own.
class QX_API ResItem {
public:
    ResItem() = default;
    static ResItem text(short code, const CString& value);
    static ResItem textFromView(short code, std::u16string_view value);
    static ResItem real(short code, double value);
    static ResItem point(short code, const AcGePoint3d& value);
    static ResItem integer(short code, std::int64_t value);

    ResItem(const ResItem& other);
    ResItem(ResItem&& other) noexcept;
    ResItem& operator=(const ResItem& other);
    ResItem& operator=(ResItem&& other) noexcept;
    ~ResItem();

    short code() const { return m_code; }
    RbKind kind() const { return RbKindOf(m_code); }
    // Each accessor gives the value converted as far as that makes sense: numbers as text, text as 0.
    CString asText() const;
    double asReal() const;
    AcGePoint3d asPoint() const;
    std::int64_t asInteger() const;
    // The text of a text item without a copy; empty for the other kinds.
    std::u16string_view textView() const;

    friend QX_API bool operator==(const ResItem& a, const ResItem& b);

private:
    enum class Held : std::uint8_t { Text, Real, Point, Integer };
    static constexpr std::uint32_t kInlineUnits = 12;

    bool textOnHeap() const { return m_held == Held::Text && m_length > kInlineUnits; }
    void setText(std::u16string_view value);
    void release();

    short m_code = 0;
    Held m_held = Held::Text;
    std::uint32_t m_length = 0;  // of the text, in UTF-16 units
    union Value {
        char16_t inlineText[kInlineUnits];
        char16_t* heapText;
        double real;
        double point[3];
        std::int64_t integer;
    } m_value{};
};

using ResItems = std::vector<ResItem>;

// A new chain holding the items, in order; null for no items.
QX_API resbuf* ToRbChain(const ResItems& items);
QX_API ResItems FromRbChain(const resbuf* chain);
// Sets the string of a text item, freeing the one it had.
QX_API void SetRbString(resbuf& item, const CString& text);
