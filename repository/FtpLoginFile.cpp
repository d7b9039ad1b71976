// The scrambled login file of the repository.
#include "repository/FtpLoginFile.h"

#include "support/FileSystem.h"

#include <sys/stat.h>

void EncodeText(CString& text) {
    std::u16string encoded;
    encoded.reserve(static_cast<size_t>(text.GetLength()) * 2);
    for (const char16_t ch : text.str()) {
        const unsigned low = ch & 0xFFu;
        encoded += static_cast<char16_t>(u'a' + (low >> 4));
        encoded += static_cast<char16_t>(u'a' + (low & 0xFu));
    }
    text = CString(std::move(encoded));
}

void DecodeText(CString& text) {
    std::u16string decoded;
    const std::u16string& letters = text.str();
    for (size_t i = 0; i + 1 < letters.size(); i += 2) {
        const unsigned high = static_cast<unsigned>(letters[i] - u'a') & 0xFFFFu;
        const unsigned low = static_cast<unsigned>(letters[i + 1] - u'a') & 0xFu;
        decoded += static_cast<char16_t>((high * 16 + low) & 0xFFFFu);
    }
    text = CString(std::move(decoded));
}

bool ReadLoginInfo(const CString& path, FtpLoginLines& lines) {
    std::string bytes;
    if (!QxFs::ReadBytes(path, bytes)) return false;
    // The file holds ASCII letters only; a line's CR is not part of it.
    CString text = CString::FromUtf8(bytes);
    text.Remove(u'\r');
    FtpLoginLines read;
    int index = 0;
    int start = 0;
    for (; index < kLoginLineCount && start <= text.GetLength(); ++index) {
        int end = text.Find(u'\n', start);
        const bool last = end < 0;
        if (last) end = text.GetLength();
        read[static_cast<size_t>(index)] = text.Mid(start, end - start);
        DecodeText(read[static_cast<size_t>(index)]);
        start = end + 1;
        if (last) {
            ++index;
            break;
        }
    }
    if (index < kLoginLineCount) return false;
    lines = read;
    return true;
}

bool WriteLoginInfo(const CString& path, const FtpLoginLines& lines) {
    if (!QxFs::Exists(path) || QxFs::IsFolder(path)) return false;
    std::string bytes;
    for (size_t i = 0; i < lines.size(); ++i) {
        CString line = lines[i];
        EncodeText(line);
        bytes += line.ToUtf8();
        if (i + 1 < lines.size()) bytes += '\n';
    }
    if (!QxFs::WriteAtomic(path, bytes, S_IRUSR | S_IWUSR)) return false;
    // The password is in it: owner only, whatever mode the file had.
    const auto native = QxFs::Resolve(path);
    if (native) ::chmod(native->c_str(), S_IRUSR | S_IWUSR);
    return true;
}
