// Line editing at a terminal through libedit: arrows, Ctrl-A/E, deleting whole (wide) characters, and a
// history per kind of prompt. Used by the console reader only when standard input and standard error are
// both a terminal.
#pragma once

#include <memory>
#include <optional>
#include <string>

struct LineEditorState;

class LineEditor {
public:
    enum class End { Line, Interrupted, EndOfInput };
    struct Result {
        End end = End::EndOfInput;
        std::string utf8;  // the line without its line end
    };

    LineEditor();
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    // Reads one line after `prompt` (UTF-8) and, when it is not empty, adds it to the history `historyIndex`.
    // Ctrl-C gives Interrupted, Ctrl-D on an empty line EndOfInput; in both cases the cursor ends on a new line.
    Result read(const std::string& prompt, int historyIndex);
    // False when libedit could not take the terminal; the caller then reads plain lines.
    bool usable() const;

    static constexpr int kHistories = 3;

private:
    std::unique_ptr<LineEditorState> m_state;
};
