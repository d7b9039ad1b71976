// How plausible a decoded text is as this application's text: Chinese names and notes, codes and numbers,
// now and then a Latin word. It decides between two readings of bytes that are valid in both encodings.
#pragma once

#include "support/Export.h"

#include <string_view>

// The cost of reading a text as it stands: each character costs by its kind, cheap for what the
// application writes, dear for what only a misreading yields.
//   0   ASCII printable, tab, CR, LF
//   1   a letter of a word: a Latin word has at least three ASCII letters, more of them than of the others
//       ("café", "Größe"); a Greek or Cyrillic word has three letters or more of the modern alphabet; either
//       has one case shape (all lower, all upper, or capitalised)
//   2   a common Chinese character (GB2312 level 1), CJK punctuation, full-width forms
//   3   a less common Chinese character (GB2312 level 2), symbols (Latin-1 signs, arrows, ①, ℃, box drawing)
//   6   other letters: Latin, Greek and Cyrillic letters outside such words, other scripts
//   8   rare Chinese characters (outside GB2312), characters outside the Basic Multilingual Plane
//  12   what text never holds: control characters, combining marks, phonetic and modifier letters,
//       private-use characters, U+FFFD
QX_API long long TextImplausibility(std::u16string_view text);

// A character of GB2312's first level: the 3755 most common Chinese characters.
QX_API bool IsCommonHanzi(char16_t ch);
