// A temporary folder for one test.
#include "common/TempFolder.h"

#include "support/FileSystem.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

TempFolder::TempFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "qxtest-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) throw std::runtime_error("mkdtemp failed");
    m_native = pattern;
}

TempFolder::~TempFolder() {
    std::error_code ec;
    std::filesystem::remove_all(m_native, ec);
}

CString TempFolder::logic() const { return QxFs::FromNative(m_native) + u"\\"; }

void TempFolder::writeFile(const std::string& relative, const std::string& bytes) const {
    const std::filesystem::path path = std::filesystem::path(m_native) / relative;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

std::string TempFolder::readFile(const std::string& relative) const {
    std::ifstream in(std::filesystem::path(m_native) / relative, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

bool TempFolder::exists(const std::string& relative) const {
    return std::filesystem::exists(std::filesystem::path(m_native) / relative);
}

void TempFolder::makeFolder(const std::string& relative) const {
    std::filesystem::create_directories(std::filesystem::path(m_native) / relative);
}
