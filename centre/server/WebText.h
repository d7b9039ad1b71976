// The web view's words in the browser's language: Chinese when Accept-Language prefers it, else English.
#pragma once

#include <string>

enum class WebLanguage { English, Chinese };

// The language an Accept-Language header prefers among the two (the highest weight; English on a tie).
WebLanguage LanguageOf(const std::string& acceptLanguage);
const char* LanguageTag(WebLanguage language);

// The English words in the language; "%1" and "%2" stand for the arguments (already HTML or plain text,
// as the caller needs).
std::string Say(WebLanguage language, const char* english, const std::string& first = {}, const std::string& second = {});
