// The decoders of the application's text files: the reading rule of TextFile (through a real file) and the
// conversions under it. Besides surviving any bytes, conversions must give back what they were given:
// valid UTF-8 survives UTF-16 and back, and text decoded from GB18030 (which holds every character)
// survives encoding and decoding again.
#include "FuzzSupport.h"

#include "support/Encoding.h"
#include "support/TextFile.h"

#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    ::setenv("QXHM_CODEPAGE", "GB18030", 1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);

    CStringArray lines;
    ReadTextLines(fuzz::WriteScratchFile("HMHost.dat", bytes), lines);
    DecodeTextFile(bytes);

    const std::u16string fromUtf8 = Utf8ToUtf16(bytes);
    if (IsValidUtf8(bytes)) fuzz::Require(Utf16ToUtf8(fromUtf8) == bytes, "valid UTF-8 through UTF-16 and back");
    fuzz::Require(Utf8ToUtf16(Utf16ToUtf8(fromUtf8)) == fromUtf8, "decoded UTF-8 through UTF-8 and back");

    const std::u16string fromLegacy = DecodeLegacy(bytes);
    fuzz::Require(DecodeLegacy(EncodeLegacy(fromLegacy)) == fromLegacy, "decoded GB18030 through GB18030 and back");
    return 0;
}
