// The version as the build defines it, in one place: the project() line of the top-level CMakeLists.txt.
#pragma once

#include <fstream>
#include <regex>
#include <sstream>
#include <string>

inline std::string ProjectVersion() {
    std::ifstream in(std::string(QX_SOURCE_DIR) + "/CMakeLists.txt");
    std::stringstream text;
    text << in.rdbuf();
    const std::string cmake = text.str();
    std::smatch match;
    if (!std::regex_search(cmake, match, std::regex(R"(project\(QxHMInterFace VERSION ([0-9.]+))"))) return "?";
    return match[1];
}
