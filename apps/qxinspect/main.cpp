// qxinspect: shows as JSON what the system's readers make of a drawing, a Hexmoor.xml or a project folder.
// Standard output carries the JSON document alone; message boxes and reader complaints go to standard error.
#include "Views.h"
#include "drawing/DrawingReads.h"
#include "platform/host/HostOutput.h"

#include <iostream>
#include <vector>

namespace {

std::vector<InspectView>& views() {
    static std::vector<InspectView> all;
    return all;
}

// Printing from the readers is for the person, not for the JSON on standard output.
class StderrOutput final : public IHostOutput {
public:
    void Print(const CString& text) override { std::cerr << text; }
    void MessageBox(const CString& text, const CString& caption, unsigned) override {
        std::cerr << "[" << caption << "] " << text;
        if (!text.EndsWith(u"\n")) std::cerr << '\n';
    }
};

} // namespace

bool RegisterInspectView(InspectView view) {
    views().push_back(std::move(view));
    return true;
}

int main(int argc, char** argv) {
    StderrOutput output;
    SetHostOutput(&output);

    CLI::App app{"qxinspect: read-only views, as JSON, of what the QxHMInterFace readers make of their inputs"};
    app.set_version_flag("--version", std::string("qxinspect ") + QX_VERSION);
    app.require_subcommand(1);
    std::function<int()> run;
    for (const InspectView& view : views()) {
        CLI::App* command = app.add_subcommand(view.name, view.description);
        auto runner = view.setup(*command);
        command->callback([&run, runner] { run = runner; });
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        const int code = app.exit(error);
        return error.get_exit_code() == 0 ? code : kBadCommandLine;
    }
    try {
        // One view is one command: each drawing it needs is read once.
        const CDrawingReadScope reads;
        return run ? run() : kBadCommandLine;
    } catch (const std::exception& error) {
        std::cerr << "qxinspect: " << error.what() << '\n';
        return kInputUnreadable;
    }
}
