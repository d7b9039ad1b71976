// A small printf-style formatter for the system's message formats, with CString arguments.
// Formats are kept exactly as the messages stand, quirks included: an unknown directive is copied as text.
#pragma once

#include "support/CString.h"

#include <type_traits>
#include <variant>
#include <vector>

using FormatArg = std::variant<long long, double, CString>;

QX_API CString FormatV(const CString& format, const std::vector<FormatArg>& args);

namespace detail {
template <typename T>
FormatArg toFormatArg(const T& value) {
    if constexpr (std::is_same_v<T, bool>) return static_cast<long long>(value);
    else if constexpr (std::is_integral_v<T> || std::is_enum_v<T>) return static_cast<long long>(value);
    else if constexpr (std::is_floating_point_v<T>) return static_cast<double>(value);
    else return CString(value);
}
} // namespace detail

// QxFormat(u"项目%s更新完毕！\n", name): %s takes text, %d/%x/%X/%u/%c take integers, %f/%e/%g doubles.
template <typename... Args>
CString QxFormat(const CString& format, const Args&... args) {
    return FormatV(format, std::vector<FormatArg>{detail::toFormatArg(args)...});
}
