// The error of the XML DOM layer and the texts the host's system gives for its codes.
#include "exchange/dom/XmlDomError.h"

#include "support/Format.h"

namespace {

// Codes in this range are dispatch errors that the host numbers from its first one.
constexpr std::uint32_t kFirstDispatchCode = 0x80040200;
constexpr std::uint32_t kLastDispatchCode = 0x8004FFFF;

} // namespace

CXmlDomError::CXmlDomError(std::uint32_t code, CString description)
    : m_code(code), m_description(std::move(description)) {
    m_what = ErrorMessage().ToUtf8();
}

CString CXmlDomError::ErrorMessage() const {
    if (!m_description.IsEmpty()) return m_description;
    const CString system = QxSystemErrorText(m_code);
    if (!system.IsEmpty()) return system;
    if (m_code >= kFirstDispatchCode && m_code <= kLastDispatchCode)
        return QxFormat(u"IDispatch error #%d", static_cast<long long>(m_code - kFirstDispatchCode));
    return QxFormat(u"Unknown error 0x%0lX", static_cast<long long>(m_code));
}

CString QxSystemErrorText(std::uint32_t code) {
    switch (code) {
    case CXmlDomError::kNoInterface: return u"No such interface supported";
    case CXmlDomError::kInvalidPointer: return u"Invalid pointer";
    case CXmlDomError::kUnspecified: return u"Unspecified error";
    case CXmlDomError::kOutOfMemory: return u"Not enough memory resources are available to complete this operation.";
    case CXmlDomError::kInvalidArgument: return u"The parameter is incorrect.";
    case CXmlDomError::kTypeMismatch: return u"Type mismatch.";
    default: return CString();
    }
}
