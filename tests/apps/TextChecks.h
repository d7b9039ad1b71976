// Checks on what a program printed or wrote: each part must be in the text, or must never be.
#pragma once

#include <gtest/gtest.h>
#include <initializer_list>
#include <string>

inline void expectShows(const std::string& text, std::initializer_list<std::string> parts) {
    for (const std::string& part : parts) EXPECT_NE(text.find(part), std::string::npos) << "\"" << part << "\" not in:\n" << text;
}

inline void expectNever(const std::string& text, std::initializer_list<std::string> parts) {
    for (const std::string& part : parts) EXPECT_EQ(text.find(part), std::string::npos) << "\"" << part << "\" in:\n" << text;
}
