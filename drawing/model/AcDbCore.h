// The small vocabulary of the drawing database: status codes, open modes, handles and object ids.
#pragma once

#include "support/CString.h"

#include <cstdint>
#include <functional>
#include <string_view>

namespace Acad {
enum ErrorStatus : int {
    eOk = 0,
    eNotImplemented = 4,
    eInvalidInput = 5,
    eKeyNotFound = 14,
    eDuplicateKey = 15,
    eNullObjectId = 20,
    eWrongDatabase = 22,
    eInvalidExtents = 29,
    eNotThatKindOfClass = 35,
    eFileNotFound = 44,
    eBadDwgHeader = 52,
    eNotOpenForWrite = 81,
    eWasErased = 84,
    eNoDatabase = 91,
    eUnknownHandle = 117,
    eDwgNotRecoverable = 120,
    eLockViolation = 301,
    eNoDocument = 302,
};
}

namespace AcDb {
enum OpenMode : int { kForRead = 0, kForWrite = 1, kForNotify = 2 };
enum Visibility : int { kVisible = 0, kInvisible = 1 };
}

// A handle: the number that names an object in its database for life. Its text is upper-case
// hexadecimal without leading zeros; the null handle is 0.
class QX_API AcDbHandle {
public:
    AcDbHandle() = default;
    explicit AcDbHandle(std::uint64_t value) : m_value(value) {}
    // Hexadecimal text, as in a DXF file or an xdata link; text that is no such number gives the null handle.
    explicit AcDbHandle(std::u16string_view text);

    // Parses hexadecimal text (blanks around it allowed). False, with the handle unchanged, for other text.
    static bool parse(std::u16string_view text, AcDbHandle& handle);
    static bool parse(std::string_view text, AcDbHandle& handle);

    bool isNull() const { return m_value == 0; }
    std::uint64_t value() const { return m_value; }
    CString text() const;
    // The host's form: fills `buffer` with the text and a terminating zero; false when it does not fit.
    bool getIntoAsciiBuffer(char16_t* buffer, size_t length) const;

    AcDbHandle& operator++() { ++m_value; return *this; }
    friend bool operator==(const AcDbHandle&, const AcDbHandle&) = default;
    friend auto operator<=>(const AcDbHandle&, const AcDbHandle&) = default;

private:
    std::uint64_t m_value = 0;
};

class AcDbObject;
class AcDbDatabase;

// A non-owning reference to an object in a database. Opening by id is a pointer step; an id stays valid
// as long as its database lives.
class QX_API AcDbObjectId {
public:
    AcDbObjectId() = default;
    static const AcDbObjectId kNull;

    bool isNull() const { return m_object == nullptr; }
    bool isValid() const { return m_object != nullptr; }
    bool isErased() const;
    AcDbHandle handle() const;
    AcDbDatabase* database() const;

    friend bool operator==(const AcDbObjectId&, const AcDbObjectId&) = default;

    // For the database and the opening functions only.
    static AcDbObjectId fromObject(AcDbObject* object) { AcDbObjectId id; id.m_object = object; return id; }
    AcDbObject* objectUnchecked() const { return m_object; }

private:
    AcDbObject* m_object = nullptr;
};

template <>
struct std::hash<AcDbObjectId> {
    size_t operator()(const AcDbObjectId& id) const noexcept { return std::hash<const void*>()(id.objectUnchecked()); }
};
