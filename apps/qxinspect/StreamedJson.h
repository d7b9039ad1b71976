// JSON written as it goes, laid out exactly as nlohmann's dump(2) lays out the same document: for output too
// large to build as one tree first. Containers are opened and closed by hand; any value inside them may be
// a small tree, printed in place at the right depth.
#pragma once

#include <nlohmann/json.hpp>
#include <ostream>
#include <string_view>
#include <vector>

class StreamedJson {
public:
    explicit StreamedJson(std::ostream& out) : m_out(out) {}

    // Members of an object take their key first; elements of an array take none.
    void BeginObject(std::string_view key = {});
    void BeginArray(std::string_view key = {});
    void Value(const nlohmann::ordered_json& value, std::string_view key = {});
    void End();

private:
    struct Open {
        char closing;
        bool empty = true;
    };
    void startMember(std::string_view key);
    void indent(size_t depth);

    std::ostream& m_out;
    std::vector<Open> m_open;
};
