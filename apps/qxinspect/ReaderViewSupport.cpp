// What the views of the drawing readers share.
#include "ReaderViewSupport.h"

#include "support/FileSystem.h"
#include "support/TextHelpers.h"

#include <iostream>

CString DrawingArgumentPath(const std::string& file) {
    return QxFs::FromNative(file);
}

std::string NativePathText(const CString& logicPath) {
    if (logicPath.IsEmpty()) return {};
    if (const auto existing = QxFs::Resolve(logicPath)) return *existing;
    if (const auto target = QxFs::NativeTarget(logicPath)) return *target;
    return logicPath.ToUtf8();
}

std::string NativePathListText(const CString& logicPaths) {
    if (logicPaths.IsEmpty()) return {};
    CStringArray pieces;
    SplitString(logicPaths, u"|", pieces);
    std::string joined;
    for (int i = 0; i < pieces.GetSize(); ++i) {
        if (i > 0) joined += '|';
        joined += NativePathText(pieces[i]);
    }
    return joined;
}

ReaderJson StringsJson(const CStringArray& strings) {
    ReaderJson out = ReaderJson::array();
    for (const CString& text : strings) out.push_back(text.ToUtf8());
    return out;
}

int PrintReaderJson(const ReaderJson& document) {
    std::cout << document.dump(2, ' ', false, ReaderJson::error_handler_t::replace) << '\n';
    return kViewRan;
}

int ComplainUnreadable(const std::string& file) {
    std::cerr << "qxinspect: the drawing " << file << " cannot be read\n";
    return kInputUnreadable;
}

std::function<std::function<int()>(CLI::App&)> DrawingViewSetup(std::function<int(const std::string& file)> show) {
    return [show](CLI::App& command) -> std::function<int()> {
        auto file = std::make_shared<std::string>();
        command.add_option("FILE", *file, "the drawing")->required();
        return [file, show] { return show(*file); };
    };
}
