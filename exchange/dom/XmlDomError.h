// The error of the XML DOM layer: a COM-style code, the library's own description, and the text to show.
#pragma once

#include "support/CString.h"

#include <cstdint>
#include <exception>
#include <string>

class QX_API CXmlDomError : public std::exception {
public:
    // Codes as the host's COM layer carries them.
    static constexpr std::uint32_t kNoInterface = 0x80004002;
    static constexpr std::uint32_t kInvalidPointer = 0x80004003;
    static constexpr std::uint32_t kUnspecified = 0x80004005;
    static constexpr std::uint32_t kOutOfMemory = 0x8007000E;
    static constexpr std::uint32_t kInvalidArgument = 0x80070057;
    // What reading an absent attribute as text gives: a null value that is no string.
    static constexpr std::uint32_t kTypeMismatch = 0x80020005;

    explicit CXmlDomError(std::uint32_t code, CString description = CString());

    std::uint32_t Error() const { return m_code; }
    const CString& Description() const { return m_description; }
    // The text for a message box: the library's description when it gave one, else the system's text for
    // the code, else "Unknown error 0x..." or "IDispatch error #..." as the host words codes it has no text for.
    CString ErrorMessage() const;
    const char* what() const noexcept override { return m_what.c_str(); }

private:
    std::uint32_t m_code;
    CString m_description;
    std::string m_what;
};

// The system's text for a code, empty when it has none.
QX_API CString QxSystemErrorText(std::uint32_t code);
