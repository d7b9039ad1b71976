// Views of Hexmoor.xml: what the reader makes of a file, and the text the writer makes of a node.
#include "TreeJson.h"
#include "Views.h"

#include "exchange/HexmoorProducts.h"
#include "exchange/HexmoorReader.h"
#include "exchange/HexmoorWriter.h"
#include "support/FileSystem.h"

#include <iostream>
#include <iterator>
#include <string>

namespace {

// Reads the file as the commands do: create, load, read the node and, for a device, its rows.
int showHexmoor(const std::string& file) {
    const CString path = QxFs::FromNative(file);
    std::string bytes;
    if (QxFs::IsFolder(path) || !QxFs::ReadBytes(path, bytes)) {
        std::cerr << "qxinspect: cannot open " << file << '\n';
        return kInputUnreadable;
    }
    CXmlDocument document;
    HMXmlCreateDocument(document);
    if (!HMXmlLoadFile(document, path)) std::cerr << "qxinspect: " << file << ": " << document.parseErrorReason() << '\n';
    HMProjectTree_INFO node;
    HMXmlReadNode(document, &node);
    if (HMIsDeviceType(node.m_strType)) HMXmlReadProducts(document, &node);
    std::cout << TreeNodeToJson(node).dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
    return kViewRan;
}

// Takes one node in its JSON form on standard input and prints exactly the text that saveXml would get.
int writeHexmoor() {
    const std::string input{std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()};
    const nlohmann::json json = nlohmann::json::parse(input, nullptr, false);
    if (json.is_discarded() || !json.is_object()) {
        std::cerr << "qxinspect: standard input holds no JSON object\n";
        return kInputUnreadable;
    }
    std::unique_ptr<HMProjectTree_INFO> node;
    try {
        node = TreeNodeFromJson(json);
    } catch (const std::invalid_argument& error) {
        std::cerr << "qxinspect: " << error.what() << '\n';
        return kInputUnreadable;
    }
    CXmlDocument document;
    HMXmlCreateDocument(document);
    if (document.IsNull()) return kInputUnreadable;
    HMXmlWriteNode(document, node.get());
    CString text;
    HMXmlDocumentText(document, text);
    const std::string bytes = text.ToUtf8();
    std::cout.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    std::cout.flush();
    return kViewRan;
}

const bool registeredRead = RegisterInspectView({
    "hexmoor",
    "the node, its children and its BOM rows as the reader makes them of a Hexmoor.xml",
    [](CLI::App& command) -> std::function<int()> {
        auto file = std::make_shared<std::string>();
        command.add_option("FILE", *file, "the Hexmoor.xml to read")->required();
        return [file] { return showHexmoor(*file); };
    },
});

const bool registeredWrite = RegisterInspectView({
    "hexmoor-write",
    "the Hexmoor.xml text the writer makes of one node given as JSON on standard input",
    [](CLI::App&) -> std::function<int()> { return [] { return writeHexmoor(); }; },
});

} // namespace
