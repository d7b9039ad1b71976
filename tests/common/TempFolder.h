// A temporary folder for one test, removed with everything in it when the test ends.
#pragma once

#include "support/CString.h"

#include <string>

class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& native() const { return m_native; }
    // The folder as a logic path, with a trailing backslash.
    CString logic() const;
    // Writes raw bytes to a file below the folder, making parent folders; `relative` uses '/'.
    void writeFile(const std::string& relative, const std::string& bytes) const;
    std::string readFile(const std::string& relative) const;
    bool exists(const std::string& relative) const;
    void makeFolder(const std::string& relative) const;

private:
    std::string m_native;
};
