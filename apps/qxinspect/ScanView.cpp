// qxinspect scan FOLDER: the cabinet groups that the scan of the folder's primary diagram makes, with
// their drawers, counted primary parts and secondary drawing rows, as JSON.
#include "AssemblyJson.h"
#include "Views.h"
#include "drawing/ExtractionState.h"
#include "drawing/assembly/PrimaryScan.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"

#include <iostream>

namespace {

int showScan(const std::string& folderArgument) {
    CString folder = QxFs::FromNative(folderArgument);
    folder.TrimRight(u'\\');
    folder += u'\\';
    if (!QxFs::IsFolder(folder)) {
        std::cerr << "qxinspect: the folder " << folderArgument << " cannot be opened\n";
        return kInputUnreadable;
    }
    CStringArray drawings;
    FindFilesInFolder(folder, u"dwg", drawings, false);
    if (drawings.GetSize() != 1)
        std::cerr << "qxinspect: the folder holds " << drawings.GetSize() << " drawings (*.dwg), not one primary diagram\n";

    QxScanPrimaryDiagram(folder);
    assemblyjson::json groups = assemblyjson::json::array();
    for (const CReferSourceGroupInfo* group : g_arrReferGroups) groups.push_back(assemblyjson::Group(*group));
    const assemblyjson::json document{
        {"folder", assemblyjson::NativePath(folder)},
        {"primary", drawings.GetSize() == 1 ? assemblyjson::json(assemblyjson::NativePath(drawings[0])) : nullptr},
        {"circuits", g_arrCircuits.GetSize()},
        {"groups", groups}};
    QxFreeReferGroups(g_arrReferGroups);
    QxFreeCircuits(g_arrCircuits);
    assemblyjson::Print(document);
    return kViewRan;
}

const bool registered = RegisterInspectView({
    "scan",
    "The cabinet groups of a project folder's primary diagram (its one *.dwg)",
    [](CLI::App& command) -> std::function<int()> {
        auto folder = std::make_shared<std::string>();
        command.add_option("FOLDER", *folder, "the project folder")->required();
        return [folder] { return showScan(*folder); };
    },
});

} // namespace
