// The walks from folders to a project tree, over a folder tree the input lays out: the local walk through
// .itm and .prj files (with the cabinet notes of each .prj and the drawings beside it), and the walk
// through the Hexmoor.xml documents of a project the cloud knows. The input is files cut at zero bytes,
// each a path relative to the project's parent folder on its first line and the content behind it. Every
// node the walks make must stay inside the project folder "P": beside it lies a folder "Outside" whose
// document names its node with a word of this process that no input can hold, so a walk that gets there
// shows.
#include "FuzzSupport.h"

#include "project/tree/FoldersToTree.h"
#include "support/TextHelpers.h"

#include <filesystem>
#include <unistd.h>

namespace {

constexpr const char* kTree = "tree";
constexpr size_t kMostFiles = 24;
constexpr int kMostDepth = 6;
constexpr size_t kLongestName = 64;

// The path made of the plain names of `line` ("/" or "\" between them), each cut to 64 bytes; nothing
// that could leave the folder the harness writes into.
std::string plainRelativePath(std::string_view line) {
    std::string path;
    int depth = 0;
    size_t start = 0;
    while (start <= line.size() && depth < kMostDepth) {
        size_t end = line.find_first_of("/\\", start);
        if (end == std::string_view::npos) end = line.size();
        const std::string_view name = line.substr(start, std::min(end - start, kLongestName));
        if (!name.empty() && name != "." && name != "..") {
            path += (path.empty() ? "" : "/") + std::string(name);
            ++depth;
        }
        start = end + 1;
    }
    return path;
}

const CString& canaryName() {
    static const CString name = CString(("canary" + std::to_string(::getpid()) + "x").c_str());
    return name;
}

void layOut(const std::vector<std::string_view>& files) {
    fuzz::ClearScratchFolder(kTree);
    const std::string canary = "<?xml version='1.0'?><Hexmoor><Node Name=\"" + canaryName().ToUtf8() +
                               "\" ID=\"X\" Type=\"100\"><SubNodes/></Node></Hexmoor>";
    fuzz::WriteScratchFile(std::string(kTree) + "/Outside/Hexmoor.xml", canary);
    fuzz::WriteScratchFile(std::string(kTree) + "/P/P.itm", "");
    for (const std::string_view file : files) {
        const size_t lineEnd = file.find('\n');
        const std::string relative = plainRelativePath(file.substr(0, lineEnd));
        if (relative.empty()) continue;
        const std::string_view content = lineEnd == std::string_view::npos ? std::string_view() : file.substr(lineEnd + 1);
        std::error_code ec;
        // A name already taken by a folder stays a folder.
        if (std::filesystem::is_directory(std::filesystem::path(fuzz::ScratchFolder()) / kTree / relative, ec)) continue;
        fuzz::WriteScratchFile(std::string(kTree) + "/" + relative, content);
    }
}

// Every node below `node`: linked to its parent, not from the folder outside, and for the local walk a
// folder inside the project folder.
void checkNodes(const HMProjectTree_INFO& node, const CString& projectFolder, int depth) {
    fuzz::Require(depth <= 64, "a project tree is no deeper than its folders");
    fuzz::Require(node.m_strName != canaryName(), "the walk stays inside the project folder");
    for (const HMProjectTree_INFO* child : node.m_arrChildren) {
        fuzz::Require(child != nullptr, "every child of a node is there");
        if (!child->m_strPath.IsEmpty())
            fuzz::Require(child->m_strPath.Left(projectFolder.GetLength()).EqualsNoCase(projectFolder),
                          "a node's folder is inside the project folder");
        checkNodes(*child, projectFolder, depth + 1);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::vector<std::string_view> files = fuzz::SplitSections(data, size, kMostFiles);
    layOut(files);
    const CString parent = fuzz::ScratchLogicFolder() + kTree + u"\\";
    const CString projectFolder = parent + u"P\\";

    HMProjectTree_INFO local;
    local.m_strName = u"P";
    local.m_strType = u"100";
    local.m_strPath = projectFolder;
    BuildTreeFromFolders(projectFolder + u"P.itm", &local);
    checkNodes(local, projectFolder, 0);

    HMProjectTree_INFO cloud;
    cloud.m_strName = u"P";
    LoadNodeFromDocument(parent, &cloud, false);
    checkNodes(cloud, projectFolder, 0);
    return 0;
}
