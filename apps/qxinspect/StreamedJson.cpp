// JSON written as it goes, in the layout of dump(2).
#include "StreamedJson.h"

namespace {

std::string dumped(const nlohmann::ordered_json& value) {
    return value.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

} // namespace

void StreamedJson::indent(size_t depth) {
    for (size_t i = 0; i < depth; ++i) m_out << "  ";
}

void StreamedJson::startMember(std::string_view key) {
    if (!m_open.empty()) {
        Open& parent = m_open.back();
        m_out << (parent.empty ? "\n" : ",\n");
        parent.empty = false;
        indent(m_open.size());
        if (parent.closing == '}') m_out << dumped(std::string(key)) << ": ";
    }
}

void StreamedJson::BeginObject(std::string_view key) {
    startMember(key);
    m_out << '{';
    m_open.push_back({'}'});
}

void StreamedJson::BeginArray(std::string_view key) {
    startMember(key);
    m_out << '[';
    m_open.push_back({']'});
}

void StreamedJson::Value(const nlohmann::ordered_json& value, std::string_view key) {
    startMember(key);
    // The value's own lines stand one step deeper for each container around it; strings never hold a raw
    // line break in JSON, so every line break is layout.
    const std::string text = dumped(value);
    size_t start = 0;
    for (size_t lineEnd; (lineEnd = text.find('\n', start)) != std::string::npos; start = lineEnd + 1) {
        m_out.write(text.data() + start, static_cast<std::streamsize>(lineEnd + 1 - start));
        indent(m_open.size());
    }
    m_out.write(text.data() + start, static_cast<std::streamsize>(text.size() - start));
}

void StreamedJson::End() {
    const Open closed = m_open.back();
    m_open.pop_back();
    if (!closed.empty) {
        m_out << '\n';
        indent(m_open.size());
    }
    m_out << closed.closing;
}
