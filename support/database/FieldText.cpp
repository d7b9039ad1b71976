// Values made text.
#include "support/database/FieldText.h"

#include "support/Format.h"
#include "support/NumberText.h"
#include "support/database/SqlText.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace {

long long asInteger(const DbValue& value) {
    switch (value.type) {
    case DbValue::Type::Integer: return value.integer;
    case DbValue::Type::Real:
        if (!std::isfinite(value.real)) return 0;
        if (std::fabs(value.real) >= 9.2e18) return value.real < 0 ? std::numeric_limits<long long>::min()
                                                                    : std::numeric_limits<long long>::max();
        return static_cast<long long>(value.real);
    case DbValue::Type::Text: return QxToInt(value.text);
    case DbValue::Type::Null: return 0;
    }
    return 0;
}

double asReal(const DbValue& value) {
    switch (value.type) {
    case DbValue::Type::Integer: return static_cast<double>(value.integer);
    case DbValue::Type::Real: return value.real;
    case DbValue::Type::Text: return QxToDouble(value.text);
    case DbValue::Type::Null: return 0;
    }
    return 0;
}

// The 32-bit integer that the kind's read takes: the low 32 bits, as a narrowing conversion gives them.
int asInt32(const DbValue& value) { return static_cast<int>(static_cast<int32_t>(asInteger(value))); }

} // namespace

bool FieldTextOfKind(const DbValue& value, int kind, CString& text) {
    switch (kind) {
    case QX_KIND_INTEGER:
    case QX_KIND_LONGVARCHAR: text = QxFormat(u"%d", asInt32(value)); return true;
    case QX_KIND_DOUBLE: text = QxFormat(u"%.2f", asReal(value)); return true;
    case QX_KIND_BOOLEAN: text = asInteger(value) != 0 ? u"1" : u"0"; return true;
    case QX_KIND_CHAR: text = FieldText(value); return true;
    default: return false;
    }
}

CString FieldText(const DbValue& value) {
    switch (value.type) {
    case DbValue::Type::Integer: return QxFormat(u"%d", value.integer);
    case DbValue::Type::Real: {
        char buffer[64];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, value.real);
        return CString(std::string(buffer, result.ptr));
    }
    case DbValue::Type::Text: return value.text;
    case DbValue::Type::Null: return CString();
    }
    return CString();
}
