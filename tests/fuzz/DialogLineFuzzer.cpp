// The cabinet dialog of qxcad's terminal, driven by lines a person or a script types. The input is three
// parts cut at zero bytes: the devices of the project (a line each: name, cabinet number, cabinet name
// split by "|"), the cabinet numbers of the last scan (a line each), and the answer lines. Whatever the
// lines say, the dialog ends when they do, with every device still in its row.
#include "FuzzSupport.h"

#include "apps/qxcad/CabinetDialogTerminal.h"
#include "drawing/ExtractionState.h"
#include "support/TextHelpers.h"

#include <sstream>

namespace {

// Enough rows and lines to reach every part of the language; more only slows the run.
constexpr int kMostDevices = 12;
constexpr int kMostCircuits = 12;
constexpr int kMostLines = 256;

CStringArray linesOf(std::string_view part) {
    CStringArray lines;
    if (!part.empty()) SplitString(CString::FromUtf8(part), u"\n", lines);
    return lines;
}

struct Project {
    HMProjectTree_INFO root;

    void addDevice(const CString& line) {
        CStringArray fields;
        SplitString(line, u"|", fields);
        auto* device = new HMProjectTree_INFO;
        device->m_strName = fields[0];
        device->m_strType = u"0";
        if (fields.GetSize() > 1) device->m_strCirNo = fields[1];
        if (fields.GetSize() > 2) device->m_strCirName = fields[2];
        device->m_pRoot = &root;
        device->m_pParent = &root;
        root.m_arrChildren.Add(device);
        root.m_arrCabinets.Add(device);
    }
};

// The circuits of the last scan, for the length of one input.
struct ScannedCircuits {
    explicit ScannedCircuits(const CStringArray& numbers) {
        for (int i = 0; i < numbers.GetSize() && i < kMostCircuits; ++i) {
            auto* circuit = new CCir1Attrubute;
            circuit->No = numbers[i];
            circuit->Use = u"进线";
            circuit->Type = u"KYN28";
            g_arrCircuits.Add(circuit);
        }
    }
    ~ScannedCircuits() { QxFreeCircuits(g_arrCircuits); }
    ScannedCircuits(const ScannedCircuits&) = delete;
    ScannedCircuits& operator=(const ScannedCircuits&) = delete;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto parts = fuzz::SplitSections(data, size, 3);
    Project project;
    const CStringArray devices = linesOf(parts[0]);
    for (int i = 0; i < devices.GetSize() && i < kMostDevices; ++i) project.addDevice(devices[i]);
    const ScannedCircuits circuits(linesOf(parts[1]));
    const CStringArray answers = linesOf(parts[2]);

    CSetCabInfo dialog;
    dialog.m_pProjectTree = &project.root;
    dialog.OnInitDialog();
    std::ostringstream screen;
    int next = 0;
    // A person at a terminal gets prompts and the table after each action: that path is read as well.
    const bool interactive = !answers.IsEmpty() && answers[0].StartsWith(u"#");
    CabinetDialogTerminal terminal(
        dialog,
        [&](const CString&) -> std::optional<CString> {
            if (next >= answers.GetSize() || next >= kMostLines) return std::nullopt;
            return answers[next++];
        },
        screen, interactive, interactive ? DialogScreenSize{80, 24} : DialogScreenSize{});
    terminal.Run();

    fuzz::Require(dialog.HasEnded(), "the dialog ends when its input does");
    fuzz::Require(project.root.m_arrCabinets.GetSize() == std::min(devices.GetSize(), kMostDevices),
                  "the dialog keeps every device");
    return 0;
}
