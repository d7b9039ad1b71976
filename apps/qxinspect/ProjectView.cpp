// qxinspect project ITM: the dry run of a project's submit. For a project the cloud knows (its folder has a
// Hexmoor.xml) the tree that HMBomSubmit would send; for a local one the tree that HMItmSubmit would send
// once its cabinet dialog ended with OK. Shows every device with its cabinet count and rows, the messages of
// failed checks, and whether anything would be sent. --csv and --xlsx FILE give the rows as an office takes
// them instead of JSON.
#include "ProjectDryRun.h"
#include "ProjectTables.h"
#include "TreeJson.h"
#include "Views.h"
#include "support/FileSystem.h"
#include "support/PathText.h"

#include <iostream>
#include <nlohmann/json.hpp>

namespace {

using json = nlohmann::ordered_json;

struct ProjectOptions {
    std::string itm;
    bool csv = false;
    std::string workbook;
};

std::string nativeText(const CString& logicPath) {
    if (const auto existing = QxFs::Resolve(logicPath)) return *existing;
    return logicPath.ToUtf8();
}

json rowsJson(const BomRows& rows) {
    json out = json::array();
    for (const BOM_INFO& row : rows) out.push_back(BomRowToJson(row));
    return out;
}

json dryRunJson(const CString& itmPath, const ProjectDryRun& run) {
    json devices = json::array();
    for (const HMProjectTree_INFO* device : run.m_pTree->m_arrCabinets)
        devices.push_back({{"path", DevicePathInTree(*device).ToUtf8()},
                           {"m_strID", device->m_strID.ToUtf8()},
                           {"m_strName", device->m_strName.ToUtf8()},
                           {"m_strType", device->m_strType.ToUtf8()},
                           {"m_strCirNo", device->m_strCirNo.ToUtf8()},
                           {"m_nCabCount", device->m_nCabCount},
                           {"m_arrPrimaryBom", rowsJson(device->m_arrPrimaryBom)},
                           {"m_arrSecondaryBom", rowsJson(device->m_arrSecondaryBom)}});
    json messages = json::array();
    for (const CString& message : run.m_arrMessages) messages.push_back(message.ToUtf8());
    return {{"itm", nativeText(itmPath)},
            {"projectFolder", nativeText(run.m_strProjectFolder)},
            {"command", run.m_strCommand.ToUtf8()},
            {"m_strID", run.m_pTree->m_strID.ToUtf8()},
            {"m_strName", run.m_pTree->m_strName.ToUtf8()},
            {"devices", devices},
            {"messages", messages},
            {"g_bBomCheckFailed", run.m_bCheckFailed},
            {"wouldSend", run.m_bWouldSend},
            {"whyNot", run.m_strWhyNot.IsEmpty() ? json(nullptr) : json(run.m_strWhyNot.ToUtf8())}};
}

int showProject(const ProjectOptions& options) {
    const CString itmPath = QxFs::FromNative(options.itm);
    if (!IsItmFile(itmPath) || !QxFs::Exists(itmPath) || QxFs::IsFolder(itmPath)) {
        std::cerr << "qxinspect: " << options.itm << " is no project file (.itm) that can be opened\n";
        return kInputUnreadable;
    }
    const ProjectDryRun run = RunProjectDryRun(itmPath);
    if (!options.workbook.empty()) {
        std::string why;
        if (WriteProjectWorkbook(run, options.workbook, why)) return kViewRan;
        std::cerr << "qxinspect: " << options.workbook << ": " << why << '\n';
        return kInputUnreadable;
    }
    if (options.csv)
        std::cout << ProjectRowsCsv(run);
    else
        std::cout << dryRunJson(itmPath, run).dump(2, ' ', false, json::error_handler_t::replace) << '\n';
    return kViewRan;
}

const bool registered = RegisterInspectView({
    "project",
    "What a submit of the project (.itm) would send: every device's rows, failed checks, whether it is sent",
    [](CLI::App& command) -> std::function<int()> {
        auto options = std::make_shared<ProjectOptions>();
        command.add_option("ITM", options->itm, "the project file")->required();
        CLI::Option* csv = command.add_flag("--csv", options->csv, "the rows as CSV instead of JSON");
        command.add_option("--xlsx", options->workbook, "write the rows as a workbook to this file instead")->excludes(csv);
        return [options] { return showProject(*options); };
    },
});

} // namespace
