// libedit behind the console reader.
#include "platform/host/LineEditor.h"

#include <array>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <histedit.h>
#include <langinfo.h>

struct LineEditorState {
    EditLine* editLine = nullptr;
    std::array<History*, LineEditor::kHistories> histories{};
    std::string prompt;
    bool interrupted = false;
};

namespace {

LineEditorState* stateOf(EditLine* editLine) {
    void* data = nullptr;
    el_get(editLine, EL_CLIENTDATA, &data);
    return static_cast<LineEditorState*>(data);
}

char* promptOf(EditLine* editLine) { return stateOf(editLine)->prompt.data(); }

// Ctrl-C gives up the line: it ends as Ctrl-E and Enter would, so that the cursor leaves the line below
// the text, and the reader throws the text away.
unsigned char interruptLine(EditLine* editLine, int) {
    stateOf(editLine)->interrupted = true;
    el_push(editLine, "\x05\n");
    return CC_NORM;
}

// The program writes UTF-8 whatever the environment says; libedit must decode keys the same way, or a
// Chinese character would be edited byte by byte.
void useUtf8CharacterType() {
    std::setlocale(LC_CTYPE, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0) std::setlocale(LC_CTYPE, "C.UTF-8");
}

} // namespace

LineEditor::LineEditor() : m_state(std::make_unique<LineEditorState>()) {
    useUtf8CharacterType();
    EditLine* editLine = el_init("qx", stdin, stderr, stderr);
    m_state->editLine = editLine;
    if (!editLine) return;
    el_set(editLine, EL_CLIENTDATA, m_state.get());
    el_set(editLine, EL_EDITOR, "emacs");
    el_set(editLine, EL_SIGNAL, 1);
    el_set(editLine, EL_PROMPT, promptOf);
    // Ctrl-C reaches the editor as a key instead of ending the program with the terminal left raw.
    el_set(editLine, EL_SETTY, "-d", "-isig", nullptr);
    // The wide form keeps the names as given; the narrow one copies them and never frees the copies.
    el_wset(editLine, EL_ADDFN, L"qx-interrupt", L"give up the line", interruptLine);
    el_set(editLine, EL_BIND, "^C", "qx-interrupt", nullptr);
    for (History*& list : m_state->histories) {
        list = history_init();
        if (!list) continue;
        HistEvent event;
        history(list, &event, H_SETSIZE, 500);
        history(list, &event, H_SETUNIQUE, 1);
    }
}

LineEditor::~LineEditor() {
    if (m_state->editLine) el_end(m_state->editLine);
    for (History* list : m_state->histories)
        if (list) history_end(list);
}

bool LineEditor::usable() const { return m_state->editLine != nullptr; }

LineEditor::Result LineEditor::read(const std::string& prompt, int historyIndex) {
    EditLine* editLine = m_state->editLine;
    if (!editLine) return {};
    History* list = m_state->histories.at(static_cast<size_t>(historyIndex));
    if (list) el_set(editLine, EL_HIST, history, list);
    m_state->prompt = prompt;
    m_state->interrupted = false;

    int count = 0;
    const char* line = el_gets(editLine, &count);
    if (m_state->interrupted) return {End::Interrupted, {}};
    if (!line || count <= 0) {
        std::fputc('\n', stderr);
        return {End::EndOfInput, {}};
    }
    std::string text(line, static_cast<size_t>(count));
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    if (list && !text.empty()) {
        HistEvent event;
        history(list, &event, H_ENTER, text.c_str());
    }
    return {End::Line, text};
}
