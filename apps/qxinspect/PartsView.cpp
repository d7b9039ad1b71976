// qxinspect parts FILE...: the part records (CPartBomDataBase) that the drawings give together, merged by
// location and label across the list, as JSON.
#include "AssemblyJson.h"
#include "Views.h"
#include "drawing/parts/GetPartInfo.h"
#include "support/FileSystem.h"

#include <iostream>
#include <vector>

namespace {

struct PartRecordsHolder {
    CPartBomDataBaseArray parts;
    ~PartRecordsHolder() { QxFreePartBoms(parts); }
};

int showParts(const std::vector<std::string>& files) {
    // Drawing by drawing, as GetPartsOfDwgs reads them, so that a drawing that does not open can be named.
    PartRecordsHolder records;
    const CGetPartInfo reader;
    assemblyjson::json drawings = assemblyjson::json::array();
    int opened = 0;
    for (const std::string& file : files) {
        const CString path = QxFs::FromNative(file);
        const bool read = reader.GetPartsOfOneDwg(path, 1, records.parts);
        if (read) ++opened;
        else std::cerr << "qxinspect: the drawing " << file << " cannot be read\n";
        drawings.push_back({{"path", assemblyjson::NativePath(path)}, {"read", read}});
    }
    if (opened == 0) return kInputUnreadable;
    assemblyjson::json parts = assemblyjson::json::array();
    for (const CPartBomDataBase* record : records.parts) parts.push_back(assemblyjson::PartRecord(*record));
    assemblyjson::Print({{"drawings", drawings}, {"parts", parts}});
    return kViewRan;
}

const bool registered = RegisterInspectView({
    "parts",
    "The part records of drawings, merged by location and label across them",
    [](CLI::App& command) -> std::function<int()> {
        auto files = std::make_shared<std::vector<std::string>>();
        command.add_option("FILE", *files, "the drawings, in order")->required();
        return [files] { return showParts(*files); };
    },
});

} // namespace
